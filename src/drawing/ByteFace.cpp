// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ByteFace.h"

#include "ByteLook.h"
#include "ControlPictures.h"

#include <QFontMetricsF>

ByteFace::ByteFace(const QFont &font, qreal devicePixelRatio, Controls controls)
    : m_font(QRawFont::fromFont(font))
{
    QString shapes; // to look each up alone would take the font apart each time
    for (unsigned byte = 0; byte < m_looks.size(); ++byte)
        shapes += ByteLook::ShapeOf(uchar(byte));
    const QList<quint32> glyphs = m_font.glyphIndexesForString(shapes);
    for (unsigned byte = 0; byte < m_looks.size(); ++byte)
        m_looks[byte] = LookOf(uchar(byte), glyphs.value(qsizetype(byte)), controls);
    const QList<QPointF> advances =
        m_font.advancesForGlyphIndexes(m_font.glyphIndexesForString(QStringLiteral("0")));
    m_advance = advances.isEmpty() ? 0 : advances.first().x();
    if (m_advance <= 0)
        m_advance = qMax(QFontMetricsF(font).horizontalAdvance(u'0'), 1.0);
    m_dot = ControlPictures::DotFor(m_advance, devicePixelRatio);
}

quint32 ByteFace::LookOf(uchar byte, quint32 glyph, Controls controls)
{
    switch (ByteLook::KindOf(byte)) {
    case ByteLook::Kind::Blank:
        return Nothing;
    case ByteLook::Kind::Control:
        if (controls != Controls::Pictures && ByteLook::LaysOut(byte))
            return Nothing;
        return controls == Controls::LaidOutBoxes ? Box : Picture;
    case ByteLook::Kind::Empty:
        return Box;
    case ByteLook::Kind::Character:
        break;
    }
    return glyph == 0 ? Box : glyph;
}
