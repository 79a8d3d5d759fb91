// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "TrafficEvent.h"

#include <chrono>
#include <memory>

/// Where a capture goes, in whole packets. Called on the thread of a CaptureThread, which may be
/// kept waiting. What a failed call was given counts as lost.
class CaptureSink
{
  public:
    virtual ~CaptureSink() = default;

    /// What a capture begins with, if what follows is to be read; see CaptureEncoder::Head.
    virtual Result BeginSection(QByteArrayView head) = 0;
    /// A capture may end, or begin with the head once more, between two calls.
    virtual Result Write(QByteArrayView packets) = 0;
    /// Nothing follows.
    virtual void Finish() = 0;
};

/// Makes a capture of what happens, and hands it to a sink on a thread of its own: whoever tells of
/// events never waits for a disk. What the sink does not take in time, or at all, is counted, and
/// an event that says so precedes what it takes next. May be used from any thread.
class CaptureThread final : public TrafficConsumer
{
  public:
    /// So many bytes may wait for the sink.
    static constexpr qsizetype MostBytes = 32 * 1024 * 1024;
    /// The end of the program waits no longer for a sink.
    static constexpr std::chrono::seconds MostTimeToEnd{5};

    /// The program is what makes the capture, such as "Serimonde 1.0".
    CaptureThread(std::unique_ptr<CaptureSink> sink, const QString &program);
    /// Waits until the sink has finished, MostTimeToEnd at most, and then leaves it to the thread.
    ~CaptureThread() override;
    Q_DISABLE_COPY_MOVE(CaptureThread)

    /// Nothing of a replay is taken.
    void Begin(const TrafficSession &session) override;
    void Take(const TrafficEvent &event) override;
    void End() override;

    /// Takes nothing more; the thread hands on what waits, and finishes.
    void Close();

    /// Waits until the sink has all that has been taken, and has finished if that was asked for.
    /// False if it takes longer.
    bool WaitUntilWritten(std::chrono::milliseconds most);

  private:
    struct State;

    std::shared_ptr<State> m_state; ///< shared with the thread, which may outlive this object
};
