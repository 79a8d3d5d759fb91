// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "RichTextPainter.h"

#include "BgrColour.h"
#include "RichTextLayout.h"
#include "RichTextModel.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace
{

size_t FaceOf(const TextStyle &style)
{
    return (style.bold ? 1U : 0U) + (style.italic ? 2U : 0U);
}

} // namespace

RichTextPainter::RichTextPainter(const QFont &font, qreal devicePixelRatio,
                                 ByteFace::Controls controls)
{
    qreal ascent = 0;
    qreal descent = 0;
    for (size_t i = 0; i < m_faces.size(); ++i) {
        QFont variant = font;
        variant.setBold(i & 1U);
        variant.setItalic(i & 2U);
        m_faces[i] = ByteFace(variant, devicePixelRatio, controls);
        const QRawFont &raw = m_faces[i].Font();
        ascent = qMax(ascent, raw.ascent());
        descent = qMax(descent, raw.descent() + raw.leading());
    }
    const qreal ratio = devicePixelRatio > 0 ? devicePixelRatio : 1;
    m_ascent = std::ceil(ascent * ratio) / ratio;
    m_rowHeight = qMax(std::ceil((m_ascent + descent) * ratio), 1.0) / ratio;
}

QColor RichTextPainter::ToGrey(const QColor &colour)
{
    const int grey = qGray(colour.rgb());
    return {grey, grey, grey};
}

void RichTextPainter::Paint(QPainter &painter, const RichTextLayout &layout, const Part &part) const
{
    // Italic glyphs overhang their cells, so all backgrounds come before all text.
    if (part.selectionBack.isValid() && layout.Model().HasSelection())
        PaintSelection(painter, layout, part);

    const qsizetype end = qMin(part.firstRow + part.rowCount, layout.RowCount());
    Inks inks;
    painter.save();
    for (qsizetype row = part.firstRow; row < end; ++row) {
        CollectRow(inks, layout, row, part);
        for (Ink &ink : inks)
            DrawInk(painter, ink);
        painter.translate(0, m_rowHeight);
    }
    painter.restore();
}

void RichTextPainter::PaintSelection(QPainter &painter, const RichTextLayout &layout,
                                     const Part &part) const
{
    const qint64 from = layout.Model().SelectionStart();
    const qint64 to = layout.Model().SelectionEnd();
    const qsizetype first = qMax(part.firstRow, layout.RowOf(from));
    const qsizetype end =
        qMin(qMin(part.firstRow + part.rowCount, layout.RowCount()), layout.RowOf(to) + 1);
    for (qsizetype row = first; row < end; ++row) {
        const int left = from <= layout.RowStart(row) ? 0 : layout.ColumnOf(row, from);
        int right = qMin(layout.ColumnOf(row, to), layout.Columns());
        // A selected line break shows as one more column, so that an empty line can be seen.
        if (to > layout.RowTextEnd(row) && layout.RowTextEnd(row) < layout.RowEnd(row))
            ++right;
        if (right > left)
            painter.fillRect(QRectF(left * Advance(), qreal(row - part.firstRow) * m_rowHeight,
                                    (right - left) * Advance(), m_rowHeight),
                             part.selectionBack);
    }
}

RichTextPainter::Ink &RichTextPainter::InkFor(Inks &inks, size_t face, const QColor &colour)
{
    const auto found = std::find_if(inks.begin(), inks.end(), [&](const Ink &ink) {
        return ink.face == face && ink.colour == colour;
    });
    return found != inks.end() ? *found : inks.emplace_back(Ink{face, colour});
}

/// Sorts what a row shows by face and colour, so that each takes one drawing call. A call never
/// spans rows: not every paint engine honours the height of each single glyph.
void RichTextPainter::CollectRow(Inks &inks, const RichTextLayout &layout, qsizetype row,
                                 const Part &part) const
{
    const RichTextModel &model = layout.Model();
    const bool showsSelection = part.selectionBack.isValid();
    const qint64 selectionStart = showsSelection ? model.SelectionStart() : 0;
    const qint64 selectionEnd = showsSelection ? model.SelectionEnd() : 0;
    const qint64 end = layout.RowTextEnd(row);
    int column = 0;
    for (qint64 at = layout.RowStart(row); at < end && column < layout.Columns();) {
        const RichTextModel::StyleRun &run = model.RunAt(at);
        qint64 to = qMin(run.end, end);
        const bool selected = at >= selectionStart && at < selectionEnd;
        if (selected)
            to = qMin(to, selectionEnd);
        else if (at < selectionStart)
            to = qMin(to, selectionStart);
        const QColor colour = selected ? part.selectionText : BgrColour::ToColour(run.style.colour);
        column = CollectSegment(inks, layout,
                                {at, to, column, run.style, part.grey ? ToGrey(colour) : colour});
        at = to;
    }
}

/// Returns the column behind the segment.
int RichTextPainter::CollectSegment(Inks &inks, const RichTextLayout &layout,
                                    const Segment &segment) const
{
    const RichTextModel &model = layout.Model();
    Ink &ink = InkFor(inks, FaceOf(segment.style), segment.colour);
    const ByteFace &face = m_faces[ink.face];
    const qreal advance = Advance();
    int column = segment.column;
    for (qint64 at = segment.from; at < segment.to && column < layout.Columns(); ++at) {
        const uchar byte = model.ByteAt(at);
        ink.bytes.Add(face, byte, {column * advance, 0, advance, m_rowHeight}, m_ascent);
        column = RichTextLayout::ColumnBehind(byte, column);
    }
    column = qMin(column, layout.Columns());
    if (segment.style.underline) {
        const qreal thickness = qMax(face.Font().lineThickness(), 1.0);
        const qreal top =
            qMin(m_ascent + qMax(face.Font().underlinePosition(), 1.0), m_rowHeight - thickness);
        ink.lines.emplace_back(segment.column * Advance(), std::floor(top),
                               (column - segment.column) * Advance(), thickness);
    }
    return column;
}

void RichTextPainter::DrawInk(QPainter &painter, Ink &ink) const
{
    ink.bytes.Draw(painter, m_faces[ink.face], ink.colour);
    for (const QRectF &line : ink.lines)
        painter.fillRect(line, ink.colour);
    ink.lines.clear();
}
