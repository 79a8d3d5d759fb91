// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QAccessibleTableInterface>
#include <QAccessibleWidget>
#include <QHash>

#include <utility>

class DrawnTable;

/// What a screen reader learns of a DrawnTable: a table whose rows are all counted, but whose
/// children are the headings and the rows that are seen alone, for there may be millions of others.
/// A cell is a place, not a telegram: it tells what stands there now.
class DrawnTableAccessible final : public QAccessibleWidget, public QAccessibleTableInterface
{
  public:
    /// Factory for QAccessible::installFactory.
    static QAccessibleInterface *Create(const QString &className, QObject *object);

    /// Tells that another row is in hand.
    static void TellCurrent(DrawnTable &table);

    DrawnTableAccessible(QWidget &widget, DrawnTable &table);
    ~DrawnTableAccessible() override;

    DrawnTable &Table() const { return m_table; }
    /// Number of a cell among the children; -1 if it is none at present.
    int NumberOf(qint64 row, int column) const;

    void *interface_cast(QAccessible::InterfaceType type) override;
    int childCount() const override;
    QAccessibleInterface *child(int index) const override;
    QAccessibleInterface *childAt(int x, int y) const override;
    QAccessibleInterface *focusChild() const override;
    int indexOfChild(const QAccessibleInterface *child) const override;

    QAccessibleInterface *caption() const override { return nullptr; }
    QAccessibleInterface *summary() const override { return nullptr; }
    QAccessibleInterface *cellAt(int row, int column) const override;
    int rowCount() const override;
    int columnCount() const override;
    QString rowDescription(int) const override { return {}; }
    QString columnDescription(int column) const override;

    int selectedCellCount() const override;
    QList<QAccessibleInterface *> selectedCells() const override;
    int selectedColumnCount() const override { return 0; }
    QList<int> selectedColumns() const override { return {}; }
    int selectedRowCount() const override;
    /// Of those that are seen.
    QList<int> selectedRows() const override;
    bool isColumnSelected(int) const override { return false; }
    bool isRowSelected(int row) const override;
    bool selectColumn(int) override { return false; }
    bool unselectColumn(int) override { return false; }
    bool selectRow(int row) override;
    bool unselectRow(int) override { return false; }
    void modelChange(QAccessibleTableModelChangeEvent *) override {}

  private:
    QAccessibleInterface *Cell(qint64 row, int column) const;

    DrawnTable &m_table;
    /// Those that were asked for and not deleted yet, by row and column.
    mutable QHash<std::pair<qint64, int>, QAccessible::Id> m_cells;
};
