// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QHash>
#include <QString>

class SettingsStore;

/// Which device a COM number is. In this order: what was assigned for this run, the user's own
/// table (settings section "Ports", key "COMn"), and the system's own naming.
class PortDevices
{
  public:
    /// The store is read at every look-up and must live as long as this object.
    explicit PortDevices(const SettingsStore &store) : m_store(store) {}

    void AssignForRun(int comNumber, const QString &device) { m_thisRun[comNumber] = device; }

    /// Device path or stable name; empty if the number has none.
    QString DeviceOf(int comNumber) const;

  private:
    const SettingsStore &m_store;
    QHash<int, QString> m_thisRun;
};
