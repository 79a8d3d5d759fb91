// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

#include <chrono>
#include <functional>
#include <memory>

/// Does what is posted on a thread of its own, one after the other. Nobody has to wait for it: a
/// thread that a disk holds up is left to itself.
class BackgroundWork final
{
  public:
    BackgroundWork();
    /// Waits for nothing; what is still to be done is done.
    ~BackgroundWork();
    Q_DISABLE_COPY_MOVE(BackgroundWork)

    void Post(std::function<void()> work);
    /// False if not all is done by then.
    bool WaitUntilDone(std::chrono::milliseconds most);

  private:
    struct State;

    std::shared_ptr<State> m_state; ///< shared with the thread, which may outlive this object
};
