// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "Display.h"

Result CheckDisplay()
{
    for (const char *variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
        if (!qEnvironmentVariableIsEmpty(variable))
            return {};
    }
    return Failure{QStringLiteral("There is no display. Start a desktop session, or set "
                                  "QT_QPA_PLATFORM=offscreen for a run without a window.")};
}
