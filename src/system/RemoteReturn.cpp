// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "RemoteReturn.h"

#include "LineLoop.h"

#include <QElapsedTimer>

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <utility>

namespace
{

constexpr std::chrono::milliseconds FirstPause{20};
constexpr std::chrono::milliseconds LongestPause{1000};
constexpr qint64 Patience = 20'000; ///< milliseconds, before the user is told

} // namespace

struct RemoteReturn::State {
    void Run(std::chrono::milliseconds firstPause);
    void Wait(std::chrono::milliseconds pause);
    /// Whether it has come back.
    bool Try();
    bool IsEnded();
    void TellRefusal(const RemoteOpening &opening);

    RemoteRequest request;
    QElapsedTimer refused; ///< since the other side is there, but cannot be opened
    bool told = false;

    std::mutex lock; ///< guards what follows
    std::condition_variable changed;
    Calls calls;
    bool ended = false;
};

RemoteReturn::RemoteReturn(const RemoteRequest &request, std::chrono::milliseconds pause,
                           Calls calls)
    : m_state(std::make_shared<State>())
{
    m_state->request = request;
    m_state->calls = std::move(calls);
    LineLoop::RunBeside([state = m_state, pause] { state->Run(pause); });
}

RemoteReturn::~RemoteReturn()
{
    End();
}

void RemoteReturn::End()
{
    if (std::exchange(m_ended, true))
        return;
    const std::lock_guard guard(m_state->lock);
    m_state->ended = true;
    m_state->changed.notify_all();
}

bool RemoteReturn::State::IsEnded()
{
    const std::lock_guard guard(lock);
    return ended;
}

void RemoteReturn::State::Wait(std::chrono::milliseconds pause)
{
    std::unique_lock guard(lock);
    changed.wait_for(guard, pause, [this] { return ended; });
}

void RemoteReturn::State::Run(std::chrono::milliseconds firstPause)
{
    Wait(firstPause);
    for (auto pause = FirstPause; !IsEnded() && !Try(); pause = std::min(2 * pause, LongestPause))
        Wait(pause);
}

bool RemoteReturn::State::Try()
{
    const auto opening = std::make_shared<RemoteOpening>(request);
    opening->Open([this] { return !IsEnded(); });

    const std::lock_guard guard(lock);
    if (ended)
        return true;
    if (opening->State().Failed())
        TellRefusal(*opening);
    else
        calls.opened(opening);
    return !opening->State().Failed();
}

void RemoteReturn::State::TellRefusal(const RemoteOpening &opening)
{
    if (!opening.Reached()) {
        refused.invalidate();
        told = false;
    } else if (!refused.isValid()) {
        refused.start();
    } else if (refused.hasExpired(Patience) && !std::exchange(told, true)) {
        calls.refused(opening.State().Cause());
    }
}
