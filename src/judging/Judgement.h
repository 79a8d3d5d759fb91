// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "CaptureReader.h"

#include <QByteArray>
#include <QString>

#include <vector>

/// A receive sequence of the project, and what a capture had of it. Texts are 8-bit texts.
struct JudgedSequence {
    QByteArray name;
    QByteArray bytes;
    bool watched = false; ///< active, and not empty: only then it can fire
    QByteArray answerName;
    QByteArray answer; ///< bytes that would be sent each time; empty for none
    qint64 fired = 0;
    qint64 nearMisses = 0;

    bool NeverFired() const { return watched && fired == 0; }
};

/// Somewhere in the bytes of one packet.
struct JudgedSpot {
    qint64 packet = 0; ///< its number, from 1, as other programs count
    qint64 time = 0;   ///< of the packet, in nanoseconds since 1970
    qint64 place = 0;  ///< of the packet in the file
    qsizetype byte = 0;
};

/// Where a sequence fired, or nearly did.
struct JudgedPlace {
    enum class Kind {
        Fired,
        OneByte, ///< all bytes came but one, which was another
        Begun,   ///< its beginning came, three quarters of it or more
        Cut      ///< all bytes came, but others that fired among them had emptied the memory
    };

    Kind kind = Kind::Fired;
    int sequence = 0; ///< index in Judgement::sequences
    int channel = 0;
    JudgedSpot first; ///< its first byte
    JudgedSpot last;  ///< the last byte that belongs to it
    QByteArray found; ///< of near misses: the bytes that came, as many as the sequence has

    /// A packet some way ahead, from which on a reader finds the place.
    CaptureReader::Mark ahead;
    qint64 aheadPacket = 0; ///< number of that packet

    /// A sequence fires with its last byte; what nearly came is looked for at its first one.
    const JudgedSpot &Spot() const { return kind == Kind::Fired ? last : first; }
};

/// What came of judging a capture.
struct Judgement {
    std::vector<JudgedSequence> sequences; ///< in the order of the project
    std::vector<JudgedPlace> places;       ///< in the order of the capture
    /// Of each sequence so many places where it fired are kept at most, and so many near misses;
    /// all are counted.
    qint64 mostPlaces = 0;

    qint64 packets = 0;
    qint64 receivedBytes = 0;
    qint64 begin = 0; ///< time of the first packet, in nanoseconds since 1970
    qint64 end = 0;   ///< and of the last one
    qint64 answers = 0;
    qint64 answerBytes = 0;
    QStringList ports;    ///< names, by channel; empty where the capture tells none
    QString damage;       ///< where the capture is damaged, and how; empty if it is whole
    bool complete = true; ///< false if judging was cancelled
};
