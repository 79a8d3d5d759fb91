// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TextControl.h"

#include <QApplication>
#include <QClipboard>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QMouseEvent>
#include <QScrollBar>

#include <cmath>

namespace
{

constexpr int DragInterval = 40; ///< milliseconds between two scrolls past the edge

using Keys = QKeySequence;

struct MovementKey {
    Keys::StandardKey moves;
    Keys::StandardKey selects;
    CaretMovement movement;
};

constexpr MovementKey MovementKeys[] = {
    {Keys::MoveToNextChar, Keys::SelectNextChar, CaretMovement::NextCharacter},
    {Keys::MoveToPreviousChar, Keys::SelectPreviousChar, CaretMovement::PreviousCharacter},
    {Keys::MoveToNextWord, Keys::SelectNextWord, CaretMovement::NextWord},
    {Keys::MoveToPreviousWord, Keys::SelectPreviousWord, CaretMovement::PreviousWord},
    {Keys::MoveToNextLine, Keys::SelectNextLine, CaretMovement::NextRow},
    {Keys::MoveToPreviousLine, Keys::SelectPreviousLine, CaretMovement::PreviousRow},
    {Keys::MoveToNextPage, Keys::SelectNextPage, CaretMovement::NextPage},
    {Keys::MoveToPreviousPage, Keys::SelectPreviousPage, CaretMovement::PreviousPage},
    {Keys::MoveToStartOfLine, Keys::SelectStartOfLine, CaretMovement::RowStart},
    {Keys::MoveToEndOfLine, Keys::SelectEndOfLine, CaretMovement::RowEnd},
    {Keys::MoveToStartOfDocument, Keys::SelectStartOfDocument, CaretMovement::Begin},
    {Keys::MoveToEndOfDocument, Keys::SelectEndOfDocument, CaretMovement::End},
};

struct CommandKey {
    void (TextControl::*command)();
    Keys::StandardKey key;
    bool edits;
};

constexpr CommandKey CommandKeys[] = {
    {&TextControl::Copy, Keys::Copy, false},
    {&TextControl::SelectAll, Keys::SelectAll, false},
    {&TextControl::Cut, Keys::Cut, true},
    {&TextControl::Paste, Keys::Paste, true},
};

} // namespace

TextControl::TextControl(QWidget *parent) : QAbstractScrollArea(parent), m_hold(*viewport())
{
    setFocusPolicy(Qt::StrongFocus);
    m_dragging.setInterval(DragInterval);
    connect(&m_blinking, &QTimer::timeout, this, &TextControl::ToggleCaret);
    connect(&m_dragging, &QTimer::timeout, this, &TextControl::DragOn);
    connect(&m_hold, &MouseHold::Lost, this, &TextControl::EndDrag);
}

// --- Rows ---------------------------------------------------------------------------------------

void TextControl::FollowScreen()
{
    if (m_pixelRatio == devicePixelRatioF())
        return;
    m_pixelRatio = devicePixelRatioF();
    RenewPainter();
}

void TextControl::changeEvent(QEvent *event)
{
    QAbstractScrollArea::changeEvent(event);
    if (event->type() != QEvent::FontChange)
        return;
    m_pixelRatio = devicePixelRatioF();
    RenewPainter();
}

void TextControl::showEvent(QShowEvent *event)
{
    QAbstractScrollArea::showEvent(event);
    FollowScreen();
}

void TextControl::SetRowCount(qsizetype rows)
{
    QScrollBar &bar = *verticalScrollBar();
    bar.setPageStep(int(FullRows()));
    bar.setRange(0, int(qMax<qsizetype>(rows - FullRows(), 0)));
}

qsizetype TextControl::FullRows() const
{
    return qMax<qsizetype>(qsizetype((viewport()->height() - 2 * Margin) / m_cell.height()), 1);
}

int TextControl::FittingColumns() const
{
    return qMax(int((viewport()->width() - 2 * Margin) / m_cell.width()), 1);
}

void TextControl::ScrollInSight(qsizetype row)
{
    QScrollBar &bar = *verticalScrollBar();
    if (row < bar.value())
        bar.setValue(int(row));
    else if (row >= bar.value() + FullRows())
        bar.setValue(int(row - FullRows() + 1));
}

TextControl::Cell TextControl::CellAt(const QPointF &point, qsizetype rows) const
{
    const auto row = qsizetype(std::floor((point.y() - Margin) / m_cell.height()));
    return {qBound<qsizetype>(0, row + verticalScrollBar()->value(), rows - 1),
            (point.x() - Margin) / m_cell.width()};
}

QRectF TextControl::CellRect(qsizetype row, int column, int columns) const
{
    const qreal y = qreal(row - verticalScrollBar()->value()) * m_cell.height();
    return {Margin + column * m_cell.width(), Margin + y, columns * m_cell.width(),
            m_cell.height()};
}

// --- Caret --------------------------------------------------------------------------------------

void TextControl::RestartBlinking()
{
    m_caretVisible = hasFocus();
    const int flashTime = QApplication::cursorFlashTime();
    if (m_caretVisible && flashTime > 1)
        m_blinking.start(flashTime / 2);
    else
        m_blinking.stop();
    updateMicroFocus();
}

void TextControl::ToggleCaret()
{
    m_caretVisible = !m_caretVisible;
    viewport()->update(CaretRect().toAlignedRect());
}

QPoint TextControl::BelowCaret() const
{
    return viewport()->mapToGlobal(CaretRect().bottomLeft().toPoint());
}

void TextControl::focusInEvent(QFocusEvent *event)
{
    QAbstractScrollArea::focusInEvent(event);
    RestartBlinking();
    viewport()->update();
}

void TextControl::focusOutEvent(QFocusEvent *event)
{
    QAbstractScrollArea::focusOutEvent(event);
    RestartBlinking();
    viewport()->update();
}

// --- Mouse --------------------------------------------------------------------------------------

void TextControl::Hold(const QMouseEvent &event, CaretUnit unit)
{
    m_mouse = event.position();
    m_hold.Begin();
    Press(m_mouse, unit, event.modifiers().testFlag(Qt::ShiftModifier));
}

void TextControl::mousePressEvent(QMouseEvent *event)
{
    const bool near =
        (event->position() - m_doubleClick).manhattanLength() < QApplication::startDragDistance();
    const bool third = near && m_sinceDoubleClick.isValid() &&
                       m_sinceDoubleClick.elapsed() < QApplication::doubleClickInterval();
    if (event->button() == Qt::LeftButton)
        Hold(*event, third ? CaretUnit::Line : CaretUnit::Character);
    m_sinceDoubleClick.invalidate();
}

void TextControl::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    Hold(*event, CaretUnit::Word);
    m_doubleClick = event->position();
    m_sinceDoubleClick.start();
}

void TextControl::mouseMoveEvent(QMouseEvent *event)
{
    if (!m_hold.Holds())
        return;
    m_mouse = event->position();
    const bool past = m_mouse.y() < 0 || m_mouse.y() >= viewport()->height();
    if (!past)
        m_dragging.stop();
    else if (!m_dragging.isActive())
        m_dragging.start();
    DragTo(m_mouse);
}

/// Scrolls on while the mouse is held past an edge, the faster the farther it is.
void TextControl::DragOn()
{
    const qreal past = m_mouse.y() < 0 ? m_mouse.y() : m_mouse.y() - viewport()->height();
    const int rows = int(past / CaretRect().height());
    QScrollBar &bar = *verticalScrollBar();
    bar.setValue(bar.value() + (past < 0 ? rows - 1 : rows + 1));
    DragTo(m_mouse);
}

void TextControl::EndDrag()
{
    m_dragging.stop();
    PublishSelection();
}

void TextControl::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && m_hold.End())
        EndDrag();
    QClipboard &clipboard = *QApplication::clipboard();
    if (event->button() == Qt::MiddleButton && CanEdit() && clipboard.supportsSelection()) {
        Press(event->position(), CaretUnit::Character,
              event->modifiers().testFlag(Qt::ShiftModifier));
        PasteText(clipboard.text(QClipboard::Selection));
    }
}

/// What is selected can be pasted with the middle button, where the system knows that.
void TextControl::PublishSelection()
{
    QClipboard &clipboard = *QApplication::clipboard();
    if (clipboard.supportsSelection() && HasSelection())
        clipboard.setText(SelectedText(), QClipboard::Selection);
}

// --- Keyboard -----------------------------------------------------------------------------------

bool TextControl::event(QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride &&
        HandleKey(*static_cast<QKeyEvent *>(event), false)) {
        event->accept();
        return true;
    }
    return QAbstractScrollArea::event(event);
}

void TextControl::keyPressEvent(QKeyEvent *event)
{
    event->setAccepted(HandleKey(*event, true));
}

bool TextControl::HandleKey(const QKeyEvent &event, bool inEarnest)
{
    return HandleMovementKey(event, inEarnest) || HandleCommandKey(event, inEarnest) ||
           (CanEdit() && HandleEditingKey(event, inEarnest));
}

bool TextControl::HandleMovementKey(const QKeyEvent &event, bool inEarnest)
{
    for (const MovementKey &entry : MovementKeys) {
        const bool selects = event.matches(entry.selects);
        if (!selects && !event.matches(entry.moves))
            continue;
        if (inEarnest)
            Move(entry.movement, selects);
        if (inEarnest && selects)
            PublishSelection();
        return true;
    }
    return false;
}

bool TextControl::HandleCommandKey(const QKeyEvent &event, bool inEarnest)
{
    for (const CommandKey &entry : CommandKeys) {
        if ((entry.edits && !CanEdit()) || !KeysOf(entry.key).contains(KeyOf(event)))
            continue;
        if (inEarnest)
            (this->*entry.command)();
        return true;
    }
    return false;
}

QKeySequence TextControl::KeyOf(const QKeyEvent &event)
{
    const auto modifiers = event.modifiers() & ~(Qt::KeypadModifier | Qt::GroupSwitchModifier);
    return QKeyCombination(modifiers, Qt::Key(event.key()));
}

QString TextControl::TypedText(const QKeyEvent &event)
{
    // Ctrl and Alt together are the AltGr key of some systems.
    const auto modifiers = event.modifiers() & (Qt::ControlModifier | Qt::AltModifier);
    if (modifiers == Qt::ControlModifier || modifiers == Qt::AltModifier ||
        (event.modifiers() & Qt::MetaModifier))
        return {};
    const QString text = event.text();
    const bool types = !text.isEmpty() && text[0].unicode() >= 32 && text[0].unicode() != 127;
    return types ? text : QString();
}

void TextControl::inputMethodEvent(QInputMethodEvent *event)
{
    if (CanEdit() && !event->commitString().isEmpty())
        TypeText(event->commitString());
    event->accept();
}

QVariant TextControl::inputMethodQuery(Qt::InputMethodQuery query) const
{
    if (query == Qt::ImCursorRectangle)
        return CaretRect().translated(viewport()->pos());
    return QAbstractScrollArea::inputMethodQuery(query);
}

// --- Commands -----------------------------------------------------------------------------------

void TextControl::Cut()
{
    Copy();
    Delete();
}

void TextControl::Copy()
{
    if (!HasSelection())
        return;
    auto copy = std::make_unique<QMimeData>();
    copy->setText(SelectedText());
    AddToCopy(*copy);
    QApplication::clipboard()->setMimeData(copy.release());
}

void TextControl::Paste()
{
    const QMimeData *offered = QApplication::clipboard()->mimeData();
    if (CanEdit() && offered)
        Take(*offered);
}

bool TextControl::CanTake(const QMimeData &offered) const
{
    return !offered.text().isEmpty();
}

void TextControl::Take(const QMimeData &offered)
{
    PasteText(offered.text());
}

void TextControl::Delete()
{
    if (CanEdit() && HasSelection())
        EraseSelection();
}

void TextControl::SelectAll()
{
    SelectWhole();
    PublishSelection();
}

void TextControl::contextMenuEvent(QContextMenuEvent *event)
{
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
    // Not executed, so that the text goes on while the menu is open.
    QMenu *menu = MakeContextMenu().release();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(byKey ? BelowCaret() : event->globalPos());
}

std::unique_ptr<QMenu> TextControl::MakeContextMenu()
{
    auto menu = std::make_unique<QMenu>(this);
    const auto add = [&](const QString &text, void (TextControl::*command)(), bool enabled) {
        menu->addAction(text, this, command)->setEnabled(enabled);
    };
    const QMimeData *offered = QApplication::clipboard()->mimeData();
    AddOwnEntries(*menu);
    add(tr("Cu&t"), &TextControl::Cut, CanEdit() && HasSelection());
    add(tr("&Copy"), &TextControl::Copy, HasSelection());
    add(tr("&Paste"), &TextControl::Paste, CanEdit() && offered && CanTake(*offered));
    add(tr("&Delete"), &TextControl::Delete, CanEdit() && HasSelection());
    menu->addSeparator();
    add(tr("Select &All"), &TextControl::SelectAll, !IsEmpty());
    menu->addSeparator();
    menu->addActions(actions());
    return menu;
}
