// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SessionWatch.h"

#include <QEvent>
#include <QGuiApplication>

#include <cstdlib>

namespace
{

SessionWatch *onWatch = nullptr;

/// Called by the system's exit(), to which the toolkit's libraries turn when a connection breaks.
void TellLost()
{
    if (onWatch)
        Q_EMIT onWatch->Lost();
}

/// The toolkit's listener on the connection to the session manager.
bool IsSessionConnection(const QObject &notifier)
{
    return notifier.parent() && notifier.parent()->inherits("QSmSocketReceiver");
}

} // namespace

SessionWatch::SessionWatch()
{
    const auto note = [this] { NoteSaving(); };
    connect(qApp, &QGuiApplication::commitDataRequest, this, note, Qt::DirectConnection);
    connect(qApp, &QGuiApplication::saveStateRequest, this, note, Qt::DirectConnection);
    qApp->installEventFilter(this);
    onWatch = this;
    std::atexit(TellLost);
}

SessionWatch::~SessionWatch()
{
    onWatch = nullptr;
}

void SessionWatch::NoteSaving()
{
    m_saved = true;
    m_spoken = false;
    Q_EMIT SavingWanted();
}

/// The toolkit tells neither that a shutdown has been cancelled nor that saving was all. Both come
/// as a word of the session manager that is followed by nothing else.
void SessionWatch::NoteWord()
{
    if (!m_spoken)
        return;
    m_spoken = false;
    m_saved = false;
    Q_EMIT GoesOn();
}

/// The end comes as an event that no loop answers here, because the application's exec() never
/// runs. It ends here, so that the windows are not closed one by one as the user would close them.
bool SessionWatch::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Quit && watched == qApp) {
        m_saved = m_spoken = false;
        Q_EMIT Ending();
        return true;
    }
    if (m_saved && event->type() == QEvent::SockAct && IsSessionConnection(*watched)) {
        m_spoken = true;
        QMetaObject::invokeMethod(this, &SessionWatch::NoteWord, Qt::QueuedConnection);
    }
    return false;
}
