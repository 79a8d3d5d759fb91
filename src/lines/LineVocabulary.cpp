// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "LineVocabulary.h"

namespace
{

QString TextOf(int number)
{
    return QString::number(number);
}

QString TextOf(const char *text)
{
    return QString::fromLatin1(text);
}

QString TextOf(const LineVocabulary::ParityRow &row)
{
    return TextOf(row.name);
}

template <typename Table> QString TextAt(const Table &table, qint32 index)
{
    return index >= 0 && size_t(index) < table.size() ? TextOf(table[size_t(index)]) : QString();
}

} // namespace

QString SpeedText(qint32 index)
{
    return TextAt(LineVocabulary::Speeds, index);
}

QString ParityText(qint32 index)
{
    return TextAt(LineVocabulary::Parities, index);
}

QString ParityLetter(qint32 index)
{
    const bool known = index >= 0 && index < ParityCount;
    return known ? QString(QLatin1Char(LineVocabulary::Parities[size_t(index)].letter)) : QString();
}

QString DataBitsText(qint32 index)
{
    return TextAt(LineVocabulary::DataBits, index);
}

QString StopBitsText(qint32 index)
{
    return TextAt(LineVocabulary::StopBits, index);
}
