// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "RichTextAccessible.h"

#include "BgrColour.h"
#include "CodePage1252.h"
#include "RichTextBox.h"
#include "RichTextModel.h"

using RichTextSteps::Span;

QAccessibleInterface *RichTextAccessible::Create(const QString &, QObject *object)
{
    auto *box = qobject_cast<RichTextBox *>(object);
    return box ? new RichTextAccessible(*box) : nullptr;
}

RichTextAccessible::RichTextAccessible(RichTextBox &box) : TextAccessible(box), m_box(box) {}

int RichTextAccessible::characterCount() const
{
    return int(m_box.Model().Length());
}

QString RichTextAccessible::text(int startOffset, int endOffset) const
{
    return Tell({PositionOf(startOffset), PositionOf(endOffset)}, nullptr, nullptr);
}

QString RichTextAccessible::textBeforeOffset(int offset, QAccessible::TextBoundaryType boundary,
                                             int *startOffset, int *endOffset) const
{
    const Span span = SpanAt(PositionOf(offset), boundary);
    const bool first = span.from <= m_box.Model().Begin();
    return Tell(first ? Span{span.from, span.from} : SpanAt(span.from - 1, boundary), startOffset,
                endOffset);
}

QString RichTextAccessible::textAfterOffset(int offset, QAccessible::TextBoundaryType boundary,
                                            int *startOffset, int *endOffset) const
{
    const Span span = SpanAt(PositionOf(offset), boundary);
    const bool last = span.to >= m_box.Model().End();
    return Tell(last ? Span{span.to, span.to} : SpanAt(span.to, boundary), startOffset, endOffset);
}

QString RichTextAccessible::textAtOffset(int offset, QAccessible::TextBoundaryType boundary,
                                         int *startOffset, int *endOffset) const
{
    return Tell(SpanAt(PositionOf(offset), boundary), startOffset, endOffset);
}

int RichTextAccessible::cursorPosition() const
{
    return OffsetOf(m_box.Model().Caret());
}

void RichTextAccessible::setCursorPosition(int position)
{
    m_box.Model().Select(PositionOf(position), PositionOf(position));
    m_box.ScrollToSelection();
}

void RichTextAccessible::selection(int index, int *startOffset, int *endOffset) const
{
    const bool there = index == 0 && m_box.HasSelection();
    *startOffset = there ? OffsetOf(m_box.Model().SelectionStart()) : 0;
    *endOffset = there ? OffsetOf(m_box.Model().SelectionEnd()) : 0;
}

void RichTextAccessible::removeSelection(int index)
{
    if (index == 0)
        m_box.Model().Select(m_box.Model().Caret(), m_box.Model().Caret());
}

void RichTextAccessible::setSelection(int index, int startOffset, int endOffset)
{
    if (index == 0)
        m_box.Model().Select(PositionOf(startOffset), PositionOf(endOffset));
}

QRect RichTextAccessible::characterRect(int offset) const
{
    return OnScreen(m_box.CharacterRect(PositionOf(offset)));
}

int RichTextAccessible::offsetAtPoint(const QPoint &point) const
{
    const QPoint inside = m_box.viewport()->mapFromGlobal(point);
    return m_box.viewport()->rect().contains(inside) ? OffsetOf(m_box.PositionAt(inside)) : -1;
}

void RichTextAccessible::scrollToSubstring(int startIndex, int)
{
    m_box.ScrollToPosition(PositionOf(startIndex));
}

QString RichTextAccessible::attributes(int offset, int *startOffset, int *endOffset) const
{
    const RichTextModel &model = m_box.Model();
    const qint64 position = PositionOf(offset);
    *startOffset = *endOffset = OffsetOf(position);
    if (position >= model.End())
        return {};
    const RichTextModel::StyleRun &run = model.RunAt(position);
    *endOffset = OffsetOf(run.end);
    const QColor colour = BgrColour::ToColour(run.style.colour);
    QString told = QStringLiteral("color:rgb(%1,%2,%3)")
                       .arg(colour.red())
                       .arg(colour.green())
                       .arg(colour.blue());
    if (run.style.bold)
        told += QStringLiteral(";font-weight:bold");
    if (run.style.italic)
        told += QStringLiteral(";font-style:italic");
    if (run.style.underline)
        told += QStringLiteral(";text-underline-type:single");
    return told;
}

qint64 RichTextAccessible::PositionOf(int offset) const
{
    const RichTextModel &model = m_box.Model();
    if (offset == -1)
        return model.End();
    if (offset == -2)
        return model.Caret();
    return qBound(model.Begin(), model.Begin() + offset, model.End());
}

int RichTextAccessible::OffsetOf(qint64 position) const
{
    return int(position - m_box.Model().Begin());
}

Span RichTextAccessible::SpanAt(qint64 position, QAccessible::TextBoundaryType boundary) const
{
    const RichTextModel &model = m_box.Model();
    switch (boundary) {
    case QAccessible::CharBoundary:
        position -= RichTextSteps::IsInsideCrLf(model, position) ? 1 : 0;
        return {position, RichTextSteps::Next(model, position)};
    case QAccessible::WordBoundary:
        return RichTextSteps::WordAt(model, position);
    case QAccessible::LineBoundary: {
        const RichTextLayout &layout = m_box.Layout();
        const qsizetype row = layout.RowOf(position);
        return {layout.RowStart(row), layout.RowEnd(row)};
    }
    case QAccessible::SentenceBoundary:
    case QAccessible::ParagraphBoundary:
        return RichTextSteps::LineAt(model, position);
    case QAccessible::NoBoundary:
        break;
    }
    return {model.Begin(), model.End()};
}

QString RichTextAccessible::Tell(Span span, int *startOffset, int *endOffset) const
{
    const RichTextModel &model = m_box.Model();
    if (startOffset)
        *startOffset = OffsetOf(span.from);
    if (endOffset)
        *endOffset = OffsetOf(span.to);
    const qint64 length = qMax<qint64>(span.to - span.from, 0);
    return CodePage1252::ToUnicode(model.Bytes().sliced(span.from - model.Begin(), length));
}
