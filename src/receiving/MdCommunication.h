// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "ReceiveDetection.h"
#include "ReportQueue.h"

#include <QObject>

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
    const MdSequenceEdition &sequences;
    CommunicationViews &views;
    CommunicationLog &log;
    UserPrompts &prompts;
    const Clock &clock;
    SerialPortControl &MSCommA; ///< channel 1
    SerialPortControl &MSCommB; ///< channel 2
};

/// Opens and closes the ports of the mode in force, takes what they receive to detection, views
/// and log, and sends. It talks to the window by signals alone.
class MdCommunication final : public QObject
{
    Q_OBJECT

  public:
    enum class Channel { A, B };
    enum class ToolbarState { Open, Closed };

    /// Values of CommStatus.
    static constexpr int StatusOpen = 0;
    static constexpr int StatusClosed = 2;

    /// This many waiting bytes or more in a receive buffer are thrown away unseen.
    static constexpr int OverflowCount = 512;

    explicit MdCommunication(const CommunicationParts &parts);

    int CommStatus() const { return m_commStatus; }
    bool Running() const { return m_commStatus == StatusOpen; }

    /// Starts communication; reports failures to the user. Nothing happens while it runs.
    void OpenPorts();
    /// Stops communication. Nothing happens while it is stopped.
    void ClosePorts();

    /// Shows the bytes as direction 0 and sends them on channel 1; starts communication first if
    /// it is stopped. In mode 1 nothing is sent.
    void Transmit(const QByteArray &bytes);

    /// Shows the reports that wait for the event loop to run, which it will not do again.
    void ShowWaitingReports() { m_reports.ShowWaiting(); }

    /// A port raised an event; reads its CommEvent.
    void OnCommEvent(Channel channel);
    /// The device of an open port went away.
    void OnDisconnected(Channel channel, const QString &description);

  Q_SIGNALS:
    /// Text for the first status panel.
    void PortStatusChanged(const QString &text);
    void ToolbarStateChanged(MdCommunication::ToolbarState state);

  private:
    bool ConfigurePort(SerialPortControl &port, Channel channel);
    static bool ClosePort(SerialPortControl &port);
    bool OpenPortsOfMode();
    bool ClosePortsOfMode();
    /// Shows the bytes and sends them on channel 1, if communication runs and may send.
    void Send(const QByteArray &bytes);
    void SendData(SerialPortControl &port, const QByteArray &bytes);

    void OnReceive(Channel channel);
    void ReadPort(SerialPortControl &port, int direction);
    void ShowChunk(int direction, QByteArrayView bytes);
    void Stamp(int direction);
    void InsertComment(const QByteArray &text);
    void AppendToAll(const QByteArray &text, int styleIndex);

    int PortNumber(Channel channel) const;

    CommunicationParts m_parts;
    ReceiveDetection m_detection;
    ReportQueue m_reports;
    int m_commStatus = StatusClosed;
    int m_lastStampDirection = -1; ///< survives a restart of communication
    bool m_receiving = false;      ///< a receive event is being handled
};
