// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "LineSettings.h"

#include <QList>
#include <QStringView>

#include <algorithm>
#include <array>
#include <cctype>

namespace
{

struct StopBitsText {
    LineSettings::StopBits value;
    const char *text;
};

constexpr std::array<StopBitsText, 3> StopBitsTexts = {{{LineSettings::StopBits::One, "1"},
                                                        {LineSettings::StopBits::OneAndHalf, "1.5"},
                                                        {LineSettings::StopBits::Two, "2"}}};

struct ParityEntry {
    char letter;
    const char *name;
};

constexpr std::array<ParityEntry, 5> ParityEntries = {
    {{'E', "Even"}, {'M', "Mark"}, {'N', "None"}, {'O', "Odd"}, {'S', "Space"}}};

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
    const auto dataBits = DigitsOnly(fields[2]);
    const auto stopBits =
        std::find_if(StopBitsTexts.begin(), StopBitsTexts.end(), [&](const StopBitsText &entry) {
            return fields[3] == QLatin1StringView(entry.text);
        });
    if (!baud || *baud < 1 || ParityName(letter).isEmpty() || !dataBits || *dataBits < 4 ||
        *dataBits > 8 || stopBits == StopBitsTexts.end())
        return std::nullopt;
    return LineSettings{*baud, letter, *dataBits, stopBits->value};
}

QString ParityName(char letter)
{
    const auto entry = std::find_if(ParityEntries.begin(), ParityEntries.end(),
                                    [&](const ParityEntry &e) { return e.letter == letter; });
    return entry == ParityEntries.end() ? QString() : QString::fromLatin1(entry->name);
}

QString StopBitsName(LineSettings::StopBits stopBits)
{
    return QString::fromLatin1(StopBitsTexts[size_t(stopBits)].text);
}

QString LineSettingsText(const LineSettings &settings)
{
    return QStringLiteral("%1,%2,%3,%4")
        .arg(settings.baud)
        .arg(QLatin1Char(settings.parity))
        .arg(settings.dataBits)
        .arg(StopBitsName(settings.stopBits));
}
