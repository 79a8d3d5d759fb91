// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "RemoteLine.h"

#include "LineClock.h"
#include "RemoteReturn.h"

#include <algorithm>
#include <utility>

namespace
{

/// Who is let in and turned out again must not come and go without end.
constexpr std::chrono::milliseconds TimeUntilSteady{2000};
constexpr std::chrono::milliseconds PauseUntilSteady{500};

} // namespace

RemoteLine::RemoteLine(LineLoop &loop) : DescriptorLine(loop) {}

RemoteLine::~RemoteLine()
{
    Abandon();
}

void RemoteLine::Open(const RemoteRequest &request, RemoteLink link)
{
    m_request = request;
    m_tally.SetModem({});
    TakeOver(std::move(link));
    Start(request.comNumber);
}

/// The lines' thread does not know the line yet, or does this itself.
void RemoteLine::TakeOver(RemoteLink link)
{
    m_link = std::move(link);
    m_handle = m_link.stream->Handle();
    m_wire.clear();
    m_steady.setRemainingTime(TimeUntilSteady);
    NoteSignals();
}

QString RemoteLine::ServerName() const
{
    const std::lock_guard guard(m_nameLock);
    return m_serverName;
}

void RemoteLine::NoteSignals()
{
    const ComPortClient *client = m_link.client.get();
    m_tally.RTS = client && client->RTS();
    m_tally.DTR = client && client->DTR();
    m_tally.SetModem(client ? client->Modem() : std::nullopt);
    const std::lock_guard guard(m_nameLock);
    m_serverName = client ? client->ServerName() : QString();
}

/// What came while the line was opened is told first.
void RemoteLine::BeginReading()
{
    DescriptorLine::BeginReading();
    if (!Reading())
        return;
    if (const QByteArray early = std::exchange(m_link.early, {}); !early.isEmpty())
        Deliver({early, LineNow(), true});
}

Result RemoteLine::Write(const QByteArray &bytes)
{
    if (IsOpen() && m_request.address.listens)
        return Failure{QStringLiteral("COM%1 only listens to %2; nothing is sent there")
                           .arg(m_request.comNumber)
                           .arg(PeerText(m_request.address)),
                       LineOnlyListens};
    return DescriptorLine::Write(bytes);
}

bool RemoteLine::WantsToWrite() const
{
    const bool suspended = m_link.client && m_link.client->Suspended();
    return !m_wire.isEmpty() || (HasUnsent() && !suspended);
}

void RemoteLine::Arrived(const LineRead &read)
{
    if (!m_link.client) {
        Deliver(read);
        return;
    }
    const quint64 commandsBefore = m_link.client->CommandCount();
    m_link.client->Feed(read.bytes);
    while (const auto piece = m_link.client->Next()) {
        if (!piece->bytes.isEmpty())
            Deliver({piece->bytes, read.time, read.orderUncertain});
        Tell(*piece, read.time);
    }
    if (m_link.client->CommandCount() != commandsBefore)
        NoteSignals();
    m_wire += m_link.client->TakeOutgoing();
    SendWire(); // if the connection has ended, the loop finds out
}

void RemoteLine::Tell(const ComPortClient::Piece &piece, const LineTime &time)
{
    using News = ComPortClient::Piece::News;
    const ComPortClient &client = *m_link.client;
    if (piece.news == News::LineState)
        TellLineState(piece.lineState, time);
    if (piece.news == News::ModemLines && m_listener && client.Modem())
        m_listener->OnModemLines(*client.Modem(), time);
    if (piece.news == News::Settings && m_listener)
        m_listener->OnOtherSettings(QStringLiteral("%1 was asked for %2 and now does %3")
                                        .arg(PeerText(m_request.address),
                                             LineSettingsText(m_request.settings),
                                             LineSettingsText(client.Settings())));
}

/// A break makes a framing error as well.
void RemoteLine::TellLineState(quint8 state, const LineTime &time)
{
    const bool isBreak = (state & ComPortOption::Break) != 0;
    const struct {
        LineCondition condition;
        bool told;
    } conditions[] = {
        {LineCondition::Overrun, (state & ComPortOption::Overrun) != 0},
        {LineCondition::Break, isBreak},
        {LineCondition::DamagedByte,
         !isBreak && (state & (ComPortOption::ParityError | ComPortOption::FramingError)) != 0}};
    for (const auto &each : conditions) {
        if (!each.told)
            continue;
        m_tally.conditions[size_t(each.condition)] += 1;
        if (m_listener)
            m_listener->OnCondition(each.condition, 1, time);
    }
}

qsizetype RemoteLine::Receive(char *bytes, size_t most)
{
    return m_link.stream ? m_link.stream->Receive(bytes, most) : -1;
}

/// Commands go before data that still wait here, and are not held up by a server that takes none.
qsizetype RemoteLine::Transmit(const char *bytes, qsizetype count)
{
    if (!m_link.stream)
        return -1;
    if (!m_link.client)
        return m_link.stream->Transmit(bytes, count);
    if (!SendWire())
        return -1;
    if (!m_wire.isEmpty() || m_link.client->Suspended() || count == 0)
        return 0;
    const qsizetype taken = std::min(count, MostBytesOfARead);
    m_wire = Telnet::Escaped(QByteArrayView(bytes, taken));
    return SendWire() ? taken : -1;
}

/// False if the connection has ended.
bool RemoteLine::SendWire()
{
    if (m_wire.isEmpty())
        return true;
    const qsizetype taken = m_link.stream->Transmit(m_wire.constData(), m_wire.size());
    if (taken > 0)
        m_wire.remove(0, taken);
    return taken >= 0;
}

Result RemoteLine::Presence()
{
    return m_link.stream->End();
}

qint64 RemoteLine::UnsentInSystem() const
{
    return m_wire.size() + m_link.stream->Unsent();
}

/// What is told as thrown away must not arrive later on.
void RemoteLine::PutInOrder(qint64 lost)
{
    if (lost > 0)
        m_link.stream->DropUnsent();
    else
        m_link.stream->Finish();
}

void RemoteLine::Shut()
{
    m_handle = NoHandle;
    m_link = {};
    m_wire.clear();
    m_tally.SetModem({});
}

Result RemoteLine::Switch(void (ComPortClient::*line)(bool), bool on, const char *name)
{
    const QString peer = PeerText(m_request.address);
    if (m_request.address.listens)
        return Failure{peer + QStringLiteral(" is only listened to; no signals are sent there")};
    if (!m_link.client || !m_link.client->Modem())
        return Failure{QStringLiteral("%1 has no %2 line").arg(peer, QLatin1String(name))};
    Command(line, on);
    return {};
}

void RemoteLine::Command(void (ComPortClient::*line)(bool), bool on)
{
    (*m_link.client.*line)(on);
    m_wire += m_link.client->TakeOutgoing();
    SendWire();
    NoteSignals();
}

Result RemoteLine::SetBreak(bool on)
{
    if (!m_link.client || m_request.address.listens)
        return Failure{PeerText(m_request.address) + QStringLiteral(" takes no break")};
    Command(&ComPortClient::SetBreak, on);
    return {};
}

Result RemoteLine::SetRTS(bool on)
{
    return Switch(&ComPortClient::SetRTS, on, "request-to-send");
}

Result RemoteLine::SetDTR(bool on)
{
    return Switch(&ComPortClient::SetDTR, on, "data-terminal-ready");
}

void RemoteLine::BeginWaiting()
{
    m_return = std::make_unique<RemoteReturn>(
        m_request, m_steady.hasExpired() ? std::chrono::milliseconds(0) : PauseUntilSteady,
        RemoteReturn::Calls{[this](const std::shared_ptr<RemoteOpening> &opened) {
                                m_loop.Post([this, opened] { Return(*opened); });
                            },
                            [this](const QString &cause) {
                                m_loop.Post([this, cause] {
                                    if (m_listener && m_return && !m_return->HasEnded())
                                        m_listener->OnRefused(cause);
                                });
                            }});
}

void RemoteLine::Return(RemoteOpening &opening)
{
    if (!m_return || m_return->HasEnded())
        return;
    m_return.reset();
    TakeOver(opening.TakeLink());
    ComeBack();
}

void RemoteLine::EndWaiting()
{
    if (m_return)
        m_return->End();
}

void RemoteLine::LetGo()
{
    m_loop.Do([this] { m_return.reset(); });
}
