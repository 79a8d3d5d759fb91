// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Line.h"

#include <QByteArray>
#include <QList>
#include <QString>

/// Something that happened on the lines, with its time. It holds all of what there is to say about
/// it, so it outlives the project and the settings of its time.
struct TrafficEvent {
    enum class Kind {
        Received,
        Sent,    ///< handed to a line
        NotSent, ///< a line refused what the event before tells, or threw bytes away
        Damaged, ///< a byte came damaged: the last one received, if the system marks them
        Break,
        Overrun, ///< the system lost bytes
        ModemLines,
        Opened,
        Closed,
        Gone,     ///< the device went away; it is waited for, unless communication ends
        Back,     ///< and came back
        Lost,     ///< bytes came that could not be kept
        ClockSet, ///< the clock on the wall was set, forward or back
    };

    Kind kind = Kind::Received;
    int channel = 0;   ///< 0 or 1, of the line
    int direction = 0; ///< StyleIndex of the bytes
    LineTime time;
    bool orderUncertain = false; ///< see LineRead

    QByteArray bytes; ///< Received: at most MostBytesOfAChunk; Sent
    /// Text in front of the bytes, in the style of comments; empty if none is due.
    QByteArray stamp;
    /// Text behind the bytes, in the style of comments, blanks around it; empty for none.
    QByteArray comment;

    /// Received: the sequences that its last byte completed. Sent, and NotSent where a line refused
    /// it: the one that was sent, or the answered ones if answer is set. 8-bit texts.
    QList<QByteArray> names;
    bool answer = false; ///< Sent, NotSent: by itself, not by hand
    QString cause;       ///< NotSent and Gone: why
    bool ends = false;   ///< Gone: for good, communication ends
    /// NotSent and Lost: bytes; Damaged, Break, Overrun: how many at once; ClockSet: nanoseconds.
    qint64 count = 0;
    ModemLines modem; ///< ModemLines

    /// The views' trimming depends on it.
    static constexpr qsizetype MostBytesOfAChunk = 511;
};

/// A line as a capture names it. Texts of a file come from strangers: see PlainText.
struct TrafficPort {
    QString name;        ///< such as COM1
    QString description; ///< the device, and what it says of itself
    quint64 speed = 0;   ///< in bits a second; 0 if it is not known

    bool operator==(const TrafficPort &) const = default;
};

/// What events come from, from the opening of the ports until they are closed.
struct TrafficSession {
    QList<TrafficPort> ports; ///< by channel: one in mode 0, two in modes 1 and 2
    bool replay = false;      ///< none of it happens on a line now
};

/// Takes what happens, in the one order of it. Called on whatever thread it happens, one call at a
/// time; it must not take long.
class TrafficConsumer
{
  public:
    virtual ~TrafficConsumer() = default;

    /// What is taken from now on belongs to this session.
    virtual void Begin(const TrafficSession &) {}
    virtual void Take(const TrafficEvent &event) = 0;
    /// Nothing more of the session comes.
    virtual void End() {}
};
