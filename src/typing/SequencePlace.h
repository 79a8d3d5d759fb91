// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

/// A place for the caret: before a digit of a byte's item. The place behind an item's last digit is
/// the one before the next item; only an unfinished item has a place behind its digits.
struct SequencePlace {
    qsizetype byte = 0;
    int digit = 0;

    bool operator==(const SequencePlace &) const = default;
};
