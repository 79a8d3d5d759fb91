// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "ArrivalQueue.h"

#include <QHash>
#include <QObject>
#include <QString>

/// What all serial ports of the program share: the queue of arrivals, the one place that raises
/// their events, and the list of devices in use. Lives on the window's thread and outlives its
/// ports; all members but Arrivals() belong to that thread.
class SerialPortHub final : public QObject
{
    Q_OBJECT

  public:
    explicit SerialPortHub(QObject *parent = nullptr);

    ArrivalQueue &Arrivals() { return m_arrivals; }

    /// Raises, oldest first, the events for all that waits up to the last byte of the port, which
    /// must have stopped reading. Inside a receive event nothing is raised; what waits then
    /// follows when its handler has returned.
    void Deliver(ArrivalPort *port);

    /// The COM number that has the device open in this program; 0 if none has.
    int UserOf(const QString &canonicalName) const { return m_devices.value(canonicalName); }
    void Claim(const QString &canonicalName, int comNumber)
    {
        m_devices[canonicalName] = comNumber;
    }
    void Release(const QString &canonicalName) { m_devices.remove(canonicalName); }

  private:
    void Dispatch();
    bool RaiseOldest();
    void RaiseDepartures();

    ArrivalQueue m_arrivals;
    QHash<QString, int> m_devices;
    bool m_inReceiveEvent = false;
    bool m_inDeparture = false;
};
