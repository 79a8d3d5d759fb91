// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "RepeatSchedule.h"

#include <QWidget>

class QSpinBox;

/// How often something is repeated: "Every ... ms", so many times or until it is stopped.
class RepeatChoice final : public QWidget
{
    Q_OBJECT

  public:
    explicit RepeatChoice(QWidget *parent = nullptr);

    RepeatPlan Plan() const;
    void SetPlan(const RepeatPlan &plan);

  Q_SIGNALS:
    void Changed();

  private:
    QSpinBox *spnEvery;
    QSpinBox *spnCount;
};
