// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QAccessibleTableInterface>
#include <QAccessibleWidget>
#include <QHash>

#include <utility>

/// What a screen reader learns of a table whose rows can be chosen: headings, and cells that are
/// made when they are asked for. A cell is a place, not what stands there now. Which of them are
/// children, and how these are counted, is up to the derived class.
class TableAccessible : public QAccessibleWidget, public QAccessibleTableInterface
{
  public:
    ~TableAccessible() override;

    virtual qint64 Rows() const = 0;
    /// Number of a cell among the children, -1 if it is none at present. Row -1 is the headings.
    virtual int NumberOf(qint64 row, int column) const = 0;

    void *interface_cast(QAccessible::InterfaceType type) override;
    int indexOfChild(const QAccessibleInterface *child) const override;

    QAccessibleInterface *caption() const override { return nullptr; }
    QAccessibleInterface *summary() const override { return nullptr; }
    QAccessibleInterface *cellAt(int row, int column) const override;
    int rowCount() const override;
    QString rowDescription(int) const override { return {}; }

    int selectedCellCount() const override;
    QList<QAccessibleInterface *> selectedCells() const override;
    int selectedColumnCount() const override { return 0; }
    QList<int> selectedColumns() const override { return {}; }
    int selectedRowCount() const override { return int(selectedRows().size()); }
    bool isColumnSelected(int) const override { return false; }
    bool selectColumn(int) override { return false; }
    bool unselectColumn(int) override { return false; }
    bool unselectRow(int) override { return false; }
    void modelChange(QAccessibleTableModelChangeEvent *) override {}

  protected:
    explicit TableAccessible(QWidget &widget);

    /// A TableCellAccessible.
    virtual QAccessibleInterface *MakeCell(qint64 row, int column) const = 0;

    QAccessibleInterface *Cell(qint64 row, int column) const;
    qsizetype CellsKept() const { return m_cells.size(); }
    /// Deletes the cells that are no children at present.
    void DropCells() const;

  private:
    /// Those that were asked for and not deleted yet, by row and column.
    mutable QHash<std::pair<qint64, int>, QAccessible::Id> m_cells;
};

/// A cell or, in row -1, a heading. It is deleted with the table's interface at the latest.
class TableCellAccessible : public QAccessibleInterface, public QAccessibleTableCellInterface
{
  public:
    bool isValid() const override { return m_row < m_table.Rows(); }
    QObject *object() const override { return nullptr; }
    QWindow *window() const override { return m_table.window(); }
    QAccessible::Role role() const override
    {
        return m_row < 0 ? QAccessible::ColumnHeader : QAccessible::Cell;
    }
    void *interface_cast(QAccessible::InterfaceType type) override;
    QString text(QAccessible::Text kind) const override;
    void setText(QAccessible::Text, const QString &) override {}
    QAccessibleInterface *parent() const override { return table(); }
    QAccessibleInterface *child(int) const override { return nullptr; }
    QAccessibleInterface *childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }

    QAccessibleInterface *table() const override;
    int rowIndex() const override { return int(m_row); }
    int columnIndex() const override { return m_column; }
    int rowExtent() const override { return 1; }
    int columnExtent() const override { return 1; }
    QList<QAccessibleInterface *> rowHeaderCells() const override { return {}; }
    QList<QAccessibleInterface *> columnHeaderCells() const override
    {
        return {m_table.child(m_column)};
    }

    int Number() const { return m_table.NumberOf(m_row, m_column); }

  protected:
    TableCellAccessible(const TableAccessible &table, qint64 row, int column)
        : m_row(row), m_column(column), m_table(table)
    {
    }

    /// What stands in the cell, which is no heading.
    virtual QString Content() const = 0;
    /// What is the same for all cells of a widget.
    QAccessible::State StateIn(const QWidget &widget, bool inSight, bool inHand) const;

    const qint64 m_row;
    const int m_column;

  private:
    const TableAccessible &m_table;
};
