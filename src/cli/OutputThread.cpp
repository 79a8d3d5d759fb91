// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "OutputThread.h"

#include "WriteAll.h"

#include <QFile>

#include <condition_variable>
#include <cstdio>
#include <mutex>
#include <thread>
#include <utility>

struct OutputThread::State {
    explicit State(Calls c) : calls(std::move(c)) {}

    void Run();

    Calls calls;
    mutable std::mutex lock; ///< guards what follows
    std::condition_variable changed;
    QByteArray waiting;
    qsizetype writing = 0;
    bool ending = false;
    bool ended = false;
    bool failed = false;
};

void OutputThread::State::Run()
{
    QFile output;
    const bool opened = output.open(::fileno(stdout), QIODevice::WriteOnly | QIODevice::Unbuffered);
    std::unique_lock guard(lock);
    for (;;) {
        changed.wait(guard, [this] { return ending || !waiting.isEmpty(); });
        const QByteArray bytes = std::exchange(waiting, {});
        if (bytes.isEmpty())
            break;
        writing = bytes.size();
        const bool skip = failed;
        guard.unlock();
        const bool written = skip || (opened && WriteAll(output, bytes));
        const QString cause = written ? QString() : output.errorString();
        guard.lock();
        const bool wasFull = std::exchange(writing, 0) + waiting.size() >= MostBytes;
        const bool fails = !written && !std::exchange(failed, true);
        if (ending) // nobody hears the calls any more
            continue;
        if (fails)
            calls.failed(cause);
        if (wasFull)
            calls.roomAgain();
    }
    ended = true;
    changed.notify_all();
}

OutputThread::OutputThread(Calls calls) : m_state(std::make_shared<State>(std::move(calls)))
{
    std::thread([state = m_state] { state->Run(); }).detach();
}

OutputThread::~OutputThread()
{
    Finish();
}

void OutputThread::Write(const QByteArray &bytes)
{
    {
        const std::lock_guard guard(m_state->lock);
        if (m_state->failed)
            return;
        m_state->waiting += bytes;
    }
    m_state->changed.notify_all();
}

bool OutputThread::HasRoom() const
{
    const std::lock_guard guard(m_state->lock);
    return m_state->waiting.size() + m_state->writing < MostBytes;
}

bool OutputThread::Finish()
{
    std::unique_lock guard(m_state->lock);
    m_state->ending = true;
    m_state->changed.notify_all();
    return m_state->changed.wait_for(guard, MostTimeToEnd, [this] { return m_state->ended; });
}
