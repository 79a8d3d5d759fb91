// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QString>

/// A serial port of this machine.
struct FoundPort {
    QString device;      ///< "/dev/ttyUSB0"
    QString description; ///< what it is, in words; may be empty
    QString stableName;  ///< a name that survives another plugging order; empty if it has none
};

/// Finds the serial ports of this machine. It opens none of them, and takes as long as the system
/// lets it: it is asked from a thread that nobody waits for.
class PortFinder
{
  public:
    virtual ~PortFinder() = default;

    virtual QList<FoundPort> FindPorts() const = 0;

    /// Connects to a port on another machine and leaves it as it was. What was found, in words.
    virtual QString TryRemote(const QString &address) const
    {
        Q_UNUSED(address)
        return {};
    }
};
