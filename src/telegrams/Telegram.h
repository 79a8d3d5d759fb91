// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "TrafficEvent.h"

#include <QByteArray>
#include <QFlags>
#include <QList>
#include <QString>

/// Bytes of one direction that belong together, or something else that happened: a row of what is
/// shown of a capture. It holds all of what there is to say.
struct Telegram {
    enum Mark : quint32 {
        None = 0,
        Gap = 1,             ///< silence ended the row before, which is of the same direction
        Damaged = 2,         ///< a byte came damaged
        Break = 4,           ///< the line was held at break
        Overrun = 8,         ///< the system lost bytes
        Lost = 16,           ///< bytes came that are not in the capture
        OrderUncertain = 32, ///< something on the other line may have come before it, or after
        Continued = 64,      ///< it goes on where the row before has MostBytes
        LinesChanged = 128,  ///< of the modem
        Unreadable = 256,    ///< what stood here in the capture is damaged or gone
        ChecksumRight = 512, ///< by TelegramRule::checksum
        ChecksumWrong = 1024,
    };
    Q_DECLARE_FLAGS(Marks, Mark)

    /// In one row.
    static constexpr qsizetype MostBytes = 65536;

    /// One read or write in it.
    struct Read {
        qint64 time = 0;     ///< as Telegram::time
        qsizetype place = 0; ///< of its first byte in the telegram
    };

    qint64 number = 0; ///< from 1, among all of the source; stays while older ones go
    /// Received and Sent have bytes; all others are rows of their own without.
    TrafficEvent::Kind kind = TrafficEvent::Kind::Received;
    int channel = 0;   ///< 0 or 1, of the line
    int direction = 0; ///< StyleIndex
    QString port;      ///< name of the line, a stranger's; empty if the capture has none
    qint64 time = 0;   ///< of its first read, ns by a clock that is never set: for differences
    qint64 wall = 0;   ///< the same in ns since 1970, as it is shown
    qint64 end = 0;    ///< of its last read, as time

    QByteArray bytes; ///< at most MostBytes; longer ones go on in the next row
    QList<Read> reads;

    QList<QByteArray> names; ///< of the sequence sent, or of those that its last byte completed
    bool answer = false;     ///< Sent: by itself, not by hand; names are those of what it answers
    /// From the end of the row right before it, of the other direction, to its first read, in ns;
    /// negative if there is none, and for what was sent by hand.
    qint64 response = -1;

    QString checksum; ///< "CRC right", "CRC wrong: 0B C4 expected"; empty without a rule
    QString remark;   ///< what events say of themselves: counts, causes, lines. From strangers
    Marks marks;

    bool HasBytes() const
    {
        return kind == TrafficEvent::Kind::Received || kind == TrafficEvent::Kind::Sent;
    }
};
Q_DECLARE_OPERATORS_FOR_FLAGS(Telegram::Marks)
