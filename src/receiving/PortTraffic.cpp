// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "PortTraffic.h"

#include "CommConfiguration.h"
#include "LineSettings.h"
#include "SerialPortControl.h"
#include "TrafficStream.h"
#include "UserPrompts.h"

#include <QObject>

#include <utility>

namespace
{

/// Size of the ports' receive buffers in bytes, for who takes their events.
constexpr int ReceiveBufferSize = 512;
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

QString AssigningNote()
{
    return QStringLiteral("To assign another device, choose \"Options...\" in the menu Tools, and "
                          "\"Devices...\" beside the COM number.");
}

} // namespace

PortTraffic::PortTraffic(PortTrafficParts parts)
    : m_parts(std::move(parts)),
      m_judge(m_parts.board, m_parts.stream, &m_parts.MSCommA.Wire(), JudgeReports()),
      m_repeats(m_parts.lines, m_judge, m_parts.MSCommA.Wire(),
                [this] { Later([this] { m_parts.repeatEnded(); }); })
{
    m_judge.HasRoom = m_parts.hasRoom;
    m_parts.MSCommA.Wire().Listen(&m_judge.Ear(0));
    m_parts.MSCommB.Wire().Listen(&m_judge.Ear(1));
}

PortTraffic::~PortTraffic()
{
    End();
    m_parts.lines.Do([this] {
        for (const Channel channel : {Channel::A, Channel::B})
            PortOf(channel).Wire().Listen(nullptr);
    });
}

/// What comes on the lines' thread is handled on the window's.
void PortTraffic::Later(std::function<void()> work) const
{
    QMetaObject::invokeMethod(&m_parts.window, std::move(work), Qt::QueuedConnection);
}

LineJudge::Reports PortTraffic::JudgeReports()
{
    return {
        [this](int channel, const QString &cause) { Later([=, this] { OnGone(channel, cause); }); },
        [this](int channel, const QString &cause) {
            Later([=, this] { TellNotSent(channel, cause); });
        },
        [this](int channel) { Later([=, this] { m_told[size_t(channel)] = false; }); },
        [this] { Later([this] { m_parts.statusChanged(); }); },
        [this](const QString &about, const QString &text) {
            Later([=, this] { m_parts.prompts.ShowNotice(about, ExclamationMessage(text)); });
        }};
}

bool PortTraffic::Open()
{
    if (!ConfigurePort(m_parts.MSCommA, Channel::A))
        return false;
    if (!m_parts.comm.TwoChannels() || ConfigurePort(m_parts.MSCommB, Channel::B))
        return true;
    ClosePort(m_parts.MSCommA);
    return false;
}

bool PortTraffic::ConfigurePort(SerialPortControl &port, Channel channel)
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
    port.SetDeadSeconds(m_parts.comm.stored.CommDeadSeconds);
    for (const auto &step : steps) {
        if (const Result done = step(); done.Failed()) {
            if (done.Number() == OpeningCancelled)
                return false;
            MessagePrompt message = CriticalMessage(OpenFailureText(PortNumber(channel), done));
            if (done.Number() == MissingDevice && m_parts.hasOptions)
                message.note = AssigningNote();
            m_parts.prompts.ShowMessage(message);
            return false;
        }
    }
    return true;
}

TrafficSession PortTraffic::Session() const
{
    const std::optional<LineSettings> line = ParseLineSettings(m_parts.comm.PortSettings());
    TrafficSession session;
    for (const Channel channel : ChannelsOfMode()) {
        const SerialPortControl &port = PortOf(channel);
        QString description = port.Device();
        if (const QString own = port.Description(); !own.isEmpty())
            description += QStringLiteral(" (%1)").arg(own);
        const bool known = line && port.SettingsNote().isEmpty();
        session.ports.append({PortName(channel), description, known ? quint64(line->baud) : 0});
    }
    return session;
}

void PortTraffic::TellOpenOrClosed(TrafficEvent::Kind kind, Channel channel)
{
    TrafficEvent event;
    event.kind = kind;
    event.channel = int(channel);
    event.time = PortOf(channel).Wire().Now();
    m_parts.stream.Append(std::move(event));
}

void PortTraffic::Begin()
{
    m_told = {};
    for (const Channel channel : ChannelsOfMode())
        TellOpenOrClosed(TrafficEvent::Kind::Opened, channel);
    m_parts.lines.Do([this] {
        m_judge.Begin({m_parts.comm.TwoChannels(),
                       m_parts.comm.MaySend(),
                       {PortName(Channel::A), PortName(Channel::B)}});
        Read();
    });
}

void PortTraffic::Read()
{
    for (const Channel channel : ChannelsOfMode())
        PortOf(channel).Wire().BeginReading();
}

void PortTraffic::End()
{
    m_repeats.EndAll();
    m_parts.lines.Do([this] {
        m_parts.MSCommA.Wire().EndReading();
        m_parts.MSCommB.Wire().EndReading();
    });
}

bool PortTraffic::Close()
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
    if (!closed)
        m_parts.lines.Do([this] { Read(); });
    return closed;
}

bool PortTraffic::ClosePort(SerialPortControl &port)
{
    return !port.SetPortOpen(false).Failed();
}

void PortTraffic::Resume()
{
    m_parts.lines.Post([this] {
        m_parts.MSCommA.Wire().Resume();
        m_parts.MSCommB.Wire().Resume();
    });
}

Result PortTraffic::Send(const QByteArray &bytes, const QByteArray &name)
{
    Result sent;
    m_parts.lines.Do([&] { sent = m_judge.Send(bytes, name); });
    return sent;
}

QString PortTraffic::Status() const
{
    QStringList waiting;
    for (const Channel channel : {Channel::A, Channel::B}) {
        SerialPortControl &port = PortOf(channel);
        if (port.PortOpen() && port.Wire().Counts().away)
            waiting << QStringLiteral("%1 (%2)").arg(PortName(channel), port.Device());
    }
    if (!waiting.isEmpty())
        return QStringLiteral("Waiting for ") + waiting.join(QStringLiteral(" and "));
    return m_parts.comm.TwoChannels() ? QStringLiteral("Communication ports are open")
                                      : QStringLiteral("Communication port is open");
}

void PortTraffic::OnGone(int channel, const QString &cause)
{
    m_parts.disconnected(
        QStringLiteral("The port %1 was disconnected. ").arg(PortName(Channel(channel))) + cause);
}

/// Once while the cause lasts: a device that asks on and does not read must not bring a box for
/// each of its questions.
void PortTraffic::TellNotSent(int channel, const QString &cause)
{
    if (std::exchange(m_told[size_t(channel)], true))
        return;
    m_parts.prompts.ShowNotice(PortName(Channel(channel)), ExclamationMessage(cause));
}

/// What a stop throws away, whatever was told before.
void PortTraffic::TellThrownAway(Channel channel)
{
    const qint64 count = PortOf(channel).ThrownAway();
    if (count == 0)
        return;
    TrafficEvent lost;
    lost.kind = TrafficEvent::Kind::NotSent;
    lost.channel = int(channel);
    lost.time = PortOf(channel).Wire().Now();
    lost.count = count;
    lost.cause = QStringLiteral("%1 was closed while %2 bytes were still waiting to be sent")
                     .arg(PortName(channel))
                     .arg(count);
    m_parts.prompts.ShowNotice(PortName(channel) + QStringLiteral(" closed"),
                               ExclamationMessage(lost.cause));
    m_parts.stream.Append(std::move(lost));
}

QList<PortTraffic::Channel> PortTraffic::ChannelsOfMode() const
{
    if (m_parts.comm.TwoChannels())
        return {Channel::A, Channel::B};
    return {Channel::A};
}

SerialPortControl &PortTraffic::PortOf(Channel channel) const
{
    return channel == Channel::A ? m_parts.MSCommA : m_parts.MSCommB;
}

int PortTraffic::PortNumber(Channel channel) const
{
    return channel == Channel::A ? m_parts.comm.PortA() : m_parts.comm.PortB();
}

QString PortTraffic::PortName(Channel channel) const
{
    return QStringLiteral("COM%1").arg(PortNumber(channel));
}
