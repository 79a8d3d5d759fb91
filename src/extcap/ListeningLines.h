// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "LineJudge.h"
#include "SerialPorts.h"
#include "SystemClock.h"
#include "TrafficStream.h"

#include <QList>
#include <QObject>

/// One or two lines that are listened to and never sent on: their devices are opened for reading
/// alone. What happens on them goes to a consumer.
class ListeningLines final : public QObject
{
    Q_OBJECT

  public:
    struct Request {
        QList<int> comNumbers; ///< by channel
        QString settings;      ///< such as "9600,N,8,1"
        bool requestToSend = true;
        bool reopens = false; ///< a device that went away is opened again when it is back
    };

    /// The devices live longer.
    explicit ListeningLines(const PortDevices &devices);
    ~ListeningLines() override;
    Q_DISABLE_COPY_MOVE(ListeningLines)

    /// Opens the devices, which are not read yet. The cause of a failure names the line.
    Result Open(const Request &request);
    /// From here on what happens goes to the consumer, which lives longer. Once.
    void Begin(TrafficConsumer &consumer);
    /// Takes what the system has received so far, and closes the devices.
    void End();

  Q_SIGNALS:
    /// A device has gone for good.
    void Gone(const QString &cause);

  private:
    LineJudge::Reports Reports();
    Result OpenPort(SerialPort &port, int comNumber, const Request &request);
    QList<SerialPort *> Ports();
    TrafficSession Session();
    void Tell(TrafficEvent::Kind kind);
    void TellModemLines();

    const PortDevices &m_devices;
    const SystemClock m_clock;
    SerialPorts m_ports;
    WatchBoard m_board; ///< nothing is watched for
    TrafficStream m_stream{m_clock};
    LineJudge m_judge;
    QList<int> m_comNumbers;
    quint64 m_speed = 0;
    bool m_begun = false;
};
