// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "RepeatChoice.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QSpinBox>

namespace
{

constexpr int HighestCount = 1'000'000'000;

} // namespace

RepeatChoice::RepeatChoice(QWidget *parent)
    : QWidget(parent), spnEvery(new QSpinBox), spnCount(new QSpinBox)
{
    spnEvery->setObjectName(QStringLiteral("spnEvery"));
    spnEvery->setRange(int(RepeatPlan::ShortestMilliseconds), int(RepeatPlan::LongestMilliseconds));
    spnEvery->setSuffix(QStringLiteral(" ms"));
    spnEvery->setAccessibleName(QStringLiteral("Every so many milliseconds"));
    spnCount->setObjectName(QStringLiteral("spnCount"));
    spnCount->setRange(0, HighestCount);
    spnCount->setSuffix(QStringLiteral(" times"));
    spnCount->setSpecialValueText(QStringLiteral("until stopped"));
    spnCount->setAccessibleName(QStringLiteral("How many times"));
    for (QSpinBox *box : {spnEvery, spnCount}) {
        box->setStepType(QAbstractSpinBox::AdaptiveDecimalStepType);
        connect(box, &QSpinBox::valueChanged, this, &RepeatChoice::Changed);
    }

    auto *caption = new QLabel(QStringLiteral("Ever&y"));
    caption->setBuddy(spnEvery);
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(caption);
    row->addWidget(spnEvery);
    row->addWidget(spnCount);
}

RepeatPlan RepeatChoice::Plan() const
{
    return {spnEvery->value(), spnCount->value()};
}

void RepeatChoice::SetPlan(const RepeatPlan &plan)
{
    spnEvery->setValue(int(qMin<qint64>(plan.milliseconds, RepeatPlan::LongestMilliseconds)));
    spnCount->setValue(int(qMin<qint64>(plan.count, HighestCount)));
}
