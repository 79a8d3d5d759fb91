// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Result.h"

#include <QByteArray>
#include <QString>
#include <QStringView>

#include <vector>

/// What a line of steps is made of.
namespace StepWords
{

struct Word {
    QString text;        ///< without quotes; what a backslash leads in is as it was written
    bool quoted = false; ///< at least a part of it

    /// As a name: in quotes, \" and \\ stand for the second of them.
    QString Name() const;
};

struct Words {
    std::vector<Word> words;
    Result result{};
};

/// Cuts a line at blanks outside of quotes. A # at the beginning of a word begins a comment.
Words Split(QStringView line);

struct Bytes {
    QByteArray bytes;
    Result result{};
};

/// Pairs of hexadecimal digits; blanks may stand between them.
Bytes FromHex(QStringView text);

/// Characters of the code page; \r \n \t \0 \\ \" and \xHH stand for one byte each.
Bytes FromText(QStringView text);

struct Time {
    qint64 nanoseconds = 0;
    Result result{};
};

/// A number with a unit: 200ms, 1.5s, 2min; a year at most.
Time FromTime(QStringView text);

} // namespace StepWords
