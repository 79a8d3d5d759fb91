// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "DeviceSearch.h"
#include "SerialOpening.h"

#include <chrono>
#include <functional>
#include <memory>

/// Waits for a device that went away, on a thread of its own, and opens it when it is back. An
/// opening that the system does not let end is left to itself.
class DeviceReturn final
{
  public:
    /// They come on that thread, and must not take long.
    struct Calls {
        /// Once, and nothing afterwards. The search is for the next time.
        std::function<void(const std::shared_ptr<SerialOpening> &opened,
                           const DeviceSearch &search)>
            opened;
        /// It is there, but for some time now it could not be opened; it is tried on.
        std::function<void(const QString &cause)> refused;
    };

    /// The old lock of the device is given back on that thread, too, for the disk may be slow.
    DeviceReturn(const LineRequest &request, const DeviceSearch &search,
                 std::unique_ptr<SerialDevice::Lock> oldLock, Calls calls);
    ~DeviceReturn();
    Q_DISABLE_COPY_MOVE(DeviceReturn)

    /// Ends the waiting without waiting itself; no call comes from then on.
    void End();
    bool HasEnded() const { return m_ended; }
    /// After End: until the device is certainly not open any more, or that time has passed.
    void WaitUntilIdle(std::chrono::milliseconds most) const;

  private:
    struct State;

    std::shared_ptr<State> m_state; ///< shared with the thread
    bool m_ended = false;
};
