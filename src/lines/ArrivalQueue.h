// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

#include <atomic>
#include <chrono>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>

class ArrivalPort;

/// What has arrived on all open ports and is not handled yet, oldest first. The ports' threads
/// push, the window's thread takes; every member may be called from any thread. A port must be
/// attached before its first push and detached before it dies.
class ArrivalQueue
{
  public:
    using Clock = std::chrono::steady_clock;

    /// No port has more than this waiting, but for what a close takes over at the end.
    static constexpr qsizetype LimitPerPort = 4 * 1024 * 1024;
    /// The most that one read of a port brings.
    static constexpr qsizetype MostBytesOfARead = 64 * 1024;
    /// Bytes of one port that came within this time may be kept as one block.
    static constexpr std::chrono::milliseconds LongestBlock{1};

    struct Arrival {
        ArrivalPort *port = nullptr;
        QByteArray bytes;
        bool resume = false; ///< the port waits for room, and there is room now
    };
    struct Departure {
        ArrivalPort *port = nullptr;
        QString description;
    };

    /// The wake-up is called, on whatever thread asks for it, once after each BeginTaking.
    explicit ArrivalQueue(std::function<void()> wakeUp) : m_wakeUp(std::move(wakeUp)) {}

    /// Arrivals of the port are handed out in pieces of at most so many bytes.
    void Attach(ArrivalPort *port, qsizetype mostBytesAtOnce);
    /// Forgets the port with everything that waits for it.
    void Detach(ArrivalPort *port);

    /// False: the queue takes it, but no further read has room; the arrival taken when there is
    /// room again says so.
    bool Push(ArrivalPort *port, Clock::time_point arrival, const QByteArray &bytes);
    /// The device is gone; nothing of the port is pushed any more.
    void PushDeparture(ArrivalPort *port, const QString &description);

    /// Pushes from here on wake up again. What was pushed before has to be looked for once more.
    void BeginTaking() { m_woken.store(false); }
    /// Has the taking go on later; pushes do so by themselves.
    void WakeUp();
    /// The oldest bytes, all of one port and of one stretch; empty if nothing waits.
    std::optional<Arrival> TakeOldest();
    /// The device that is gone and has no bytes waiting; each is handed out once.
    std::optional<Departure> TakeDeparture();
    void DropDeparture(ArrivalPort *port);

    qsizetype Waiting(ArrivalPort *port) const;
    qsizetype WaitingOnAllPorts() const;

  private:
    struct Block {
        ArrivalPort *port = nullptr;
        Clock::time_point arrival; ///< of its first byte
        QByteArray bytes;
        qsizetype taken = 0;
    };
    struct PortState {
        qsizetype mostBytesAtOnce = 1;
        qsizetype waiting = 0;
        bool paused = false;
        std::optional<QString> departure;
    };

    void Append(Block block);

    const std::function<void()> m_wakeUp;
    std::atomic<bool> m_woken = false;
    mutable std::mutex m_lock; ///< guards what follows
    std::deque<Block> m_blocks;
    QHash<ArrivalPort *, PortState> m_ports;
};
