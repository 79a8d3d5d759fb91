// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "TableAccessible.h"

class DrawnTable;

/// What a screen reader learns of a DrawnTable: a table whose rows are all counted, but whose
/// children are the headings and the rows that are seen alone, for there may be millions of others.
class DrawnTableAccessible final : public TableAccessible
{
  public:
    /// Factory for QAccessible::installFactory.
    static QAccessibleInterface *Create(const QString &className, QObject *object);

    /// Tells that another row is in hand.
    static void TellCurrent(DrawnTable &table);

    explicit DrawnTableAccessible(DrawnTable &table);

    DrawnTable &Table() const { return m_table; }

    qint64 Rows() const override;
    int NumberOf(qint64 row, int column) const override;
    int childCount() const override;
    QAccessibleInterface *child(int index) const override;
    QAccessibleInterface *childAt(int x, int y) const override;
    QAccessibleInterface *focusChild() const override;

    int columnCount() const override;
    QString columnDescription(int column) const override;

    int selectedRowCount() const override;
    /// Of those that are seen.
    QList<int> selectedRows() const override;
    bool isRowSelected(int row) const override;
    bool selectRow(int row) override;

  private:
    QAccessibleInterface *MakeCell(qint64 row, int column) const override;

    DrawnTable &m_table;
};
