// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "LineLoop.h"

#include "DescriptorPosix.h"
#include "LineClock.h"
#include "ThreadTurns.h"

#include <algorithm>
#include <utility>

#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <sys/resource.h>
#include <unistd.h>

namespace
{

constexpr qint64 NanosecondsOfASecond = 1'000'000'000;
constexpr qint64 TickNanoseconds = LineLoop::TickMilliseconds * 1'000'000;
constexpr int ToBeRead = POLLIN | POLLHUP | POLLERR | POLLNVAL;

/// Takes all that the administrator has granted of a limit, and returns it.
rlim_t GrantedLimit(__rlimit_resource resource)
{
    rlimit limit = {};
    if (::getrlimit(resource, &limit) != 0)
        return 0;
    limit.rlim_cur = limit.rlim_max;
    ::setrlimit(resource, &limit);
    return limit.rlim_max;
}

/// Ordinary users get more than the last of these only where the administrator grants it; nothing
/// depends on any.
QString RaisePriority()
{
    const bool hasTurns = ThreadTurns::TakeShort();
    GrantedLimit(RLIMIT_RTPRIO);
    sched_param realTime = {};
    realTime.sched_priority = ::sched_get_priority_min(SCHED_RR);
    if (::pthread_setschedparam(::pthread_self(), SCHED_RR, &realTime) == 0)
        return QStringLiteral("real time");
    constexpr int Wanted = -10;
    const int granted = 20 - int(std::clamp<rlim_t>(GrantedLimit(RLIMIT_NICE), 20, 40));
    for (const int nice : {Wanted, granted})
        if (nice < 0 && ::setpriority(PRIO_PROCESS, id_t(::gettid()), nice) == 0)
            return QStringLiteral("nice %1").arg(nice);
    return hasTurns ? QStringLiteral("normal, in short turns") : QStringLiteral("normal");
}

/// A thread gets that of the one that begins it.
void LowerPriority()
{
    const sched_param ordinary = {};
    ::pthread_setschedparam(::pthread_self(), SCHED_OTHER, &ordinary);
    ::setpriority(PRIO_PROCESS, id_t(::gettid()), 0);
}

/// Whether a line can be read by now; the last of those waited for is the loop's own wakeup.
bool AnyToBeRead(std::vector<pollfd> &waited)
{
    ::poll(waited.data(), nfds_t(waited.size()), 0);
    return std::any_of(waited.cbegin(), waited.cend() - 1,
                       [](const pollfd &one) { return (one.revents & ToBeRead) != 0; });
}

} // namespace

LineLoop::LineLoop() : m_wakeup(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    std::promise<QString> raised;
    m_priority = raised.get_future().share();
    m_thread = std::thread([this, raised = std::move(raised)]() mutable {
        raised.set_value(RaisePriority());
        Run();
    });
}

LineLoop::~LineLoop()
{
    Post([this] { m_ending = true; });
    m_thread.join();
    ::close(m_wakeup);
}

void LineLoop::Join(Source &source)
{
    m_sources.push_back(&source);
    m_ready.push_back(0);
}

void LineLoop::Leave(Source &source)
{
    const auto place = std::find(m_sources.begin(), m_sources.end(), &source);
    if (place != m_sources.end())
        *place = nullptr; // its place goes with the next wait: a pass may be walking over them
}

void LineLoop::Do(const std::function<void()> &work)
{
    if (std::this_thread::get_id() == m_thread.get_id()) {
        work();
        return;
    }
    std::mutex lock;
    std::condition_variable finished;
    bool done = false;
    Post([&] {
        work();
        const std::lock_guard guard(lock);
        done = true;
        finished.notify_one();
    });
    std::unique_lock guard(lock);
    finished.wait(guard, [&] { return done; });
}

void LineLoop::Post(std::function<void()> work)
{
    {
        const std::lock_guard guard(m_lock);
        m_posted.push_back(std::move(work));
    }
    Wakeup();
}

void LineLoop::Schedule(TimedWork *work)
{
    Do([this, work] { m_timed = work; });
}

void LineLoop::RunBeside(std::function<void()> work)
{
    std::thread([work = std::move(work)] {
        LowerPriority();
        ::pthread_setname_np(::pthread_self(), "beside lines");
        work();
    }).detach();
}

void LineLoop::Wakeup() const
{
    const eventfd_t one = 1;
    ::eventfd_write(m_wakeup, one);
}

void LineLoop::Run()
{
    ::pthread_setname_np(::pthread_self(), "lines");
    BlockBrokenPipes();
    while (!m_ending) {
        const bool ticks = !m_sources.empty();
        Wait(TimeToWait());
        DoPosted();
        Serve();
        DoTimed();
        if (ticks && MonotonicNow() >= m_nextTick)
            Tick();
    }
}

/// In nanoseconds; negative for as long as nothing happens.
qint64 LineLoop::TimeToWait() const
{
    const qint64 now = MonotonicNow();
    qint64 longest = -1;
    if (!m_sources.empty())
        longest = std::clamp<qint64>(m_nextTick - now, 0, TickNanoseconds);
    const std::optional<qint64> due = m_timed ? m_timed->Due() : std::nullopt;
    if (!due)
        return longest;
    const qint64 left = std::max<qint64>(*due - now, 0);
    return longest < 0 ? left : std::min(left, longest);
}

void LineLoop::Wait(qint64 nanoseconds)
{
    std::erase(m_sources, nullptr);
    m_ready.assign(m_sources.size(), 0);
    std::vector<pollfd> waited;
    waited.reserve(m_sources.size() + 1);
    for (const Source *source : m_sources) {
        const int events =
            (source->WantsToRead() ? POLLIN : 0) | (source->WantsToWrite() ? POLLOUT : 0);
        // What is wanted of nobody would only tell, again and again, that the device has gone.
        waited.push_back({events == 0 ? -1 : source->Descriptor(), short(events), 0});
    }
    waited.push_back({m_wakeup, POLLIN, 0});

    // What is ready after a late pass may have come before what that pass did last. If nothing is,
    // whatever comes now comes later.
    const bool late = m_passBegan != 0 && MonotonicNow() - m_passBegan > LongestPass;
    m_late = (std::exchange(m_met, false) || late) && SeveralSources() && AnyToBeRead(waited);
    const timespec most = {time_t(nanoseconds / NanosecondsOfASecond),
                           long(nanoseconds % NanosecondsOfASecond)};
    ::ppoll(waited.data(), nfds_t(waited.size()), nanoseconds < 0 ? nullptr : &most, nullptr);
    m_passBegan = MonotonicNow();
    for (size_t i = 0; i < m_ready.size(); ++i)
        m_ready[i] = waited[i].revents;
    eventfd_t count = 0;
    ::eventfd_read(m_wakeup, &count);
}

/// The wait looked at one line after the other, maybe too early, and the thread may have been held
/// up since, while more came to the line that is read: only a look behind the read can tell. It
/// can, as the system waits for bytes on their way through it before it finds a line empty.
bool LineLoop::OtherSpoke(const Source &reader)
{
    std::vector<pollfd> others;
    for (const Source *source : m_sources) {
        if (source && source != &reader)
            others.push_back({source->Descriptor(), POLLIN, 0});
    }
    const bool spoke = !others.empty() && ::poll(others.data(), nfds_t(others.size()), 0) > 0;
    m_met = m_met || spoke;
    return spoke;
}

void LineLoop::DoPosted()
{
    std::vector<std::function<void()>> posted;
    {
        const std::lock_guard guard(m_lock);
        posted.swap(m_posted);
    }
    for (std::function<void()> &work : posted) {
        work();
        work = nullptr; // what it holds, such as a device, must not outlive what is done next
    }
}

void LineLoop::Serve()
{
    const auto several = std::count_if(m_ready.begin(), m_ready.end(),
                                       [](int ready) { return (ready & ToBeRead) != 0; });
    const bool remote = std::any_of(m_sources.begin(), m_sources.end(), [](const Source *source) {
        return source && source->Remote();
    });
    const Wake wake = {several > 1 || m_late || remote};
    for (size_t i = 0; i < m_ready.size(); ++i) {
        // Whatever is served may make others leave.
        if (m_sources[i] && (m_ready[i] & ToBeRead) != 0)
            m_sources[i]->Readable(wake);
        if (m_sources[i] && (m_ready[i] & POLLOUT) != 0)
            m_sources[i]->Writable();
    }
}

/// After what was read: answers come first.
void LineLoop::DoTimed()
{
    const std::optional<qint64> due = m_timed ? m_timed->Due() : std::nullopt;
    const qint64 now = MonotonicNow();
    if (due && *due <= now)
        m_timed->OnDue(now);
}

void LineLoop::Tick()
{
    m_nextTick = MonotonicNow() + TickNanoseconds;
    for (size_t i = 0; i < m_sources.size(); ++i) {
        if (m_sources[i])
            m_sources[i]->Tick();
    }
}
