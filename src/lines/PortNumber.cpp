// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "PortNumber.h"

#include <QString>

#include <algorithm>

namespace
{

bool IsWholeNumber(QStringView digits)
{
    return !digits.isEmpty() && std::all_of(digits.begin(), digits.end(),
                                            [](QChar c) { return c >= u'0' && c <= u'9'; });
}

} // namespace

PortNumber ReadPortNumber(QStringView text)
{
    QStringView digits = text.trimmed();
    const bool negative = digits.startsWith(u'-');
    if (negative || digits.startsWith(u'+'))
        digits = digits.sliced(1);
    if (!IsWholeNumber(digits) || negative)
        return {false, LeastPortNumber};
    while (digits.size() > 1 && digits.startsWith(u'0'))
        digits = digits.sliced(1);
    const int number = digits.size() > 3 ? MostPortNumber + 1 : digits.toInt();
    return {IsPortNumber(number), qint16(std::clamp(number, LeastPortNumber, MostPortNumber))};
}
