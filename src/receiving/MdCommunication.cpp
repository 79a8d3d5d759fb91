// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "MdCommunication.h"

#include "CommConfiguration.h"
#include "CommunicationLog.h"
#include "CommunicationViews.h"
#include "DisplaySettings.h"
#include "LineSettings.h"
#include "MdSequenceEdition.h"
#include "SerialPortControl.h"

#include <functional>
#include <utility>

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
    : m_parts(parts),
      m_reports(parts.prompts),
      m_stream(parts.clock),
      m_judge(m_board, m_stream, parts.MSCommA.Wire(), JudgeReports())
{
    m_stream.Feed(m_feed);
    m_stream.Feed(parts.log);
    m_judge.HasRoom = [&log = parts.log] { return log.HasRoom(); };
    parts.MSCommA.Wire().Listen(&m_judge.Ear(0));
    parts.MSCommB.Wire().Listen(&m_judge.Ear(1));
    m_watch = parts.sequences.Watch([this] { Publish(); });
    Publish();
}

MdCommunication::~MdCommunication()
{
    EndReading();
    m_parts.lines.Do([this] {
        for (const Channel channel : {Channel::A, Channel::B})
            PortOf(channel).Wire().Listen(nullptr);
    });
}

/// They come on the lines' thread and are handled on the window's.
LineJudge::Reports MdCommunication::JudgeReports()
{
    return {
        [this](int channel, const QString &cause) {
            QMetaObject::invokeMethod(
                this, [=, this] { OnGone(channel, cause); }, Qt::QueuedConnection);
        },
        [this](int channel, const QString &cause) {
            QMetaObject::invokeMethod(
                this, [=, this] { TellNotSent(channel, cause); }, Qt::QueuedConnection);
        },
        [this](int channel) {
            QMetaObject::invokeMethod(
                this, [=, this] { m_told[size_t(channel)] = false; }, Qt::QueuedConnection);
        },
        [this] {
            QMetaObject::invokeMethod(this, &MdCommunication::ShowPortStatus, Qt::QueuedConnection);
        },
        [this](const QString &about, const QString &text) {
            QMetaObject::invokeMethod(
                this, [=, this] { m_parts.prompts.ShowNotice(about, ExclamationMessage(text)); },
                Qt::QueuedConnection);
        }};
}

void MdCommunication::Publish()
{
    m_board.Publish(std::make_shared<const WatchSnapshot>(m_parts.sequences));
}

void MdCommunication::OpenPorts()
{
    if (Running())
        return;
    Q_EMIT ToolbarStateChanged(ToolbarState::Closed);

    const bool two = m_parts.comm.TwoChannels();
    if (OpenPortsOfMode()) {
        m_commStatus = StatusOpen;
        ShowPortStatus();
        Q_EMIT ToolbarStateChanged(ToolbarState::Open);
        m_feed.Clear();
        m_told = {};
        m_parts.views.SetCommunicating(true);
    } else {
        Q_EMIT PortStatusChanged(
            two ? QStringLiteral("Error while configuring and opening the communication ports")
                : QStringLiteral("Error while configuring and opening the communication port"));
        Q_EMIT ToolbarStateChanged(ToolbarState::Closed);
    }
    m_parts.log.UpdateLogCommands();
    if (Running()) // an armed log has begun by now
        BeginReading();
}

TrafficSession MdCommunication::SessionOfMode() const
{
    const std::optional<LineSettings> line = ParseLineSettings(m_parts.comm.PortSettings());
    TrafficSession session;
    for (const Channel channel : ChannelsOfMode()) {
        const SerialPortControl &port = PortOf(channel);
        QString description = port.Device();
        if (const QString own = port.Description(); !own.isEmpty())
            description += QStringLiteral(" (%1)").arg(own);
        session.ports.append({QStringLiteral("COM%1").arg(PortNumber(channel)), description,
                              line ? quint64(line->baud) : 0});
    }
    return session;
}

void MdCommunication::TellOpenOrClosed(TrafficEvent::Kind kind, Channel channel)
{
    TrafficEvent event;
    event.kind = kind;
    event.channel = int(channel);
    event.time = PortOf(channel).Wire().Now();
    m_stream.Append(std::move(event));
}

/// The lines begin at one moment.
void MdCommunication::BeginReading()
{
    const bool two = m_parts.comm.TwoChannels();
    m_stream.Begin(SessionOfMode(), m_parts.stamp);
    for (const Channel channel : ChannelsOfMode())
        TellOpenOrClosed(TrafficEvent::Kind::Opened, channel);
    m_parts.lines.Do([this, two] {
        m_judge.Begin({two, m_parts.comm.MaySend(), {m_parts.comm.PortA(), m_parts.comm.PortB()}});
        m_parts.MSCommA.Wire().BeginReading();
        if (two)
            m_parts.MSCommB.Wire().BeginReading();
    });
}

/// Both lines stop at one moment; what they said until then is judged, answered and staged.
void MdCommunication::EndReading()
{
    m_parts.lines.Do([this] {
        m_parts.MSCommA.Wire().EndReading();
        m_parts.MSCommB.Wire().EndReading();
    });
}

void MdCommunication::Resume()
{
    m_parts.lines.Post([this] {
        m_parts.MSCommA.Wire().Resume();
        m_parts.MSCommB.Wire().Resume();
    });
}

void MdCommunication::StageTraffic()
{
    m_feed.StageInto(m_parts.views, m_parts.display);
}

void MdCommunication::ShowTraffic()
{
    StageTraffic();
    m_parts.views.MoveStagedText();
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
        [&] { return port.SetInBufferSize(ReceiveBufferSize); },
        [&] { return port.SetInputLen(ReadAll); },
        [&] { return port.SetPortOpen(true); },
    };
    port.SetReopens(m_parts.comm.Reopens());
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
    EndReading();
    ShowTraffic(); // the device's last words
    if (ClosePortsOfMode()) {
        m_stream.End();
        m_commStatus = StatusClosed;
        Q_EMIT PortStatusChanged(m_parts.comm.TwoChannels()
                                     ? QStringLiteral("Communication ports are closed")
                                     : QStringLiteral("Communication port is closed"));
        Q_EMIT ToolbarStateChanged(ToolbarState::Closed);
        m_parts.views.SetCommunicating(false);
    } else {
        Q_EMIT PortStatusChanged(QStringLiteral("Failure during closing the communication port"));
        m_parts.lines.Do([this] {
            m_parts.MSCommA.Wire().BeginReading();
            m_parts.MSCommB.Wire().BeginReading();
        });
    }
    m_parts.log.StopLog();
}

bool MdCommunication::ClosePortsOfMode()
{
    bool closed = true;
    for (const Channel channel : ChannelsOfMode()) {
        const bool open = PortOf(channel).PortOpen();
        if (!ClosePort(PortOf(channel))) {
            closed = false;
        } else if (open) {
            TellThrownAway(channel);
            TellOpenOrClosed(TrafficEvent::Kind::Closed, channel);
        }
    }
    return closed;
}

bool MdCommunication::ClosePort(SerialPortControl &port)
{
    return !port.SetPortOpen(false).Failed();
}

/// What a stop throws away, whatever was told before.
void MdCommunication::TellThrownAway(Channel channel)
{
    const qint64 count = PortOf(channel).ThrownAway();
    if (count == 0)
        return;
    TrafficEvent lost;
    lost.kind = TrafficEvent::Kind::NotSent;
    lost.channel = int(channel);
    lost.time = PortOf(channel).Wire().Now();
    lost.count = count;
    lost.cause = QStringLiteral("COM%1 was closed while %2 bytes were still waiting to be sent")
                     .arg(PortNumber(channel))
                     .arg(count);
    m_parts.prompts.ShowNotice(QStringLiteral("COM%1 closed").arg(PortNumber(channel)),
                               ExclamationMessage(lost.cause));
    m_stream.Append(std::move(lost));
}

void MdCommunication::Transmit(const QByteArray &bytes, const QByteArray &name)
{
    OpenPorts();
    if (!Running() || !m_parts.comm.MaySend())
        return;
    m_parts.lines.Do([&] { m_judge.Send(bytes, name); });
}

void MdCommunication::OnGone(int channel, const QString &cause)
{
    if (!Running()) // it was stopped before this was heard
        return;
    const QString text = QStringLiteral("The port COM%1 was disconnected. ");
    m_reports.Post(CriticalMessage(text.arg(PortNumber(Channel(channel))) + cause));
    ClosePorts();
}

/// As it is now, whatever has led here: devices may go and come back faster than the window hears
/// of it.
void MdCommunication::ShowPortStatus()
{
    if (!Running())
        return;
    QStringList waiting;
    for (const Channel channel : {Channel::A, Channel::B}) {
        SerialPortControl &port = PortOf(channel);
        if (port.PortOpen() && port.Wire().Counts().away)
            waiting << QStringLiteral("COM%1 (%2)").arg(PortNumber(channel)).arg(port.Device());
    }
    if (!waiting.isEmpty())
        Q_EMIT PortStatusChanged(QStringLiteral("Waiting for ") +
                                 waiting.join(QStringLiteral(" and ")));
    else
        Q_EMIT PortStatusChanged(m_parts.comm.TwoChannels()
                                     ? QStringLiteral("Communication ports are open")
                                     : QStringLiteral("Communication port is open"));
}

/// Once while the cause lasts: a device that asks on and does not read must not bring a box for
/// each of its questions.
void MdCommunication::TellNotSent(int channel, const QString &cause)
{
    if (std::exchange(m_told[size_t(channel)], true))
        return;
    m_parts.prompts.ShowNotice(QStringLiteral("COM%1").arg(PortNumber(Channel(channel))),
                               ExclamationMessage(cause));
}

QList<MdCommunication::Channel> MdCommunication::ChannelsOfMode() const
{
    if (m_parts.comm.TwoChannels())
        return {Channel::A, Channel::B};
    return {Channel::A};
}

SerialPortControl &MdCommunication::PortOf(Channel channel) const
{
    return channel == Channel::A ? m_parts.MSCommA : m_parts.MSCommB;
}

int MdCommunication::PortNumber(Channel channel) const
{
    return channel == Channel::A ? m_parts.comm.PortA() : m_parts.comm.PortB();
}
