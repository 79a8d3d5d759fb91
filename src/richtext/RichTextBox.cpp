// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "RichTextBox.h"

#include "RichTextTyping.h"

#include <QAction>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QToolTip>

#include <algorithm>
#include <optional>

namespace
{

struct ErasingKey {
    QKeySequence::StandardKey key;
    CaretMovement movement;
};

constexpr ErasingKey ErasingKeys[] = {
    {QKeySequence::Delete, CaretMovement::NextCharacter},
    {QKeySequence::DeleteStartOfWord, CaretMovement::PreviousWord},
    {QKeySequence::DeleteEndOfWord, CaretMovement::NextWord},
};

/// What a key erases if nothing is selected.
std::optional<CaretMovement> ErasedMovement(const QKeyEvent &event)
{
    const bool bare = (event.modifiers() & ~Qt::KeyboardModifiers(Qt::ShiftModifier)) == 0;
    if (event.key() == Qt::Key_Backspace && bare)
        return CaretMovement::PreviousCharacter;
    for (const ErasingKey &entry : ErasingKeys) {
        if (event.matches(entry.key))
            return entry.movement;
    }
    return {};
}

bool BreaksLine(const QKeyEvent &event)
{
    return event.matches(QKeySequence::InsertParagraphSeparator) ||
           event.matches(QKeySequence::InsertLineSeparator);
}

bool IsModifier(int key)
{
    constexpr Qt::Key Modifiers[] = {Qt::Key_Shift,   Qt::Key_Control, Qt::Key_Alt,
                                     Qt::Key_AltGr,   Qt::Key_Meta,    Qt::Key_Super_L,
                                     Qt::Key_Super_R, Qt::Key_Hyper_L, Qt::Key_Hyper_R};
    return std::find(std::begin(Modifiers), std::end(Modifiers), key) != std::end(Modifiers);
}

} // namespace

RichTextBox::RichTextBox(RichTextModel &model, QWidget *parent) : RichTextView(model, parent)
{
    setAttribute(Qt::WA_KeyCompression);
    viewport()->setCursor(Qt::IBeamCursor);
    connect(&model, &RichTextModel::Changed, this, &RichTextBox::FollowReadOnly);
    FollowReadOnly();
}

void RichTextBox::FollowReadOnly()
{
    setAttribute(Qt::WA_InputMethodEnabled, CanEdit());
}

// --- What hands do ------------------------------------------------------------------------------

void RichTextBox::EraseSelection()
{
    RichTextTyping::RemoveSelection(Model());
    ShowCaret();
}

void RichTextBox::TypeText(const QString &text)
{
    if (text.isEmpty())
        return;
    const QString refusal = RichTextTyping::Insert(Model(), text, m_typingStyle);
    ShowCaret();
    if (!refusal.isEmpty())
        QToolTip::showText(BelowCaret(), refusal, this);
}

void RichTextBox::Move(CaretMovement movement, bool select)
{
    ReadyCaret().Move(movement, select);
    ShowCaret();
}

void RichTextBox::Press(const QPointF &point, CaretUnit unit, bool extend)
{
    const Cell cell = CellAt(point);
    ReadyCaret().Press(cell.row, cell.column, unit, extend);
    ShowCaret();
}

void RichTextBox::DragTo(const QPointF &point)
{
    const Cell cell = CellAt(point);
    ReadyCaret().DragTo(cell.row, cell.column);
}

bool RichTextBox::HandleEditingKey(const QKeyEvent &event, bool inEarnest)
{
    const std::optional<CaretMovement> erased = ErasedMovement(event);
    const QString text = BreaksLine(event) ? QStringLiteral("\r\n") : TypedText(event);
    if (inEarnest && erased)
        EraseTowards(*erased);
    else if (inEarnest)
        TypeText(text);
    return erased || !text.isEmpty();
}

/// Erases the selection, or what the movement passes.
void RichTextBox::EraseTowards(CaretMovement movement)
{
    if (!HasSelection())
        ReadyCaret().Move(movement, true);
    EraseSelection();
}

// --- The caret's place, as it is told -----------------------------------------------------------

/// A key of the window, and what only copies, does not move the place where a search goes on; nor
/// does a modifier, which comes with any of them.
bool RichTextBox::LeavesCaret(const QKeyEvent &event) const
{
    const QList<QAction *> actions = window()->findChildren<QAction *>();
    const auto hasKey = [key = KeyOf(event)](const QAction *action) {
        return action->shortcuts().contains(key);
    };
    return IsModifier(event.key()) || event.matches(QKeySequence::Copy) ||
           std::any_of(actions.begin(), actions.end(), hasKey);
}

void RichTextBox::mousePressEvent(QMouseEvent *event)
{
    m_pressedButtons |= event->button();
    RichTextView::mousePressEvent(event);
}

void RichTextBox::mouseDoubleClickEvent(QMouseEvent *event)
{
    m_pressedButtons |= event->button();
    RichTextView::mouseDoubleClickEvent(event);
}

void RichTextBox::mouseReleaseEvent(QMouseEvent *event)
{
    RichTextView::mouseReleaseEvent(event);
    if (m_pressedButtons.testFlag(event->button()))
        Q_EMIT CaretReleased(Model().SelectionStart());
    m_pressedButtons.setFlag(event->button(), false);
}

void RichTextBox::keyPressEvent(QKeyEvent *event)
{
    if (!LeavesCaret(*event))
        m_pressedKeys.insert(event->key());
    RichTextView::keyPressEvent(event);
}

void RichTextBox::keyReleaseEvent(QKeyEvent *event)
{
    RichTextView::keyReleaseEvent(event);
    if (m_pressedKeys.remove(event->key()))
        Q_EMIT CaretReleased(Model().SelectionStart());
}

/// What is held down now is let go elsewhere.
void RichTextBox::focusOutEvent(QFocusEvent *event)
{
    m_pressedKeys.clear();
    m_pressedButtons = {};
    RichTextView::focusOutEvent(event);
}

// --- Input methods ------------------------------------------------------------------------------

QVariant RichTextBox::inputMethodQuery(Qt::InputMethodQuery query) const
{
    const RichTextModel &model = Model();
    const RichTextSteps::Span line = RichTextSteps::LineAt(model, model.Caret());
    switch (query) {
    case Qt::ImCursorPosition:
        return int(model.Caret() - line.from);
    case Qt::ImSurroundingText:
        return CodePage1252::ToUnicode(
            model.Bytes().sliced(line.from - model.Begin(), line.to - line.from));
    case Qt::ImCurrentSelection:
        return SelectedText();
    default:
        return RichTextView::inputMethodQuery(query);
    }
}
