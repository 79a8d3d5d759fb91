// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "StepRunner.h"

#include <QByteArray>

#include <vector>

/// The report of a run in the form that servers for continuous integration read: a test case a
/// step, or a turn of a group of them.
class JUnitReport
{
  public:
    /// The suite is named after the project, or whatever tells runs apart.
    explicit JUnitReport(const QString &name) : m_name(name) {}

    /// The program tells what the place of a step is called.
    void Add(const StepOutcome &outcome, const QString &place);

    /// The whole report; began is the wall time of the run in nanoseconds since 1970.
    QByteArray Written(qint64 began) const;

  private:
    struct Case {
        QString name;
        QString group; ///< empty for a step alone
        int turn;      ///< of groups, see StepOutcome
        StepOutcome::Verdict verdict;
        qint64 began; ///< nanoseconds
        qint64 ended;
        QString cause{}; ///< Failed
        QString details{};
    };

    QString m_name;
    std::vector<Case> m_cases;
};
