// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "TrafficEvent.h"

/// What communication runs on: the ports, or what stands in for them. Its thread is its own, all
/// calls but Resume come on the window's.
class TrafficSource
{
  public:
    virtual ~TrafficSource() = default;

    /// False if it cannot be had; the user has been told why. From here on the mode in force is
    /// its mode.
    virtual bool Open() = 0;
    /// What it consists of while it is open.
    virtual TrafficSession Session() const = 0;
    /// From here on what happens goes into the stream.
    virtual void Begin() = 0;
    /// What has happened by now is in the stream, and nothing follows.
    virtual void End() = 0;
    /// False if it cannot be closed and has gone on.
    virtual bool Close() = 0;

    /// The consumers have room again. May be called from any thread.
    virtual void Resume() = 0;
    /// Shows and sends, on channel 1; or tells the user that this cannot be, and shows nothing.
    /// Fails if it is not sent.
    virtual Result Send(const QByteArray &bytes, const QByteArray &name) = 0;

    /// How it stands while it is open, for the first status panel.
    virtual QString Status() const = 0;
};
