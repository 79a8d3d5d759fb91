// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "PortFacts.h"

#include <QFileInfo>
#include <QList>
#include <QString>

/// A serial port of this machine.
struct FoundPort {
    QString device;      ///< "/dev/ttyUSB0"
    QString description; ///< what it is, in words; may be empty
    QString stableName;  ///< a name that survives another plugging order; empty if it has none
};

/// Finds the serial ports of this machine and says what is known of them. Unless it is told to try
/// one it opens none. It takes as long as the system lets it: it is asked from a thread that nobody
/// waits for.
class PortFinder
{
  public:
    virtual ~PortFinder() = default;

    virtual QList<FoundPort> FindPorts() const = 0;

    /// The one name of a device, whatever link leads to it; empty if there is no such device.
    virtual QString CanonicalName(const QString &device) const
    {
        return QFileInfo(device).canonicalFilePath();
    }

    /// What is known of a device by whatever name. Nothing is opened.
    virtual DeviceFacts FactsOf(const QString &device) const
    {
        Q_UNUSED(device)
        return {};
    }

    /// Opens a device that no program uses, sets it, as "9600,N,8,1", and then to each speed, reads
    /// it back and closes it as it was; 5 s at most.
    virtual DeviceTrial TryDevice(const QString &device, const QString &settings) const
    {
        Q_UNUSED(device)
        Q_UNUSED(settings)
        return {};
    }

    /// Connects to a port on another machine, and closes the connection. Without settings it leaves
    /// the port as it was; with them it asks for them, unless the address only listens.
    virtual RemoteFacts Reach(const QString &address, const QString &settings) const
    {
        Q_UNUSED(address)
        Q_UNUSED(settings)
        return {};
    }

    /// The first of these, in words.
    virtual QString TryRemote(const QString &address) const
    {
        Q_UNUSED(address)
        return {};
    }
};
