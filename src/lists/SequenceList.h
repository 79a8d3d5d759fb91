// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "FreeColumn.h"
#include "MouseHold.h"
#include "SequenceListModel.h"

#include <QTreeView>

class QMenu;
class SequenceListDelegate;

/// What both sequence lists have in common: rows for the records, one empty row behind them,
/// columns that the user can resize, and what mouse and keys ask for. Indexes count from 0. The
/// list never writes a record, it only says what is asked for.
class SequenceList : public QTreeView
{
    Q_OBJECT

  public:
    void Clear() { SetRows({}); }
    /// All rows at once. The row in hand and the scroll position stay as far as there are rows.
    void SetRows(const QList<SequenceListRow> &rows) { m_model->SetRows(rows); }
    /// Adds a row in front of the empty one.
    void AddRow(const SequenceListRow &row) { m_model->AddRow(row); }
    void ModifyRow(int index, const SequenceListRow &row) { m_model->ModifyRow(index, row); }
    void DeleteRow(int index) { m_model->DeleteRow(index); }

    /// Rows without the empty one, and what they hold.
    int Count() const { return m_model->Count(); }
    const SequenceListRow &RowAt(int index) const { return m_model->RowAt(index); }

    /// For assistive programs: a mark is used, any other cell's row edited, as a click and Enter
    /// do.
    void Press(int row, int column);
    /// The key that does the same for the row in hand.
    QKeySequence KeyOf(int row, int column) const;

    /// In logical pixels, an array with a place for each column. What no window could have is
    /// bounded. While the width of the sequences is the preset one, they take the free width; and
    /// while that of the first column is, it is wide enough for its heading.
    template <typename Widths> void SetColumnWidths(const Widths &widths, const Widths &presets)
    {
        constexpr auto Sequence = size_t(SequenceListModel::SequenceColumn);
        for (int column = 0; column < int(widths.size()); ++column)
            SetWidth(column, widths[size_t(column)]);
        if (widths[0] == presets[0])
            FitFirstHeading();
        m_sequences->SetPreset(presets[Sequence]);
        m_sequences->SetFree(widths[Sequence] == presets[Sequence]);
    }
    /// Sequences that take the free width are stored with the preset one.
    template <typename Widths> void StoreColumnWidths(Widths &widths) const
    {
        for (int column = 0; column < int(widths.size()); ++column)
            widths[size_t(column)] = columnWidth(column);
        widths[size_t(SequenceListModel::SequenceColumn)] = m_sequences->StoredWidth();
    }

  Q_SIGNALS:
    void EditRequested(int index);
    /// Something new is to be defined in the empty row.
    void EmptyRowRequested(int index);

  protected:
    SequenceList(SequenceMark mark, QWidget *parent);

    /// The mark of the row was clicked, or its key or menu entry used; never the empty row's.
    virtual void UseMark(int index) = 0;
    /// The key that does the same.
    virtual QKeySequence MarkKey() const = 0;
    /// The caption of its menu entry.
    virtual QString MarkCaption(int index) const = 0;
    /// Further entries of a row's menu, behind that one.
    virtual void AddOwnEntries(QMenu &, int /*index*/) {}

    SequenceListModel &Model() { return *m_model; }
    const SequenceListModel &Model() const { return *m_model; }

    void changeEvent(QEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

  private:
    void SetWidth(int column, int width);
    void FitFirstHeading();
    bool IsMark(int row, int column) const
    {
        return IsRow(row) && column == SequenceListModel::MarkColumn;
    }
    bool IsRow(int index) const { return index >= 0 && index < Count(); }
    /// The row on which a click acts at this place of the viewport, -1 for none: that of a mark,
    /// and the empty row all over.
    int TargetAt(const QPoint &place) const;
    void Hold(int row);
    void EditRow(int index);
    void CopySequence(int index) const;
    void FillMenu(QMenu &menu, int index);

    SequenceListModel *m_model;
    SequenceListDelegate *m_delegate;
    MouseHold m_hold;
    FreeColumn *m_sequences;
    int m_heldRow = -1; ///< a target that was pressed and not yet let go
};
