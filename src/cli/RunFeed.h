// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "TrafficEvent.h"

#include <deque>
#include <functional>
#include <mutex>

/// Carries what happens from the lines' thread to the one that runs the steps, which is woken at
/// once.
class RunFeed final : public TrafficConsumer
{
  public:
    /// Bytes of events that may wait before lines are to be held back.
    static constexpr qint64 MostBytes = 4 * 1024 * 1024;

    /// Called on the lines' thread when something waits that did not before.
    explicit RunFeed(std::function<void()> wake) : m_wake(std::move(wake)) {}

    void Take(const TrafficEvent &event) override;
    /// May be asked on any thread.
    bool HasRoom() const;

    struct Taken {
        std::deque<TrafficEvent> events;
        bool wasFull = false; ///< lines may have been held back
    };
    /// All that waits.
    Taken TakeAll();

  private:
    std::function<void()> m_wake;
    mutable std::mutex m_lock; ///< guards what follows
    std::deque<TrafficEvent> m_events;
    qint64 m_bytes = 0;
};
