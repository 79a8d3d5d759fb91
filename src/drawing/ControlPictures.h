// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

class QPainter;
class QRectF;

/// Pictures of the control characters: their names in small letters on a pale ground, in a cell of
/// as many columns of a fixed-pitch font as they have letters. In a narrower cell it is two
/// letters, the second below the first. They are drawn here because the usual fonts lack them.
namespace ControlPictures
{

/// The size of a dot for columns of this width, whole pixels of the device.
qreal DotFor(qreal advance, qreal devicePixelRatio);

/// In the painter's pen colour, centred in the cell.
void Draw(QPainter &painter, const QRectF &cell, uchar byte, qreal dot);

} // namespace ControlPictures
