// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "DeviceReturn.h"

#include "LineLoop.h"
#include "NameWatch.h"
#include "ReturnPlan.h"

#include <QElapsedTimer>

#include <condition_variable>
#include <mutex>
#include <utility>

/// The watch lives on the thread alone, since the system may take its time to end it.
struct DeviceReturn::State {
    void Run();
    void LookFor(NameWatch &names);
    /// Whether it has come back.
    bool Try(const QString &device);
    bool IsEnded();
    /// Whom End has to wake; null: nobody, and the device is not open.
    void SetWatch(NameWatch *names);

    LineRequest request;
    DeviceSearch search;
    std::unique_ptr<SerialDevice::Lock> oldLock;
    ReturnPlan plan;
    QElapsedTimer clock;

    std::mutex lock; ///< guards what follows
    std::condition_variable changed;
    Calls calls;
    NameWatch *watch = nullptr;
    bool ended = false;
    bool idle = false;
};

DeviceReturn::DeviceReturn(const LineRequest &request, const DeviceSearch &search,
                           std::unique_ptr<SerialDevice::Lock> oldLock, Calls calls)
    : m_state(std::make_shared<State>())
{
    m_state->request = request;
    m_state->search = search;
    m_state->oldLock = std::move(oldLock);
    m_state->calls = std::move(calls);
    LineLoop::RunBeside([state = m_state] { state->Run(); });
}

DeviceReturn::~DeviceReturn()
{
    End();
}

void DeviceReturn::End()
{
    if (std::exchange(m_ended, true))
        return;
    const std::lock_guard guard(m_state->lock);
    m_state->ended = true;
    if (m_state->watch)
        m_state->watch->End();
}

void DeviceReturn::WaitUntilIdle(std::chrono::milliseconds most) const
{
    std::unique_lock guard(m_state->lock);
    m_state->changed.wait_for(guard, most, [this] { return m_state->idle; });
}

bool DeviceReturn::State::IsEnded()
{
    const std::lock_guard guard(lock);
    return ended;
}

void DeviceReturn::State::SetWatch(NameWatch *names)
{
    const std::lock_guard guard(lock);
    watch = names;
    idle = !names;
    changed.notify_all();
}

void DeviceReturn::State::Run()
{
    oldLock.reset();
    NameWatch names;
    SetWatch(&names);
    LookFor(names);
    SetWatch(nullptr);
}

void DeviceReturn::State::LookFor(NameWatch &names)
{
    clock.start();
    search.NoteOthers();
    QByteArray sight;
    QString device;
    for (bool news = true; !IsEnded();) {
        if (news)
            names.Watch(search.Names());
        if (const QByteArray before = std::exchange(sight, search.Sight()); news || before != sight)
            device = search.Find();
        const bool due = plan.IsDue(SerialDevice::SightOf(device), clock.elapsed());
        if (due && Try(device))
            return;
        news = names.Wait(plan.PauseFrom(clock.elapsed()));
    }
}

/// What was opened for nobody is closed again with the last one who knows it.
bool DeviceReturn::State::Try(const QString &device)
{
    LineRequest tried = request;
    tried.device = device;
    const auto opening = std::make_shared<SerialOpening>(tried);
    const bool failed = opening->State().Failed();
    const bool tells = failed && plan.NoteFailure(clock.elapsed());

    const std::lock_guard guard(lock);
    if (ended)
        return true;
    if (!failed) {
        search.NoteOpened(device);
        calls.opened(opening, search);
    } else if (tells) {
        calls.refused(opening->State().Cause());
    }
    return !failed;
}
