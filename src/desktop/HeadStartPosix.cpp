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
#include <utility>

#include <fontconfig/fontconfig.h>

HeadStart::HeadStart(bool seen, bool busRuns)
{
    // The files of fonts are read by the locale's rules for numbers. The toolkit sets the same
    // locale, and must not change it meanwhile.
    std::setlocale(LC_ALL, "");
    QThread::currentThread(); // the first thread to ask is the one where the toolkit is to start
    std::promise<void> read;
    m_fonts = read.get_future();
    m_thread = std::jthread([seen, busRuns, read = std::move(read)]() mutable {
        ThreadTurns::TakeLong();
        if (seen && busRuns)
            QDBusConnection::sessionBus();
        FcInit();
        read.set_value();
        if (seen && !busRuns)
            QDBusConnection::sessionBus();
    });
}

void HeadStart::LoadFaces()
{
    m_fonts.wait(); // who asks for a font before they are read would read them a second time
    for (const QFont &font : {QGuiApplication::font(), FixedPitchFont::ViewFont()})
        QFontMetrics(font).boundingRect(QStringLiteral("A"));
}
