// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "LineSettings.h"

#include <QList>
#include <QStringView>

#include <algorithm>
#include <cctype>

namespace
{

using LineVocabulary::DataBits;
using LineVocabulary::Parities;
using LineVocabulary::StopBits;

/// A whole number of digits alone; QString's own conversion would also take signs and blanks.
std::optional<qint32> DigitsOnly(QStringView text)
{
    const bool digits =
        std::all_of(text.begin(), text.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
    bool fits = false;
    const qint32 value = text.toInt(&fits);
    return digits && fits ? std::optional(value) : std::nullopt;
}

} // namespace

std::optional<LineSettings> ParseLineSettings(QStringView text)
{
    const QList<QStringView> fields = text.split(u',');
    if (fields.size() != 4 || fields[1].size() != 1)
        return std::nullopt;

    const auto baud = DigitsOnly(fields[0]);
    const char letter = char(std::toupper(uchar(fields[1][0].toLatin1())));
    const auto parity = std::find_if(Parities.begin(), Parities.end(),
                                     [letter](const auto &row) { return row.letter == letter; });
    const auto dataBits = DigitsOnly(fields[2]);
    const bool hasDataBits =
        dataBits && std::find(DataBits.begin(), DataBits.end(), *dataBits) != DataBits.end();
    const auto stopBits =
        std::find_if(StopBits.begin(), StopBits.end(),
                     [&fields](const char *row) { return fields[3] == QLatin1StringView(row); });
    if (!baud || *baud < 1 || parity == Parities.end() || !hasDataBits ||
        stopBits == StopBits.end())
        return std::nullopt;
    return LineSettings{*baud, LineParity(parity - Parities.begin()), *dataBits,
                        LineStopBits(stopBits - StopBits.begin())};
}

QString LineSettingsText(const LineSettings &settings)
{
    return QStringLiteral("%1,%2,%3,%4")
        .arg(settings.baud)
        .arg(ParityLetter(qint32(settings.parity)))
        .arg(settings.dataBits)
        .arg(StopBitsText(qint32(settings.stopBits)));
}
