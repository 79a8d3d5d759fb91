// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QRect>
#include <QRectF>

#include <vector>

class QPainter;

/// Pictures of the control characters: their names in small letters on a pale ground, in a cell of
/// as many columns of a fixed-pitch font as they have letters. In a narrower cell it is two
/// letters, the second below the first, and with no room for these a short stroke. They are drawn
/// here because the usual fonts lack them.
namespace ControlPictures
{

/// The size of a dot for columns of this width, whole pixels of the device.
qreal DotFor(qreal advance, qreal devicePixelRatio);

/// Pictures that are drawn together, for each takes many strokes. The dot must be the same until
/// they are drawn.
class Strokes final
{
  public:
    /// Centred in the cell.
    void Add(const QRectF &cell, uchar byte, qreal dot);
    /// Draws all that was added in the painter's pen colour, and forgets it.
    void Draw(QPainter &painter, qreal dot);

  private:
    std::vector<QRect> m_grounds; ///< in dots, as all that follows
    std::vector<QRect> m_letters;
};

} // namespace ControlPictures
