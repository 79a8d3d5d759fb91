// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "MdCommunication.h"

#include "CommConfiguration.h"
#include "CommunicationLog.h"
#include "CommunicationViews.h"
#include "DisplaySettings.h"
#include "SerialPortControl.h"
#include "StampText.h"

#include <QScopedValueRollback>

#include <functional>

namespace
{

/// Waiting bytes that raise a receive event.
constexpr int ReceiveThreshold = 1;
/// Input mode in which bytes are read as 8-bit text.
constexpr int TextInputMode = 0;
/// A read takes everything that is waiting.
constexpr int ReadAll = 0;

QString OpenFailureText(int portNumber, const Result &opened)
{
    QString text = QStringLiteral("The port COM%1 could not be opened. ").arg(portNumber);
    if (opened.Number() == RefusedLineSettings) {
        text += QStringLiteral(
            " Probable cause: This COM port does not support the communication settings specified "
            "(baud rate, number of data bits, number of stop bits). ");
    }
    text += QStringLiteral("The system's original error message is: ");
    return text + u'"' + opened.Cause() + u'"';
}

} // namespace

MdCommunication::MdCommunication(const CommunicationParts &parts)
    : m_parts(parts), m_detection(parts.sequences), m_reports(parts.prompts)
{
    const auto listen = [this](SerialPortControl &port, Channel channel) {
        connect(&port, &SerialPortControl::CommEventRaised, this,
                [this, channel] { OnCommEvent(channel); });
        connect(&port, &SerialPortControl::Disconnected, this,
                [this, channel](const QString &cause) { OnDisconnected(channel, cause); });
    };
    listen(parts.MSCommA, Channel::A);
    listen(parts.MSCommB, Channel::B);
}

void MdCommunication::OpenPorts()
{
    if (Running())
        return;
    Q_EMIT ToolbarStateChanged(ToolbarState::Closed);
    m_detection.Clear();

    const bool two = m_parts.comm.TwoChannels();
    if (OpenPortsOfMode()) {
        m_commStatus = StatusOpen;
        Q_EMIT PortStatusChanged(two ? QStringLiteral("Communication ports are open")
                                     : QStringLiteral("Communication port is open"));
        Q_EMIT ToolbarStateChanged(ToolbarState::Open);
        m_parts.views.MoveStagedText();
        m_parts.views.SetCommunicating(true);
    } else {
        Q_EMIT PortStatusChanged(
            two ? QStringLiteral("Error while configuring and opening the communication ports")
                : QStringLiteral("Error while configuring and opening the communication port"));
        Q_EMIT ToolbarStateChanged(ToolbarState::Closed);
    }
    m_parts.log.UpdateLogCommands();
}

bool MdCommunication::OpenPortsOfMode()
{
    if (!ConfigurePort(m_parts.MSCommA, Channel::A))
        return false;
    if (!m_parts.comm.TwoChannels() || ConfigurePort(m_parts.MSCommB, Channel::B))
        return true;
    ClosePort(m_parts.MSCommA);
    return false;
}

bool MdCommunication::ConfigurePort(SerialPortControl &port, Channel channel)
{
    const std::function<Result()> steps[] = {
        [&] { return port.SetCommPort(PortNumber(channel)); },
        [&] { return port.SetSettings(m_parts.comm.PortSettings()); },
        [&] { return port.SetRThreshold(ReceiveThreshold); },
        [&] { return port.SetRTSEnable(true); },
        [&] { return port.SetInputMode(TextInputMode); },
        [&] { return port.SetInBufferSize(OverflowCount); },
        [&] { return port.SetInputLen(ReadAll); },
        [&] { return port.SetPortOpen(true); },
    };
    for (const auto &step : steps) {
        if (const Result done = step(); done.Failed()) {
            m_parts.prompts.ShowMessage(
                CriticalMessage(OpenFailureText(PortNumber(channel), done)));
            return false;
        }
    }
    return true;
}

void MdCommunication::ClosePorts()
{
    if (!Running())
        return;
    if (ClosePortsOfMode()) {
        m_commStatus = StatusClosed;
        Q_EMIT PortStatusChanged(m_parts.comm.TwoChannels()
                                     ? QStringLiteral("Communication ports are closed")
                                     : QStringLiteral("Communication port is closed"));
        Q_EMIT ToolbarStateChanged(ToolbarState::Closed);
        m_parts.views.SetCommunicating(false);
    } else {
        Q_EMIT PortStatusChanged(QStringLiteral("Failure during closing the communication port"));
    }
    m_parts.log.StopLog();
}

bool MdCommunication::ClosePortsOfMode()
{
    const bool closedA = ClosePort(m_parts.MSCommA);
    const bool closedB = !m_parts.comm.TwoChannels() || ClosePort(m_parts.MSCommB);
    return closedA && closedB;
}

bool MdCommunication::ClosePort(SerialPortControl &port)
{
    return !port.SetPortOpen(false).Failed();
}

void MdCommunication::SendData(SerialPortControl &port, const QByteArray &bytes)
{
    if (!port.PortOpen())
        return;
    const Result sent = port.Output(bytes);
    if (!sent.Failed())
        return;
    const MessagePrompt report = ExclamationMessage(sent.Cause());
    if (m_receiving)
        m_reports.Post(report);
    else
        m_parts.prompts.ShowMessage(report);
}

void MdCommunication::Transmit(const QByteArray &bytes)
{
    OpenPorts();
    Send(bytes);
}

void MdCommunication::Send(const QByteArray &bytes)
{
    if (!Running() || !m_parts.comm.MaySend())
        return;
    ShowChunk(StyleIndex::Direction1, bytes);
    SendData(m_parts.MSCommA, bytes);
}

void MdCommunication::OnCommEvent(Channel channel)
{
    const SerialPortControl &port = channel == Channel::A ? m_parts.MSCommA : m_parts.MSCommB;
    if (port.CommEvent() == CommEvents::Receive)
        OnReceive(channel);
}

void MdCommunication::OnDisconnected(Channel channel, const QString &description)
{
    const QString text = QStringLiteral("The port COM%1 was disconnected. ");
    m_reports.Post(CriticalMessage(text.arg(PortNumber(channel)) + description));
    ClosePorts();
}

void MdCommunication::OnReceive(Channel channel)
{
    const QScopedValueRollback<bool> receiving(m_receiving, true);
    const bool two = m_parts.comm.TwoChannels();
    if (channel == Channel::A)
        ReadPort(m_parts.MSCommA, two ? StyleIndex::Direction1 : StyleIndex::Direction2);
    else if (two)
        ReadPort(m_parts.MSCommB, StyleIndex::Direction2);
}

void MdCommunication::ReadPort(SerialPortControl &port, int direction)
{
    if (port.InBufferCount() >= OverflowCount)
        port.ClearInBuffer();
    if (port.InBufferCount() < 1)
        return;
    const QByteArray input = port.Input();
    QByteArrayView rest = input;
    while (!rest.isEmpty()) {
        const auto found = m_detection.Feed(direction, rest, m_parts.comm.Mode());
        ShowChunk(direction, rest.first(found.consumed));
        rest = rest.sliced(found.consumed);
        InsertComment(found.comment);
        if (!found.answer.isEmpty())
            Send(found.answer);
    }
}

void MdCommunication::ShowChunk(int direction, QByteArrayView bytes)
{
    Stamp(direction);
    const TextStyle &style = m_parts.display.styles[size_t(direction)];
    for (const Representation r : AllRepresentations) {
        const QByteArray text = RowOf(r).toView(bytes);
        m_parts.views.StagingBox(r).AppendStyled(text, style);
        m_parts.log.WriteText(r, text);
    }
}

void MdCommunication::Stamp(int direction)
{
    const StampSettings &stamp = m_parts.stamp;
    const bool sent = direction == StyleIndex::Direction1 && !m_parts.comm.TwoChannels();
    const bool due = (stamp.Date || stamp.Time) && (sent || direction != m_lastStampDirection);
    if (!due)
        return;
    m_lastStampDirection = direction;
    AppendToAll(StampText(stamp, m_parts.clock), StyleIndex::Comment);
}

void MdCommunication::InsertComment(const QByteArray &text)
{
    if (!text.isEmpty() && Running())
        AppendToAll(' ' + text + ' ', StyleIndex::Comment);
}

void MdCommunication::AppendToAll(const QByteArray &text, int styleIndex)
{
    const TextStyle &style = m_parts.display.styles[size_t(styleIndex)];
    for (const Representation r : AllRepresentations) {
        m_parts.views.StagingBox(r).AppendStyled(text, style);
        m_parts.log.WriteText(r, text);
    }
}

int MdCommunication::PortNumber(Channel channel) const
{
    const CommConfiguration &comm = m_parts.comm;
    return channel == Channel::A ? comm.PortA() : comm.PortB();
}
