// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "PortIdentity.h"

#include "RemoteAddress.h"

#include <algorithm>

QList<PortIdentity> IdentitiesOf(const QStringList &names, const PortFinder &finder,
                                 QString (*canonicalName)(const QString &name))
{
    const QList<FoundPort> ports = finder.FindPorts();
    QList<PortIdentity> identities;
    for (const QString &name : names) {
        PortIdentity identity;
        if (IsRemoteAddress(name)) {
            identity.device = name;
            identities.append(identity);
            continue;
        }
        identity.device = name.isEmpty() ? QString() : canonicalName(name);
        const auto port = std::find_if(ports.begin(), ports.end(), [&](const FoundPort &each) {
            return each.device == identity.device;
        });
        if (port != ports.end()) {
            identity.description = port->description;
            identity.stableName = port->stableName;
        }
        const bool isLink = name.contains(u'/') && name != identity.device;
        if (identity.stableName.isEmpty() && isLink)
            identity.stableName = name;
        identities.append(identity);
    }
    return identities;
}
