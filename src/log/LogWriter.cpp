// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "LogWriter.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>

namespace
{

/// So long, or until there is so much of it, what happens is let wait: then it is written in few
/// large pieces, and who tells of it need not wake the thread each time.
constexpr std::chrono::milliseconds LongestBurst{20};
constexpr qint64 BytesOfABurst = 256 * 1024;

/// While more and more comes, the last of it waits no longer for its piece to fill.
constexpr std::chrono::milliseconds LongestUnflushed{50};

/// What an event costs beside its bytes.
constexpr qint64 CostOfAnEvent = sizeof(TrafficText::Parts) + 160;

} // namespace

struct LogWriter::State {
    explicit State(Calls toCall) : calls(std::move(toCall)) {}

    /// What stands in the queue: what happened, or the begin or end of a session.
    struct Entry {
        TrafficText::Parts happened{};
        std::shared_ptr<LogSession> begins{};
        bool ends = false;
    };

    void Put(Entry entry);
    void Hurry();

    void Run();
    bool IsLast();
    std::deque<Entry> TakeWaiting();
    void Work(Entry &entry);
    void Finish(qint64 bytes, qint64 memory);

    const Calls calls;
    std::mutex lock; ///< guards what follows
    std::condition_variable changed;
    std::deque<Entry> entries;
    qint64 bytes = 0;  ///< of the events that wait, those at work among them
    qint64 memory = 0; ///< that they take
    bool taking = false;
    bool held = false;  ///< somebody was told that there is no room
    bool idle = true;   ///< all is with the system
    bool hurry = false; ///< what waits is to be written now
    bool ending = false;

    // Of the thread alone.
    std::shared_ptr<LogSession> session;
};

LogWriter::LogWriter(Calls calls) : m_state(std::make_shared<State>(std::move(calls)))
{
    std::thread([state = m_state] { state->Run(); }).detach();
}

LogWriter::~LogWriter()
{
    End();
    WaitUntilWritten(MostTimeToEnd);
    const std::lock_guard guard(m_state->lock);
    m_state->ending = true;
    m_state->changed.notify_all();
}

void LogWriter::Begin(std::shared_ptr<LogSession> session)
{
    const std::lock_guard guard(m_state->lock);
    m_state->taking = true;
    m_state->Put({.begins = std::move(session)});
}

void LogWriter::End()
{
    const std::lock_guard guard(m_state->lock);
    if (!std::exchange(m_state->taking, false))
        return;
    m_state->Put({.ends = true});
    m_state->Hurry();
}

bool LogWriter::Writing() const
{
    const std::lock_guard guard(m_state->lock);
    return m_state->taking;
}

void LogWriter::Take(const TrafficEvent &event)
{
    if (!TrafficText::IsShown(event))
        return;
    const std::lock_guard guard(m_state->lock);
    if (!m_state->taking)
        return;
    m_state->bytes += event.bytes.size();
    m_state->memory += event.bytes.size() + CostOfAnEvent;
    m_state->Put({event});
    if (m_state->bytes >= BytesOfABurst)
        m_state->Hurry();
}

bool LogWriter::HasRoom() const
{
    const std::lock_guard guard(m_state->lock);
    const bool room = m_state->bytes < MostBytes && m_state->memory < MostMemory;
    m_state->held = m_state->held || !room;
    return room;
}

bool LogWriter::WaitUntilWritten(std::chrono::milliseconds most)
{
    std::unique_lock guard(m_state->lock);
    if (!m_state->idle)
        m_state->Hurry();
    return m_state->changed.wait_for(guard, most, [this] { return m_state->idle; });
}

qint64 LogWriter::BytesWaiting() const
{
    const std::lock_guard guard(m_state->lock);
    return m_state->bytes;
}

void LogWriter::State::Put(Entry entry)
{
    entries.push_back(std::move(entry));
    if (std::exchange(idle, false))
        changed.notify_all();
}

void LogWriter::State::Hurry()
{
    if (!std::exchange(hurry, true))
        changed.notify_all();
}

void LogWriter::State::Run()
{
    auto flushed = std::chrono::steady_clock::now();
    for (std::deque<Entry> work = TakeWaiting(); !work.empty(); work = TakeWaiting()) {
        qint64 workBytes = 0;
        qint64 workMemory = 0;
        for (Entry &entry : work) {
            const qint64 size = entry.happened.bytes.size();
            workBytes += size;
            workMemory += entry.begins || entry.ends ? 0 : size + CostOfAnEvent;
            Work(entry);
        }
        const auto now = std::chrono::steady_clock::now();
        if (session && (IsLast() || now - flushed > LongestUnflushed)) {
            session->Flush();
            flushed = now;
        }
        Finish(workBytes, workMemory);
    }
}

bool LogWriter::State::IsLast()
{
    const std::lock_guard guard(lock);
    return entries.empty();
}

/// Waits until there is something, and a burst of it; nothing at the end.
std::deque<LogWriter::State::Entry> LogWriter::State::TakeWaiting()
{
    std::unique_lock guard(lock);
    changed.wait(guard, [this] { return !entries.empty() || ending; });
    changed.wait_for(guard, LongestBurst, [this] { return hurry || ending; });
    hurry = false;
    return std::exchange(entries, {});
}

void LogWriter::State::Work(Entry &entry)
{
    if (entry.begins) {
        session = std::move(entry.begins);
    } else if (entry.ends && session) {
        const LogSession::Closing closing = session->Close();
        session.reset();
        calls.closed(closing);
    } else if (session) {
        session->Write(entry.happened);
    }
}

void LogWriter::State::Finish(qint64 workBytes, qint64 workMemory)
{
    bool room = false;
    {
        const std::lock_guard guard(lock);
        bytes -= workBytes;
        memory -= workMemory;
        idle = entries.empty();
        room = held && bytes <= MostBytes / 2 && memory <= MostMemory / 2;
        if (room)
            held = false;
        if (idle)
            changed.notify_all();
    }
    if (room)
        calls.roomAgain();
}
