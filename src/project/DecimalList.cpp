// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "DecimalList.h"

#include <QLocale>

#include <cmath>

namespace
{

bool IsDigit(char character)
{
    return character >= '0' && character <= '9';
}

qsizetype PassSign(QByteArrayView text, qsizetype place)
{
    return place < text.size() && (text[place] == '+' || text[place] == '-') ? place + 1 : place;
}

qsizetype PassDigits(QByteArrayView text, qsizetype place)
{
    while (place < text.size() && IsDigit(text[place]))
        ++place;
    return place;
}

/// Length of the number that the text starts with; 0 if it starts with none.
qsizetype NumberLength(QByteArrayView text)
{
    const qsizetype whole = PassSign(text, 0);
    qsizetype end = PassDigits(text, whole);
    qsizetype digits = end - whole;
    if (end < text.size() && text[end] == '.') {
        const qsizetype fraction = end + 1;
        end = PassDigits(text, fraction);
        digits += end - fraction;
    }
    if (digits == 0)
        return 0;
    if (end < text.size() && (text[end] == 'e' || text[end] == 'E')) {
        const qsizetype exponent = PassSign(text, end + 1);
        const qsizetype exponentEnd = PassDigits(text, exponent);
        if (exponentEnd > exponent)
            end = exponentEnd;
    }
    return end;
}

/// Out of every range for a number that is too large, 0 for none and for one that is too small.
double LenientNumber(QByteArrayView text)
{
    while (text.startsWith(' '))
        text = text.sliced(1);
    const QByteArrayView digits = text.first(NumberLength(text));
    bool fits = false;
    const double value = digits.toDouble(&fits);
    // The slower conversion tells what is too large, infinite, from none and too small, 0.
    return fits ? value : QLocale::c().toDouble(QString::fromLatin1(digits));
}

} // namespace

std::optional<QByteArray> DecimalListToSeq(QByteArrayView text)
{
    QByteArray bytes;
    for (bool more = true; more;) {
        const qsizetype bar = text.indexOf('|');
        more = bar >= 0;
        const double value = std::nearbyint(LenientNumber(more ? text.first(bar) : text));
        if (!(value >= 0 && value <= 255))
            return std::nullopt;
        bytes += char(uchar(value));
        if (more)
            text = text.sliced(bar + 1);
    }
    return bytes;
}
