// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "RichTextBox.h"

#include "CodePage1252.h"
#include "RichTextModel.h"
#include "RichTextTyping.h"

#include <QApplication>
#include <QClipboard>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QScrollBar>
#include <QToolTip>

#include <optional>

namespace
{

constexpr int DragInterval = 40; ///< milliseconds between two scrolls past the edge

using Movement = RichTextCaret::Movement;

struct MovementKey {
    QKeySequence::StandardKey key;
    Movement movement;
    bool select;
};

constexpr MovementKey MovementKeys[] = {
    {QKeySequence::MoveToNextChar, Movement::NextCharacter, false},
    {QKeySequence::MoveToPreviousChar, Movement::PreviousCharacter, false},
    {QKeySequence::MoveToNextWord, Movement::NextWord, false},
    {QKeySequence::MoveToPreviousWord, Movement::PreviousWord, false},
    {QKeySequence::MoveToNextLine, Movement::NextRow, false},
    {QKeySequence::MoveToPreviousLine, Movement::PreviousRow, false},
    {QKeySequence::MoveToNextPage, Movement::NextPage, false},
    {QKeySequence::MoveToPreviousPage, Movement::PreviousPage, false},
    {QKeySequence::MoveToStartOfLine, Movement::RowStart, false},
    {QKeySequence::MoveToEndOfLine, Movement::RowEnd, false},
    {QKeySequence::MoveToStartOfDocument, Movement::Begin, false},
    {QKeySequence::MoveToEndOfDocument, Movement::End, false},
    {QKeySequence::SelectNextChar, Movement::NextCharacter, true},
    {QKeySequence::SelectPreviousChar, Movement::PreviousCharacter, true},
    {QKeySequence::SelectNextWord, Movement::NextWord, true},
    {QKeySequence::SelectPreviousWord, Movement::PreviousWord, true},
    {QKeySequence::SelectNextLine, Movement::NextRow, true},
    {QKeySequence::SelectPreviousLine, Movement::PreviousRow, true},
    {QKeySequence::SelectNextPage, Movement::NextPage, true},
    {QKeySequence::SelectPreviousPage, Movement::PreviousPage, true},
    {QKeySequence::SelectStartOfLine, Movement::RowStart, true},
    {QKeySequence::SelectEndOfLine, Movement::RowEnd, true},
    {QKeySequence::SelectStartOfDocument, Movement::Begin, true},
    {QKeySequence::SelectEndOfDocument, Movement::End, true},
};

struct CommandKey {
    void (RichTextBox::*command)();
    QKeySequence::StandardKey key;
    bool edits;
};

constexpr CommandKey CommandKeys[] = {
    {&RichTextBox::Copy, QKeySequence::Copy, false},
    {&RichTextBox::SelectAll, QKeySequence::SelectAll, false},
    {&RichTextBox::Cut, QKeySequence::Cut, true},
    {&RichTextBox::Paste, QKeySequence::Paste, true},
};

struct ErasingKey {
    QKeySequence::StandardKey key;
    Movement movement;
};

constexpr ErasingKey ErasingKeys[] = {
    {QKeySequence::Delete, Movement::NextCharacter},
    {QKeySequence::DeleteStartOfWord, Movement::PreviousWord},
    {QKeySequence::DeleteEndOfWord, Movement::NextWord},
};

/// What a key erases if nothing is selected.
std::optional<Movement> ErasedMovement(const QKeyEvent &event)
{
    const bool bare = (event.modifiers() & ~Qt::KeyboardModifiers(Qt::ShiftModifier)) == 0;
    if (event.key() == Qt::Key_Backspace && bare)
        return Movement::PreviousCharacter;
    for (const ErasingKey &entry : ErasingKeys) {
        if (event.matches(entry.key))
            return entry.movement;
    }
    return {};
}

/// The text that a key press types; empty for keys that type none. Ctrl and Alt together are the
/// AltGr key of some systems.
QString TypedText(const QKeyEvent &event)
{
    if (event.matches(QKeySequence::InsertParagraphSeparator) ||
        event.matches(QKeySequence::InsertLineSeparator))
        return QStringLiteral("\r\n");
    const auto modifiers = event.modifiers() & (Qt::ControlModifier | Qt::AltModifier);
    if (modifiers == Qt::ControlModifier || modifiers == Qt::AltModifier ||
        (event.modifiers() & Qt::MetaModifier))
        return {};
    const QString text = event.text();
    const bool types = !text.isEmpty() && text[0].unicode() >= 32 && text[0].unicode() != 127;
    return types ? text : QString();
}

} // namespace

RichTextBox::RichTextBox(RichTextModel &model, QWidget *parent) : RichTextView(model, parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_KeyCompression);
    viewport()->setCursor(Qt::IBeamCursor);
    m_dragging.setInterval(DragInterval);
    connect(&m_dragging, &QTimer::timeout, this, &RichTextBox::DragOn);
    connect(&model, &RichTextModel::Changed, this, &RichTextBox::FollowReadOnly);
    FollowReadOnly();
}

void RichTextBox::FollowReadOnly()
{
    setAttribute(Qt::WA_InputMethodEnabled, CanEdit());
}

// --- Mouse --------------------------------------------------------------------------------------

void RichTextBox::Press(const QMouseEvent &event, RichTextCaret::Unit unit)
{
    m_mouse = event.position();
    const Cell cell = CellAt(m_mouse);
    const bool extend = event.modifiers().testFlag(Qt::ShiftModifier);
    ReadyCaret().Press(cell.row, cell.column, unit, extend);
    ShowCaret();
}

void RichTextBox::mousePressEvent(QMouseEvent *event)
{
    m_pressedButtons |= event->button();
    const bool near =
        (event->position() - m_doubleClick).manhattanLength() < QApplication::startDragDistance();
    const bool third = near && m_sinceDoubleClick.isValid() &&
                       m_sinceDoubleClick.elapsed() < QApplication::doubleClickInterval();
    if (event->button() == Qt::LeftButton)
        Press(*event, third ? RichTextCaret::Unit::Line : RichTextCaret::Unit::Character);
    m_sinceDoubleClick.invalidate();
}

void RichTextBox::mouseDoubleClickEvent(QMouseEvent *event)
{
    m_pressedButtons |= event->button();
    if (event->button() != Qt::LeftButton)
        return;
    Press(*event, RichTextCaret::Unit::Word);
    m_doubleClick = event->position();
    m_sinceDoubleClick.start();
}

void RichTextBox::mouseMoveEvent(QMouseEvent *event)
{
    if (!event->buttons().testFlag(Qt::LeftButton))
        return;
    m_mouse = event->position();
    const bool past = m_mouse.y() < 0 || m_mouse.y() >= viewport()->height();
    if (!past)
        m_dragging.stop();
    else if (!m_dragging.isActive())
        m_dragging.start();
    Drag();
}

void RichTextBox::Drag()
{
    const Cell cell = CellAt(m_mouse);
    ReadyCaret().DragTo(cell.row, cell.column);
}

/// Scrolls on while the mouse is held past an edge, the faster the farther it is.
void RichTextBox::DragOn()
{
    const qreal past = m_mouse.y() < 0 ? m_mouse.y() : m_mouse.y() - viewport()->height();
    const int rows = int(past / CaretRect().height());
    QScrollBar &bar = *verticalScrollBar();
    bar.setValue(bar.value() + (past < 0 ? rows - 1 : rows + 1));
    Drag();
}

void RichTextBox::mouseReleaseEvent(QMouseEvent *event)
{
    m_dragging.stop();
    if (event->button() == Qt::LeftButton)
        PublishSelection();
    QClipboard &clipboard = *QApplication::clipboard();
    if (event->button() == Qt::MiddleButton && CanEdit() && clipboard.supportsSelection()) {
        Press(*event, RichTextCaret::Unit::Character);
        Insert(clipboard.text(QClipboard::Selection));
    }
    if (m_pressedButtons.testFlag(event->button()))
        ReleaseCaret();
    m_pressedButtons.setFlag(event->button(), false);
}

void RichTextBox::ReleaseCaret()
{
    Q_EMIT CaretReleased(Model().SelectionStart());
}

/// What is selected can be pasted with the middle button, where the system knows that.
void RichTextBox::PublishSelection()
{
    QClipboard &clipboard = *QApplication::clipboard();
    if (clipboard.supportsSelection() && Model().HasSelection())
        clipboard.setText(CodePage1252::ToUnicode(Model().SelectedText()), QClipboard::Selection);
}

void RichTextBox::contextMenuEvent(QContextMenuEvent *event)
{
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
    const QPoint place =
        byKey ? viewport()->mapToGlobal(CaretRect().bottomLeft().toPoint()) : event->globalPos();
    // Not executed, so that the text goes on while the menu is open.
    QMenu *menu = MakeContextMenu().release();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(place);
}

std::unique_ptr<QMenu> RichTextBox::MakeContextMenu()
{
    auto menu = std::make_unique<QMenu>(this);
    const bool selected = Model().HasSelection();
    const bool pastes = !QApplication::clipboard()->text().isEmpty();
    menu->addAction(tr("Cu&t"), this, &RichTextBox::Cut)->setEnabled(selected && CanEdit());
    menu->addAction(tr("&Copy"), this, &RichTextBox::Copy)->setEnabled(selected);
    menu->addAction(tr("&Paste"), this, &RichTextBox::Paste)->setEnabled(pastes && CanEdit());
    menu->addAction(tr("&Delete"), this, &RichTextBox::Delete)->setEnabled(selected && CanEdit());
    menu->addSeparator();
    menu->addAction(tr("Select &All"), this, &RichTextBox::SelectAll)
        ->setEnabled(Model().Length() > 0);
    return menu;
}

// --- Keyboard -----------------------------------------------------------------------------------

void RichTextBox::keyPressEvent(QKeyEvent *event)
{
    if (event->key() != Qt::Key_F3) // goes on with a search, so it must not move its start
        m_pressedKeys.insert(event->key());
    RichTextView::keyPressEvent(event);
}

void RichTextBox::keyReleaseEvent(QKeyEvent *event)
{
    RichTextView::keyReleaseEvent(event);
    if (m_pressedKeys.remove(event->key()))
        ReleaseCaret();
}

/// What is held down now is let go elsewhere.
void RichTextBox::focusOutEvent(QFocusEvent *event)
{
    m_pressedKeys.clear();
    m_pressedButtons = {};
    RichTextView::focusOutEvent(event);
}

bool RichTextBox::HandleKey(const QKeyEvent &event, bool inEarnest)
{
    return HandleMovementKey(event, inEarnest) || HandleCommandKey(event, inEarnest) ||
           (CanEdit() && HandleEditingKey(event, inEarnest));
}

bool RichTextBox::HandleMovementKey(const QKeyEvent &event, bool inEarnest)
{
    for (const MovementKey &entry : MovementKeys) {
        if (!event.matches(entry.key))
            continue;
        if (inEarnest)
            MoveCaret(entry.movement, entry.select);
        return true;
    }
    return false;
}

bool RichTextBox::HandleCommandKey(const QKeyEvent &event, bool inEarnest)
{
    for (const CommandKey &entry : CommandKeys) {
        if (!event.matches(entry.key) || (entry.edits && !CanEdit()))
            continue;
        if (inEarnest)
            (this->*entry.command)();
        return true;
    }
    return false;
}

bool RichTextBox::HandleEditingKey(const QKeyEvent &event, bool inEarnest)
{
    if (const std::optional<Movement> erased = ErasedMovement(event)) {
        if (inEarnest)
            EraseTowards(*erased);
        return true;
    }
    const QString text = TypedText(event);
    if (text.isEmpty())
        return false;
    if (inEarnest)
        Insert(text);
    return true;
}

void RichTextBox::MoveCaret(Movement movement, bool select)
{
    ReadyCaret().Move(movement, select);
    ShowCaret();
    if (select)
        PublishSelection();
}

/// Erases the selection, or what the movement passes.
void RichTextBox::EraseTowards(Movement movement)
{
    if (!Model().HasSelection())
        ReadyCaret().Move(movement, true);
    RichTextTyping::RemoveSelection(Model());
    ShowCaret();
}

void RichTextBox::Insert(const QString &text)
{
    if (text.isEmpty() || !CanEdit())
        return;
    const QString refusal = RichTextTyping::Insert(Model(), text, m_typingStyle);
    ShowCaret();
    if (!refusal.isEmpty())
        QToolTip::showText(viewport()->mapToGlobal(CaretRect().bottomLeft().toPoint()), refusal,
                           this);
}

bool RichTextBox::CanEdit() const
{
    return !Model().ReadOnly();
}

void RichTextBox::Copy()
{
    if (Model().HasSelection())
        QApplication::clipboard()->setText(CodePage1252::ToUnicode(Model().SelectedText()));
}

void RichTextBox::Cut()
{
    Copy();
    Delete();
}

void RichTextBox::Paste()
{
    Insert(QApplication::clipboard()->text());
}

void RichTextBox::Delete()
{
    if (!CanEdit() || !Model().HasSelection())
        return;
    RichTextTyping::RemoveSelection(Model());
    ShowCaret();
}

void RichTextBox::SelectAll()
{
    Model().Select(Model().Begin(), Model().End());
    PublishSelection();
}

// --- Input methods ------------------------------------------------------------------------------

void RichTextBox::inputMethodEvent(QInputMethodEvent *event)
{
    Insert(event->commitString());
    event->accept();
}

QVariant RichTextBox::inputMethodQuery(Qt::InputMethodQuery query) const
{
    const RichTextModel &model = Model();
    const RichTextSteps::Span line = RichTextSteps::LineAt(model, model.Caret());
    switch (query) {
    case Qt::ImCursorRectangle:
        return CaretRect().translated(viewport()->pos());
    case Qt::ImCursorPosition:
        return int(model.Caret() - line.from);
    case Qt::ImSurroundingText:
        return CodePage1252::ToUnicode(
            model.Bytes().sliced(line.from - model.Begin(), line.to - line.from));
    case Qt::ImCurrentSelection:
        return CodePage1252::ToUnicode(model.SelectedText());
    default:
        return RichTextView::inputMethodQuery(query);
    }
}
