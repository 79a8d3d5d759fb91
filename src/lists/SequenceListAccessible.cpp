// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SequenceListAccessible.h"

#include "SequenceList.h"

#include <QHeaderView>

namespace
{

/// A cell or, in row -1, a heading. It is deleted with the list's interface at the latest.
class SequenceCell final : public QAccessibleInterface,
                           public QAccessibleTableCellInterface,
                           public QAccessibleActionInterface
{
  public:
    SequenceCell(const SequenceListAccessible &table, int number)
        : m_table(table),
          m_list(table.List()),
          m_row(number / table.columnCount() - 1),
          m_column(number % table.columnCount())
    {
    }

    bool isValid() const override { return m_row < m_table.rowCount(); }
    QObject *object() const override { return nullptr; }
    QWindow *window() const override { return m_table.window(); }
    QAccessible::Role role() const override
    {
        return m_row < 0 ? QAccessible::ColumnHeader : QAccessible::Cell;
    }
    void *interface_cast(QAccessible::InterfaceType type) override;
    QString text(QAccessible::Text kind) const override;
    void setText(QAccessible::Text, const QString &) override {}
    QRect rect() const override;
    QAccessible::State state() const override;
    QAccessibleInterface *parent() const override { return table(); }
    QAccessibleInterface *child(int) const override { return nullptr; }
    QAccessibleInterface *childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }

    QAccessibleInterface *table() const override
    {
        return QAccessible::queryAccessibleInterface(&m_list);
    }
    bool isSelected() const override { return m_table.isRowSelected(m_row); }
    int rowIndex() const override { return m_row; }
    int columnIndex() const override { return m_column; }
    int rowExtent() const override { return 1; }
    int columnExtent() const override { return 1; }
    QList<QAccessibleInterface *> rowHeaderCells() const override { return {}; }
    QList<QAccessibleInterface *> columnHeaderCells() const override
    {
        return {m_table.child(m_column)};
    }

    QStringList actionNames() const override;
    void doAction(const QString &name) override;
    QStringList keyBindingsForAction(const QString &) const override
    {
        return {m_list.KeyOf(m_row, m_column).toString()};
    }

    int Number() const { return (m_row + 1) * m_table.columnCount() + m_column; }

  private:
    QModelIndex Index() const { return m_list.model()->index(m_row, m_column); }
    bool CanBeTicked() const { return Index().flags().testFlag(Qt::ItemIsUserCheckable); }

    const SequenceListAccessible &m_table;
    SequenceList &m_list;
    int m_row;
    int m_column;
};

void *SequenceCell::interface_cast(QAccessible::InterfaceType type)
{
    if (m_row >= 0 && type == QAccessible::TableCellInterface)
        return static_cast<QAccessibleTableCellInterface *>(this);
    if (m_row >= 0 && type == QAccessible::ActionInterface)
        return static_cast<QAccessibleActionInterface *>(this);
    return nullptr;
}

QString SequenceCell::text(QAccessible::Text kind) const
{
    if (kind != QAccessible::Name)
        return {};
    return m_row < 0 ? m_table.columnDescription(m_column)
                     : Index().data(Qt::AccessibleTextRole).toString();
}

QRect SequenceCell::rect() const
{
    const QHeaderView &header = *m_list.header();
    const QWidget &area = m_row < 0 ? *header.viewport() : *m_list.viewport();
    const QRect inArea = m_row < 0 ? QRect(header.sectionViewportPosition(m_column), 0,
                                           header.sectionSize(m_column), header.height())
                                   : m_list.visualRect(Index());
    return {area.mapToGlobal(inArea.topLeft()), inArea.size()};
}

QAccessible::State SequenceCell::state() const
{
    QAccessible::State state;
    state.disabled = !m_list.isEnabled();
    const QRect place = rect();
    state.offscreen = !place.intersects(m_table.rect());
    state.invisible = !m_list.isVisible() || state.offscreen;
    if (m_row < 0)
        return state;
    state.selectable = true;
    state.selected = isSelected();
    state.focusable = true;
    state.focused = m_list.hasFocus() && m_list.currentIndex() == Index();
    state.checkable = CanBeTicked();
    state.checked = state.checkable && m_list.RowAt(m_row).active;
    return state;
}

QStringList SequenceCell::actionNames() const
{
    if (!m_list.isEnabled())
        return {};
    return CanBeTicked() ? QStringList{toggleAction(), pressAction()} : QStringList{pressAction()};
}

void SequenceCell::doAction(const QString &name)
{
    if (actionNames().contains(name))
        m_list.Press(m_row, m_column);
}

} // namespace

QAccessibleInterface *SequenceListAccessible::Create(const QString &, QObject *object)
{
    auto *list = qobject_cast<SequenceList *>(object);
    return list ? new SequenceListAccessible(*list) : nullptr;
}

void SequenceListAccessible::TellTick(SequenceList &list, int row)
{
    QAccessible::State changed;
    changed.checked = true;
    QAccessibleEvent name(&list, QAccessible::NameChanged);
    QAccessibleStateChangeEvent tick(&list, changed);
    for (QAccessibleEvent *event : {&name, static_cast<QAccessibleEvent *>(&tick)}) {
        event->setChild((row + 1) * list.model()->columnCount());
        QAccessible::updateAccessibility(event);
    }
}

SequenceListAccessible::SequenceListAccessible(SequenceList &list)
    : QAccessibleWidget(&list, QAccessible::Table), m_list(list)
{
}

SequenceListAccessible::~SequenceListAccessible()
{
    for (const QAccessible::Id cell : std::as_const(m_cells))
        QAccessible::deleteAccessibleInterface(cell);
}

void *SequenceListAccessible::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::TableInterface)
        return static_cast<QAccessibleTableInterface *>(this);
    return QAccessibleWidget::interface_cast(type);
}

int SequenceListAccessible::rowCount() const
{
    return m_list.model()->rowCount();
}

int SequenceListAccessible::columnCount() const
{
    return m_list.model()->columnCount();
}

QString SequenceListAccessible::columnDescription(int column) const
{
    return m_list.model()->headerData(column, Qt::Horizontal).toString();
}

int SequenceListAccessible::childCount() const
{
    return (rowCount() + 1) * columnCount();
}

QAccessibleInterface *SequenceListAccessible::child(int index) const
{
    if (index < 0 || index >= childCount())
        return nullptr;
    if (const auto known = m_cells.constFind(index); known != m_cells.constEnd())
        return QAccessible::accessibleInterface(*known);
    auto *cell = new SequenceCell(*this, index);
    m_cells[index] = QAccessible::registerAccessibleInterface(cell);
    return cell;
}

QAccessibleInterface *SequenceListAccessible::cellAt(int row, int column) const
{
    const bool there = row >= 0 && column >= 0 && column < columnCount();
    return there ? child((row + 1) * columnCount() + column) : nullptr;
}

QAccessibleInterface *SequenceListAccessible::childAt(int x, int y) const
{
    const QPoint inHeader = m_list.header()->viewport()->mapFromGlobal(QPoint(x, y));
    if (m_list.header()->viewport()->rect().contains(inHeader))
        return child(m_list.header()->logicalIndexAt(inHeader));
    const QPoint inRows = m_list.viewport()->mapFromGlobal(QPoint(x, y));
    const QModelIndex index = m_list.indexAt(inRows);
    return m_list.viewport()->rect().contains(inRows) && index.isValid()
               ? cellAt(index.row(), index.column())
               : nullptr;
}

QAccessibleInterface *SequenceListAccessible::focusChild() const
{
    const QModelIndex current = m_list.currentIndex();
    return m_list.hasFocus() && current.isValid() ? cellAt(current.row(), current.column())
                                                  : nullptr;
}

int SequenceListAccessible::indexOfChild(const QAccessibleInterface *child) const
{
    const auto *cell = dynamic_cast<const SequenceCell *>(child);
    return cell && cell->table() == this ? cell->Number() : -1;
}

int SequenceListAccessible::selectedCellCount() const
{
    return selectedRowCount() * columnCount();
}

QList<QAccessibleInterface *> SequenceListAccessible::selectedCells() const
{
    QList<QAccessibleInterface *> cells;
    for (const int row : selectedRows()) {
        for (int column = 0; column < columnCount(); ++column)
            cells << cellAt(row, column);
    }
    return cells;
}

QList<int> SequenceListAccessible::selectedRows() const
{
    QList<int> rows;
    for (const QModelIndex &index : m_list.selectionModel()->selectedRows())
        rows << index.row();
    return rows;
}

bool SequenceListAccessible::selectRow(int row)
{
    if (row < 0 || row >= rowCount())
        return false;
    m_list.setCurrentIndex(m_list.model()->index(row, 0));
    return true;
}

bool SequenceListAccessible::unselectRow(int row)
{
    if (!isRowSelected(row))
        return false;
    m_list.clearSelection();
    return true;
}

/// Cells that are left have other contents, which they look up.
void SequenceListAccessible::modelChange(QAccessibleTableModelChangeEvent *)
{
    const int count = childCount();
    for (auto cell = m_cells.begin(); cell != m_cells.end();) {
        if (cell.key() < count) {
            ++cell;
            continue;
        }
        QAccessible::deleteAccessibleInterface(*cell);
        cell = m_cells.erase(cell);
    }
}
