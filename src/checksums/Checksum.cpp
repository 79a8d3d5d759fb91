// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "Checksum.h"

#include "Common_Function.h"

#include <QStringList>

#include <boost/crc.hpp>

#include <algorithm>
#include <numeric>
#include <optional>

namespace
{

using Verdict = ChecksumFinding::Verdict;

template <class Crc> quint32 CrcOf(QByteArrayView covered)
{
    Crc crc;
    crc.process_bytes(covered.data(), size_t(covered.size()));
    return quint32(crc.checksum());
}

quint32 XorOf(QByteArrayView covered)
{
    return std::accumulate(covered.begin(), covered.end(), quint32(0),
                           [](quint32 value, char byte) { return value ^ uchar(byte); });
}

quint32 SumOf(QByteArrayView covered)
{
    return std::accumulate(covered.begin(), covered.end(), quint32(0),
                           [](quint32 value, char byte) { return (value + uchar(byte)) & 0xFF; });
}

quint32 TwosComplementOf(QByteArrayView covered)
{
    return (0x100 - SumOf(covered)) & 0xFF;
}

// Width, polynomial, initial value, final XOR, bits of the input and of the value reversed.
using Modbus = boost::crc_optimal<16, 0x8005, 0xFFFF, 0, true, true>;
using Xmodem = boost::crc_optimal<16, 0x1021, 0, 0, false, false>;
using CcittFalse = boost::crc_optimal<16, 0x1021, 0xFFFF, 0, false, false>;
using Kermit = boost::crc_optimal<16, 0x1021, 0, 0, true, true>;
using Crc8 = boost::crc_optimal<8, 0x07, 0, 0, false, false>;
using Crc32 = boost::crc_optimal<32, 0x04C11DB7, 0xFFFFFFFF, 0xFFFFFFFF, true, true>;

constexpr auto Bytes = ChecksumFrame::Bytes;

constexpr std::array<ChecksumRow, Checksum::KindCount> Table = {{
    {ChecksumKind::Crc16Modbus, "CRC-16/Modbus", "crc16-modbus", "CRC", 2, false, Bytes,
     CrcOf<Modbus>},
    {ChecksumKind::Crc16Xmodem, "CRC-16/XMODEM", "crc16-xmodem", "CRC", 2, true, Bytes,
     CrcOf<Xmodem>},
    {ChecksumKind::Crc16CcittFalse, "CRC-16/CCITT-FALSE", "crc16-ccitt-false", "CRC", 2, true,
     Bytes, CrcOf<CcittFalse>},
    {ChecksumKind::Crc16Kermit, "CRC-16/KERMIT", "crc16-kermit", "CRC", 2, false, Bytes,
     CrcOf<Kermit>},
    {ChecksumKind::Crc8, "CRC-8", "crc8", "CRC", 1, true, Bytes, CrcOf<Crc8>},
    {ChecksumKind::Crc32, "CRC-32", "crc32", "CRC", 4, false, Bytes, CrcOf<Crc32>},
    {ChecksumKind::Xor, "XOR", "xor", "Checksum", 1, true, Bytes, XorOf},
    {ChecksumKind::Sum, "Sum", "sum", "Checksum", 1, true, Bytes, SumOf},
    {ChecksumKind::TwosComplement, "Two's complement (LRC)", "lrc", "Checksum", 1, true, Bytes,
     TwosComplementOf},
    {ChecksumKind::ModbusAscii, "Modbus ASCII", "modbus-ascii", "Checksum", 1, true,
     ChecksumFrame::Digits, TwosComplementOf},
    {ChecksumKind::Nmea, "NMEA", "nmea", "Checksum", 1, true, ChecksumFrame::Words, XorOf},
}};

constexpr bool TableIsInOrder()
{
    for (size_t i = 0; i < Table.size(); ++i) {
        if (Table[i].kind != ChecksumKind(i))
            return false;
    }
    return true;
}

static_assert(TableIsInOrder());

/// What a checksum is made of. Where nothing is covered the frame is none, or empty.
struct Covered {
    bool isFrame = false;
    QByteArray decoded{}; ///< holds the bytes if they do not stand in the telegram itself
    QByteArrayView bytes{};
    bool lacksEndMark = false;
};

bool IsHexDigit(char character)
{
    return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'F') ||
           (character >= 'a' && character <= 'f');
}

/// Behind the last mark, so that what came in front of a frame does no harm.
std::optional<QByteArrayView> BehindMark(QByteArrayView bytes, QByteArrayView marks)
{
    for (qsizetype i = bytes.size() - 1; i >= 0; --i) {
        if (marks.contains(bytes[i]))
            return bytes.sliced(i + 1);
    }
    return {};
}

Covered CoveredBytes(const ChecksumRule &rule, QByteArrayView bytes)
{
    const qsizetype skipped = std::clamp<qsizetype>(rule.first - 1, 0, bytes.size());
    return {.isFrame = true, .decoded = {}, .bytes = bytes.sliced(skipped)};
}

Covered CoveredDigits(QByteArrayView bytes)
{
    const auto digits = BehindMark(bytes, ":");
    if (!digits || digits->size() % 2 != 0 ||
        !std::all_of(digits->begin(), digits->end(), IsHexDigit))
        return {};
    Covered covered{.isFrame = true, .decoded = QByteArray::fromHex(digits->toByteArray())};
    covered.bytes = covered.decoded;
    return covered;
}

Covered CoveredWords(QByteArrayView bytes)
{
    const auto words = BehindMark(bytes, "$!");
    if (!words)
        return {};
    const qsizetype end = words->indexOf('*');
    if (end >= 0 && end != words->size() - 1)
        return {};
    return {.isFrame = true,
            .decoded = {},
            .bytes = end < 0 ? *words : words->chopped(1),
            .lacksEndMark = end < 0};
}

Covered CoveredOf(const ChecksumRule &rule, QByteArrayView bytes)
{
    switch (Checksum::RowOf(rule.kind).frame) {
    case ChecksumFrame::Digits:
        return CoveredDigits(bytes);
    case ChecksumFrame::Words:
        return CoveredWords(bytes);
    case ChecksumFrame::Bytes:
        break;
    }
    return CoveredBytes(rule, bytes);
}

QByteArray Spelled(const ChecksumRule &rule, quint32 value)
{
    const ChecksumRow &row = Checksum::RowOf(rule.kind);
    QByteArray bytes;
    for (int i = 0; i < row.width; ++i)
        bytes.prepend(char(value >> (8 * i)));
    if (row.frame != Bytes)
        return bytes.toHex().toUpper();
    if (!rule.highByteFirst)
        std::reverse(bytes.begin(), bytes.end());
    return bytes;
}

QByteArrayView WithoutLineEnd(QByteArrayView telegram)
{
    for (const char end : {'\n', '\r'}) {
        if (!telegram.isEmpty() && telegram.back() == end)
            telegram.chop(1);
    }
    return telegram;
}

} // namespace

const std::array<ChecksumRow, Checksum::KindCount> &Checksum::Rows()
{
    return Table;
}

const ChecksumRow &Checksum::RowOf(ChecksumKind kind)
{
    return Table[size_t(kind)];
}

ChecksumRule Checksum::UsualRule(ChecksumKind kind)
{
    return {.kind = kind, .first = 1, .highByteFirst = RowOf(kind).highByteFirst};
}

QByteArray Checksum::Of(const ChecksumRule &rule, QByteArrayView bytes)
{
    const Covered covered = CoveredOf(rule, bytes);
    if (covered.bytes.isEmpty())
        return {};
    const QByteArray check = Spelled(rule, RowOf(rule.kind).value(covered.bytes));
    return covered.lacksEndMark ? '*' + check : check;
}

QString Checksum::WhyNone(const ChecksumRule &rule, QByteArrayView bytes)
{
    if (!CoveredOf(rule, bytes).bytes.isEmpty())
        return {};
    switch (RowOf(rule.kind).frame) {
    case ChecksumFrame::Digits:
        return QStringLiteral("A Modbus ASCII frame is \":\" and pairs of HEX digits.");
    case ChecksumFrame::Words:
        return QStringLiteral(
            "An NMEA sentence is \"$\" and its words, and ends with \"*\" at most.");
    case ChecksumFrame::Bytes:
        break;
    }
    return QStringLiteral("There is no byte %1.").arg(rule.first);
}

ChecksumFinding Checksum::Check(const ChecksumRule &rule, QByteArrayView telegram)
{
    const ChecksumRow &row = RowOf(rule.kind);
    const bool ofCharacters = row.frame != Bytes;
    const QByteArrayView whole = ofCharacters ? WithoutLineEnd(telegram) : telegram;
    const qsizetype width = ofCharacters ? 2 * row.width : row.width;
    if (whole.size() <= width)
        return {Verdict::TooShort, {}};
    const Covered covered = CoveredOf(rule, whole.chopped(width));
    if (!covered.isFrame || covered.lacksEndMark)
        return {Verdict::NoFrame, {}};
    if (covered.bytes.isEmpty())
        return {Verdict::TooShort, {}};
    QByteArray expected = Spelled(rule, row.value(covered.bytes));
    const QByteArrayView found = whole.last(width);
    const bool right = ofCharacters ? found.compare(expected, Qt::CaseInsensitive) == 0
                                    : found == QByteArrayView(expected);
    return {right ? Verdict::Right : Verdict::Wrong, std::move(expected)};
}

QString Checksum::Text(const ChecksumRule &rule, const ChecksumFinding &finding)
{
    const ChecksumRow &row = RowOf(rule.kind);
    const QString word = QString::fromLatin1(row.word);
    switch (finding.verdict) {
    case Verdict::Right:
        return word + QStringLiteral(" right");
    case Verdict::TooShort:
        return word + QStringLiteral(": too short");
    case Verdict::NoFrame:
        return word + QStringLiteral(": no %1 frame").arg(QString::fromLatin1(row.caption));
    case Verdict::Wrong:
        break;
    }
    const QByteArray expected =
        row.frame == Bytes ? Common_Function::SeqToHexText(finding.expected) : finding.expected;
    return QStringLiteral("%1 wrong: %2 expected").arg(word, QString::fromLatin1(expected));
}

QString Checksum::Stored(const ChecksumRule &rule)
{
    return QStringLiteral("%1,%2,%3")
        .arg(QString::fromLatin1(RowOf(rule.kind).name), QString::number(rule.first),
             rule.highByteFirst ? QStringLiteral("high") : QStringLiteral("low"));
}

bool Checksum::Restore(const QString &stored, ChecksumRule &rule)
{
    const QStringList parts = stored.split(u',');
    const auto row = std::find_if(Table.begin(), Table.end(), [&](const ChecksumRow &candidate) {
        return parts[0] == QLatin1String(candidate.name);
    });
    bool isNumber = false;
    const qsizetype first = parts.value(1).toInt(&isNumber);
    const bool high = parts.value(2) == QStringLiteral("high");
    if (parts.size() != 3 || row == Table.end() || !isNumber || first < 1 ||
        (!high && parts[2] != QStringLiteral("low")))
        return false;
    rule = {.kind = row->kind, .first = first, .highByteFirst = high};
    return true;
}
