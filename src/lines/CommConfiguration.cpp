// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CommConfiguration.h"

QString CommConfiguration::PortSettings() const
{
    return run.line ? LineSettingsText(*run.line) : SettingsString(stored);
}

LineTexts CommConfiguration::Texts() const
{
    if (run.line) {
        return {QString::number(run.line->baud), ParityText(qint32(run.line->parity)),
                QString::number(run.line->dataBits), StopBitsText(qint32(run.line->stopBits))};
    }
    return {SpeedText(stored.CommSpeed), ParityText(stored.CommParity),
            DataBitsText(stored.CommDataBits), StopBitsText(stored.CommStopBits)};
}
