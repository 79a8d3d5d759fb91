// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "PortFinder.h"

/// The ports that the system itself knows of. Every system brings its own file for this header.
class SystemPortFinder final : public PortFinder
{
  public:
    /// Where the system describes its terminals, and where their devices are.
    explicit SystemPortFinder(const QString &descriptions = QStringLiteral("/sys/class/tty"),
                              const QString &devices = QStringLiteral("/dev"))
        : m_descriptions(descriptions), m_devices(devices)
    {
    }

    QList<FoundPort> FindPorts() const override;
    QString TryRemote(const QString &address) const override;

    /// What a device is, in words; empty if the system knows nothing of it.
    QString DescriptionOf(const QString &device) const;

  private:
    QString m_descriptions;
    QString m_devices;
};
