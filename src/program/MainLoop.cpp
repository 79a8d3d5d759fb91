// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "MainLoop.h"

#include "MdCommunication.h"
#include "RunState.h"

#include <QEventLoop>
#include <QTimer>

namespace
{

/// A loop of its own for each pause: one that is kept could not be entered again from a dialog.
void Pause(int milliseconds)
{
    QEventLoop events;
    QTimer::singleShot(milliseconds, Qt::PreciseTimer, &events, &QEventLoop::quit);
    events.exec();
}

} // namespace

void MainLoop::Run()
{
    while (!m_run.QuitRequested) {
        const int pause = Pass();
        Pause(pause);
        if (pause < StoppedPause && !m_run.QuitRequested)
            Rest();
    }
}

/// A pass with nothing to show would change nothing.
void MainLoop::Rest()
{
    QEventLoop events;
    QTimer::singleShot(StoppedPause - RunningPause, &events, &QEventLoop::quit);
    m_communication.CallOnceFed(
        [&events] { QMetaObject::invokeMethod(&events, &QEventLoop::quit, Qt::QueuedConnection); });
    events.exec();
    m_communication.CallOnceFed({});
}

int MainLoop::Pass()
{
    if (!m_communication.Running())
        return StoppedPause;
    m_communication.ShowTraffic();
    return RunningPause;
}
