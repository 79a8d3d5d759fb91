// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "PortNumber.h"

#include <QLocale>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>

namespace
{

bool IsNumber(const QString &text)
{
    static const QRegularExpression form(
        QStringLiteral("\\A[+-]?([0-9]+\\.?[0-9]*|\\.[0-9]+)([eE][+-]?[0-9]+)?\\z"));
    return form.match(text).hasMatch();
}

} // namespace

PortNumber ReadPortNumber(const QString &text)
{
    const QString typed = text.trimmed();
    // What is too large for the type reads as infinite, what is too small as 0.
    const double number = IsNumber(typed) ? QLocale::c().toDouble(typed) : 0;
    const double nearest = std::clamp<double>(number, LeastPortNumber, MostPortNumber);
    return {number == nearest, qint16(std::nearbyint(nearest))};
}
