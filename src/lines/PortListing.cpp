// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "PortListing.h"

#include "RemoteAddress.h"

#include <QFileInfo>

#include <algorithm>

namespace
{

/// The target is what the name leads to if it is a link.
bool LeadsTo(const QString &name, const QString &target, const FoundPort &port)
{
    return name == port.device || name == port.stableName || target == port.device;
}

/// What an assigned device is that no finder lists. The target is what it leads to.
QString Description(const QString &device, const QString &target)
{
    if (IsRemoteAddress(device))
        return QStringLiteral("Network port");
    if (target.isEmpty())
        return QStringLiteral("Is not there");
    return target.endsWith(device) ? QStringLiteral("Assigned device")
                                   : QStringLiteral("Leads to ") + target;
}

bool IsOwn(const PortDevices::Meaning &meaning)
{
    return meaning.source == PortDevices::Source::OwnAssignment ||
           meaning.source == PortDevices::Source::ThisRun;
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
        const QString target = finder.CanonicalName(*device);
        for (ListedPort &listed : ports) {
            if (LeadsTo(*device, target, listed.port))
                listed.numbers.append(device.key());
        }
    }
    return ports;
}

QList<ListedPort> ListPortsAndAssigned(const PortFinder &finder,
                                       const QMap<int, PortDevices::Meaning> &meanings)
{
    QMap<int, QString> devices;
    for (auto meaning = meanings.cbegin(); meaning != meanings.cend(); ++meaning)
        devices[meaning.key()] = meaning->device;
    QList<ListedPort> ports = ListPorts(finder, devices);
    for (auto meaning = meanings.cbegin(); meaning != meanings.cend(); ++meaning) {
        const QString &device = meaning->device;
        const auto same = std::find_if(ports.begin(), ports.end(), [&](const ListedPort &port) {
            return port.port.device == device || port.numbers.contains(meaning.key());
        });
        if (same == ports.end() && IsOwn(*meaning))
            ports.append({{device, Description(device, finder.CanonicalName(device)), {}},
                          {meaning.key()},
                          false});
        else if (same != ports.end() && !same->numbers.contains(meaning.key()))
            same->numbers.append(meaning.key());
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
