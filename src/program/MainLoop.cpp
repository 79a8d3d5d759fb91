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
        Pause(Pass());
        // A pass with nothing to show would change nothing.
        while (m_communication.Running() && !m_run.QuitRequested && !Rest()) {
        }
    }
}

/// Until there is something to show, or for a while; whether there is.
bool MainLoop::Rest()
{
    enum Ended { LongEnough, Fed };
    QEventLoop events;
    QTimer::singleShot(StoppedPause, &events, [&events] { events.exit(LongEnough); });
    m_communication.CallOnceFed([&events] {
        QMetaObject::invokeMethod(
            &events, [&events] { events.exit(Fed); }, Qt::QueuedConnection);
    });
    const bool fed = events.exec() == Fed;
    m_communication.CallOnceFed({});
    return fed;
}

int MainLoop::Pass()
{
    if (!m_communication.Running())
        return StoppedPause;
    m_communication.ShowTraffic();
    return RunningPause;
}
