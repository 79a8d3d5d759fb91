// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "RepeatText.h"

#include "LineRepeats.h"

#include <QLocale>

namespace
{

QString Number(qint64 number)
{
    return QLocale(QLocale::English).toString(number);
}

} // namespace

QString RepeatText(const RepeatPlan &plan)
{
    return QStringLiteral("every %1 ms").arg(Number(plan.milliseconds));
}

QString RepeatText(const RepeatState &state)
{
    const RepeatPlan &plan = state.telegram.plan;
    QString text = QStringLiteral("%1: %2").arg(RepeatText(plan), Number(state.sent));
    if (plan.count > 0)
        text += QStringLiteral(" of %1").arg(Number(plan.count));
    text += QStringLiteral(" sent");
    if (state.leftOut > 0)
        text += QStringLiteral(", %1 left out").arg(Number(state.leftOut));
    return text;
}
