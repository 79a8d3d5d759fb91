// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "RemoteOpening.h"

#include <functional>
#include <memory>

/// Makes a connection again that was lost, on a thread of its own.
class RemoteReturn final
{
  public:
    /// They come on that thread, and must not take long.
    struct Calls {
        /// Once, and nothing afterwards.
        std::function<void(const std::shared_ptr<RemoteOpening> &opened)> opened;
        /// The other side is there, but for some time now it could not be opened; it is tried on.
        std::function<void(const QString &cause)> refused;
    };

    /// The first try comes after a pause.
    RemoteReturn(const RemoteRequest &request, std::chrono::milliseconds pause, Calls calls);
    ~RemoteReturn();
    Q_DISABLE_COPY_MOVE(RemoteReturn)

    /// Ends the waiting without waiting itself; no call comes from then on.
    void End();
    bool HasEnded() const { return m_ended; }

  private:
    struct State;

    std::shared_ptr<State> m_state; ///< shared with the thread
    bool m_ended = false;
};
