// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <optional>

/// Reads numbers joined by "|", one byte each. Every item is read leniently: leading blanks are
/// skipped, the number (sign, point and exponent allowed) ends at the first character that is not
/// part of it, none is 0, halves are rounded to even. An empty text is one byte 0.
/// Empty result: a number is not in 0 to 255 after rounding.
std::optional<QByteArray> DecimalListToSeq(QByteArrayView text);
