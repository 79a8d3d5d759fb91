// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Representation.h"
#include "SequencePlace.h"

#include <QByteArray>

#include <vector>

/// Where the items of a sequence stand on rows of a fixed-pitch font. Digit items are as many a row
/// as fit, four or more of them a multiple of four, so that they can be counted. In ASCII a byte is
/// a column wide, a control character as many as its name has letters.
///
/// There is always room for the caret behind the last item, maybe on a row of its own.
class SequenceLayout final
{
  public:
    SequenceLayout() : SequenceLayout(Representation::Ascii, 1, {}) {}
    SequenceLayout(Representation form, int columns, const QByteArray &bytes);

    Representation Form() const { return m_form; }
    qsizetype RowCount() const { return qsizetype(m_starts.size()); }
    qsizetype RowOf(qsizetype byte) const;
    qsizetype RowStart(qsizetype row) const { return m_starts[size_t(row)]; }
    /// The next row's start.
    qsizetype RowEnd(qsizetype row) const;

    /// Columns of a byte's item without, and with, the blank behind it.
    int WidthOf(qsizetype byte) const;
    int PitchOf(qsizetype byte) const;
    int ColumnOf(SequencePlace place) const;
    /// Behind the last item of a row.
    int RowEndColumn(qsizetype row) const;

    /// The place that is nearest to a column of a row; behind its items it is the row's end.
    SequencePlace PlaceAt(qsizetype row, double column) const;
    /// The byte whose item, or the blank behind it, is under a column; behind the items the last of
    /// the row, or the sequence's end if the row is empty.
    qsizetype ByteUnder(qsizetype row, double column) const;
    /// The border between two items that is nearest to a column.
    qsizetype BorderAt(qsizetype row, double column) const;

  private:
    void LayOutAscii(int columns);

    Representation m_form;
    QByteArray m_bytes;
    std::vector<qsizetype> m_starts{0};
};
