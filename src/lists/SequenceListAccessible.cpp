// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SequenceListAccessible.h"

#include "SequenceList.h"

#include <QHeaderView>

namespace
{

class SequenceCell final : public TableCellAccessible, public QAccessibleActionInterface
{
  public:
    SequenceCell(const SequenceListAccessible &table, qint64 row, int column)
        : TableCellAccessible(table, row, column), m_list(table.List())
    {
    }

    void *interface_cast(QAccessible::InterfaceType type) override;
    QRect rect() const override;
    QAccessible::State state() const override;
    bool isSelected() const override { return m_list.selectionModel()->isSelected(Index()); }

    QStringList actionNames() const override;
    void doAction(const QString &name) override;
    QStringList keyBindingsForAction(const QString &) const override
    {
        return {m_list.KeyOf(rowIndex(), m_column).toString()};
    }

  private:
    QString Content() const override { return Index().data(Qt::AccessibleTextRole).toString(); }
    QModelIndex Index() const { return m_list.model()->index(rowIndex(), m_column); }
    bool CanBeTicked() const { return Index().flags().testFlag(Qt::ItemIsUserCheckable); }

    SequenceList &m_list;
};

void *SequenceCell::interface_cast(QAccessible::InterfaceType type)
{
    if (m_row >= 0 && type == QAccessible::ActionInterface)
        return static_cast<QAccessibleActionInterface *>(this);
    return TableCellAccessible::interface_cast(type);
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
    const bool inSight = rect().intersects(table()->rect());
    QAccessible::State state = StateIn(m_list, inSight, m_list.currentIndex() == Index());
    state.disabled = !m_list.isEnabled();
    state.checkable = m_row >= 0 && CanBeTicked();
    state.checked = state.checkable && m_list.RowAt(rowIndex()).active;
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
        m_list.Press(rowIndex(), m_column);
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
    : TableAccessible(list), m_list(list)
{
}

qint64 SequenceListAccessible::Rows() const
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

int SequenceListAccessible::NumberOf(qint64 row, int column) const
{
    return row < Rows() ? int(row + 1) * columnCount() + column : -1;
}

QAccessibleInterface *SequenceListAccessible::child(int index) const
{
    if (index < 0 || index >= childCount())
        return nullptr;
    return Cell(index / columnCount() - 1, index % columnCount());
}

QAccessibleInterface *SequenceListAccessible::MakeCell(qint64 row, int column) const
{
    return new SequenceCell(*this, row, column);
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
