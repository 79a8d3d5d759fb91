// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "SequenceListRow.h"

#include <QAbstractTableModel>
#include <QFont>
#include <QHash>

/// What a click in the first column of a sequence list acts on.
enum class SequenceMark { SendButton, ActiveBox };

/// The rows of a sequence list and the empty row behind the last of them. Nothing is written
/// through it by the view.
class SequenceListModel final : public QAbstractTableModel
{
    Q_OBJECT

  public:
    enum Column { MarkColumn, NameColumn, SequenceColumn, AnswerColumn };

    explicit SequenceListModel(SequenceMark mark, QObject *parent = nullptr);

    /// Rows without the empty one.
    int Count() const { return int(m_rows.size()); }
    /// The empty row if the index is not that of another one.
    const SequenceListRow &RowAt(int index) const;

    /// Replaces all rows; the view keeps its place as far as there are rows.
    void SetRows(const QList<SequenceListRow> &rows);
    void AddRow(const SequenceListRow &row);
    /// These two do nothing for an index outside the rows.
    void ModifyRow(int index, const SequenceListRow &row);
    void DeleteRow(int index);

    /// Send list: which rows are sent again and again, with how often that is; all others are not.
    void SetRepeating(const QHash<int, QString> &rows);
    bool Repeats(int row) const { return m_repeating.contains(row); }

    SequenceMark Mark() const { return m_mark; }
    void SetSequenceFont(const QFont &font);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

  private:
    bool Holds(int index) const { return index >= 0 && index < Count(); }
    bool IsInvitation(const QModelIndex &index) const;
    QString CellText(int row, int column) const;
    QString SpokenText(int row, int column) const;
    QString ToolTipText(int row, int column) const;

    SequenceMark m_mark;
    QList<SequenceListRow> m_rows;
    SequenceListRow m_emptyRow;
    QHash<int, QString> m_repeating; ///< how often, by row
    QFont m_sequenceFont;
};
