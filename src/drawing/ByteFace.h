// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QFont>
#include <QRawFont>

#include <array>

/// A fixed-pitch font, with what shows each byte in it.
class ByteFace final
{
  public:
    /// What shows a byte if it is no glyph of the font.
    enum Mark : quint32 { Nothing = 0xFFFFFFFF, Box = 0xFFFFFFFE, Picture = 0xFFFFFFFD };
    /// How control characters look. In a text that is laid out by CR, LF and TAB these are nothing
    /// by themselves.
    enum class Controls { LaidOutBoxes, LaidOutPictures, Pictures };

    ByteFace() = default;
    /// The ratio is that of the device's pixels to the units that are painted in.
    ByteFace(const QFont &font, qreal devicePixelRatio, Controls controls);

    const QRawFont &Font() const { return m_font; }
    /// Of a column; a fraction, in general.
    qreal Advance() const { return m_advance; }
    /// Size of a dot of the pictures.
    qreal Dot() const { return m_dot; }
    /// A glyph of the font, or a mark.
    quint32 operator[](uchar byte) const { return m_looks[byte]; }

  private:
    /// The glyph is that of the byte's character, 0 if the font has none.
    static quint32 LookOf(uchar byte, quint32 glyph, Controls controls);

    QRawFont m_font;
    std::array<quint32, 256> m_looks{};
    qreal m_advance = 1;
    qreal m_dot = 1;
};
