// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ByteInk.h"

#include "ControlPictures.h"

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
    for (const Sign &sign : m_signs) {
        if (sign.box)
            DrawBox(painter, sign);
        else
            ControlPictures::Draw(painter, sign.cell, sign.byte, face.Dot());
    }
    m_glyphs.clear();
    m_positions.clear();
    m_signs.clear();
}

/// From the baseline to the height of a small letter.
void ByteInk::DrawBox(QPainter &painter, const Sign &sign)
{
    const qreal left = std::floor(sign.cell.left()) + 1.5;
    const qreal width = std::floor(sign.cell.width()) - 2;
    const qreal top = sign.cell.top() + std::ceil(sign.baseline * 0.3) + 0.5;
    const qreal bottom = sign.cell.top() + sign.baseline - 0.5;
    painter.drawRect(QRectF(left, top, qMax(width, 1.0), bottom - top));
}
