// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "PortTraffic.h"
#include "ReportQueue.h"
#include "TrafficStream.h"
#include "ViewFeed.h"
#include "WatchSnapshot.h"

#include <QObject>

#include <atomic>
#include <functional>
#include <memory>
#include <utility>

class Clock;
class CommunicationLog;
class CommunicationViews;
class MdSequenceEdition;
struct CommConfiguration;
struct DisplaySettings;
struct StampSettings;

/// What communication works with; all of it lives longer than MdCommunication.
struct CommunicationParts {
    const CommConfiguration &comm;
    const DisplaySettings &display;
    const StampSettings &stamp;
    MdSequenceEdition &sequences;
    CommunicationViews *views; ///< null for a program without a window
    CommunicationLog &log;
    UserPrompts &prompts;
    const Clock &clock;
    SerialPortControl &MSCommA; ///< channel 1
    SerialPortControl &MSCommB; ///< channel 2
    LineThread &lines;          ///< that serves both
};

/// Communication that runs, be it on the ports or on what stands in for them: starts and stops it,
/// and sends. What happens goes through one stream to the log and, when the main loop stages it,
/// to the views. It talks to the window by signals alone.
class MdCommunication final : public QObject
{
    Q_OBJECT

  public:
    enum class ToolbarState { Open, Closed };

    /// Values of CommStatus.
    static constexpr int StatusOpen = 0;
    static constexpr int StatusClosed = 2;

    explicit MdCommunication(const CommunicationParts &parts);

    int CommStatus() const { return m_commStatus; }
    bool Running() const { return m_commStatus == StatusOpen; }
    /// Whether it runs on the ports.
    bool OnPorts() const { return Running() && m_source == &m_ports; }

    /// Starts communication; reports failures to the user. Nothing happens while it runs.
    void OpenPorts() { Start(m_ports); }
    /// The same on what stands in for the ports. It lives until ClosePorts.
    void Start(TrafficSource &source);
    /// Stops communication, whatever it runs on. Nothing happens while it is stopped.
    void ClosePorts();

    /// Shows the bytes of a send sequence as direction 0 and sends them on channel 1; starts
    /// communication first if it is stopped. In mode 1 nothing is sent.
    void Transmit(const QByteArray &bytes, const QByteArray &name = {});
    /// The same where somebody wants to know whether the line took it; starts nothing.
    Result Send(const QByteArray &bytes, const QByteArray &name);

    /// As Transmit, but again and again. Returns the number by which it can be ended, 0 if nothing
    /// is sent. It ends with the communication, or when a telegram cannot be sent.
    int Repeat(const RepeatedTelegram &telegram);
    void EndRepeat(int id);
    void EndRepeats();
    QList<RepeatState> Repeats() const { return m_ports.Repeats().States(); }

    /// Stages what has happened for the views.
    void StageTraffic();
    /// The same, and moves it into them; the main loop calls it.
    void ShowTraffic();

    /// Has the call made, on any thread, as soon as there is something to show; see ViewFeed.
    void CallOnceFed(std::function<void()> call) { m_feed.CallOnceFed(std::move(call)); }

    /// What is read is to go on: the log has room again. May be called from any thread.
    void Resume();

    /// Where what happens goes on to. Before the first opening.
    TrafficStream &Stream() { return m_stream; }
    /// What is watched for.
    const WatchBoard &Board() const { return m_board; }

    /// Shows the reports that wait for the event loop to run, which it will not do again.
    void ShowWaitingReports() { m_reports.ShowWaiting(); }

  Q_SIGNALS:
    /// Text for the first status panel.
    void PortStatusChanged(const QString &text);
    void ToolbarStateChanged(MdCommunication::ToolbarState state);
    /// A repeat has begun or ended.
    void RepeatsChanged();

  private:
    PortTrafficParts PortParts();
    void Publish();
    void Begin();
    void ShowStatus();
    void OnDisconnected(const QString &text);

    CommunicationParts m_parts;
    ReportQueue m_reports;
    int m_commStatus = StatusClosed;

    // What the threads of what it runs on work with.
    WatchBoard m_board;
    TrafficStream m_stream;
    ViewFeed m_feed;

    std::shared_ptr<void> m_watch; ///< of the tables
    PortTraffic m_ports;
    std::atomic<TrafficSource *> m_source; ///< what it runs on, else the ports
};
