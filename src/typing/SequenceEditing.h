// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Representation.h"
#include "SequenceDocument.h"
#include "SequencePlace.h"

#include <QString>
#include <QStringView>

/// What a user does to a byte sequence by typing it in one of the four forms: caret, selection,
/// digits, history. It knows nothing of widgets.
///
/// Digits: between two items a digit begins a new one, in the middle of an item it replaces the
/// digit behind the caret; when overtyping it does so before an item, too. An item with digits
/// still missing is unfinished: it shows what was typed and counts with that value, so the bytes
/// are complete at any time. It is the caret's item; leaving it finishes it.
///
/// One typed byte, one erasure, one paste is one step of the history.
///
/// Invariants: caret and anchor lie in the sequence, its end included; while bytes are selected
/// the caret is at the begin of an item and no item is unfinished.
class SequenceEditing final
{
  public:
    /// The user cannot make a sequence longer than this.
    static constexpr qsizetype MaxLength = 1048576;

    enum class Movement { Next, Previous, NextWord, PreviousWord, Begin, End };

    const QByteArray &Bytes() const { return m_document.Bytes(); }
    qsizetype Length() const { return Bytes().size(); }
    const SequenceDocument &Document() const { return m_document; }
    /// Other bytes without a history, the caret at their begin.
    void SetBytes(const QByteArray &bytes);

    Representation Form() const { return m_form; }
    /// Keeps bytes and history, the caret's byte and the selection.
    void SetForm(Representation form);

    bool Overtypes() const { return m_overtypes; }
    void SetOvertypes(bool overtypes) { m_overtypes = overtypes; }

    SequencePlace Caret() const { return m_caret; }
    qsizetype Anchor() const { return m_anchor; }
    qsizetype SelectionStart() const { return qMin(m_anchor, m_caret.byte); }
    qsizetype SelectionEnd() const { return qMax(m_anchor, m_caret.byte); }
    bool HasSelection() const { return m_anchor != m_caret.byte; }
    QByteArray SelectedBytes() const;
    /// The bytes between the two, the caret at the second.
    void Select(qsizetype anchor, qsizetype caret);
    /// The anchor stays; an item that the caret is in the middle of is selected whole.
    void SelectTo(qsizetype byte);
    void PlaceCaret(SequencePlace place);
    void Move(Movement movement, bool select);
    /// The byte in the digit forms, the word around it in ASCII.
    void SelectUnitAt(qsizetype byte);

    /// How many digits of a byte's item there are.
    int DigitsOf(qsizetype byte) const;
    /// Whether the caret's item has digits missing.
    bool IsUnfinished() const { return m_unfinished > 0; }
    /// Finishes an unfinished item; the caret is then behind it.
    void FinishItem();

    /// All that follow tell the user what they refuse; empty if they did it. A separator typed
    /// finishes an item and is no byte.
    QString Type(QStringView text);
    QString Paste(QStringView text);
    /// In the place of the selection; in the middle of an item, behind it.
    QString Insert(QByteArrayView bytes);
    /// As typed in ASCII: overtyping, it replaces a byte.
    QString TypeByte(char byte);

    /// Backspace takes a typed digit back, in ASCII a byte.
    void EraseBackward();
    /// Erases the byte behind the caret; in the middle of an item, the digit.
    void EraseForward();
    /// The item or word before the caret, or that the caret is in.
    void EraseUnitBackward();
    void EraseUnitForward();
    void EraseSelection();

    void Undo();
    void Redo();

  private:
    bool IsAscii() const { return m_form == Representation::Ascii; }
    void Leave();
    SequencePlace NextPlace() const;
    SequencePlace PreviousPlace() const;
    qsizetype NextUnit(qsizetype byte) const;
    qsizetype PreviousUnit(qsizetype byte) const;
    SequencePlace Destination(Movement movement) const;
    SequencePlace BehindDigit(qsizetype byte, int digit) const;

    QString TypeDigit(char16_t character);
    QString BeginItem(int value);
    QString AddDigit(char digit);
    QString ReplaceDigit(char digit);
    void PassSeparator();
    void EraseDigit(int digit);
    void PutItem(QByteArrayView digits);
    void ReplaceBytes(qsizetype from, qsizetype length, QByteArrayView with);
    QString RefuseLength(qsizetype added) const;

    SequenceDocument m_document;
    Representation m_form = Representation::Ascii;
    bool m_overtypes = false;
    SequencePlace m_caret;
    qsizetype m_anchor = 0;
    int m_unfinished = 0;    ///< digits of the caret's item if it is unfinished, else 0
    bool m_itemStep = false; ///< the last step is about the caret's item alone
};
