// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SequenceAccessible.h"

#include "ByteLook.h"
#include "SQEditSequence.h"
#include "SequenceText.h"

QAccessibleInterface *SequenceAccessible::Create(const QString &, QObject *object)
{
    auto *control = qobject_cast<SQEditSequence *>(object);
    return control ? new SequenceAccessible(*control) : nullptr;
}

SequenceAccessible::SequenceAccessible(SQEditSequence &control)
    : TextAccessible(control), m_control(control)
{
}

QString SequenceAccessible::text(QAccessible::Text kind) const
{
    return kind == QAccessible::Value ? ShownText() : QAccessibleWidget::text(kind);
}

int SequenceAccessible::characterCount() const
{
    const int items = int(m_control.Editing().Length());
    const int blanks = Pitch() - SequenceText::ItemWidth(m_control.Editing().Form());
    return items > 0 ? items * Pitch() - blanks : 0;
}

QString SequenceAccessible::text(int startOffset, int endOffset) const
{
    const int from = qBound(0, startOffset, characterCount());
    const int to = endOffset < 0 ? characterCount() : qBound(from, endOffset, characterCount());
    return ShownText().mid(from, to - from);
}

int SequenceAccessible::cursorPosition() const
{
    return OffsetOf(m_control.Editing().Caret());
}

void SequenceAccessible::setCursorPosition(int position)
{
    m_control.MoveCaret(PlaceOf(position));
}

void SequenceAccessible::selection(int index, int *startOffset, int *endOffset) const
{
    const SequenceEditing &editing = m_control.Editing();
    const bool there = index == 0 && editing.HasSelection();
    *startOffset = there ? OffsetOf({editing.SelectionStart(), 0}) : 0;
    *endOffset = there ? OffsetOf({editing.SelectionEnd(), 0}) : 0;
}

void SequenceAccessible::removeSelection(int index)
{
    const qsizetype caret = m_control.Editing().Caret().byte;
    if (index == 0 && m_control.HasSelection())
        m_control.SelectBytes(caret, caret);
}

/// Bytes are selected whole: those that the offsets touch.
void SequenceAccessible::setSelection(int index, int startOffset, int endOffset)
{
    const SequencePlace end = PlaceOf(endOffset);
    if (index == 0)
        m_control.SelectBytes(PlaceOf(startOffset).byte, end.byte + (end.digit > 0 ? 1 : 0));
}

QRect SequenceAccessible::characterRect(int offset) const
{
    const SequencePlace place = PlaceOf(offset);
    const QRectF rect = m_control.ItemRect(place.byte);
    const qreal width = rect.width() / SequenceText::ItemWidth(m_control.Editing().Form());
    return OnScreen({rect.left() + place.digit * width, rect.top(), width, rect.height()});
}

int SequenceAccessible::offsetAtPoint(const QPoint &point) const
{
    const qsizetype byte = m_control.ByteAt(m_control.viewport()->mapFromGlobal(point));
    return byte < 0 ? -1 : OffsetOf({byte, 0});
}

void SequenceAccessible::scrollToSubstring(int startIndex, int)
{
    m_control.ScrollToByte(PlaceOf(startIndex).byte);
}

QString SequenceAccessible::attributes(int, int *startOffset, int *endOffset) const
{
    *startOffset = 0;
    *endOffset = characterCount();
    return {};
}

QString SequenceAccessible::ShownText() const
{
    const SequenceEditing &editing = m_control.Editing();
    return ByteLook::ToPictures(SequenceText::Of(editing.Bytes(), editing.Form()));
}

int SequenceAccessible::Pitch() const
{
    return SequenceText::ItemPitch(m_control.Editing().Form());
}

SequencePlace SequenceAccessible::PlaceOf(int offset) const
{
    const SequenceEditing &editing = m_control.Editing();
    if (offset == -2)
        return editing.Caret();
    if (offset < 0 || offset >= characterCount())
        return {editing.Length(), 0};
    const int digit = offset % Pitch();
    const bool behind = digit >= SequenceText::ItemWidth(editing.Form());
    return behind ? SequencePlace{offset / Pitch() + 1, 0} : SequencePlace{offset / Pitch(), digit};
}

int SequenceAccessible::OffsetOf(SequencePlace place) const
{
    return qMin(int(place.byte) * Pitch() + place.digit, characterCount());
}
