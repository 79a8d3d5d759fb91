// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SequenceEditing.h"

#include "ByteLook.h"
#include "CodePage1252.h"
#include "SequenceText.h"

#include <QChar>

namespace
{

enum class Kind { Control, Blank, Word, Sign };

Kind KindOf(char byte)
{
    const ByteLook::Kind kind = ByteLook::KindOf(uchar(byte));
    if (kind == ByteLook::Kind::Control)
        return Kind::Control;
    if (kind == ByteLook::Kind::Blank)
        return Kind::Blank;
    const QChar character(CodePage1252::ToUnicode(uchar(byte)));
    return character.isLetterOrNumber() || character == u'_' ? Kind::Word : Kind::Sign;
}

} // namespace

void SequenceEditing::SetBytes(const QByteArray &bytes)
{
    Leave();
    m_document.Reset(bytes);
    m_caret = {};
    m_anchor = 0;
}

void SequenceEditing::SetForm(Representation form)
{
    FinishItem();
    Leave();
    m_form = form;
    m_caret.digit = 0;
}

// --- Caret --------------------------------------------------------------------------------------

QByteArray SequenceEditing::SelectedBytes() const
{
    return Bytes().sliced(SelectionStart(), SelectionEnd() - SelectionStart());
}

void SequenceEditing::Select(qsizetype anchor, qsizetype caret)
{
    Leave();
    m_anchor = qBound<qsizetype>(0, anchor, Length());
    m_caret = {qBound<qsizetype>(0, caret, Length()), 0};
}

void SequenceEditing::PlaceCaret(SequencePlace place)
{
    if (HasSelection() || place.byte != m_caret.byte)
        Leave();
    const bool inside = place.byte >= 0 && place.byte < Length();
    if (inside && place.digit > (m_unfinished > 0 ? m_unfinished : DigitsOf(place.byte) - 1))
        place = {place.byte + 1, 0};
    if (place.byte != m_caret.byte)
        Leave();
    m_caret = inside ? place : SequencePlace{qBound<qsizetype>(0, place.byte, Length()), 0};
    m_anchor = m_caret.byte;
}

void SequenceEditing::Move(Movement movement, bool select)
{
    if (HasSelection() && !select && movement == Movement::Next)
        return Select(SelectionEnd(), SelectionEnd());
    if (HasSelection() && !select && movement == Movement::Previous)
        return Select(SelectionStart(), SelectionStart());
    if (!select)
        return PlaceCaret(Destination(movement));
    const qsizetype back = m_caret.digit > 0 ? m_caret.byte : m_caret.byte - 1;
    if (movement == Movement::Next)
        SelectTo(m_caret.byte + 1);
    else
        SelectTo(movement == Movement::Previous ? back : Destination(movement).byte);
}

void SequenceEditing::SelectTo(qsizetype byte)
{
    const bool takesItem = m_caret.digit > 0 && byte <= m_caret.byte;
    Select(takesItem ? m_caret.byte + 1 : m_anchor, byte);
}

SequencePlace SequenceEditing::Destination(Movement movement) const
{
    switch (movement) {
    case Movement::Next:
        return NextPlace();
    case Movement::Previous:
        return PreviousPlace();
    case Movement::NextWord:
        return {NextUnit(m_caret.byte), 0};
    case Movement::PreviousWord:
        return {m_caret.digit > 0 ? m_caret.byte : PreviousUnit(m_caret.byte), 0};
    case Movement::Begin:
        return {};
    case Movement::End:
        return {Length(), 0};
    }
    return m_caret;
}

SequencePlace SequenceEditing::NextPlace() const
{
    if (m_caret.byte >= Length())
        return m_caret;
    if (m_unfinished > 0 && m_caret.digit < m_unfinished)
        return {m_caret.byte, m_caret.digit + 1};
    return m_unfinished > 0 ? SequencePlace{m_caret.byte + 1, 0}
                            : BehindDigit(m_caret.byte, m_caret.digit);
}

SequencePlace SequenceEditing::PreviousPlace() const
{
    if (m_caret.digit > 0)
        return {m_caret.byte, m_caret.digit - 1};
    if (m_caret.byte == 0)
        return m_caret;
    return {m_caret.byte - 1, SequenceText::ItemWidth(m_form) - 1};
}

SequencePlace SequenceEditing::BehindDigit(qsizetype byte, int digit) const
{
    const bool last = digit + 1 >= SequenceText::ItemWidth(m_form);
    return last ? SequencePlace{byte + 1, 0} : SequencePlace{byte, digit + 1};
}

/// Where the next item begins, in ASCII the next word.
qsizetype SequenceEditing::NextUnit(qsizetype byte) const
{
    if (byte >= Length() || !IsAscii())
        return qMin(byte + 1, Length());
    const Kind kind = KindOf(Bytes()[byte]);
    while (byte < Length() && KindOf(Bytes()[byte]) == kind)
        ++byte;
    while (byte < Length() && KindOf(Bytes()[byte]) == Kind::Blank)
        ++byte;
    return byte;
}

qsizetype SequenceEditing::PreviousUnit(qsizetype byte) const
{
    if (!IsAscii())
        return qMax<qsizetype>(byte - 1, 0);
    while (byte > 0 && KindOf(Bytes()[byte - 1]) == Kind::Blank)
        --byte;
    if (byte == 0)
        return 0;
    const Kind kind = KindOf(Bytes()[byte - 1]);
    while (byte > 0 && KindOf(Bytes()[byte - 1]) == kind)
        --byte;
    return byte;
}

void SequenceEditing::SelectUnitAt(qsizetype byte)
{
    byte = qBound<qsizetype>(0, byte, qMax<qsizetype>(Length() - 1, 0));
    qsizetype from = byte;
    qsizetype to = qMin(byte + 1, Length());
    const auto alike = [&](qsizetype at) { return KindOf(Bytes()[at]) == KindOf(Bytes()[byte]); };
    while (IsAscii() && from > 0 && alike(from - 1))
        --from;
    while (IsAscii() && to < Length() && alike(to))
        ++to;
    Select(from, to);
}

int SequenceEditing::DigitsOf(qsizetype byte) const
{
    return m_unfinished > 0 && byte == m_caret.byte ? m_unfinished
                                                    : SequenceText::ItemWidth(m_form);
}

void SequenceEditing::FinishItem()
{
    if (m_unfinished > 0)
        Select(m_caret.byte + 1, m_caret.byte + 1);
}

/// The caret goes elsewhere: what its item was is done with.
void SequenceEditing::Leave()
{
    m_unfinished = 0;
    m_itemStep = false;
}

// --- Typing -------------------------------------------------------------------------------------

QString SequenceEditing::Type(QStringView text)
{
    if (IsAscii()) {
        const SequenceText::Parsed parsed = SequenceText::Parse(text, m_form);
        if (!parsed.refusal.isEmpty())
            return parsed.refusal;
        QString refusal;
        for (qsizetype i = 0; i < parsed.bytes.size() && refusal.isEmpty(); ++i)
            refusal = TypeByte(parsed.bytes[i]);
        return refusal;
    }
    QString refusal;
    for (qsizetype i = 0; i < text.size() && refusal.isEmpty(); ++i)
        refusal = TypeDigit(text[i].unicode());
    return refusal;
}

QString SequenceEditing::TypeByte(char byte)
{
    const bool replaces = m_overtypes && !HasSelection() && m_caret.byte < Length();
    if (!replaces)
        return Insert({&byte, 1});
    ReplaceBytes(m_caret.byte, 1, {&byte, 1});
    return {};
}

QString SequenceEditing::TypeDigit(char16_t character)
{
    if (SequenceText::IsSeparator(character)) {
        PassSeparator();
        return {};
    }
    const int value = SequenceText::DigitValue(character, m_form);
    if (value < 0)
        return SequenceText::AllowedDigits(m_form);
    if (m_unfinished > 0)
        return AddDigit(char(character));
    const bool before = m_caret.digit == 0 && !(m_overtypes && m_caret.byte < Length());
    return HasSelection() || before ? BeginItem(value) : ReplaceDigit(char(character));
}

QString SequenceEditing::BeginItem(int value)
{
    const qsizetype from = SelectionStart();
    const qsizetype length = SelectionEnd() - from;
    if (QString refusal = RefuseLength(1 - length); !refusal.isEmpty())
        return refusal;
    const char byte = char(value);
    m_itemStep = m_document.Replace(from, length, {&byte, 1});
    m_caret = {from, 1};
    m_anchor = from;
    m_unfinished = 1;
    return {};
}

QString SequenceEditing::AddDigit(char digit)
{
    const QByteArray whole = SequenceText::Item(uchar(Bytes()[m_caret.byte]), m_form);
    const QByteArray digits = whole.right(m_unfinished).insert(m_caret.digit, digit);
    const int value = SequenceText::ValueOf(digits, m_form);
    if (value > 255)
        return QStringLiteral("%1 is above 255, the highest value of a byte.").arg(value);
    PutItem(digits);
    m_unfinished = digits.size() < whole.size() ? int(digits.size()) : 0;
    if (m_unfinished > 0)
        ++m_caret.digit;
    else
        PlaceCaret(BehindDigit(m_caret.byte, m_caret.digit));
    return {};
}

QString SequenceEditing::ReplaceDigit(char digit)
{
    QByteArray digits = SequenceText::Item(uchar(Bytes()[m_caret.byte]), m_form);
    digits[m_caret.digit] = digit;
    // 2 typed over 099 is the begin of 200 to 255, not a mistake.
    if (SequenceText::ValueOf(digits, m_form) > 255)
        for (qsizetype i = m_caret.digit + 1; i < digits.size(); ++i)
            digits[i] = '0';
    const int value = SequenceText::ValueOf(digits, m_form);
    if (value > 255)
        return QStringLiteral("%1 is above 255, the highest value of a byte.").arg(value);
    PutItem(digits);
    PlaceCaret(BehindDigit(m_caret.byte, m_caret.digit));
    return {};
}

void SequenceEditing::PassSeparator()
{
    if (m_caret.digit > 0 || m_unfinished > 0)
        Select(m_caret.byte + 1, m_caret.byte + 1);
}

/// The caret's item gets other digits, none for no item.
void SequenceEditing::PutItem(QByteArrayView digits)
{
    const char byte = char(SequenceText::ValueOf(digits, m_form));
    const QByteArrayView item(&byte, digits.isEmpty() ? 0 : 1);
    m_itemStep = m_itemStep ? m_document.Amend(item) : m_document.Replace(m_caret.byte, 1, item);
}

QString SequenceEditing::Paste(QStringView text)
{
    const SequenceText::Parsed parsed = SequenceText::Parse(text, m_form);
    return parsed.refusal.isEmpty() ? Insert(parsed.bytes) : parsed.refusal;
}

QString SequenceEditing::Insert(QByteArrayView bytes)
{
    const qsizetype length = SelectionEnd() - SelectionStart();
    if (bytes.isEmpty())
        return {};
    if (QString refusal = RefuseLength(bytes.size() - length); !refusal.isEmpty())
        return refusal;
    PassSeparator();
    ReplaceBytes(SelectionStart(), length, bytes);
    return {};
}

QString SequenceEditing::RefuseLength(qsizetype added) const
{
    if (Length() + added <= MaxLength || added <= 0)
        return {};
    return QStringLiteral("A sequence has at most %1 bytes.").arg(MaxLength);
}

void SequenceEditing::ReplaceBytes(qsizetype from, qsizetype length, QByteArrayView with)
{
    m_document.Replace(from, length, with);
    Select(from + with.size(), from + with.size());
}

// --- Erasing ------------------------------------------------------------------------------------

void SequenceEditing::EraseSelection()
{
    ReplaceBytes(SelectionStart(), SelectionEnd() - SelectionStart(), {});
}

void SequenceEditing::EraseBackward()
{
    if (HasSelection())
        return EraseSelection();
    if (m_caret.digit > 0)
        return EraseDigit(m_caret.digit - 1);
    if (m_caret.byte == 0)
        return;
    if (IsAscii())
        return ReplaceBytes(m_caret.byte - 1, 1, {});
    PlaceCaret({m_caret.byte - 1, 0});
    EraseDigit(SequenceText::ItemWidth(m_form) - 1);
}

void SequenceEditing::EraseForward()
{
    if (HasSelection())
        return EraseSelection();
    if (m_caret.digit > 0 && m_caret.digit < DigitsOf(m_caret.byte))
        return EraseDigit(m_caret.digit);
    if (m_caret.digit > 0)
        FinishItem();
    if (m_caret.byte < Length())
        ReplaceBytes(m_caret.byte, 1, {});
}

/// The digits left, if any, are an unfinished item with the caret where the digit was.
void SequenceEditing::EraseDigit(int digit)
{
    const QByteArray whole = SequenceText::Item(uchar(Bytes()[m_caret.byte]), m_form);
    const QByteArray left = whole.right(DigitsOf(m_caret.byte)).remove(digit, 1);
    PutItem(left);
    m_unfinished = int(left.size());
    m_itemStep = m_itemStep && !left.isEmpty();
    m_caret.digit = digit;
    m_anchor = m_caret.byte;
}

void SequenceEditing::EraseUnitBackward()
{
    if (HasSelection())
        return EraseSelection();
    const qsizetype from = m_caret.digit > 0 ? m_caret.byte : PreviousUnit(m_caret.byte);
    const qsizetype to = m_caret.digit > 0 ? m_caret.byte + 1 : m_caret.byte;
    ReplaceBytes(from, to - from, {});
}

void SequenceEditing::EraseUnitForward()
{
    if (HasSelection())
        return EraseSelection();
    ReplaceBytes(m_caret.byte, NextUnit(m_caret.byte) - m_caret.byte, {});
}

// --- History ------------------------------------------------------------------------------------

void SequenceEditing::Undo()
{
    if (!m_document.CanUndo())
        return;
    const qsizetype place = m_document.Undo();
    Select(place, place);
}

void SequenceEditing::Redo()
{
    if (!m_document.CanRedo())
        return;
    const qsizetype place = m_document.Redo();
    Select(place, place);
}
