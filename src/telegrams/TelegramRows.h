// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Telegram.h"

#include <QObject>

/// Telegrams as rows, for whoever shows them. Asked on the window's thread; never waits for a disk.
class TelegramRows : public QObject
{
    Q_OBJECT

  public:
    /// Rows that exist are First() <= row < End(). One keeps its number while older ones go; with a
    /// filter, those that it lets through are counted. Without, a row's number is that of its
    /// telegram less 1.
    virtual qint64 First() const = 0;
    virtual qint64 End() const = 0;
    /// How many there are without the filter.
    virtual qint64 CountOfAll() const = 0;

    /// The row if it is at hand; else null, and it is fetched. Valid until the next signal. The
    /// last row may grow.
    virtual const Telegram *Row(qint64 row) = 0;

  Q_SIGNALS:
    /// First, End or CountOfAll are others, or the last row has grown; some 30 times a second at
    /// most.
    void Changed();
    /// Rows that were asked for are there.
    void Fetched();
    /// All numbers of rows have another meaning: another source, rule or filter.
    void Reset();
};
