// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Result.h"

#include <QHash>
#include <QString>

class SettingsStore;

/// Which device a COM number is. In this order: what was assigned for this run, the user's own
/// table (settings section "Ports", key "COMn"), and the system's own naming.
class PortDevices
{
  public:
    enum class Source { ThisRun, OwnAssignment, SystemName, None };
    struct Meaning {
        QString device; ///< path or stable name; empty exactly if there is none
        Source source;
    };

    /// What the system itself calls a COM number; empty if it has no such number.
    using SystemName = QString (*)(int comNumber);

    /// The store is read at every look-up and must live as long as this object.
    PortDevices(SettingsStore &store, SystemName systemName)
        : m_store(store), m_systemName(systemName)
    {
    }

    void AssignForRun(int comNumber, const QString &device) { m_thisRun[comNumber] = device; }

    /// Puts the device into the user's own table; an empty one takes the entry back. Either way
    /// an assignment for this run ends.
    void Assign(int comNumber, const QString &device);
    /// Puts what was assigned in its place in the store.
    Result Save();

    Meaning MeaningOf(int comNumber) const;
    /// Device path or stable name; empty if the number has none.
    QString DeviceOf(int comNumber) const { return MeaningOf(comNumber).device; }

    /// What the number is with this entry in the user's own table and nothing assigned for the
    /// run; an empty entry leaves it to the system.
    Meaning MeaningOfEntry(int comNumber, const QString &entry) const;

  private:
    SettingsStore &m_store;
    SystemName m_systemName;
    QHash<int, QString> m_thisRun;
};
