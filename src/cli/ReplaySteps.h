// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "CaptureTraffic.h"
#include "ReplayPace.h"
#include "Step.h"

#include <memory>
#include <optional>

/// Makes steps of a capture, one after the other, with which its device is played: what was
/// received from it is sent; in step with the other side, what that one said is expected first. Of
/// the capture a packet is in memory.
class ReplaySteps final
{
  public:
    struct Options {
        int speed = 1; ///< 1, 10, or 0 for as fast as it goes
        bool inStep = false;
        qint64 within = 1'000'000'000; ///< nanoseconds more than there, that an expectation waits
        std::optional<int> channel;    ///< the line that is played; needed if there are two
    };
    /// What was said is expected in pieces of so many bytes at most.
    static constexpr qsizetype MostBytesOfAStep = 4096;

    ReplaySteps(std::unique_ptr<InputDevice> file, const Options &options);

    /// Fails if the file is no capture of serial lines, or has not the line that is to be played.
    Result Open();

    struct Next {
        std::optional<Step> step{}; ///< it is its turn
        qint64 wait = 0;            ///< else so many nanoseconds are left
        bool over = false;          ///< nothing follows
    };
    /// Asked again when the step before has passed, or the time has; now is on a clock that nobody
    /// sets.
    Next Take(qint64 now);

    /// Where the capture is damaged, and how, once all is over; empty if it is whole.
    const QString &Damage() const { return m_damage; }

  private:
    /// Bytes of one of the sides.
    struct Said {
        bool byDevice = false;
        QByteArray bytes;
        qint64 time = 0; ///< nanoseconds of the capture, of its last byte
    };

    bool Read();
    bool ReadSaid();
    Step StepOf(const Said &said);

    std::unique_ptr<InputDevice> m_file;
    const Options m_options;
    CaptureReader m_reader;
    CaptureTraffic m_traffic;
    QString m_damage;

    TrafficEvent m_event; ///< read, but not yet part of what is said, if m_isRead
    bool m_isRead = false;
    std::optional<Said> m_said; ///< what comes next
    std::optional<ReplayPace> m_pace;
    qint64 m_before = 0; ///< time of the capture of what came last
    int m_count = 0;     ///< of steps
};
