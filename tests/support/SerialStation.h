// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "LineLoop.h"
#include "PortDevices.h"
#include "SerialPort.h"
#include "SerialPortHub.h"
#include "SystemPortName.h"
#include "support/MemoryStore.h"
#include "support/PtyPair.h"

#include <QDeadlineTimer>
#include <QThread>

#include <sys/ioctl.h>

/// Waits as a window does that is busy: no event comes to be handled.
template <typename Condition> bool WaitStalled(Condition condition)
{
    const QDeadlineTimer deadline(20000);
    while (!condition() && !deadline.hasExpired())
        QThread::yieldCurrentThread();
    return condition();
}

inline QString Cause(const Result &result)
{
    return result.Failed() ? result.Cause() : QStringLiteral("none");
}

/// A line as the kernel keeps it; the C library does not tell rates without a name.
struct KernelLine {
    quint32 input, output, control, local;
    uchar discipline, characters[19];
    quint32 inputBaud, outputBaud;
};

inline KernelLine LineOf(const PtyPair &pty)
{
    KernelLine line = {};
    if (::ioctl(pty.Device(), _IOR('T', 0x2A, KernelLine), &line) != 0)
        qFatal("no line");
    return line;
}

/// What the two ends of a program share, on a fresh table of devices.
struct World {
    MemoryStore store;
    PortDevices devices{store, SystemPortName};
    LineLoop lines;
    SerialPortHub hub;
    QList<QByteArray> events; ///< of all stations, in order

    qsizetype Waiting() { return hub.Arrivals().WaitingOnAllPorts(); }
};

/// One port of the program and its peer; reads as the program does. Opened at once, unless said.
struct Station {
    Station(World &of, int comNumber, bool opened = true)
        : world(of), port(of.lines, of.hub, of.devices)
    {
        world.devices.AssignForRun(comNumber, pty.DeviceName());
        Require(port.SetCommPort(comNumber));
        QObject::connect(&port, &SerialPortControl::CommEventRaised, &port, [this] {
            world.events.append(port.Input());
            received += world.events.last();
        });
        QObject::connect(&port, &SerialPortControl::Disconnected, &port,
                         [this](const QString &text) { departures.append(text); });
        if (opened)
            Require(port.SetPortOpen(true));
    }

    static void Require(const Result &done)
    {
        if (done.Failed())
            qFatal("%s", qPrintable(done.Cause()));
    }

    World &world;
    PtyPair pty;
    SerialPort port;
    QByteArray received;
    QStringList departures;
};
