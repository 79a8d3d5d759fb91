// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QColor>

/// Colours as the settings hold them: 0x00BBGGRR; what stands above is ignored.
namespace BgrColour
{

inline QColor ToColour(qint32 bgr)
{
    return {bgr & 0xFF, (bgr >> 8) & 0xFF, (bgr >> 16) & 0xFF};
}

inline qint32 FromColour(const QColor &colour)
{
    return colour.red() | colour.green() << 8 | colour.blue() << 16;
}

} // namespace BgrColour
