// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

struct SequenceListRow;

/// The tool tip of a row in a sequence list: the whole of what its cells may cut short.
namespace SequenceToolTip
{

/// A longer sequence is cut and ends with an ellipsis.
constexpr qsizetype MaxSequenceLength = 4096;
/// Characters in one line.
constexpr qsizetype LineLength = 96;

/// Breaks the text into lines, behind blanks where there are any.
QString Wrapped(const QString &text);

/// Rich text, the sequence in lines of the family given.
QString Text(const SequenceListRow &row, const QString &sequenceFamily);

} // namespace SequenceToolTip
