// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "RepeatSchedule.h"

#include <QDialog>

class RepeatChoice;

/// Asks how often a send sequence is to be repeated.
class frmRepeat final : public QDialog
{
    Q_OBJECT

  public:
    /// The name is foreign text.
    frmRepeat(const QString &name, const RepeatPlan &plan, QWidget *parent);

    RepeatPlan Plan() const;

  private:
    RepeatChoice *m_choice;
};
