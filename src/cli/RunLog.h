// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "MdLogFile.h"

#include <functional>
#include <utility>

/// The log of a run. The ports may be closed and opened meanwhile; the log goes on until the run
/// ends.
class RunLog final : public CommunicationLog
{
  public:
    /// The log lives longer. HasRoom tells of all others that take what happens.
    RunLog(MdLogFile &log, std::function<bool()> hasRoom)
        : m_log(log), m_hasRoom(std::move(hasRoom))
    {
    }

    void Take(const TrafficEvent &event) override { m_log.Take(event); }
    bool HasRoom() const override { return m_log.HasRoom() && m_hasRoom(); }
    void UpdateLogCommands() override { m_log.UpdateLogCommands(); }
    void StopLog() override {}

  private:
    MdLogFile &m_log;
    std::function<bool()> m_hasRoom;
};
