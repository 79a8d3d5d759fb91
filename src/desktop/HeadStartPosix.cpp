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
#include <pthread.h>
#include <sched.h>

namespace
{

/// The processors that a thread may use.
class Processors
{
  public:
    /// Those of the calling thread.
    static Processors Own()
    {
        Processors own;
        own.m_areKnown = ::sched_getaffinity(0, sizeof own.m_set, &own.m_set) == 0;
        return own;
    }

    /// All but the one that the calling thread runs on; all if there is no other.
    Processors Others() const
    {
        Processors others = *this;
        const int current = ::sched_getcpu();
        if (current >= 0 && CPU_COUNT(&m_set) > 1)
            CPU_CLR(current, &others.m_set);
        return others;
    }

    void GiveTo(pthread_t thread) const
    {
        if (m_areKnown)
            ::pthread_setaffinity_np(thread, sizeof m_set, &m_set);
    }

  private:
    cpu_set_t m_set = {};
    bool m_areKnown = false;
};

} // namespace

HeadStart::HeadStart(bool seen, bool busRuns)
{
    // The files of fonts are read by the locale's rules for numbers. The toolkit sets the same
    // locale, and must not change it meanwhile.
    std::setlocale(LC_ALL, "");
    QThread::currentThread(); // the first thread to ask is the one where the toolkit is to start
    std::promise<void> read;
    m_fonts = read.get_future();
    std::promise<void> placed;
    const Processors all = Processors::Own();
    m_thread = std::jthread(
        [seen, busRuns, all, read = std::move(read), isPlaced = placed.get_future()]() mutable {
            ThreadTurns::TakeLong();
            isPlaced.wait();
            const auto readFonts = [&read] {
                FcInit();
                read.set_value();
            };
            if (!busRuns)
                readFonts();
            all.GiveTo(::pthread_self()); // what is started from here on inherits it
            if (seen)
                QDBusConnection::sessionBus();
            if (busRuns)
                readFonts();
        });
    // The system likes to begin a thread where its maker runs, and both take turns for milliseconds
    // while another processor idles.
    all.Others().GiveTo(m_thread.native_handle());
    placed.set_value();
}

void HeadStart::LoadFaces()
{
    m_fonts.wait(); // who asks for a font before they are read would read them a second time
    for (const QFont &font : {QGuiApplication::font(), FixedPitchFont::ViewFont()})
        QFontMetrics(font).boundingRect(QStringLiteral("A"));
}
