// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "FirstWindow.h"

#include "ThreadTurns.h"

#include <QBackingStore>
#include <QEvent>
#include <QGuiApplication>
#include <QImage>
#include <QWidget>

#include <algorithm>

#include <sys/mman.h>
#include <unistd.h>

namespace
{

/// Handed out at once, in bytes: whoever wants memory of another kind waits until then.
constexpr size_t Step = 128 * 1024;

} // namespace

FirstWindow::FirstWindow()
{
    ThreadTurns::TakeShort();
    QCoreApplication::instance()->installEventFilter(this);
}

bool FirstWindow::eventFilter(QObject *watched, QEvent *event)
{
    const bool isMade = event->type() == QEvent::WinIdChange;
    const bool isShown = event->type() == QEvent::Show;
    const auto *window = isMade || isShown ? qobject_cast<const QWidget *>(watched) : nullptr;
    if (window && window->isWindow()) {
        QBackingStore *store = window->backingStore();
        // Elsewhere there is no picture yet.
        if (isMade && store && QGuiApplication::platformName() == QLatin1String("xcb")) {
            store->resize(window->size());
            HandOut(*store);
        }
        if (isShown) {
            QCoreApplication::instance()->removeEventFilter(this);
            ThreadTurns::TakeLong();
        }
    }
    return QObject::eventFilter(watched, event);
}

void FirstWindow::HandOut([[maybe_unused]] QBackingStore &store)
{
#ifdef MADV_POPULATE_WRITE
    const QPaintDevice *device = store.paintDevice();
    if (!device || device->devType() != QInternal::Image || m_thread.joinable())
        return;
    const auto &image = static_cast<const QImage &>(*device);
    const auto page = size_t(::sysconf(_SC_PAGESIZE));
    const size_t before = reinterpret_cast<size_t>(image.constBits()) % page;
    // The picture may go meanwhile. Then there is nothing to hand out, or the memory of something
    // else, whose content stays.
    m_thread = std::jthread([from = const_cast<uchar *>(image.constBits()) - before,
                             size = size_t(image.sizeInBytes()) + before] {
        ThreadTurns::TakeLong();
        for (size_t at = 0; at < size; at += Step)
            ::madvise(from + at, std::min(Step, size - at), MADV_POPULATE_WRITE);
    });
#endif
}
