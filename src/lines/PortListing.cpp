// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "PortListing.h"

#include <QFileInfo>

QList<ListedPort> ListPorts(const PortFinder &finder, const QMap<int, QString> &devices)
{
    QList<ListedPort> ports;
    for (const FoundPort &port : finder.FindPorts())
        ports.append({port});
    for (auto device = devices.cbegin(); device != devices.cend(); ++device) {
        if (device->isEmpty())
            continue;
        const QString target = QFileInfo(*device).canonicalFilePath();
        for (ListedPort &listed : ports) {
            const FoundPort &port = listed.port;
            if (*device == port.device || *device == port.stableName || target == port.device)
                listed.numbers.append(device.key());
        }
    }
    return ports;
}
