// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "Display.h"

#include <algorithm>

Result CheckDisplay()
{
    for (const char *variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
        if (!qEnvironmentVariableIsEmpty(variable))
            return {};
    }
    return Failure{QStringLiteral("There is no display. Start a desktop session, or set "
                                  "QT_QPA_PLATFORM=offscreen for a run without a window.")};
}

bool ChoosesPlatform(const QStringList &arguments)
{
    return std::any_of(arguments.cbegin(), arguments.cend(), [](const QString &argument) {
        const QString name = argument.section(u'=', 0, 0);
        return name == QLatin1String("-platform") || name == QLatin1String("--platform");
    });
}

bool WillBeSeen(const QStringList &arguments)
{
    const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
    return !ChoosesPlatform(arguments) &&
           (platform.isEmpty() || platform.startsWith("xcb") || platform.startsWith("wayland"));
}
