// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArrayView>
#include <QRectF>

class QPainter;

/// Pictures of the control characters: their names in small letters, in a cell of as many columns
/// of a fixed-pitch font as they have letters. They are drawn here because the usual fonts lack
/// them.
namespace ControlPictures
{

/// Dots from one letter to the next.
constexpr int Pitch = 5;

/// In the painter's pen colour, centred in the cell. The unit is the size of a dot.
void Draw(QPainter &painter, const QRectF &cell, QByteArrayView name, qreal unit);

} // namespace ControlPictures
