// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "PortFinder.h"

#include <QMap>

/// A port with the COM numbers that lead to it.
struct ListedPort {
    FoundPort port;
    QList<int> numbers{};
};

/// The ports of this machine. The map holds the devices of the COM numbers.
QList<ListedPort> ListPorts(const PortFinder &finder, const QMap<int, QString> &devices);
