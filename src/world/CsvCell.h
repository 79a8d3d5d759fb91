// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QStringView>

/// Text of a stranger as a cell of comma-separated values, in UTF-8: plain text of one line, led by
/// an apostrophe where a spreadsheet would take it for a formula.
QByteArray CsvCell(QStringView text);
