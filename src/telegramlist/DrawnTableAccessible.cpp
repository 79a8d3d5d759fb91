// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "DrawnTableAccessible.h"

#include "DrawnTable.h"

#include <algorithm>
#include <limits>

namespace
{

/// Cells that are kept; those of rows long out of sight go.
constexpr qsizetype MostCells = 4000;

class DrawnCell final : public TableCellAccessible
{
  public:
    DrawnCell(const DrawnTableAccessible &accessible, qint64 row, int column)
        : TableCellAccessible(accessible, row, column), m_table(accessible.Table())
    {
    }

    QRect rect() const override
    {
        const QRect place = Place();
        return {m_table.viewport()->mapToGlobal(place.topLeft()), place.size()};
    }
    QAccessible::State state() const override
    {
        QAccessible::State state =
            StateIn(m_table, !Place().isEmpty(), m_table.CurrentRow() == m_row);
        state.readOnly = m_row >= 0;
        return state;
    }
    bool isSelected() const override { return m_row >= 0 && m_table.IsChosen(m_row); }

  private:
    QString Content() const override { return m_table.CellText(m_row, m_column); }
    QRect Place() const { return m_table.CellRect(m_row, m_column); }

    DrawnTable &m_table;
};

} // namespace

QAccessibleInterface *DrawnTableAccessible::Create(const QString &, QObject *object)
{
    auto *table = qobject_cast<DrawnTable *>(object);
    return table ? new DrawnTableAccessible(*table) : nullptr;
}

void DrawnTableAccessible::TellCurrent(DrawnTable &table)
{
    const auto *accessible =
        dynamic_cast<DrawnTableAccessible *>(QAccessible::queryAccessibleInterface(&table));
    const int number = accessible ? accessible->NumberOf(table.CurrentRow(), 0) : -1;
    if (number < 0 || !QAccessible::isActive())
        return;
    QAccessibleEvent event(&table, QAccessible::Focus);
    event.setChild(number);
    QAccessible::updateAccessibility(&event);
}

DrawnTableAccessible::DrawnTableAccessible(DrawnTable &table)
    : TableAccessible(table), m_table(table)
{
}

qint64 DrawnTableAccessible::Rows() const
{
    return m_table.RowCount();
}

int DrawnTableAccessible::columnCount() const
{
    return int(m_table.Headings().size());
}

QString DrawnTableAccessible::columnDescription(int column) const
{
    return m_table.Headings().value(column);
}

int DrawnTableAccessible::childCount() const
{
    return int(m_table.SeenRows().count + 1) * columnCount();
}

int DrawnTableAccessible::NumberOf(qint64 row, int column) const
{
    if (row < 0)
        return column;
    const DrawnTable::Seen seen = m_table.SeenRows();
    const qint64 inSight = row - seen.first;
    return inSight < 0 || inSight >= seen.count ? -1 : int(inSight + 1) * columnCount() + column;
}

QAccessibleInterface *DrawnTableAccessible::child(int index) const
{
    if (index < 0 || index >= childCount())
        return nullptr;
    const int line = index / columnCount();
    return Cell(line == 0 ? -1 : m_table.SeenRows().first + line - 1, index % columnCount());
}

QAccessibleInterface *DrawnTableAccessible::MakeCell(qint64 row, int column) const
{
    if (CellsKept() >= MostCells)
        DropCells();
    return new DrawnCell(*this, row, column);
}

QAccessibleInterface *DrawnTableAccessible::childAt(int x, int y) const
{
    for (int index = 0; index < childCount(); ++index) {
        if (QAccessibleInterface *cell = child(index); cell && cell->rect().contains(x, y))
            return cell;
    }
    return nullptr;
}

QAccessibleInterface *DrawnTableAccessible::focusChild() const
{
    const qint64 current = m_table.CurrentRow();
    return m_table.hasFocus() && current >= 0 ? Cell(current, 0) : nullptr;
}

int DrawnTableAccessible::selectedRowCount() const
{
    return int(std::min<qint64>(m_table.ChosenCount(), std::numeric_limits<int>::max()));
}

QList<int> DrawnTableAccessible::selectedRows() const
{
    QList<int> rows;
    const DrawnTable::Seen seen = m_table.SeenRows();
    for (qint64 row = seen.first; row < seen.first + seen.count; ++row) {
        if (m_table.IsChosen(row))
            rows << int(row);
    }
    return rows;
}

bool DrawnTableAccessible::isRowSelected(int row) const
{
    return m_table.IsChosen(row);
}

bool DrawnTableAccessible::selectRow(int row)
{
    if (row < 0 || row >= m_table.RowCount())
        return false;
    m_table.Choose(row);
    return true;
}
