// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <array>

/// In the order in which they are offered.
enum class ChecksumKind {
    Crc16Modbus,
    Crc16Xmodem,
    Crc16CcittFalse,
    Crc16Kermit,
    Crc8,
    Crc32,
    Xor,
    Sum,
    TwosComplement,
    ModbusAscii,
    Nmea,
};

/// What is covered by the checksum, and how it stands behind that.
enum class ChecksumFrame {
    Bytes,  ///< the bytes from a certain one on; the value's bytes
    Digits, ///< pairs of HEX digits behind ":"; two HEX digits
    Words,  ///< what stands between "$" (or "!") and "*"; two HEX digits
};

/// All that the program knows of one kind of checksum.
struct ChecksumRow {
    ChecksumKind kind;
    const char *caption;
    const char *name;   ///< in the settings store
    const char *word;   ///< what rows call it: "CRC", "Checksum"
    int width;          ///< bytes that its value has
    bool highByteFirst; ///< as it is usually sent
    ChecksumFrame frame;
    quint32 (*value)(QByteArrayView covered);
};

/// A checksum as a protocol uses it.
struct ChecksumRule {
    ChecksumKind kind = ChecksumKind::Crc16Modbus;
    /// The number of the first byte that is covered, from 1. Frames tell that themselves.
    qsizetype first = 1;
    bool highByteFirst = false; ///< of two bytes or more

    bool operator==(const ChecksumRule &) const = default;
};

/// What came of looking at the last bytes of a telegram.
struct ChecksumFinding {
    enum class Verdict {
        Right,
        Wrong,
        TooShort, ///< nothing stands in front of a checksum
        NoFrame,  ///< its kind of frame has another form
    };

    Verdict verdict = Verdict::TooShort;
    QByteArray expected; ///< right or wrong: the bytes that have to be there
};

namespace Checksum
{

constexpr int KindCount = int(ChecksumKind::Nmea) + 1;

const std::array<ChecksumRow, KindCount> &Rows();
const ChecksumRow &RowOf(ChecksumKind kind);

/// The rule as it is usually met: over all bytes, in the usual order.
ChecksumRule UsualRule(ChecksumKind kind);

/// What has to stand behind the bytes: one to four bytes, or two HEX digits; in front of these "*"
/// if a sentence still lacks it. Empty if there is nothing that it can be made of: WhyNone.
QByteArray Of(const ChecksumRule &rule, QByteArrayView bytes);
/// Why there is no checksum of the bytes, a whole sentence; empty if there is one.
QString WhyNone(const ChecksumRule &rule, QByteArrayView bytes);

/// Whether a telegram ends with the checksum of what stands before it. CR and LF behind a frame of
/// characters do not count, and its digits may be of either case.
ChecksumFinding Check(const ChecksumRule &rule, QByteArrayView telegram);
/// "CRC right", "CRC wrong: 0B C4 expected", "CRC: too short", "Checksum: no NMEA frame"
QString Text(const ChecksumRule &rule, const ChecksumFinding &finding);

/// The rule as it is stored: "crc16-modbus,3,low". What is no such text is no rule.
QString Stored(const ChecksumRule &rule);
bool Restore(const QString &stored, ChecksumRule &rule);

} // namespace Checksum
