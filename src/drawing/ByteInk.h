// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "ByteFace.h"

#include <QPointF>
#include <QRectF>

#include <vector>

class QColor;
class QPainter;

/// Bytes as ASCII in one face and colour, collected so that each kind of look takes few drawing
/// calls.
class ByteInk final
{
  public:
    /// The face must be the same until the ink is drawn. The baseline counts from the cell's top.
    void Add(const ByteFace &face, uchar byte, const QRectF &cell, qreal baseline)
    {
        const quint32 look = face[byte];
        if (look < ByteFace::Picture) {
            m_glyphs.push_back(look);
            m_positions.emplace_back(cell.left(), cell.top() + baseline);
        } else if (look != ByteFace::Nothing) {
            m_signs.push_back({cell, baseline, look == ByteFace::Box, byte});
        }
    }

    /// Draws all that was added, and forgets it.
    void Draw(QPainter &painter, const ByteFace &face, const QColor &colour);

  private:
    /// What is drawn by hand.
    struct Sign {
        QRectF cell;
        qreal baseline;
        bool box;
        uchar byte;
    };

    static void DrawBox(QPainter &painter, const Sign &sign);

    std::vector<quint32> m_glyphs;
    std::vector<QPointF> m_positions;
    std::vector<Sign> m_signs;
};
