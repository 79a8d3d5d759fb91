// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "LogSession.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>

/// The thread that writes logs, so that neither the lines nor the window wait for a disk. What
/// happens between Begin and End goes into the session, whatever the clock says when it is
/// written. Take may be called from any thread, the rest belongs to the window's.
class LogWriter final
{
  public:
    /// Events of so many bytes may wait before lines are to be held back, those of all lines
    /// together; with what is needed to keep them, no more than MostMemory.
    static constexpr qint64 MostBytes = 4 * 1024 * 1024;
    static constexpr qint64 MostMemory = 64 * 1024 * 1024;
    /// The end of the program waits no longer for a disk.
    static constexpr std::chrono::seconds MostTimeToEnd{5};

    /// Both are called on the writer's thread: when there is room again, and when a session is
    /// written to its end.
    struct Calls {
        std::function<void()> roomAgain;
        std::function<void(const LogSession::Closing &closing)> closed;
    };

    explicit LogWriter(Calls calls);
    /// Waits for what is still to be written, MostTimeToEnd at most, and then leaves it.
    ~LogWriter();
    Q_DISABLE_COPY_MOVE(LogWriter)

    /// From here on events go into the session. One session at a time.
    void Begin(std::shared_ptr<LogSession> session);
    /// The session ends here; the thread writes up to this place and closes it.
    void End();
    bool Writing() const;

    void Take(const TrafficEvent &event);
    bool HasRoom() const;

    /// Waits until all that has been taken is with the system, or closed if it has ended. False if
    /// that takes longer; the number of bytes not written is then not 0.
    bool WaitUntilWritten(std::chrono::milliseconds most);
    qint64 BytesWaiting() const;

  private:
    struct State;

    std::shared_ptr<State> m_state; ///< shared with the thread, which may outlive this object
};
