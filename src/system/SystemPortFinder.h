// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "PortFinder.h"

/// The ports that the system itself knows of. Every system brings its own file for this header.
class SystemPortFinder final : public PortFinder
{
  public:
    /// Where the system describes its terminals, where their devices are, and where it tells of
    /// its processes.
    explicit SystemPortFinder(const QString &descriptions = QStringLiteral("/sys/class/tty"),
                              const QString &devices = QStringLiteral("/dev"),
                              const QString &processes = QStringLiteral("/proc"))
        : m_descriptions(descriptions), m_devices(devices), m_processes(processes)
    {
    }

    QList<FoundPort> FindPorts() const override;
    QString CanonicalName(const QString &device) const override;
    DeviceFacts FactsOf(const QString &device) const override;
    DeviceTrial TryDevice(const QString &device, const QString &settings) const override;
    RemoteFacts Reach(const QString &address, const QString &settings) const override;
    QString TryRemote(const QString &address) const override;

    /// What a device is, in words; empty if the system knows nothing of it.
    QString DescriptionOf(const QString &device) const;

  private:
    UsbFacts UsbFactsOf(const QString &terminal, const QString &usb) const;
    void AddUsers(DeviceFacts &facts, const QString &alias) const;
    void AddConsole(DeviceFacts &facts) const;

    QString m_descriptions;
    QString m_devices;
    QString m_processes;
};
