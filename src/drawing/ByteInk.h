// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "ByteFace.h"
#include "ControlPictures.h"

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
            AddSign(face, byte, cell, baseline);
        }
    }

    /// The picture of a control character, whatever the face has for it.
    void AddPicture(const ByteFace &face, uchar byte, const QRectF &cell)
    {
        m_pictures.Add(cell, byte, face.Dot());
    }

    /// Draws all that was added, and forgets it.
    void Draw(QPainter &painter, const ByteFace &face, const QColor &colour);

  private:
    struct Box {
        QRectF cell;
        qreal baseline;
    };

    void AddSign(const ByteFace &face, uchar byte, const QRectF &cell, qreal baseline);
    static void DrawBox(QPainter &painter, const Box &box);

    std::vector<quint32> m_glyphs;
    std::vector<QPointF> m_positions;
    std::vector<Box> m_boxes;
    ControlPictures::Strokes m_pictures;
};
