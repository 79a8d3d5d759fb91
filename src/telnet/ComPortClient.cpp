// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ComPortClient.h"

#include <algorithm>
#include <cstdlib>

using namespace ComPortOption;

namespace
{

constexpr qsizetype MostLettersOfAName = 100;

/// A divisor of the server's clock seldom meets the rate; receivers do not notice so little.
bool AreAlike(LineSettings told, const LineSettings &asked)
{
    constexpr qint64 PartsNoticed = 50; // 2 %
    if (std::abs(qint64(told.baud) - asked.baud) * PartsNoticed <= asked.baud)
        told.baud = asked.baud;
    return told == asked;
}

} // namespace

ComPortClient::ComPortClient(const ComPortRequest &request)
    : m_request(request), m_settings(request.settings)
{
    m_outgoing = m_options.Begin();
}

bool ComPortClient::IsUnderstood() const
{
    return m_options.InForce(TelnetOptions::Side::Here, Telnet::ComPort);
}

std::optional<ComPortClient::Piece> ComPortClient::Next()
{
    while (const auto item = m_reader.Next()) {
        switch (item->kind) {
        case TelnetReader::Kind::Data:
            return Piece{item->bytes};
        case TelnetReader::Kind::Option:
            m_outgoing += m_options.Take(item->verb, item->option);
            NegotiateFurther();
            break;
        case TelnetReader::Kind::Subnegotiation:
            if (item->option != Telnet::ComPort || item->bytes.isEmpty())
                break;
            if (auto piece = TakeCommand(item->bytes))
                return piece;
            break;
        }
    }
    return std::nullopt;
}

void ComPortClient::NegotiateFurther()
{
    if (IsUnderstood() && !std::exchange(m_asked, true)) {
        m_outgoing += Command(Signature);
        if (!m_request.listens) {
            m_outgoing += Commands(m_request.settings);
            Send(Control::NoFlowControl);
            SetRTS(m_request.requestToSend);
            SetDTR(true);
            m_outgoing += Command(SetLineStateMask, quint8(Overrun | ParityError | FramingError |
                                                           ComPortOption::Break));
            m_outgoing += Command(SetModemStateMask, quint8(0xFF));
        }
    }
    Judge();
}

/// Once it is decided, a later answer changes nothing.
void ComPortClient::Judge()
{
    using Side = TelnetOptions::Side;
    if (m_verdict != Outcome::Opening)
        return;
    if (m_options.Refused(Side::Here, Telnet::ComPort))
        m_verdict = Outcome::NoComPort;
    else if (m_options.Refused(Side::Here, Telnet::Binary) ||
             m_options.Refused(Side::There, Telnet::Binary))
        m_verdict = Outcome::NoBinary;
    else if (IsUnderstood() && m_request.listens)
        m_verdict = Outcome::Ready;
    else if (m_answered.all())
        m_verdict =
            AreAlike(m_settings, m_request.settings) ? Outcome::Ready : Outcome::OtherSettings;
}

std::optional<ComPortClient::Piece> ComPortClient::TakeCommand(QByteArrayView words)
{
    const quint8 command = quint8(words.front());
    m_commands += 1;
    const QByteArrayView value = words.sliced(1);
    const quint8 byte = value.isEmpty() ? 0 : quint8(value.front());
    switch (command) {
    case Signature + ServerOffset:
        TakeSignature(value);
        return std::nullopt;
    case FlowSuspend + ServerOffset:
    case FlowResume + ServerOffset:
        m_suspended = command == FlowSuspend + ServerOffset;
        return std::nullopt;
    case SetControl + ServerOffset:
        return TakeControl(byte);
    case NotifyLineState + ServerOffset:
        return Piece{{}, Piece::News::LineState, byte};
    case NotifyModemState + ServerOffset:
        return TakeModemState(byte);
    default:
        return TakeSetting(command, value);
    }
}

std::optional<ComPortClient::Piece> ComPortClient::TakeSetting(quint8 command, QByteArrayView value)
{
    const auto setting = Take(m_settings, command, value);
    if (!setting || !m_asked)
        return std::nullopt;
    m_answered.set(size_t(*setting));
    const bool wasReady = m_verdict == Outcome::Ready;
    Judge();
    const bool asAsked = m_request.listens || AreAlike(m_settings, m_request.settings);
    if (!wasReady || asAsked || std::exchange(m_otherTold, true))
        return std::nullopt;
    return Piece{{}, Piece::News::Settings};
}

/// A server whose device has no lines tells of none that are on, and does not answer for RTS.
std::optional<ComPortClient::Piece> ComPortClient::TakeModemState(quint8 state)
{
    m_hasLines = m_hasLines || (state & 0xF0) != 0;
    const std::optional<ModemLines> before = m_modem;
    m_modemState = state;
    if (m_hasLines)
        m_modem = LinesOf(state);
    if (before == m_modem)
        return std::nullopt;
    return Piece{{}, Piece::News::ModemLines};
}

/// Servers whose device has no lines may answer for flow control all the same.
std::optional<ComPortClient::Piece> ComPortClient::TakeControl(quint8 value)
{
    const auto control = Control(value);
    if (control == Control::RTSOn || control == Control::RTSOff)
        m_rts = control == Control::RTSOn;
    else if (control == Control::DTROn || control == Control::DTROff)
        m_dtr = control == Control::DTROn;
    else
        return std::nullopt;
    m_hasLines = true;
    return TakeModemState(m_modemState);
}

void ComPortClient::TakeSignature(QByteArrayView name)
{
    m_serverName.clear();
    for (const char c : name.first(std::min(name.size(), MostLettersOfAName)))
        if (const QChar letter = QLatin1Char(c); letter.isPrint())
            m_serverName += letter;
}

void ComPortClient::Send(Control control)
{
    m_outgoing += Command(SetControl, quint8(control));
}

void ComPortClient::SetRTS(bool on)
{
    m_rts = on;
    Send(on ? Control::RTSOn : Control::RTSOff);
}

void ComPortClient::SetDTR(bool on)
{
    m_dtr = on;
    Send(on ? Control::DTROn : Control::DTROff);
}

void ComPortClient::SetBreak(bool on)
{
    Send(on ? Control::BreakOn : Control::BreakOff);
}
