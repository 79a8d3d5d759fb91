// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>

#include <array>

/// The columns of the list of telegrams, in their order.
enum class TelegramColumn {
    Number,
    Time,
    Difference,
    Port,
    Length,
    Hex,
    Text,
    Name,
    Response,
    Marks
};

constexpr int TelegramColumnCount = int(TelegramColumn::Marks) + 1;

/// What a column is.
struct TelegramColumnRow {
    const char *heading;
    const char *toolTip;
    const char *least; ///< a text that the column always has room for
    const char *most;  ///< and what it grows to by itself with the texts that are seen
    bool right;        ///< aligned to the right
};

namespace TelegramColumns
{

const TelegramColumnRow &RowOf(TelegramColumn column);
inline const TelegramColumnRow &RowOf(int column)
{
    return RowOf(TelegramColumn(column));
}

QStringList Headings();

/// Stands for the width that suits the column; HEX and Text share what the others leave.
constexpr int FreeWidth = -1;

/// By TelegramColumn, in logical pixels: FreeWidth, or 0 for a column that is not shown.
using Widths = std::array<qint32, TelegramColumnCount>;

} // namespace TelegramColumns
