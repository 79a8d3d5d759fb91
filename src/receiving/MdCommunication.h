// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "LineJudge.h"
#include "ReportQueue.h"
#include "TrafficStream.h"
#include "ViewFeed.h"
#include "WatchSnapshot.h"

#include <QObject>

#include <array>
#include <memory>

class Clock;
class CommunicationLog;
class CommunicationViews;
class MdSequenceEdition;
class SerialPortControl;
struct CommConfiguration;
struct DisplaySettings;
struct StampSettings;

/// What communication works with; all of it lives longer than MdCommunication.
struct CommunicationParts {
    const CommConfiguration &comm;
    const DisplaySettings &display;
    const StampSettings &stamp;
    MdSequenceEdition &sequences;
    CommunicationViews &views;
    CommunicationLog &log;
    UserPrompts &prompts;
    const Clock &clock;
    SerialPortControl &MSCommA; ///< channel 1
    SerialPortControl &MSCommB; ///< channel 2
    LineThread &lines;          ///< that serves both
};

/// Opens and closes the ports of the mode in force, and sends. What the lines say is judged and
/// answered on the lines' thread, by LineJudge; what happened goes through one stream to the log
/// and, when the main loop stages it, to the views. It talks to the window by signals alone.
class MdCommunication final : public QObject
{
    Q_OBJECT

  public:
    enum class Channel { A, B };
    enum class ToolbarState { Open, Closed };

    /// Values of CommStatus.
    static constexpr int StatusOpen = 0;
    static constexpr int StatusClosed = 2;

    /// Size of the ports' receive buffers in bytes, for who takes their events.
    static constexpr int ReceiveBufferSize = 512;

    explicit MdCommunication(const CommunicationParts &parts);
    ~MdCommunication() override;

    int CommStatus() const { return m_commStatus; }
    bool Running() const { return m_commStatus == StatusOpen; }

    /// Starts communication; reports failures to the user. Nothing happens while it runs.
    void OpenPorts();
    /// Stops communication. Nothing happens while it is stopped.
    void ClosePorts();

    /// Shows the bytes of a send sequence as direction 0 and sends them on channel 1; starts
    /// communication first if it is stopped. In mode 1 nothing is sent.
    void Transmit(const QByteArray &bytes, const QByteArray &name = {});

    /// Stages what has happened for the views.
    void StageTraffic();
    /// The same, and moves it into them; the main loop calls it.
    void ShowTraffic();

    /// The lines are to go on: the log has room again. May be called from any thread.
    void Resume();

    /// Where what happens goes on to. Before the first opening.
    TrafficStream &Stream() { return m_stream; }

    /// Shows the reports that wait for the event loop to run, which it will not do again.
    void ShowWaitingReports() { m_reports.ShowWaiting(); }

  Q_SIGNALS:
    /// Text for the first status panel.
    void PortStatusChanged(const QString &text);
    void ToolbarStateChanged(MdCommunication::ToolbarState state);

  private:
    bool ConfigurePort(SerialPortControl &port, Channel channel);
    static bool ClosePort(SerialPortControl &port);
    bool OpenPortsOfMode();
    bool ClosePortsOfMode();
    LineJudge::Reports JudgeReports();
    TrafficSession SessionOfMode() const;
    void TellOpenOrClosed(TrafficEvent::Kind kind, Channel channel);
    void BeginReading();
    void EndReading();
    void Publish();

    void OnGone(int channel, const QString &cause);
    void ShowPortStatus();
    void TellNotSent(int channel, const QString &cause);
    void TellThrownAway(Channel channel);

    QList<Channel> ChannelsOfMode() const;
    SerialPortControl &PortOf(Channel channel) const;
    int PortNumber(Channel channel) const;

    CommunicationParts m_parts;
    ReportQueue m_reports;
    int m_commStatus = StatusClosed;

    // What the lines' thread works with.
    WatchBoard m_board;
    TrafficStream m_stream;
    ViewFeed m_feed;
    LineJudge m_judge;

    std::shared_ptr<void> m_watch; ///< of the tables
    std::array<bool, 2> m_told{};  ///< by channel: that something could not be sent
};
