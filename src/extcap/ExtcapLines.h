// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "PortFinder.h"

#include <QList>
#include <QString>

class PortDevices;
struct CommConfiguration;

/// What Wireshark shows as one interface: a line, or two of them.
struct ExtcapLine {
    QList<int> comNumbers;
    QString caption; ///< "Serial line COM1, /dev/ttyUSB0"
};

/// The lines that there are: those that the user has chosen, whether their devices are there or
/// not, and every other COM number to which a device is assigned or whose device is there.
QList<ExtcapLine> ExtcapLines(const CommConfiguration &comm, const PortDevices &devices,
                              const PortFinder &finder);
