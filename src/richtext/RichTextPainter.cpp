// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "RichTextPainter.h"

#include "Common_Function.h"
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

bool IsSelected(const RichTextModel &model, qint64 position, const RichTextPainter::Part &part)
{
    return part.selectionBack.isValid() && position >= model.SelectionStart() &&
           position < model.SelectionEnd();
}

QColor ColourOf(const TextStyle &style, bool selected, const RichTextPainter::Part &part)
{
    const QColor colour = selected ? part.selectionText : part.colours.TextOf(style.colour);
    return part.grey ? RichTextPainter::ToGrey(colour) : colour;
}

QColor PaleOf(QColor colour)
{
    colour.setAlphaF(0.6F);
    return colour;
}

} // namespace

RichTextPainter::RichTextPainter(const QFont &font, qreal devicePixelRatio,
                                 ByteFace::Controls controls)
    : m_faces(FacesOf(font, devicePixelRatio > 0 ? devicePixelRatio : 1, controls)),
      m_pictures(controls != ByteFace::Controls::LaidOutBoxes)
{
}

RichTextPainter::Faces::Faces(const QFont &ofFont, qreal devicePixelRatio,
                              ByteFace::Controls shownControls)
    : font(ofFont), ratio(devicePixelRatio), controls(shownControls)
{
    const QRawFont &raw = Of(0).Font();
    ascent = std::ceil(raw.ascent() * ratio) / ratio;
    const qreal descent = raw.descent() + raw.leading();
    rowHeight = qMax(std::ceil((ascent + descent) * ratio), 1.0) / ratio;
}

const ByteFace &RichTextPainter::Faces::Of(size_t style) const
{
    std::optional<ByteFace> &face = byStyle[style];
    if (!face) {
        QFont variant = font;
        variant.setBold(style & 1U);
        variant.setItalic(style & 2U);
        face.emplace(variant, ratio, controls);
    }
    return *face;
}

std::shared_ptr<const RichTextPainter::Faces>
RichTextPainter::FacesOf(const QFont &font, qreal ratio, ByteFace::Controls controls)
{
    static thread_local std::weak_ptr<const Faces> latest; // printing has a thread of its own
    std::shared_ptr<const Faces> faces = latest.lock();
    if (!faces || faces->font != font || faces->ratio != ratio || faces->controls != controls) {
        faces = std::make_shared<const Faces>(font, ratio, controls);
        latest = faces;
    }
    return faces;
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
    RowInks inks;
    painter.save();
    for (qsizetype row = part.firstRow; row < end; ++row) {
        CollectRow(inks, layout, row, part);
        for (Ink &ink : inks.text)
            DrawInk(painter, ink);
        for (Ink &ink : inks.pale)
            DrawInk(painter, ink);
        painter.translate(0, m_faces->rowHeight);
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
        const qint64 textEnd = layout.RowTextEnd(row);
        const qreal top = qreal(row - part.firstRow) * m_faces->rowHeight;
        // A selected line break shows, so that an empty line can be seen: as its pictures, or as
        // one more column.
        if (ShowsBreak(layout, row)) {
            for (qint64 at = qMax(from, textEnd); at < qMin(to, layout.RowEnd(row)); ++at)
                painter.fillRect(BreakRect(layout, at, part.width).translated(0, top),
                                 part.selectionBack);
        } else if (to > textEnd && textEnd < layout.RowEnd(row)) {
            ++right;
        }
        if (right > left)
            painter.fillRect(
                QRectF(left * Advance(), top, (right - left) * Advance(), m_faces->rowHeight),
                part.selectionBack);
    }
}

/// What the program or the user has broken is no traffic.
bool RichTextPainter::ShowsBreak(const RichTextLayout &layout, qsizetype row) const
{
    const qint64 textEnd = layout.RowTextEnd(row);
    return m_pictures && textEnd < layout.RowEnd(row) && !layout.Model().RunAt(textEnd).style.aside;
}

QRectF RichTextPainter::BreakRect(const RichTextLayout &layout, qint64 position, qreal width) const
{
    const qsizetype row = layout.RowOf(position);
    const qint64 textEnd = layout.RowTextEnd(row);
    if (position < textEnd || !ShowsBreak(layout, row))
        return {};
    const qreal left = qMin(layout.ColumnOf(row, textEnd), layout.Columns()) * Advance();
    const qreal room = qMax(width - left, 0.0) / qreal(layout.RowEnd(row) - textEnd);
    const qreal pitch = qMin(room, Advance());
    return {left + qreal(position - textEnd) * pitch, 0, pitch, m_faces->rowHeight};
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
void RichTextPainter::CollectRow(RowInks &inks, const RichTextLayout &layout, qsizetype row,
                                 const Part &part) const
{
    const RichTextModel &model = layout.Model();
    const qint64 end = layout.RowTextEnd(row);
    int column = 0;
    for (qint64 at = layout.RowStart(row); at < end && column < layout.Columns();) {
        const RichTextModel::StyleRun &run = model.RunAt(at);
        qint64 to = qMin(run.end, end);
        const bool selected = IsSelected(model, at, part);
        if (selected)
            to = qMin(to, model.SelectionEnd());
        else if (at < model.SelectionStart())
            to = qMin(to, model.SelectionStart());
        column = CollectSegment(inks, layout,
                                {at, to, column, run.style, ColourOf(run.style, selected, part)});
        at = to;
    }
    if (ShowsBreak(layout, row))
        CollectBreak(inks, layout, row, part);
}

/// CR and LF may be of two styles.
void RichTextPainter::CollectBreak(RowInks &inks, const RichTextLayout &layout, qsizetype row,
                                   const Part &part) const
{
    const RichTextModel &model = layout.Model();
    for (qint64 at = layout.RowTextEnd(row); at < layout.RowEnd(row); ++at) {
        const TextStyle &style = model.RunAt(at).style;
        const QColor colour = PaleOf(ColourOf(style, IsSelected(model, at, part), part));
        Ink &ink = InkFor(inks.pale, FaceOf(style), colour);
        ink.bytes.AddPicture(m_faces->Of(ink.face), model.ByteAt(at),
                             BreakRect(layout, at, part.width));
    }
}

/// Returns the column behind the segment.
int RichTextPainter::CollectSegment(RowInks &inks, const RichTextLayout &layout,
                                    const Segment &segment) const
{
    const RichTextModel &model = layout.Model();
    Ink &ink = InkFor(inks.text, FaceOf(segment.style), segment.colour);
    const ByteFace &face = m_faces->Of(ink.face);
    const qreal advance = Advance();
    int column = segment.column;
    for (qint64 at = segment.from; at < segment.to && column < layout.Columns(); ++at) {
        const uchar byte = model.ByteAt(at);
        const QRectF cell(column * advance, 0, advance, m_faces->rowHeight);
        const bool mayBeZero = m_pictures && byte == uchar(Common_Function::HiddenByteMark);
        ink.bytes.Add(face, mayBeZero && model.StandsForZero(at) ? 0 : byte, cell, m_faces->ascent);
        if (byte == '\t' && m_pictures && !segment.style.aside)
            InkFor(inks.pale, ink.face, PaleOf(segment.colour)).bytes.AddPicture(face, byte, cell);
        column = RichTextLayout::ColumnBehind(byte, column);
    }
    column = qMin(column, layout.Columns());
    if (segment.style.underline) {
        const qreal thickness = qMax(face.Font().lineThickness(), 1.0);
        const qreal top = qMin(m_faces->ascent + qMax(face.Font().underlinePosition(), 1.0),
                               m_faces->rowHeight - thickness);
        ink.lines.emplace_back(segment.column * Advance(), std::floor(top),
                               (column - segment.column) * Advance(), thickness);
    }
    return column;
}

void RichTextPainter::DrawInk(QPainter &painter, Ink &ink) const
{
    ink.bytes.Draw(painter, m_faces->Of(ink.face), ink.colour);
    for (const QRectF &line : ink.lines)
        painter.fillRect(line, ink.colour);
    ink.lines.clear();
}
