// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Telegram.h"
#include "TelegramColumns.h"

#include <QStringList>

#include <functional>
#include <optional>

/// What the difference of a row counts from.
enum class TelegramBase { RowBefore, SameDirection, MarkedRow };

/// The texts of telegrams as they stand in the list, in its details, and in what assistive programs
/// read.
namespace TelegramCells
{

/// Local time in microseconds, with the date if it is wanted.
QString TimeText(qint64 wall, bool withDate);
/// Nanoseconds as milliseconds with three digits behind the point.
QString MillisecondsText(qint64 nanoseconds);
/// A time between two moments in a unit that suits it.
QString SpanText(qint64 nanoseconds);
/// An arrow and the port.
QString PortText(const Telegram &telegram);
/// What happened, of a row without bytes; empty for others.
QString EventText(const Telegram &telegram);
/// Marks in words, and what else was remarked of its bytes.
QString MarksText(const Telegram &telegram, bool withGap);

} // namespace TelegramCells
