// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CommSettings.h"

#include <array>

namespace
{

constexpr std::array<const char *, 3> ModeCaptions = {"Send/Receive", "Monitoring (Receive Only)",
                                                      "Monitoring (Receive and Modify)"};

} // namespace

QString ModeCaption(CommMode mode)
{
    const auto place = size_t(mode);
    return place < ModeCaptions.size() ? QString::fromLatin1(ModeCaptions[place]) : QString();
}

CommMode ModeFromNumber(qint32 number)
{
    return number == 1 || number == 2 ? CommMode(number) : CommMode::SendReceive;
}

QString SettingsString(const CommSettings &settings)
{
    QString text = SpeedText(settings.CommSpeed);
    const QString parity = ParityLetter(settings.CommParity);
    if (!parity.isEmpty())
        text += u',' + parity;
    text += u',' + DataBitsText(settings.CommDataBits);
    text += u',' + StopBitsText(settings.CommStopBits);
    return text;
}
