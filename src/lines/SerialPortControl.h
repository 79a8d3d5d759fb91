// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Line.h"
#include "Result.h"

#include <QByteArray>
#include <QObject>
#include <QString>

/// Failure number: the port does not take the line settings asked for.
constexpr int RefusedLineSettings = 8015;
/// Failure number: the COM number has no device, or one that is not there.
constexpr int MissingDevice = 8002;
/// Failure number: the user did not want to wait for the opening any more.
constexpr int OpeningCancelled = 8022;

/// What CommEvent tells inside a handler of CommEventRaised. Only Receive leads to an action.
namespace CommEvents
{
constexpr int Receive = 2;
constexpr int CtsChange = 3;
constexpr int DsrChange = 4;
constexpr int CarrierChange = 5;
constexpr int Ring = 6;
constexpr int Break = 1001;
constexpr int FramingError = 1004;
constexpr int PortOverrun = 1006;
constexpr int ReceiveOverflow = 1008;
constexpr int ParityError = 1009;
constexpr int TransmitFull = 1010;
constexpr int DeviceControlBlock = 1011;
} // namespace CommEvents

/// One serial port as the program sees it: properties first, then PortOpen, then one
/// CommEventRaised for what has arrived. Lives on the window's thread; all calls and signals
/// belong there. No receive event is raised, on any port, while a handler of one runs. The cause of
/// a failure names the cure where it is known.
class SerialPortControl : public QObject
{
    Q_OBJECT

  public:
    using QObject::QObject;

    /// COM number, 1 to 255. All property setters are for a closed port.
    virtual Result SetCommPort(int number) = 0;
    /// Settings text such as "9600,N,8,1"; it is judged when the port opens.
    virtual Result SetSettings(const QString &settings) = 0;
    /// Waiting bytes that raise a receive event; 1: as soon as anything has arrived.
    virtual Result SetRThreshold(int bytes) = 0;
    /// Request-to-send line after opening. A port without modem lines takes it as done.
    virtual Result SetRTSEnable(bool on) = 0;
    /// 0: bytes are read as 8-bit text. There is no other mode.
    virtual Result SetInputMode(int mode) = 0;
    /// Size of the receive buffer in bytes.
    virtual Result SetInBufferSize(int bytes) = 0;
    /// Bytes that one Input takes; 0: all that are waiting.
    virtual Result SetInputLen(int bytes) = 0;
    /// Whether a device that goes away is waited for and opened again when it is back, instead of
    /// being reported. A port that cannot do so reports it.
    virtual void SetReopens(bool) {}
    /// Seconds after which a connection that says nothing counts as lost.
    virtual void SetDeadSeconds(int) {}

    /// Opens or closes. Closing first raises the events for what has been received, then waits
    /// for bytes still to be sent, one second at most. Inside a receive event closing raises none;
    /// what is left follows when the handler has returned. Opening an open port and closing a
    /// closed one succeed.
    virtual Result SetPortOpen(bool open) = 0;
    virtual bool PortOpen() const = 0;

    /// Bytes waiting in the receive buffer, 0 to InBufferSize.
    virtual int InBufferCount() const = 0;
    /// Throws away what is waiting in the receive buffer.
    virtual void ClearInBuffer() = 0;
    /// Takes the waiting bytes out of the receive buffer.
    virtual QByteArray Input() = 0;

    /// Hands bytes over for sending; returns before they are on the line. Fails when the port is
    /// closed or too much is pending; then nothing of the bytes is sent.
    virtual Result Output(const QByteArray &bytes) = 0;

    /// The event being raised, a CommEvents value.
    virtual int CommEvent() const = 0;

    /// The line itself, for whoever takes what happens where it happens. Once somebody listens to
    /// it the port raises no events, and reading begins when the listener says so.
    virtual Line &Wire() = 0;
    /// Bytes that the last close threw away because the device did not take them.
    virtual qint64 ThrownAway() const = 0;
    /// Canonical name of the open device, or of the one that is waited for; empty while closed.
    virtual QString Device() const = 0;
    /// What that device is, in its own words; empty if it has none.
    virtual QString Description() const { return {}; }
    /// What there is to say of the settings of an open port that are not as asked by this side;
    /// empty if there is nothing.
    virtual QString SettingsNote() const { return {}; }

  Q_SIGNALS:
    void CommEventRaised();
    /// The device of an open port went away; raised once, after the events for all that had been
    /// received. The port stays to be closed by its user; until then Output succeeds in silence.
    /// Never raised inside a receive event or another Disconnected. Receive events of other ports
    /// go on while its handler runs. A port closed before that is not reported any more.
    void Disconnected(const QString &description);
};
