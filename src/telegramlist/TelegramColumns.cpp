// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TelegramColumns.h"

namespace
{

constexpr const char *Long = "a sequence of a long name";

constexpr std::array<TelegramColumnRow, TelegramColumnCount> Rows = {{
    {"No.", "Number of the telegram; it keeps it while older ones go", "0000", "000000000000",
     true},
    {"Time", "When its first byte was read, local time in microseconds", "00:00:00.000000",
     "0000-00-00 00:00:00.000000", false},
    {"After ms", "Time after the row before, or what the View menu has it count from", "000.000",
     "000000000.000", true},
    {"Port", "The port, and whether the bytes went out of it or came in", "\u2190 COM1", Long,
     false},
    {"Bytes", "Length in bytes", "000", "000000", true},
    {"HEX", "Its bytes", "", "", false},
    {"Text", "The same bytes as ASCII", "", "", false},
    {"Sequence", "The sequence that was sent, or that its end was detected as", "", Long, false},
    {"Answer ms",
     "Time from the end of the telegram of the other direction right before it to its first byte",
     "", "000000000.000", true},
    {"Marks", "What was seen of gaps, damage, breaks and lost bytes, and your notes", "", Long,
     false},
}};

} // namespace

namespace TelegramColumns
{

const TelegramColumnRow &RowOf(TelegramColumn column)
{
    return Rows[size_t(column)];
}

QStringList Headings()
{
    QStringList headings;
    for (const TelegramColumnRow &row : Rows)
        headings += QString::fromUtf8(row.heading);
    return headings;
}

} // namespace TelegramColumns
