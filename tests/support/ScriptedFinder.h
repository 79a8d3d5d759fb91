// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "PortFinder.h"

#include <QDialog>
#include <QSemaphore>
#include <QTreeWidget>

/// Finds what the test says, when the test says.
class ScriptedFinder final : public PortFinder
{
  public:
    QList<FoundPort> ports = {
        {"/dev/ttyS0", "Built-in serial port", ""},
        {"/dev/ttyUSB1", "Maker of USB Serial", "/dev/serial/by-id/usb-adapter"}};
    mutable QSemaphore allowed{1000};
    DeviceFacts device;
    DeviceTrial trial;
    mutable QSemaphore trialsAllowed{1000};
    mutable QStringList tried; ///< devices, with the settings; not while a trial is under way

    QList<FoundPort> FindPorts() const override
    {
        allowed.acquire();
        return ports;
    }
    DeviceFacts FactsOf(const QString &) const override { return device; }
    DeviceTrial TryDevice(const QString &name, const QString &settings) const override
    {
        tried << name + ' ' + settings;
        trialsAllowed.acquire();
        return trial;
    }
    QString TryRemote(const QString &address) const override { return "tried " + address; }
};

/// The list of the dialog of devices, a text for each row.
inline QStringList RowsOf(const QDialog &devices)
{
    const auto *list = devices.findChild<QTreeWidget *>("lstDevices");
    QStringList rows;
    for (int i = 0; i < list->topLevelItemCount(); ++i) {
        QStringList cells;
        for (int column = 0; column < 4; ++column)
            cells << list->topLevelItem(i)->text(column);
        rows << cells.join("|");
    }
    return rows;
}
