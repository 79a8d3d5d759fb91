// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SequenceList.h"

#include "CodePage1252.h"
#include "FixedPitchFont.h"
#include "Pressing.h"
#include "SequenceListAccessible.h"
#include "SequenceListDelegate.h"

#include <QAccessible>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QMenu>

#include <algorithm>

namespace
{

constexpr int SmallestColumn = 24;
constexpr int LargestColumn = 8192;

bool IsKey(const QKeyEvent &event, const QKeySequence &keys)
{
    // Return and the key pad's Enter are one key here.
    const int key = event.key() == Qt::Key_Return ? int(Qt::Key_Enter) : event.key();
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    return QKeySequence(QKeyCombination(modifiers, Qt::Key(key))) == keys;
}

} // namespace

SequenceList::SequenceList(SequenceMark mark, QWidget *parent)
    : QTreeView(parent),
      m_model(new SequenceListModel(mark, this)),
      m_delegate(new SequenceListDelegate(*m_model, this)),
      m_hold(*viewport()),
      m_sequences(new FreeColumn(*this, SequenceListModel::SequenceColumn))
{
    QAccessible::installFactory(SequenceListAccessible::Create);
    m_model->SetSequenceFont(FixedPitchFont::ViewFont());
    setVerticalScrollMode(ScrollPerPixel); // before there is a model: it would be laid out for it
    setHorizontalScrollMode(ScrollPerPixel);
    setModel(m_model);
    setItemDelegate(m_delegate);
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setExpandsOnDoubleClick(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setAlternatingRowColors(true);
    setSelectionMode(SingleSelection);
    setEditTriggers(NoEditTriggers);
    header()->setSectionsMovable(false);
    header()->setStretchLastSection(false);
    header()->setMinimumSectionSize(SmallestColumn);
    connect(&m_hold, &MouseHold::Lost, this, [this] { Hold(-1); });
}

void SequenceList::SetWidth(int column, int width)
{
    if (column < m_model->columnCount())
        setColumnWidth(column, std::clamp(width, SmallestColumn, LargestColumn));
}

void SequenceList::FitFirstHeading()
{
    SetWidth(0, qMax(columnWidth(0), header()->sectionSizeHint(0)));
}

/// The heights of the rows follow the font.
void SequenceList::changeEvent(QEvent *event)
{
    QTreeView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        scheduleDelayedItemsLayout();
}

void SequenceList::focusInEvent(QFocusEvent *event)
{
    QTreeView::focusInEvent(event);
    const bool byKey = event->reason() != Qt::MouseFocusReason;
    if (byKey && !selectionModel()->hasSelection())
        setCurrentIndex(m_model->index(qMax(0, currentIndex().row()), 0));
}

int SequenceList::TargetAt(const QPoint &place) const
{
    const QModelIndex index = indexAt(place);
    const bool acts = index.column() == SequenceListModel::MarkColumn || index.row() == Count();
    return index.isValid() && acts ? index.row() : -1;
}

void SequenceList::Hold(int row)
{
    m_heldRow = row;
    m_delegate->SetPressedRow(row);
    viewport()->update();
}

void SequenceList::mousePressEvent(QMouseEvent *event)
{
    QTreeView::mousePressEvent(event);
    if (event->button() != Qt::LeftButton)
        return;
    Hold(TargetAt(event->position().toPoint()));
    m_hold.Begin();
}

/// A mark that was left while held down comes up again, as a button does.
void SequenceList::mouseMoveEvent(QMouseEvent *event)
{
    if (m_heldRow < 0) {
        QTreeView::mouseMoveEvent(event);
        return;
    }
    const bool inside = TargetAt(event->position().toPoint()) == m_heldRow;
    m_delegate->SetPressedRow(inside ? m_heldRow : -1);
    viewport()->update();
}

void SequenceList::mouseReleaseEvent(QMouseEvent *event)
{
    const int held = m_heldRow;
    m_hold.End();
    Hold(-1);
    QTreeView::mouseReleaseEvent(event);
    if (event->button() != Qt::LeftButton || held < 0 ||
        TargetAt(event->position().toPoint()) != held)
        return;
    if (IsRow(held))
        UseMark(held);
    else
        EditRow(held);
}

/// Two quick clicks on a mark are two clicks; on the empty row the first one has done it.
void SequenceList::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    const QPoint place = event->position().toPoint();
    const QModelIndex index = indexAt(place);
    const int target = TargetAt(place);
    if (IsRow(target))
        mousePressEvent(event);
    else if (target < 0)
        EditRow(index.isValid() ? index.row() : Count()); // the room below belongs to the empty row
}

void SequenceList::keyPressEvent(QKeyEvent *event)
{
    const int row = currentIndex().row();
    const bool edits = IsKey(*event, Qt::Key_Enter);
    const bool marks = IsKey(*event, MarkKey());
    if (event->matches(QKeySequence::Copy)) {
        CopySequence(row);
    } else if ((edits || marks) && row >= 0) {
        if (event->isAutoRepeat())
            return;
        if (edits)
            EditRow(row);
        else if (IsRow(row))
            UseMark(row);
    } else {
        QTreeView::keyPressEvent(event);
    }
}

void SequenceList::EditRow(int index)
{
    if (IsRow(index))
        Q_EMIT EditRequested(index);
    else
        Q_EMIT EmptyRowRequested(Count());
}

void SequenceList::Press(int row, int column)
{
    PressLater(*this, [this, row, column] {
        if (IsMark(row, column))
            UseMark(row);
        else
            EditRow(row);
    });
}

QKeySequence SequenceList::KeyOf(int row, int column) const
{
    return IsMark(row, column) ? MarkKey() : QKeySequence(Qt::Key_Return);
}

void SequenceList::CopySequence(int index) const
{
    if (IsRow(index))
        QGuiApplication::clipboard()->setText(CodePage1252::ToUnicode(RowAt(index).sequence));
}

/// By the mouse for the row under it, by its key for the row in hand; below all rows and without
/// a row in hand for the empty row.
void SequenceList::contextMenuEvent(QContextMenuEvent *event)
{
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
    const QModelIndex index = byKey ? currentIndex() : indexAt(event->pos());
    if (byKey && index.isValid())
        scrollTo(index);
    const QPoint place = byKey ? visualRect(index).center() : event->pos();
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    FillMenu(*menu, index.isValid() ? index.row() : Count());
    menu->popup(viewport()->mapToGlobal(place));
}

void SequenceList::FillMenu(QMenu &menu, int index)
{
    const auto add = [&](const char *name, const QString &text, const QKeySequence &keys) {
        // Only shown: the keys themselves are the list's.
        QAction *action = menu.addAction(text + u'\t' + keys.toString(QKeySequence::NativeText));
        action->setObjectName(QString::fromLatin1(name));
        return action;
    };
    if (!IsRow(index)) {
        QAction *action = add("mnuNew", QStringLiteral("&New..."), Qt::Key_Enter);
        menu.setDefaultAction(action);
        connect(action, &QAction::triggered, this, [this] { EditRow(Count()); });
        return;
    }
    connect(add("mnuMark", MarkCaption(index), MarkKey()), &QAction::triggered, this,
            [this, index] {
                if (IsRow(index))
                    UseMark(index);
            });
    AddOwnEntries(menu, index);
    QAction *edit = add("mnuEdit", QStringLiteral("&Edit..."), Qt::Key_Enter);
    menu.setDefaultAction(edit);
    connect(edit, &QAction::triggered, this, [this, index] { EditRow(index); });
    connect(add("mnuCopy", QStringLiteral("&Copy Sequence"), QKeySequence::Copy),
            &QAction::triggered, this, [this, index] { CopySequence(index); });
}
