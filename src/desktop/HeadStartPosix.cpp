// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "HeadStart.h"

#include "FixedPitchFont.h"

#include <QDBusConnection>
#include <QFontMetrics>
#include <QGuiApplication>

#include <clocale>

#include <fontconfig/fontconfig.h>

std::jthread HeadStart::Fonts()
{
    // Its files are read by the locale's rules for numbers. The toolkit sets the same locale, and
    // must not change it meanwhile.
    std::setlocale(LC_ALL, "");
    return std::jthread([] { FcInit(); });
}

std::jthread HeadStart::SessionBus()
{
    // On other platforms nobody would ask.
    const QString platform = QGuiApplication::platformName();
    if (platform == QLatin1String("xcb") || platform.startsWith(QLatin1String("wayland")))
        return std::jthread([] { QDBusConnection::sessionBus(); });
    return {};
}

void HeadStart::Faces()
{
    QFont ofHeadings = QGuiApplication::font();
    ofHeadings.setBold(true);
    for (const QFont &font : {QGuiApplication::font(), ofHeadings, FixedPitchFont::ViewFont()})
        QFontMetrics(font).boundingRect(QStringLiteral("A"));
}
