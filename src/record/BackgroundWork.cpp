// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "BackgroundWork.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>

struct BackgroundWork::State {
    void Run();

    std::mutex lock; ///< guards what follows
    std::condition_variable changed;
    std::deque<std::function<void()>> waiting; ///< what is done now among it
    bool ending = false;
};

void BackgroundWork::State::Run()
{
    std::unique_lock guard(lock);
    for (;;) {
        changed.wait(guard, [this] { return !waiting.empty() || ending; });
        if (waiting.empty())
            return;
        std::function<void()> work = std::move(waiting.front());
        guard.unlock();
        work();
        work = {}; // what it held goes first
        guard.lock();
        waiting.pop_front();
        changed.notify_all();
    }
}

BackgroundWork::BackgroundWork() : m_state(std::make_shared<State>())
{
    std::thread([state = m_state] { state->Run(); }).detach();
}

BackgroundWork::~BackgroundWork()
{
    const std::lock_guard guard(m_state->lock);
    m_state->ending = true;
    m_state->changed.notify_all();
}

void BackgroundWork::Post(std::function<void()> work)
{
    const std::lock_guard guard(m_state->lock);
    m_state->waiting.push_back(std::move(work));
    m_state->changed.notify_all();
}

bool BackgroundWork::WaitUntilDone(std::chrono::milliseconds most)
{
    std::unique_lock guard(m_state->lock);
    return m_state->changed.wait_for(guard, most, [this] { return m_state->waiting.empty(); });
}
