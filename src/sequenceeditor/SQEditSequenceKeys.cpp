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

using Movement = SequenceEditing::Movement;

struct MovementKey {
    QKeySequence::StandardKey key;
    Movement movement;
    bool select;
};

constexpr MovementKey MovementKeys[] = {
    {QKeySequence::MoveToNextChar, Movement::Next, false},
    {QKeySequence::MoveToPreviousChar, Movement::Previous, false},
    {QKeySequence::MoveToNextWord, Movement::NextWord, false},
    {QKeySequence::MoveToPreviousWord, Movement::PreviousWord, false},
    {QKeySequence::MoveToStartOfDocument, Movement::Begin, false},
    {QKeySequence::MoveToEndOfDocument, Movement::End, false},
    {QKeySequence::SelectNextChar, Movement::Next, true},
    {QKeySequence::SelectPreviousChar, Movement::Previous, true},
    {QKeySequence::SelectNextWord, Movement::NextWord, true},
    {QKeySequence::SelectPreviousWord, Movement::PreviousWord, true},
    {QKeySequence::SelectStartOfDocument, Movement::Begin, true},
    {QKeySequence::SelectEndOfDocument, Movement::End, true},
};

struct RowKey {
    QKeySequence::StandardKey key;
    int rows;
    int pages;
    bool select;
};

constexpr RowKey RowKeys[] = {
    {QKeySequence::MoveToNextLine, 1, 0, false}, {QKeySequence::MoveToPreviousLine, -1, 0, false},
    {QKeySequence::MoveToNextPage, 0, 1, false}, {QKeySequence::MoveToPreviousPage, 0, -1, false},
    {QKeySequence::SelectNextLine, 1, 0, true},  {QKeySequence::SelectPreviousLine, -1, 0, true},
    {QKeySequence::SelectNextPage, 0, 1, true},  {QKeySequence::SelectPreviousPage, 0, -1, true},
};

struct EdgeKey {
    QKeySequence::StandardKey key;
    bool toEnd;
    bool select;
};

constexpr EdgeKey EdgeKeys[] = {
    {QKeySequence::MoveToStartOfLine, false, false},
    {QKeySequence::MoveToEndOfLine, true, false},
    {QKeySequence::SelectStartOfLine, false, true},
    {QKeySequence::SelectEndOfLine, true, true},
};

struct CommandKey {
    QKeySequence key;
    void (SQEditSequence::*command)();
    bool edits;
};

struct ErasingKey {
    QKeySequence key;
    void (SequenceEditing::*erase)();
};

/// Standard keys differ between systems; those an engineer may be used to all work.
const std::vector<CommandKey> &CommandKeys()
{
    static const std::vector<CommandKey> keys = {
        {Qt::CTRL | Qt::Key_Z, &SQEditSequence::Undo, true},
        {Qt::CTRL | Qt::Key_Y, &SQEditSequence::Redo, true},
        {Qt::CTRL | Qt::SHIFT | Qt::Key_Z, &SQEditSequence::Redo, true},
        {Qt::CTRL | Qt::Key_C, &SQEditSequence::Copy, false},
        {Qt::CTRL | Qt::Key_Insert, &SQEditSequence::Copy, false},
        {Qt::CTRL | Qt::Key_A, &SQEditSequence::SelectAll, false},
        {Qt::CTRL | Qt::Key_X, &SQEditSequence::Cut, true},
        {Qt::SHIFT | Qt::Key_Delete, &SQEditSequence::Cut, true},
        {Qt::CTRL | Qt::Key_V, &SQEditSequence::Paste, true},
        {Qt::SHIFT | Qt::Key_Insert, &SQEditSequence::Paste, true},
    };
    return keys;
}

const std::vector<ErasingKey> &ErasingKeys()
{
    static const std::vector<ErasingKey> keys = {
        {Qt::Key_Backspace, &SequenceEditing::EraseBackward},
        {Qt::SHIFT | Qt::Key_Backspace, &SequenceEditing::EraseBackward},
        {Qt::Key_Delete, &SequenceEditing::EraseForward},
        {Qt::CTRL | Qt::Key_Backspace, &SequenceEditing::EraseUnitBackward},
        {Qt::CTRL | Qt::Key_Delete, &SequenceEditing::EraseUnitForward},
    };
    return keys;
}

/// The key with its modifiers; on which part of the keyboard it is makes no difference.
QKeySequence KeyOf(const QKeyEvent &event)
{
    const auto modifiers = event.modifiers() & ~Qt::KeyboardModifiers(Qt::KeypadModifier);
    return QKeyCombination(modifiers, Qt::Key(event.key()));
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

/// The text that a key press types; empty for keys that type none. Ctrl and Alt together are the
/// AltGr key of some systems.
QString TypedText(const QKeyEvent &event)
{
    const auto modifiers = event.modifiers() & (Qt::ControlModifier | Qt::AltModifier);
    if (modifiers == Qt::ControlModifier || modifiers == Qt::AltModifier ||
        (event.modifiers() & Qt::MetaModifier))
        return {};
    const QString text = event.text();
    const bool types = !text.isEmpty() && text[0].unicode() >= 32 && text[0].unicode() != 127;
    return types ? text : QString();
}

} // namespace

bool SQEditSequence::HandleKey(const QKeyEvent &event, bool inEarnest)
{
    return HandleMovementKey(event, inEarnest) || HandleCommandKey(event, inEarnest) ||
           (CanEdit() && HandleTypingKey(event, inEarnest));
}

bool SQEditSequence::HandleMovementKey(const QKeyEvent &event, bool inEarnest)
{
    const auto handles = [&event](const auto &entry) { return event.matches(entry.key); };
    const auto *movement = std::find_if(std::begin(MovementKeys), std::end(MovementKeys), handles);
    const auto *row = std::find_if(std::begin(RowKeys), std::end(RowKeys), handles);
    const auto *edge = std::find_if(std::begin(EdgeKeys), std::end(EdgeKeys), handles);
    const bool moves = movement != std::end(MovementKeys);
    const bool movesRows = row != std::end(RowKeys);
    const bool movesInRow = edge != std::end(EdgeKeys);
    if (inEarnest && moves) {
        Edit().Move(movement->movement, movement->select);
        Announce();
    } else if (inEarnest && movesRows) {
        MoveRows(row->rows + row->pages * FullRows(), row->select);
    } else if (inEarnest && movesInRow) {
        MoveInRow(edge->toEnd, edge->select);
    }
    if (inEarnest && Editing().HasSelection() && (moves || movesRows || movesInRow))
        PublishSelection();
    return moves || movesRows || movesInRow;
}

void SQEditSequence::MoveRows(qsizetype rows, bool select)
{
    const int wanted = m_wantedColumn >= 0 ? m_wantedColumn : CaretColumn();
    const qsizetype last = Layout().RowCount() - 1;
    PlaceInRow({qBound<qsizetype>(0, CaretRow() + rows, last), double(wanted)}, select);
    m_wantedColumn = wanted;
}

void SQEditSequence::MoveInRow(bool toEnd, bool select)
{
    PlaceInRow({CaretRow(), toEnd ? std::numeric_limits<double>::max() : 0.0}, select);
}

bool SQEditSequence::HandleCommandKey(const QKeyEvent &event, bool inEarnest)
{
    const QKeySequence key = KeyOf(event);
    for (const CommandKey &entry : CommandKeys()) {
        if (entry.key != key || (entry.edits && !CanEdit()))
            continue;
        if (inEarnest)
            (this->*entry.command)();
        return true;
    }
    return false;
}

bool SQEditSequence::HandleTypingKey(const QKeyEvent &event, bool inEarnest)
{
    for (const ErasingKey &entry : ErasingKeys()) {
        if (entry.key != KeyOf(event))
            continue;
        if (inEarnest) {
            (Edit().*entry.erase)();
            Announce();
        }
        return true;
    }
    const char control = Editing().Form() == Representation::Ascii ? ControlTyped(event) : '\0';
    const QString text = TypedText(event);
    const bool toggles = KeyOf(event) == QKeySequence(Qt::Key_Insert);
    if (inEarnest && control)
        Announce(Edit().TypeByte(control));
    else if (inEarnest && toggles)
        ToggleOvertyping();
    else if (inEarnest && !text.isEmpty())
        TypeText(text);
    return control || toggles || !text.isEmpty();
}
