// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "PlainText.h"

#include <QStringList>

namespace
{

constexpr char16_t PictureOfNull = u'\x2400'; ///< those of the other controls follow it
constexpr char16_t PictureOfDelete = u'\x2421';

bool TurnsDirection(char16_t unit)
{
    return unit == 0x061C || unit == 0x200E || unit == 0x200F ||
           (unit >= 0x202A && unit <= 0x202E) || (unit >= 0x2066 && unit <= 0x2069);
}

char16_t Shown(char16_t unit)
{
    if (unit < 0x20)
        return char16_t(PictureOfNull + unit);
    if (unit == 0x7F)
        return PictureOfDelete;
    const bool control = (unit >= 0x80 && unit < 0xA0) || unit == 0x2028 || unit == 0x2029;
    return control || TurnsDirection(unit) ? QChar(QChar::ReplacementCharacter).unicode() : unit;
}

} // namespace

QString PlainText(QStringView text)
{
    QString shown;
    shown.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool pair =
            text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        if (pair)
            shown += text[i++];
        else if (text[i].isSurrogate()) {
            shown += QChar::ReplacementCharacter;
            continue;
        }
        shown += QChar(Shown(text[i].unicode()));
    }
    return shown;
}

QString PlainLines(QStringView text)
{
    QStringList lines;
    for (const QStringView line : text.split(u'\n'))
        lines << PlainText(line);
    return lines.join(u'\n');
}
