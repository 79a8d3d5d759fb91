// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "MdCommunication.h"

#include "CommConfiguration.h"
#include "CommunicationLog.h"
#include "CommunicationViews.h"
#include "DisplaySettings.h"
#include "MdSequenceEdition.h"

MdCommunication::MdCommunication(const CommunicationParts &parts)
    : m_parts(parts),
      m_reports(parts.prompts),
      m_stream(parts.clock),
      m_ports(PortParts()),
      m_source(&m_ports)
{
    if (parts.views)
        m_stream.Feed(m_feed);
    m_stream.Feed(parts.log);
    m_watch = parts.sequences.Watch([this] { Publish(); });
    Publish();
}

PortTrafficParts MdCommunication::PortParts()
{
    return {m_parts.comm,
            m_parts.prompts,
            m_parts.MSCommA,
            m_parts.MSCommB,
            m_parts.lines,
            m_board,
            m_stream,
            [&log = m_parts.log] { return log.HasRoom(); },
            *this,
            [this](const QString &text) { OnDisconnected(text); },
            [this] { ShowStatus(); },
            [this] { Q_EMIT RepeatsChanged(); },
            m_parts.views != nullptr};
}

void MdCommunication::Publish()
{
    m_board.Publish(std::make_shared<const WatchSnapshot>(m_parts.sequences));
}

void MdCommunication::Start(TrafficSource &source)
{
    if (Running())
        return;
    Q_EMIT ToolbarStateChanged(ToolbarState::Closed);

    if (source.Open()) {
        m_source = &source;
        m_commStatus = StatusOpen;
        ShowStatus();
        Q_EMIT ToolbarStateChanged(ToolbarState::Open);
        m_feed.Clear();
        if (m_parts.views)
            m_parts.views->SetCommunicating(true);
    } else {
        Q_EMIT PortStatusChanged(
            m_parts.comm.TwoChannels()
                ? QStringLiteral("Error while configuring and opening the communication ports")
                : QStringLiteral("Error while configuring and opening the communication port"));
        Q_EMIT ToolbarStateChanged(ToolbarState::Closed);
    }
    m_parts.log.UpdateLogCommands();
    if (Running()) // an armed log has begun by now
        Begin();
}

void MdCommunication::Begin()
{
    TrafficSource &source = *m_source;
    m_stream.Begin(source.Session(), m_parts.stamp);
    source.Begin();
}

void MdCommunication::Resume()
{
    m_source.load()->Resume();
}

void MdCommunication::StageTraffic()
{
    if (m_parts.views)
        m_feed.StageInto(*m_parts.views, m_parts.display);
}

void MdCommunication::ShowTraffic()
{
    StageTraffic();
    if (m_parts.views)
        m_parts.views->MoveStagedText();
}

void MdCommunication::ClosePorts()
{
    if (!Running())
        return;
    TrafficSource &source = *m_source;
    source.End();
    Q_EMIT RepeatsChanged();
    ShowTraffic(); // the device's last words
    if (source.Close()) {
        m_stream.End();
        m_commStatus = StatusClosed;
        m_source = &m_ports;
        Q_EMIT PortStatusChanged(m_parts.comm.TwoChannels()
                                     ? QStringLiteral("Communication ports are closed")
                                     : QStringLiteral("Communication port is closed"));
        Q_EMIT ToolbarStateChanged(ToolbarState::Closed);
        if (m_parts.views)
            m_parts.views->SetCommunicating(false);
    } else {
        Q_EMIT PortStatusChanged(QStringLiteral("Failure during closing the communication port"));
    }
    m_parts.log.StopLog();
}

void MdCommunication::Transmit(const QByteArray &bytes, const QByteArray &name)
{
    OpenPorts();
    if (Running() && m_parts.comm.MaySend())
        Send(bytes, name).Ignore(); // the judge has told
}

Result MdCommunication::Send(const QByteArray &bytes, const QByteArray &name)
{
    if (!Running() || !m_parts.comm.MaySend())
        return Failure{QStringLiteral("The port is closed, or the mode is one that only listens")};
    return m_source.load()->Send(bytes, name);
}

int MdCommunication::Repeat(const RepeatedTelegram &telegram)
{
    OpenPorts();
    if (!Running() || !m_parts.comm.MaySend())
        return 0;
    if (!OnPorts()) {
        Send(telegram.bytes, telegram.name).Ignore(); // it tells why not
        return 0;
    }
    const int id = m_ports.Repeats().Begin(telegram);
    Q_EMIT RepeatsChanged();
    return id;
}

void MdCommunication::EndRepeat(int id)
{
    m_ports.Repeats().End(id);
    Q_EMIT RepeatsChanged();
}

void MdCommunication::EndRepeats()
{
    m_ports.Repeats().EndAll();
    Q_EMIT RepeatsChanged();
}

void MdCommunication::OnDisconnected(const QString &text)
{
    if (!OnPorts()) // they were closed before this was heard
        return;
    m_reports.Post(CriticalMessage(text));
    ClosePorts();
}

void MdCommunication::ShowStatus()
{
    if (Running())
        Q_EMIT PortStatusChanged(m_source.load()->Status());
}
