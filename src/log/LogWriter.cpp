// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "LogWriter.h"

#include "TrafficText.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace
{

/// So long text may wait for more of it before it is handed to the system.
constexpr std::chrono::milliseconds LongestBurst{50};

/// What an event costs beside its bytes.
constexpr qint64 CostOfAnEvent = sizeof(TrafficEvent) + 64;

} // namespace

struct LogWriter::State {
    explicit State(Calls toCall) : calls(std::move(toCall)) {}

    /// What stands in the queue: an event, or the begin or end of a session.
    struct Entry {
        TrafficEvent event{};
        std::shared_ptr<LogSession> begins{};
        bool ends = false;
    };

    void Run();
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
    bool held = false; ///< somebody was told that there is no room
    bool idle = true;  ///< all is with the system
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
    State::Entry entry;
    entry.begins = std::move(session);
    m_state->entries.push_back(std::move(entry));
    m_state->taking = true;
    m_state->idle = false;
    m_state->changed.notify_all();
}

void LogWriter::End()
{
    const std::lock_guard guard(m_state->lock);
    if (!std::exchange(m_state->taking, false))
        return;
    State::Entry entry;
    entry.ends = true;
    m_state->entries.push_back(std::move(entry));
    m_state->idle = false;
    m_state->changed.notify_all();
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
    m_state->entries.push_back({event});
    if (std::exchange(m_state->idle, false))
        m_state->changed.notify_all();
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
    return m_state->changed.wait_for(guard, most, [this] { return m_state->idle; });
}

qint64 LogWriter::BytesWaiting() const
{
    const std::lock_guard guard(m_state->lock);
    return m_state->bytes;
}

void LogWriter::State::Run()
{
    auto flushed = std::chrono::steady_clock::now();
    for (;;) {
        std::deque<Entry> work = TakeWaiting();
        if (work.empty())
            return;
        qint64 workBytes = 0;
        qint64 workMemory = 0;
        for (Entry &entry : work) {
            workBytes += entry.event.bytes.size();
            workMemory += entry.begins || entry.ends ? 0 : entry.event.bytes.size() + CostOfAnEvent;
            Work(entry);
        }
        const auto now = std::chrono::steady_clock::now();
        bool last = false;
        {
            const std::lock_guard guard(lock);
            last = entries.empty();
        }
        if (session && (last || now - flushed > LongestBurst)) {
            session->Flush();
            flushed = now;
        }
        Finish(workBytes, workMemory);
    }
}

/// Waits until there is something; nothing at the end.
std::deque<LogWriter::State::Entry> LogWriter::State::TakeWaiting()
{
    std::unique_lock guard(lock);
    changed.wait(guard, [this] { return !entries.empty() || ending; });
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
        session->Write(entry.event);
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
