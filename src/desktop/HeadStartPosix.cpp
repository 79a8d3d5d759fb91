// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "HeadStart.h"

#include "FixedPitchFont.h"
#include "ThreadTurns.h"

#include <QDBusConnection>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QThread>

#include <clocale>

#include <fontconfig/fontconfig.h>

std::shared_future<void> HeadStart::Fonts()
{
    // Its files are read by the locale's rules for numbers. The toolkit sets the same locale, and
    // must not change it meanwhile.
    std::setlocale(LC_ALL, "");
    return std::async(std::launch::async, [] { FcInit(); });
}

std::jthread HeadStart::SessionBus(const std::shared_future<void> &behind)
{
    QThread::currentThread(); // the first thread to ask is the one where the toolkit is to start
    return std::jthread([behind] {
        ThreadTurns::TakeLong();
        behind.wait();
        QDBusConnection::sessionBus();
    });
}

void HeadStart::Faces()
{
    for (const QFont &font : {QGuiApplication::font(), FixedPitchFont::ViewFont()})
        QFontMetrics(font).boundingRect(QStringLiteral("A"));
}
