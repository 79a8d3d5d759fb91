// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "PortDevices.h"
#include "PortFinder.h"

#include <QMap>

/// A port with the COM numbers that lead to it.
struct ListedPort {
    FoundPort port;
    QList<int> numbers{};
    bool found = true; ///< false if it is there because it is assigned
};

/// The ports of this machine. The map holds the devices of the COM numbers.
QList<ListedPort> ListPorts(const PortFinder &finder, const QMap<int, QString> &devices);

/// The same, and behind them what the user has assigned that is none of them, with what it is in
/// the place of a description: links, pseudo-terminals, ports on other machines.
QList<ListedPort> ListPortsAndAssigned(const PortFinder &finder,
                                       const QMap<int, PortDevices::Meaning> &meanings);

/// A device by whatever name, with what it says of itself if it is one of the ports:
/// "/dev/ttyUSB0 (Maker of USB Serial)".
QString DeviceText(const QString &name, const QList<FoundPort> &ports);
