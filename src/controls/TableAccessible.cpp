// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TableAccessible.h"

#include <QWidget>

#include <algorithm>
#include <limits>

TableAccessible::TableAccessible(QWidget &widget) : QAccessibleWidget(&widget, QAccessible::Table)
{
}

TableAccessible::~TableAccessible()
{
    for (const QAccessible::Id cell : std::as_const(m_cells))
        QAccessible::deleteAccessibleInterface(cell);
}

void *TableAccessible::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::TableInterface)
        return static_cast<QAccessibleTableInterface *>(this);
    return QAccessibleWidget::interface_cast(type);
}

int TableAccessible::rowCount() const
{
    return int(std::min<qint64>(Rows(), std::numeric_limits<int>::max()));
}

QAccessibleInterface *TableAccessible::Cell(qint64 row, int column) const
{
    const std::pair place(row, column);
    if (const auto known = m_cells.constFind(place); known != m_cells.constEnd())
        return QAccessible::accessibleInterface(*known);
    QAccessibleInterface *cell = MakeCell(row, column);
    m_cells[place] = QAccessible::registerAccessibleInterface(cell);
    return cell;
}

void TableAccessible::DropCells() const
{
    for (auto cell = m_cells.begin(); cell != m_cells.end();) {
        const auto [row, column] = cell.key();
        if (NumberOf(row, column) >= 0) {
            ++cell;
            continue;
        }
        QAccessible::deleteAccessibleInterface(*cell);
        cell = m_cells.erase(cell);
    }
}

QAccessibleInterface *TableAccessible::cellAt(int row, int column) const
{
    const bool there = row >= 0 && row < Rows() && column >= 0 && column < columnCount();
    return there ? Cell(row, column) : nullptr;
}

int TableAccessible::indexOfChild(const QAccessibleInterface *child) const
{
    const auto *cell = dynamic_cast<const TableCellAccessible *>(child);
    return cell && cell->table() == this ? cell->Number() : -1;
}

int TableAccessible::selectedCellCount() const
{
    return int(selectedRows().size()) * columnCount();
}

QList<QAccessibleInterface *> TableAccessible::selectedCells() const
{
    QList<QAccessibleInterface *> cells;
    for (const int row : selectedRows()) {
        for (int column = 0; column < columnCount(); ++column)
            cells << Cell(row, column);
    }
    return cells;
}

void *TableCellAccessible::interface_cast(QAccessible::InterfaceType type)
{
    return m_row >= 0 && type == QAccessible::TableCellInterface
               ? static_cast<QAccessibleTableCellInterface *>(this)
               : nullptr;
}

QString TableCellAccessible::text(QAccessible::Text kind) const
{
    if (kind != QAccessible::Name)
        return {};
    return m_row < 0 ? m_table.columnDescription(m_column) : Content();
}

QAccessibleInterface *TableCellAccessible::table() const
{
    return QAccessible::queryAccessibleInterface(m_table.object());
}

QAccessible::State TableCellAccessible::StateIn(const QWidget &widget, bool inSight,
                                                bool inHand) const
{
    QAccessible::State state;
    state.offscreen = !inSight;
    state.invisible = !widget.isVisible() || !inSight;
    if (m_row < 0)
        return state;
    state.selectable = true;
    state.selected = isSelected();
    state.focusable = true;
    state.focused = widget.hasFocus() && inHand;
    return state;
}
