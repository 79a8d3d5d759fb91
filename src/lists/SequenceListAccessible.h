// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "TableAccessible.h"

class SequenceList;

/// What a screen reader learns of a sequence list: a table with a row of headings, whose other
/// cells can be pressed. Children are counted as the toolkit counts those of a tree: the headings,
/// then row by row.
class SequenceListAccessible final : public TableAccessible
{
  public:
    /// Factory for QAccessible::installFactory.
    static QAccessibleInterface *Create(const QString &className, QObject *object);

    /// Tells that the tick of a row has changed.
    static void TellTick(SequenceList &list, int row);

    explicit SequenceListAccessible(SequenceList &list);

    SequenceList &List() const { return m_list; }

    qint64 Rows() const override;
    int NumberOf(qint64 row, int column) const override;
    int childCount() const override;
    QAccessibleInterface *child(int index) const override;
    QAccessibleInterface *childAt(int x, int y) const override;
    QAccessibleInterface *focusChild() const override;

    int columnCount() const override;
    QString columnDescription(int column) const override;

    QList<int> selectedRows() const override;
    bool isRowSelected(int row) const override { return selectedRows().contains(row); }
    bool selectRow(int row) override;
    bool unselectRow(int row) override;
    /// Cells that are left have other contents, which they look up.
    void modelChange(QAccessibleTableModelChangeEvent *) override { DropCells(); }

  private:
    QAccessibleInterface *MakeCell(qint64 row, int column) const override;

    SequenceList &m_list;
};
