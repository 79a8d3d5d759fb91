// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "FixedPitchFont.h"

#include <QFontDatabase>

#include <algorithm>

namespace FixedPitchFont
{

QString ChooseFamily(const QStringList &families)
{
    static const QStringList wanted = {QStringLiteral("Courier New"),
                                       QStringLiteral("Liberation Mono"),
                                       QStringLiteral("DejaVu Sans Mono")};
    for (const QString &family : wanted) {
        // A family that several foundries offer carries the foundry's name in brackets.
        const QString withFoundry = family + QStringLiteral(" [");
        const auto found =
            std::find_if(families.begin(), families.end(), [&](const QString &installed) {
                return installed == family || installed.startsWith(withFoundry);
            });
        if (found != families.end())
            return *found;
    }
    return {};
}

QFont ViewFont()
{
    constexpr int PointSize = 10;
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    // Matching would quietly put another font in the place of a missing one, so the list is asked.
    const QString family = ChooseFamily(QFontDatabase::families());
    if (!family.isEmpty())
        font = QFont(family);
    font.setPointSize(PointSize);
    font.setFixedPitch(true);
    return font;
}

} // namespace FixedPitchFont
