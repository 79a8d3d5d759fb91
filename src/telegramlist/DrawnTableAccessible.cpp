// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "DrawnTableAccessible.h"

#include "DrawnTable.h"

#include <QAbstractScrollArea>

#include <algorithm>
#include <limits>

namespace
{

/// Cells that are kept; those of rows long out of sight go.
constexpr qsizetype MostCells = 4000;

/// A cell or, in row -1, a heading. It is deleted with the table's interface at the latest.
class DrawnCell final : public QAccessibleInterface, public QAccessibleTableCellInterface
{
  public:
    DrawnCell(const DrawnTableAccessible &accessible, qint64 row, int column)
        : m_accessible(accessible), m_table(accessible.Table()), m_row(row), m_column(column)
    {
    }

    bool isValid() const override { return m_row < m_table.RowCount(); }
    QObject *object() const override { return nullptr; }
    QWindow *window() const override { return m_accessible.window(); }
    QAccessible::Role role() const override
    {
        return m_row < 0 ? QAccessible::ColumnHeader : QAccessible::Cell;
    }
    void *interface_cast(QAccessible::InterfaceType type) override
    {
        return m_row >= 0 && type == QAccessible::TableCellInterface
                   ? static_cast<QAccessibleTableCellInterface *>(this)
                   : nullptr;
    }
    QString text(QAccessible::Text kind) const override
    {
        if (kind != QAccessible::Name)
            return {};
        return m_row < 0 ? m_table.Headings().value(m_column) : m_table.CellText(m_row, m_column);
    }
    void setText(QAccessible::Text, const QString &) override {}
    QRect rect() const override
    {
        const QRect place = m_table.CellRect(m_row, m_column);
        const QWidget &viewport = *m_table.Area().viewport();
        return {viewport.mapToGlobal(place.topLeft()), place.size()};
    }
    QAccessible::State state() const override;
    QAccessibleInterface *parent() const override { return table(); }
    QAccessibleInterface *child(int) const override { return nullptr; }
    QAccessibleInterface *childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }

    QAccessibleInterface *table() const override
    {
        return QAccessible::queryAccessibleInterface(&m_table.Area());
    }
    bool isSelected() const override { return m_row >= 0 && m_table.IsChosen(m_row); }
    int rowIndex() const override { return int(m_row); }
    int columnIndex() const override { return m_column; }
    int rowExtent() const override { return 1; }
    int columnExtent() const override { return 1; }
    QList<QAccessibleInterface *> rowHeaderCells() const override { return {}; }
    QList<QAccessibleInterface *> columnHeaderCells() const override
    {
        return {m_accessible.child(m_column)};
    }

    int Number() const { return m_accessible.NumberOf(m_row, m_column); }

  private:
    const DrawnTableAccessible &m_accessible;
    DrawnTable &m_table;
    qint64 m_row;
    int m_column;
};

QAccessible::State DrawnCell::state() const
{
    QAccessible::State state;
    const QWidget &area = m_table.Area();
    state.offscreen = m_table.CellRect(m_row, m_column).isEmpty();
    state.invisible = !area.isVisible() || state.offscreen;
    if (m_row < 0)
        return state;
    state.selectable = true;
    state.selected = isSelected();
    state.focusable = true;
    state.focused = area.hasFocus() && m_table.CurrentRow() == m_row;
    state.readOnly = true;
    return state;
}

} // namespace

QAccessibleInterface *DrawnTableAccessible::Create(const QString &, QObject *object)
{
    auto *area = qobject_cast<QAbstractScrollArea *>(object);
    auto *table = dynamic_cast<DrawnTable *>(area);
    return table ? new DrawnTableAccessible(*area, *table) : nullptr;
}

void DrawnTableAccessible::TellCurrent(DrawnTable &table)
{
    const auto *accessible =
        dynamic_cast<DrawnTableAccessible *>(QAccessible::queryAccessibleInterface(&table.Area()));
    const int number = accessible ? accessible->NumberOf(table.CurrentRow(), 0) : -1;
    if (number < 0 || !QAccessible::isActive())
        return;
    QAccessibleEvent event(&table.Area(), QAccessible::Focus);
    event.setChild(number);
    QAccessible::updateAccessibility(&event);
}

DrawnTableAccessible::DrawnTableAccessible(QWidget &widget, DrawnTable &table)
    : QAccessibleWidget(&widget, QAccessible::Table), m_table(table)
{
}

DrawnTableAccessible::~DrawnTableAccessible()
{
    for (const QAccessible::Id cell : std::as_const(m_cells))
        QAccessible::deleteAccessibleInterface(cell);
}

void *DrawnTableAccessible::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::TableInterface)
        return static_cast<QAccessibleTableInterface *>(this);
    return QAccessibleWidget::interface_cast(type);
}

int DrawnTableAccessible::rowCount() const
{
    return int(std::min<qint64>(m_table.RowCount(), std::numeric_limits<int>::max()));
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

QAccessibleInterface *DrawnTableAccessible::Cell(qint64 row, int column) const
{
    const std::pair place(row, column);
    if (const auto known = m_cells.constFind(place); known != m_cells.constEnd())
        return QAccessible::accessibleInterface(*known);
    if (m_cells.size() >= MostCells) {
        for (auto cell = m_cells.begin(); cell != m_cells.end();) {
            const auto [itsRow, itsColumn] = cell.key();
            if (NumberOf(itsRow, itsColumn) >= 0) {
                ++cell;
                continue;
            }
            QAccessible::deleteAccessibleInterface(*cell);
            cell = m_cells.erase(cell);
        }
    }
    auto *cell = new DrawnCell(*this, row, column);
    m_cells[place] = QAccessible::registerAccessibleInterface(cell);
    return cell;
}

QAccessibleInterface *DrawnTableAccessible::cellAt(int row, int column) const
{
    const bool there =
        row >= 0 && row < m_table.RowCount() && column >= 0 && column < columnCount();
    return there ? Cell(row, column) : nullptr;
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
    return m_table.Area().hasFocus() && current >= 0 ? Cell(current, 0) : nullptr;
}

int DrawnTableAccessible::indexOfChild(const QAccessibleInterface *child) const
{
    const auto *cell = dynamic_cast<const DrawnCell *>(child);
    return cell && cell->table() == this ? cell->Number() : -1;
}

int DrawnTableAccessible::selectedCellCount() const
{
    return int(selectedRows().size()) * columnCount();
}

QList<QAccessibleInterface *> DrawnTableAccessible::selectedCells() const
{
    QList<QAccessibleInterface *> cells;
    for (const int row : selectedRows()) {
        for (int column = 0; column < columnCount(); ++column)
            cells << Cell(row, column);
    }
    return cells;
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
