// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "LineSettings.h"
#include "SerialPortControl.h"

#include <QByteArray>
#include <QObject>
#include <QSerialPort>
#include <QString>
#include <QTimer>

#include <atomic>

class ArrivalPort;
class ArrivalQueue;

/// What a port is to be opened with.
struct PortRequest {
    QString device; ///< canonical name
    QString alias;  ///< the name that the user gave
    LineSettings line;
    bool requestToSend = true;
};

/// The part of a port control that lives in its I/O thread: owns Qt's port object, brings what
/// arrives into the queue and sends what it is handed. All members but TryReserve belong to that
/// thread. A device that goes away is closed at once and reported to the queue once.
class SerialPortWorker final : public QObject
{
    Q_OBJECT

  public:
    /// The most bytes that may wait to be sent.
    static constexpr qint64 MostUnsentBytes = 1024 * 1024;

    /// Arrivals are pushed for the port, which the queue must outlive together with this object.
    SerialPortWorker(ArrivalQueue &arrivals, ArrivalPort *port);

    Result Open(const PortRequest &request);
    /// Takes what has been received so far; from here on nothing is pushed any more.
    void StopReading();
    /// Waits for bytes still to be sent, one second at most, and discards the rest. Reading must
    /// have been stopped. A port that is not open stays so.
    void Close();

    /// Counts bytes as waiting before Write is called with them. False: too much is waiting, and
    /// Write must not be called.
    bool TryReserve(qint64 bytes);
    qint64 UnsentBytes() const { return m_unsent.load(); }
    /// Sends; a device that has gone away takes the bytes in silence.
    void Write(const QByteArray &bytes);

    void ResumeReading();

  private:
    Result Configure(const PortRequest &request);
    Failure OpenFailure(const PortRequest &request) const;
    void TakeArrivals();
    void CheckDevice();
    void CloseGoneDevice(const QString &cause);
    void WaitUntilSent();
    bool HasUnsent();

    ArrivalQueue &m_arrivals;
    ArrivalPort *const m_receiver;
    QSerialPort m_port;
    QTimer m_watchdog;
    QString m_device;       ///< last opened
    bool m_reading = false; ///< open, and not stopped
    bool m_paused = false;  ///< the queue is full
    std::atomic<qint64> m_unsent = 0;
};
