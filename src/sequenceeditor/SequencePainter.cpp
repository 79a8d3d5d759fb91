// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SequencePainter.h"

#include "CodePage1252.h"
#include "ControlPictures.h"
#include "SequenceEditing.h"
#include "SequenceLayout.h"
#include "SequenceText.h"

#include <QFontMetricsF>
#include <QGlyphRun>
#include <QPainter>

#include <cmath>

namespace
{

/// The character that shows a byte: a soft hyphen has no width of its own.
QChar ShapeOf(uchar byte)
{
    return byte == 0xAD ? QChar(u'-') : QChar(CodePage1252::ToUnicode(byte));
}

bool IsBlank(uchar byte)
{
    return byte == ' ' || byte == 0xA0;
}

} // namespace

SequencePainter::SequencePainter(const QFont &font, qreal devicePixelRatio)
    : m_font(QRawFont::fromFont(font))
{
    for (unsigned byte = 0; byte < m_glyphs.size(); ++byte) {
        const QChar shape = ShapeOf(uchar(byte));
        const QList<quint32> found = m_font.glyphIndexesForString(QString(shape));
        const bool shaped = shape.category() != QChar::Other_Control && !found.isEmpty();
        m_glyphs[byte] = shaped ? found.first() : 0;
    }
    const QList<QPointF> advances = m_font.advancesForGlyphIndexes({m_glyphs['0']});
    m_advance = advances.isEmpty() ? 0 : advances.first().x();
    if (m_advance <= 0)
        m_advance = qMax(QFontMetricsF(font).horizontalAdvance(u'0'), 1.0);

    const qreal ratio = devicePixelRatio > 0 ? devicePixelRatio : 1;
    const auto whole = [ratio](qreal length) { return std::ceil(length * ratio) / ratio; };
    m_unit = qMax(std::floor(m_advance * ratio / (ControlPictures::Pitch + 2)), 1.0) / ratio;
    const qreal text = whole(m_font.ascent()) + whole(m_font.descent());
    m_rowHeight = text + whole(2); // room between the grounds of the pictures
    m_baseline = whole((m_rowHeight - text) / 2) + whole(m_font.ascent());
}

void SequencePainter::Paint(QPainter &painter, const SequenceEditing &editing,
                            const SequenceLayout &layout, const Part &part) const
{
    Ink plain;
    Ink selected;
    const qsizetype endRow = qMin(part.firstRow + part.rowCount, layout.RowCount());
    for (qsizetype row = part.firstRow; row < endRow; ++row) {
        QPointF corner(0, qreal(row - part.firstRow) * m_rowHeight);
        for (qsizetype at = layout.RowStart(row); at < layout.RowEnd(row); ++at) {
            const bool isSelected = at >= editing.SelectionStart() && at < editing.SelectionEnd();
            const bool goesOn = at + 1 < qMin(editing.SelectionEnd(), layout.RowEnd(row));
            const int columns = goesOn ? layout.PitchOf(at) : layout.WidthOf(at);
            if (isSelected)
                painter.fillRect(QRectF(corner, QSizeF(columns * m_advance, m_rowHeight)),
                                 part.selectionBack);
            CollectItem(isSelected ? selected : plain, editing, at, corner);
            corner.rx() += layout.PitchOf(at) * m_advance;
        }
    }
    DrawInk(painter, plain, part.text);
    DrawInk(painter, selected, part.selectionText);
}

void SequencePainter::CollectItem(Ink &ink, const SequenceEditing &editing, qsizetype at,
                                  const QPointF &corner) const
{
    const auto byte = uchar(editing.Bytes()[at]);
    if (editing.Form() == Representation::Ascii)
        return CollectByte(ink, byte, corner);
    const QByteArray digits = SequenceText::Item(byte, editing.Form()).right(editing.DigitsOf(at));
    for (qsizetype i = 0; i < digits.size(); ++i) {
        ink.glyphs.push_back(m_glyphs[uchar(digits[i])]);
        ink.positions.push_back(corner + QPointF(qreal(i) * m_advance, m_baseline));
    }
}

void SequencePainter::CollectByte(Ink &ink, uchar byte, const QPointF &corner) const
{
    const QByteArrayView name = SequenceText::ControlName(byte);
    const qreal columns = qreal(qMax<qsizetype>(name.size(), 1));
    const QRectF cell(corner, QSizeF(columns * m_advance, m_rowHeight));
    if (!name.isEmpty()) {
        ink.pictures.push_back({cell, byte});
    } else if (m_glyphs[byte] == 0) {
        ink.boxes.push_back(cell);
    } else if (!IsBlank(byte)) {
        ink.glyphs.push_back(m_glyphs[byte]);
        ink.positions.push_back(corner + QPointF(0, m_baseline));
    }
}

void SequencePainter::DrawInk(QPainter &painter, const Ink &ink, const QColor &colour) const
{
    painter.setPen(colour);
    if (!ink.glyphs.empty()) {
        QGlyphRun run;
        run.setRawFont(m_font);
        run.setRawData(ink.glyphs.data(), ink.positions.data(), int(ink.glyphs.size()));
        painter.drawGlyphRun({}, run);
    }
    for (const QRectF &cell : ink.boxes) {
        const qreal top = std::floor(cell.top() + m_baseline - m_font.capHeight()) + 0.5;
        const qreal bottom = std::floor(cell.top() + m_baseline) - 0.5;
        painter.drawRect(QRectF(std::floor(cell.left()) + 1.5, top,
                                qMax(std::floor(cell.width()) - 3, 1.0), bottom - top));
    }
    QColor tint = colour;
    tint.setAlphaF(0.13F);
    for (const Ink::Picture &picture : ink.pictures) {
        const QRectF ground = picture.cell.adjusted(1, 1, -1, -1);
        painter.fillRect(ground, tint);
        ControlPictures::Draw(painter, picture.cell, SequenceText::ControlName(picture.byte),
                              m_unit);
    }
}
