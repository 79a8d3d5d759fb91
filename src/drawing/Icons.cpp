// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "Icons.h"

/// The icons stand in a static library, which nothing else would pull in.
static void LoadIcons()
{
    Q_INIT_RESOURCE(icons);
}

QIcon Icons::Named(const char *name)
{
    LoadIcons();
    return QIcon(QStringLiteral(":/icons/%1.svg").arg(QLatin1String(name)));
}
