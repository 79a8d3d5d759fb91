// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

#include <deque>

class RichTextModel;

/// The rows of a rich-text model at a given number of columns of a fixed-pitch font. Text wraps
/// behind blanks, blanks hang over a row's end, a word longer than a row breaks at its end; CR LF,
/// CR and LF are one line break each, also when CR and LF come in two appends.
///
/// Row starts are positions of the model, so a cut of the front only drops rows, and a row that is
/// cut through keeps its end. There is always at least one row, and behind a line break stands a
/// row of its own, maybe empty. The layout is valid from an update to the model's next change;
/// the model must outlive it.
class RichTextLayout final
{
  public:
    static constexpr int TabWidth = 8;

    explicit RichTextLayout(const RichTextModel &model) : m_model(model) {}

    /// Takes over what the model changed since the last call: an append costs its own length, an
    /// edit or another number of columns lays out all.
    void Update(int columns);
    /// Lays out [from, to) alone, as for printing a selection.
    void LayOutPart(qint64 from, qint64 to, int columns);

    const RichTextModel &Model() const { return m_model; }
    int Columns() const { return m_columns; }
    qsizetype RowCount() const { return qsizetype(m_starts.size()); }

    qint64 RowStart(qsizetype row) const;
    /// Behind the row's last character, its line break included: the next row's start.
    qint64 RowEnd(qsizetype row) const;
    /// Behind the row's last character that is no line break.
    qint64 RowTextEnd(qsizetype row) const;

    /// The row that holds the position; where two rows meet, the later one.
    qsizetype RowOf(qint64 position) const;
    /// Column of a position in the row; the row's end counts as in the row.
    int ColumnOf(qsizetype row, qint64 position) const;
    /// The place between two characters of the row that is nearest to the column.
    qint64 PositionAt(qsizetype row, double column) const;

    /// The column behind a character that stands in the given one.
    static int ColumnBehind(uchar byte, int column)
    {
        return byte == '\t' ? (column / TabWidth + 1) * TabWidth : column + 1;
    }

  private:
    void Restart(qint64 at);
    void DropRows();
    void Scan(qint64 end);
    void Take(char byte);
    void StartRow(qint64 at);

    const RichTextModel &m_model;
    std::deque<qint64> m_starts{0};
    quint64 m_editRevision = 0;
    int m_columns = 0;

    // Where the scan stands; an append goes on from here.
    qint64 m_at = 0;
    qint64 m_wrapAt = 0; ///< behind the row's last blank; the row's start if it has none
    int m_column = 0;
    bool m_behindCr = false;
};
