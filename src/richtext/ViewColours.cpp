// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ViewColours.h"

#include "BgrColour.h"

#include <QPalette>

#include <algorithm>
#include <cmath>

namespace
{

constexpr qreal ReadableContrast = 4.5;

const DisplaySettings Defaults;

/// What the defaults are on black, by StyleIndex: blue, red and green.
constexpr std::array<QRgb, StyleIndex::Count> LightTexts = {0xFF7AB4FF, 0xFFFF7B72, 0xFF5FCB6B};

bool HasDefaultColours(const DisplaySettings &stored)
{
    return stored.DispBack == Defaults.DispBack &&
           std::equal(stored.styles.begin(), stored.styles.end(), Defaults.styles.begin(),
                      [](const TextStyle &one, const TextStyle &other) {
                          return one.colour == other.colour;
                      });
}

/// Of a display's light; from 0 to 1.
qreal Luminance(const QColor &colour)
{
    const auto light = [](qreal part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * light(colour.redF()) + 0.7152 * light(colour.greenF()) +
           0.0722 * light(colour.blueF());
}

/// Nearer to white until it can be read.
QColor Readable(QColor text, const QColor &ground)
{
    const auto lighter = [](int part) { return part + (255 - part + 7) / 8; };
    while (ViewColours::Contrast(text, ground) < ReadableContrast && text != Qt::white)
        text.setRgb(lighter(text.red()), lighter(text.green()), lighter(text.blue()));
    return text;
}

} // namespace

ViewColours::ViewColours(const DisplaySettings &stored, const QPalette &palette)
    : m_translates(HasDefaultColours(stored) && IsDark(palette)),
      m_ground(m_translates ? palette.color(QPalette::Active, QPalette::Base)
                            : BgrColour::ToColour(stored.DispBack))
{
    std::transform(LightTexts.begin(), LightTexts.end(), m_texts.begin(),
                   [this](QRgb light) { return Readable(QColor(light), m_ground); });
}

QColor ViewColours::TextOf(qint32 stored) const
{
    for (size_t i = 0; m_translates && i < m_texts.size(); ++i) {
        if (stored == Defaults.styles[i].colour)
            return m_texts[i];
    }
    return BgrColour::ToColour(stored);
}

bool ViewColours::IsDark(const QPalette &palette)
{
    const QColor base = palette.color(QPalette::Active, QPalette::Base);
    return Contrast(Qt::white, base) > Contrast(Qt::black, base);
}

qreal ViewColours::Contrast(const QColor &one, const QColor &other)
{
    const auto [darker, lighter] = std::minmax({Luminance(one), Luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}
