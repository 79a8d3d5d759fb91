// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "PortListing.h"

#include <QFileInfo>

namespace
{

/// The target is what the name leads to if it is a link.
bool LeadsTo(const QString &name, const QString &target, const FoundPort &port)
{
    return name == port.device || name == port.stableName || target == port.device;
}

} // namespace

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
            if (LeadsTo(*device, target, listed.port))
                listed.numbers.append(device.key());
        }
    }
    return ports;
}

QString DeviceText(const QString &name, const QList<FoundPort> &ports)
{
    const QString target = QFileInfo(name).canonicalFilePath();
    for (const FoundPort &port : ports) {
        if (LeadsTo(name, target, port) && !port.description.isEmpty())
            return name + QStringLiteral(" (%1)").arg(port.description);
    }
    return name;
}
