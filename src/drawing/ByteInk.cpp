// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ByteInk.h"

#include <QGlyphRun>
#include <QPainter>

#include <cmath>

void ByteInk::Draw(QPainter &painter, const ByteFace &face, const QColor &colour)
{
    painter.setPen(colour);
    if (!m_glyphs.empty()) {
        QGlyphRun run;
        run.setRawFont(face.Font());
        run.setRawData(m_glyphs.data(), m_positions.data(), int(m_glyphs.size()));
        painter.drawGlyphRun({}, run);
    }
    for (const Box &box : m_boxes)
        DrawBox(painter, box);
    m_pictures.Draw(painter, face.Dot());
    m_glyphs.clear();
    m_positions.clear();
    m_boxes.clear();
}

/// What is drawn by hand.
void ByteInk::AddSign(const ByteFace &face, uchar byte, const QRectF &cell, qreal baseline)
{
    if (face[byte] == ByteFace::Box)
        m_boxes.push_back({cell, baseline});
    else
        AddPicture(face, byte, cell);
}

/// From the baseline to the height of a small letter.
void ByteInk::DrawBox(QPainter &painter, const Box &box)
{
    const qreal left = std::floor(box.cell.left()) + 1.5;
    const qreal width = std::floor(box.cell.width()) - 2;
    const qreal top = box.cell.top() + std::ceil(box.baseline * 0.3) + 0.5;
    const qreal bottom = box.cell.top() + box.baseline - 0.5;
    painter.drawRect(QRectF(left, top, qMax(width, 1.0), bottom - top));
}
