// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CaptureReplay.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace
{

/// Whoever waits for nothing that has a time looks again after this; in nanoseconds.
constexpr qint64 LongestWait = 1'000'000'000;

} // namespace

class CaptureReplay::Interruptible final : public InputDevice
{
  public:
    Interruptible(std::unique_ptr<InputDevice> file, const std::atomic_bool &stopped)
        : m_file(std::move(file)), m_stopped(stopped)
    {
    }

    Given ReadAt(qint64 place, char *bytes, qint64 most) const override
    {
        if (m_stopped)
            return {0, Failure{QStringLiteral("The replay was stopped")}};
        return m_file->ReadAt(place, bytes, most);
    }
    qint64 Size() const override { return m_file->Size(); }

  private:
    std::unique_ptr<InputDevice> m_file;
    const std::atomic_bool &m_stopped;
};

CaptureReplay::CaptureReplay(std::unique_ptr<InputDevice> file, Now now)
    : m_now(std::move(now)),
      m_size(file->Size()),
      m_file(std::make_unique<Interruptible>(std::move(file), m_stopped)),
      m_reader(*m_file),
      m_traffic(m_reader),
      m_pace(m_now())
{
}

CaptureReplay::~CaptureReplay() = default;

void CaptureReplay::Run()
{
    if (const Result opened = Open(); opened.Failed()) {
        Enter(Phase::Refused, opened.Cause());
        return;
    }
    Enter(Phase::Open);
    while (const std::optional<qint64> wait = Pass())
        Wait(*wait);
    Enter(Phase::Over, m_reader.Damage().cause);
}

void CaptureReplay::Enter(Phase phase, const QString &fault)
{
    const std::lock_guard guard(m_lock);
    if (m_stopped)
        return;
    m_phase = phase;
    m_fault = fault;
    m_changed();
}

CaptureReplay::Phase CaptureReplay::State() const
{
    const std::lock_guard guard(m_lock);
    return m_phase;
}

QString CaptureReplay::Fault() const
{
    const std::lock_guard guard(m_lock);
    return m_fault;
}

Result CaptureReplay::Open()
{
    if (Result begun = m_reader.Begin(); begun.Failed())
        return begun;
    Read();
    const std::lock_guard guard(m_lock);
    m_ports = m_reader.Ports();
    if (m_ports.isEmpty())
        m_ports.append(TrafficPort());
    return {};
}

QList<TrafficPort> CaptureReplay::Ports() const
{
    const std::lock_guard guard(m_lock);
    return m_ports;
}

void CaptureReplay::Read()
{
    m_step = m_traffic.Next(m_next);
    const std::lock_guard guard(m_lock);
    if (m_step == CaptureReader::Step::Packet)
        m_pace.Expect(m_next.time.monotonic);
}

void CaptureReplay::Begin(const WatchBoard &board, TrafficStream &stream,
                          std::function<bool()> hasRoom)
{
    const std::lock_guard guard(m_lock);
    if (m_stopped)
        return;
    m_player = std::make_unique<CapturePlayer>(board, stream, m_ports);
    m_hasRoom = std::move(hasRoom);
    m_pace.SetSpeed(m_pace.Speed(), m_now()); // its time begins
    Poke();
}

void CaptureReplay::Stop()
{
    m_stopped = true;
    const std::lock_guard guard(m_lock);
    m_player.reset();
    m_hasRoom = {};
    Poke();
}

void CaptureReplay::SetSpeed(ReplaySpeed speed)
{
    const std::lock_guard guard(m_lock);
    m_pace.SetSpeed(speed, m_now());
    Poke();
}

void CaptureReplay::SetPaused(bool paused)
{
    const std::lock_guard guard(m_lock);
    m_pace.SetPaused(paused, m_now());
    Poke();
}

void CaptureReplay::Skip()
{
    const std::lock_guard guard(m_lock);
    m_skips = true;
    Poke();
}

void CaptureReplay::Resume()
{
    const std::lock_guard guard(m_lock);
    Poke();
}

/// With the lock held.
void CaptureReplay::Poke()
{
    m_poked = true;
    m_poke.notify_all();
}

CaptureReplay::Position CaptureReplay::Where() const
{
    const std::lock_guard guard(m_lock);
    const qint64 now = m_now();
    return {m_place, m_pace.Played(now), m_wall, m_held ? std::nullopt : m_pace.UntilDue(now),
            m_pace.Paused()};
}

std::optional<qint64> CaptureReplay::Pass()
{
    while (m_step == CaptureReader::Step::Packet && !m_stopped) {
        qint64 wait = 0;
        if (!PlayIfDue(wait))
            return wait;
        Read();
    }
    return {};
}

/// False if it is not the turn of what comes next.
bool CaptureReplay::PlayIfDue(qint64 &wait)
{
    const std::lock_guard guard(m_lock);
    m_poked = false;
    wait = LongestWait;
    if (!m_player)
        return false;
    const qint64 now = m_now();
    const std::optional<qint64> left = m_skips ? 0 : m_pace.UntilDue(now);
    wait = std::min(left.value_or(LongestWait), LongestWait);
    if (wait > 0)
        return false;
    m_held = !m_hasRoom();
    if (m_held) {
        wait = LongestWait;
        return false;
    }
    m_pace.Reach(now);
    m_player->Play(m_next);
    m_skips = m_skips && m_next.bytes.isEmpty();
    m_wall = m_next.time.wall;
    m_place = m_reader.Place();
    return true;
}

void CaptureReplay::Wait(qint64 nanoseconds)
{
    std::unique_lock guard(m_lock);
    m_poke.wait_for(guard, std::chrono::nanoseconds(nanoseconds), [this] { return m_poked; });
}
