// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QAccessibleTableInterface>
#include <QAccessibleWidget>
#include <QHash>

class SequenceList;

/// What a screen reader learns of a sequence list: a table with a row of headings, whose other
/// cells can be pressed. A cell is a place, not a record: it tells what stands there now. Children
/// are counted as the toolkit counts those of a tree: the headings, then row by row.
class SequenceListAccessible final : public QAccessibleWidget, public QAccessibleTableInterface
{
  public:
    /// Factory for QAccessible::installFactory.
    static QAccessibleInterface *Create(const QString &className, QObject *object);

    /// Tells that the tick of a row has changed.
    static void TellTick(SequenceList &list, int row);

    explicit SequenceListAccessible(SequenceList &list);
    ~SequenceListAccessible() override;

    SequenceList &List() const { return m_list; }

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
    int selectedRowCount() const override { return int(selectedRows().size()); }
    QList<int> selectedRows() const override;
    bool isColumnSelected(int) const override { return false; }
    bool isRowSelected(int row) const override { return selectedRows().contains(row); }
    bool selectColumn(int) override { return false; }
    bool unselectColumn(int) override { return false; }
    bool selectRow(int row) override;
    bool unselectRow(int row) override;
    void modelChange(QAccessibleTableModelChangeEvent *event) override;

  private:
    SequenceList &m_list;
    mutable QHash<int, QAccessible::Id> m_cells; ///< by number, once they were asked for
};
