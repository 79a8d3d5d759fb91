// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CommSettings.h"

#include <array>
#include <span>

namespace
{

// There is no 4800 between 2400 and 9600: stored indexes of users depend on these places.
constexpr std::array<const char *, SpeedCount> Speeds = {
    "110",   "300",   "600",   "1200",  "2400",   "9600",   "14400", "19200",
    "28800", "38400", "56000", "57600", "115200", "128000", "256000"};
constexpr std::array<const char *, ParityCount> Parities = {"Even", "Mark", "None", "Odd", "Space"};
constexpr std::array<const char *, DataBitsCount> DataBits = {"4", "5", "6", "7", "8"};
constexpr std::array<const char *, StopBitsCount> StopBits = {"1", "1.5", "2"};
constexpr std::array<const char *, 3> ModeCaptions = {"Send/Receive", "Monitoring (Receive Only)",
                                                      "Monitoring (Receive and Modify)"};

QString TextAt(std::span<const char *const> table, qint32 index)
{
    if (index < 0 || size_t(index) >= table.size())
        return {};
    return QString::fromLatin1(table[size_t(index)]);
}

} // namespace

QString SpeedText(qint32 index)
{
    return TextAt(Speeds, index);
}

QString ParityText(qint32 index)
{
    return TextAt(Parities, index);
}

QString DataBitsText(qint32 index)
{
    return TextAt(DataBits, index);
}

QString StopBitsText(qint32 index)
{
    return TextAt(StopBits, index);
}

QString ModeCaption(CommMode mode)
{
    return TextAt(ModeCaptions, qint32(mode));
}

CommMode ModeFromNumber(qint32 number)
{
    return number == 1 || number == 2 ? CommMode(number) : CommMode::SendReceive;
}

QString SettingsString(const CommSettings &settings)
{
    QString text = SpeedText(settings.CommSpeed);
    const QString parity = ParityText(settings.CommParity);
    if (!parity.isEmpty())
        text += u',' + parity.first(1);
    text += u',' + DataBitsText(settings.CommDataBits);
    text += u',' + StopBitsText(settings.CommStopBits);
    return text;
}
