// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

// What keys do in the sequence editor control.

#include "SQEditSequence.h"

#include <QKeyEvent>

#include <algorithm>
#include <limits>
#include <vector>

namespace
{

struct EditingKey {
    QKeySequence key;
    void (SequenceEditing::*edit)();
};

const std::vector<EditingKey> &EditingKeys()
{
    static const std::vector<EditingKey> keys = {
        {Qt::CTRL | Qt::Key_Z, &SequenceEditing::Undo},
        {Qt::CTRL | Qt::Key_Y, &SequenceEditing::Redo},
        {Qt::CTRL | Qt::SHIFT | Qt::Key_Z, &SequenceEditing::Redo},
        {Qt::Key_Backspace, &SequenceEditing::EraseBackward},
        {Qt::SHIFT | Qt::Key_Backspace, &SequenceEditing::EraseBackward},
        {Qt::Key_Delete, &SequenceEditing::EraseForward},
        {Qt::CTRL | Qt::Key_Backspace, &SequenceEditing::EraseUnitBackward},
        {Qt::CTRL | Qt::Key_Delete, &SequenceEditing::EraseUnitForward},
    };
    return keys;
}

/// The control character that a key types in ASCII, 0 for none.
char ControlTyped(const QKeyEvent &event)
{
    const bool enter = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
    const auto modifiers = event.modifiers() & ~Qt::KeyboardModifiers(Qt::KeypadModifier);
    if (enter && (modifiers == Qt::NoModifier || modifiers == Qt::ShiftModifier))
        return '\r';
    if (modifiers != Qt::ControlModifier)
        return 0;
    return enter ? '\n' : event.key() == Qt::Key_Tab ? '\t' : '\0';
}

} // namespace

/// Standard keys differ between systems; those an engineer may be used to all work.
QList<QKeySequence> SQEditSequence::KeysOf(QKeySequence::StandardKey command) const
{
    switch (command) {
    case QKeySequence::Copy:
        return {Qt::CTRL | Qt::Key_C, Qt::CTRL | Qt::Key_Insert};
    case QKeySequence::Cut:
        return {Qt::CTRL | Qt::Key_X, Qt::SHIFT | Qt::Key_Delete};
    case QKeySequence::Paste:
        return {Qt::CTRL | Qt::Key_V, Qt::SHIFT | Qt::Key_Insert};
    case QKeySequence::SelectAll:
        return {Qt::CTRL | Qt::Key_A};
    default:
        return {};
    }
}

void SQEditSequence::Move(CaretMovement movement, bool select)
{
    using Movement = SequenceEditing::Movement;
    const auto move = [&](Movement within) {
        Edit().Move(within, select);
        Announce();
    };
    switch (movement) {
    case CaretMovement::NextCharacter:
        return move(Movement::Next);
    case CaretMovement::PreviousCharacter:
        return move(Movement::Previous);
    case CaretMovement::NextWord:
        return move(Movement::NextWord);
    case CaretMovement::PreviousWord:
        return move(Movement::PreviousWord);
    case CaretMovement::NextRow:
        return MoveRows(1, select);
    case CaretMovement::PreviousRow:
        return MoveRows(-1, select);
    case CaretMovement::NextPage:
        return MoveRows(FullRows(), select);
    case CaretMovement::PreviousPage:
        return MoveRows(-FullRows(), select);
    case CaretMovement::RowStart:
        return PlaceInRow({CaretRow(), 0}, select);
    case CaretMovement::RowEnd:
        return PlaceInRow({CaretRow(), std::numeric_limits<double>::max()}, select);
    case CaretMovement::Begin:
        return move(Movement::Begin);
    case CaretMovement::End:
        return move(Movement::End);
    }
}

void SQEditSequence::MoveRows(qsizetype rows, bool select)
{
    const int wanted = m_wantedColumn >= 0 ? m_wantedColumn : CaretColumn();
    const qsizetype last = Layout().RowCount() - 1;
    PlaceInRow({qBound<qsizetype>(0, CaretRow() + rows, last), double(wanted)}, select);
    m_wantedColumn = wanted;
}

bool SQEditSequence::HandleEditingKey(const QKeyEvent &event, bool inEarnest)
{
    const QKeySequence key = KeyOf(event);
    for (const EditingKey &entry : EditingKeys()) {
        if (entry.key != key)
            continue;
        if (inEarnest)
            Do(entry.edit);
        return true;
    }
    const char control = Editing().Form() == Representation::Ascii ? ControlTyped(event) : '\0';
    const QString text = TypedText(event);
    const bool toggles = key == QKeySequence(Qt::Key_Insert);
    if (inEarnest && control) {
        Announce(Edit().TypeByte(control));
    } else if (inEarnest && toggles) {
        Edit().SetOvertypes(!Editing().Overtypes());
        Announce();
    } else if (inEarnest && !text.isEmpty()) {
        TypeText(text);
    }
    return control || toggles || !text.isEmpty();
}
