// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "PortFinder.h"

#include <QStringList>

/// What the machine says of a device that is known by a name. An empty text: nothing.
struct PortIdentity {
    QString device; ///< canonical name
    QString description;
    QString stableName; ///< also a link that the user has given
};

/// In the order of the names. It takes as long as the system lets it, see PortFinder.
QList<PortIdentity> IdentitiesOf(const QStringList &names, const PortFinder &finder,
                                 QString (*canonicalName)(const QString &name));
