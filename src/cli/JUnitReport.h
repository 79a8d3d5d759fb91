// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Result.h"
#include "StepRunner.h"

#include <QByteArray>
#include <QTemporaryFile>

#include <array>
#include <optional>

class ClOutputFile;

/// The report of a run in the form that servers for continuous integration read: a test case a
/// step, or a turn of a group of them. However long the run is, only the latest cases are in
/// memory; those before them wait in a temporary file.
class JUnitReport
{
  public:
    /// The suite is named after the project, or whatever tells runs apart.
    explicit JUnitReport(const QString &name) : m_name(name) {}

    /// The program tells what the place of a step is called.
    void Add(const StepOutcome &outcome, const QString &place);

    /// Writes the whole report, once, and commits the file, which is open for replacing; began is
    /// the wall time of the run in nanoseconds since 1970.
    Result WriteTo(ClOutputFile &file, qint64 began);

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

    void EndCase();
    QString Written(const Case &each) const;
    QByteArray Head(qint64 began) const;
    void Spool();

    QString m_name;
    std::optional<Case> m_case;    ///< the latest one, which may go on
    std::array<int, 3> m_counts{}; ///< of cases, by verdict
    qint64 m_time = 0;             ///< of all cases
    QByteArray m_latest;           ///< as they will be written
    QTemporaryFile m_spool;        ///< those before them
    Result m_spooled;
};
