// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Result.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <functional>
#include <optional>

/// When something happened on a line, in nanoseconds: the moment at which a read returned or a
/// write was handed to the system.
struct LineTime {
    qint64 monotonic = 0; ///< since the machine started, its sleep included: order and differences
    qint64 wall = 0;      ///< since 1970 in UTC: what is shown
};

/// What one read brought.
struct LineRead {
    QByteArrayView bytes; ///< not empty; valid during the call
    LineTime time;
    /// Whether something on another line may have come before, or after, in truth.
    bool orderUncertain = false;
};

/// What happened to the bytes of a line, or beside them.
enum class LineCondition { DamagedByte, Break, Overrun };
constexpr size_t LineConditionCount = 3;

/// The lines by which the device tells of itself.
struct ModemLines {
    bool CTS = false;
    bool DSR = false;
    bool DCD = false;
    bool RI = false;

    bool operator==(const ModemLines &) const = default;
};

/// What has passed over a line since it was opened. What a driver does not tell is empty.
struct LineCounts {
    qint64 receivedBytes = 0;
    qint64 receivedChunks = 0; ///< reads
    qint64 sentBytes = 0;      ///< handed to the line, whether they have left or not
    qint64 sentChunks = 0;
    qint64 waiting = 0; ///< bytes that have not left yet, as far as the system knows
    std::optional<qint64> damaged;
    std::optional<qint64> breaks;
    std::optional<qint64> overruns;
    std::optional<ModemLines> modem;
    bool RTS = false; ///< as set from here
    bool DTR = false;
    bool away = false; ///< the device has gone and is waited for
};

/// Failure number of a write: the line only listens, whatever it is given.
constexpr int LineOnlyListens = 8021;

/// Hears what happens on a line. All calls come on the lines' thread, which must not be kept
/// waiting: a line that is not read loses bytes.
class LineListener
{
  public:
    virtual ~LineListener() = default;

    virtual void OnRead(const LineRead &read) = 0;
    /// So many at once; right behind the byte if it is one that came damaged and the place is
    /// known.
    virtual void OnCondition(LineCondition, qint64 /*count*/, const LineTime &) {}
    virtual void OnModemLines(const ModemLines &, const LineTime &) {}
    /// The device has gone away. The line stays to be closed by its user; it takes what is written
    /// in silence until then.
    virtual void OnGone(const QString &cause, const LineTime &time) = 0;
    /// The same where the line waits for its device: OnBack follows, or the line is closed. Bytes
    /// that were still to be sent are lost.
    virtual void OnAway(const QString &, qint64 /*unsent*/, const LineTime &) {}
    /// The device is back and open; what it says follows.
    virtual void OnBack(const LineTime &) {}
    /// It is back, but for some time now it could not be opened, for that cause. The line waits on.
    virtual void OnRefused(const QString &) {}

    /// The other side has changed the settings of its own; in words.
    virtual void OnOtherSettings(const QString &) {}

    /// Asked before each read. After a no the line is not read until Resume is called.
    virtual bool HasRoom() const { return true; }
};

/// Work of the lines' thread that is due at times of its own. All calls come on that thread.
class TimedWork
{
  public:
    virtual ~TimedWork() = default;

    /// When it is due next, as LineTime::monotonic; empty for never. Asked in each pass.
    virtual std::optional<qint64> Due() const = 0;
    /// That time has come, or passed.
    virtual void OnDue(qint64 now) = 0;
};

/// The thread that serves all lines.
class LineThread
{
  public:
    virtual ~LineThread() = default;

    /// Does the work on the lines' thread, between two passes, and returns when it is done.
    virtual void Do(const std::function<void()> &work) = 0;
    /// The same without waiting.
    virtual void Post(std::function<void()> work) = 0;
    /// What the thread does when it is due; null for nothing. It must not be due any more in the
    /// end, or be taken away.
    virtual void Schedule(TimedWork *work) = 0;

    /// How much before other threads the system serves it, in words: "real time", "nice -10" or
    /// another number of that kind, or "normal". May be called from any thread.
    virtual QString Priority() const = 0;
};

/// One line as the lines' thread knows it; all calls but Counts belong to that thread.
class Line
{
  public:
    virtual ~Line() = default;

    /// Who hears of the line; null for its owner alone. While the line is closed.
    virtual void Listen(LineListener *listener) = 0;

    /// From here on what arrives is read. A line that is not open stays as it is.
    virtual void BeginReading() = 0;
    /// Takes what the system has received so far; nothing is read after it.
    virtual void EndReading() = 0;
    /// Goes on after a no of HasRoom.
    virtual void Resume() = 0;

    /// Hands bytes to the line, which sends them behind all that waits. Fails, and takes none of
    /// them, if the line is closed, waits for its device, or too much is waiting.
    virtual Result Write(const QByteArray &bytes) = 0;

    /// The time on the clocks of the line.
    virtual LineTime Now() const = 0;

    /// Bytes that have not left yet, counted now, as far as the system knows.
    virtual qint64 Waiting() { return Counts().waiting; }

    /// Switches the lines by which the program tells of itself. Fails where there are none.
    virtual Result SetRTS(bool on) = 0;
    virtual Result SetDTR(bool on) = 0;
    /// Begins or ends a break at once, whatever still waits to be sent. Fails where there is none.
    virtual Result SetBreak(bool on) = 0;

    /// May be called from any thread.
    virtual LineCounts Counts() const = 0;
};
