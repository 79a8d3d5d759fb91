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
    enum class Source { ThisRun, OwnAssignment, SystemName, None };
    struct Meaning {
        QString device; ///< path or stable name; empty exactly if there is none
        Source source;
    };

    /// The store is read at every look-up and must live as long as this object.
    explicit PortDevices(SettingsStore &store) : m_store(store) {}

    void AssignForRun(int comNumber, const QString &device) { m_thisRun[comNumber] = device; }

    /// Puts the device into the user's own table; an empty one takes the entry back. Either way
    /// an assignment for this run ends.
    void Assign(int comNumber, const QString &device);

    Meaning MeaningOf(int comNumber) const;
    /// Device path or stable name; empty if the number has none.
    QString DeviceOf(int comNumber) const { return MeaningOf(comNumber).device; }

    /// What the number is with this entry in the user's own table and nothing assigned for the
    /// run; an empty entry leaves it to the system.
    static Meaning MeaningOfEntry(int comNumber, const QString &entry);

  private:
    SettingsStore &m_store;
    QHash<int, QString> m_thisRun;
};
