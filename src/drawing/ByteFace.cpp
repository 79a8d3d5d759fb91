// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ByteFace.h"

#include "ByteLook.h"
#include "ControlPictures.h"

#include <QFontMetricsF>

ByteFace::ByteFace(const QFont &font, qreal devicePixelRatio, Controls controls)
    : m_font(QRawFont::fromFont(font))
{
    for (unsigned byte = 0; byte < m_looks.size(); ++byte)
        m_looks[byte] = LookOf(uchar(byte), controls);
    const QList<QPointF> advances =
        m_font.advancesForGlyphIndexes(m_font.glyphIndexesForString(QStringLiteral("0")));
    m_advance = advances.isEmpty() ? 0 : advances.first().x();
    if (m_advance <= 0)
        m_advance = qMax(QFontMetricsF(font).horizontalAdvance(u'0'), 1.0);
    m_dot = ControlPictures::DotFor(m_advance, devicePixelRatio);
}

quint32 ByteFace::LookOf(uchar byte, Controls controls) const
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
    const QList<quint32> found = m_font.glyphIndexesForString(QString(ByteLook::ShapeOf(byte)));
    return found.isEmpty() || found.first() == 0 ? Box : found.first();
}
