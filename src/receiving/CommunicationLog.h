// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "TrafficEvent.h"

/// What communication tells the log. Take is called on whatever thread things happen; the rest
/// belongs to the window's thread.
class CommunicationLog : public TrafficConsumer
{
  public:
    /// Whether there is room for more; as long as there is none, the lines are not read. May be
    /// asked on any thread.
    virtual bool HasRoom() const = 0;

    /// The ports have been opened, or could not be.
    virtual void UpdateLogCommands() = 0;
    /// The ports have been closed, or could not be.
    virtual void StopLog() = 0;
};
