// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "CapturePlayer.h"
#include "CaptureTraffic.h"
#include "ReplayPace.h"

#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>

/// Reads a capture and lets it happen in its time. Run is the replay's thread, Open and Pass are
/// its parts: a disk that hangs keeps nobody else waiting. The rest may be called from any thread.
/// Of the capture a packet is in memory.
class CaptureReplay final
{
  public:
    /// Where a replay stands.
    struct Position {
        qint64 place = 0;  ///< bytes of the file that have been played
        qint64 played = 0; ///< nanoseconds of the capture that have gone by
        qint64 wall = 0;   ///< time of what happened last, 0 before: nanoseconds since 1970
        /// Until it goes on by itself; nothing if it does not.
        std::optional<qint64> silence;
        bool paused = false;
    };

    /// Now in nanoseconds, on a clock that is never set; asked on any thread.
    using Now = std::function<qint64()>;

    enum class Phase {
        Opening,
        Refused, ///< it is no capture that can be replayed
        Open,    ///< Begin may be called; it plays, once that has been
        Over     ///< all has been played
    };

    CaptureReplay(std::unique_ptr<InputDevice> file, Now now);
    ~CaptureReplay();
    Q_DISABLE_COPY_MOVE(CaptureReplay)

    /// What is called whenever the phase changes, on the replay's thread, until Stop returns.
    void Tell(std::function<void()> changed) { m_changed = std::move(changed); }
    /// Opens and plays to the end, or until it is stopped.
    void Run();
    Phase State() const;
    /// Why it is refused; or where the capture is damaged, once all is over, empty if it is whole.
    QString Fault() const;

    /// Up to the first thing that happened. Fails if the file is no capture of serial lines.
    Result Open();
    /// By channel, one at least, once it is open.
    QList<TrafficPort> Ports() const;

    /// From here on it plays: whatever board, stream and hasRoom belong to is used until Stop
    /// returns, and not after it.
    void Begin(const WatchBoard &board, TrafficStream &stream, std::function<bool()> hasRoom);
    /// Nothing happens any more once this returns; it does not wait for the thread.
    void Stop();

    void SetSpeed(ReplaySpeed speed);
    void SetPaused(bool paused);
    /// What comes next comes now, up to the next bytes; during a pause, too.
    void Skip();
    /// There may be room again.
    void Resume();

    Position Where() const;
    qint64 Size() const { return m_size; }

    /// Plays all that is due. How many nanoseconds to wait before it is called again, at most;
    /// nothing if all is over.
    std::optional<qint64> Pass();
    /// Waits so long, or until one of the calls above.
    void Wait(qint64 nanoseconds);

  private:
    /// Lets a reader that walks through a large file be stopped.
    class Interruptible;

    void Read();
    void Enter(Phase phase, const QString &fault = {});
    bool PlayIfDue(qint64 &wait);
    void Poke();

    const Now m_now;
    const qint64 m_size;
    std::atomic_bool m_stopped = false;

    // Of the replay's thread.
    std::unique_ptr<Interruptible> m_file;
    CaptureReader m_reader;
    CaptureTraffic m_traffic;
    TrafficEvent m_next;
    CaptureReader::Step m_step = CaptureReader::Step::End;

    mutable std::mutex m_lock; ///< guards what follows
    std::condition_variable m_poke;
    bool m_poked = false;
    std::function<void()> m_changed = [] {};
    Phase m_phase = Phase::Opening;
    QString m_fault;
    std::unique_ptr<CapturePlayer> m_player; ///< while it plays
    std::function<bool()> m_hasRoom;
    ReplayPace m_pace;
    bool m_skips = false;
    bool m_held = false; ///< the log has no room
    QList<TrafficPort> m_ports;
    qint64 m_place = 0;
    qint64 m_wall = 0;
};
