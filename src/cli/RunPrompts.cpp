// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "RunPrompts.h"

#include <QEventLoop>
#include <QScopedValueRollback>

#include <thread>

/// Work that is cancelled ends soon, so it is always waited for.
bool RunPrompts::DoWork(const QString &, const Work &work)
{
    WorkProgress progress;
    const QScopedValueRollback underWay(m_progress, &progress);
    if (m_workEnded)
        progress.Cancel();
    QEventLoop loop;
    std::thread worker([&] {
        work(progress);
        QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
    });
    loop.exec();
    worker.join();
    return true;
}

void RunPrompts::EndWork()
{
    m_workEnded = true;
    if (m_progress)
        m_progress->Cancel();
}
