// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "JUnitReport.h"
#include "JsonLines.h"
#include "StepRunner.h"

#include <functional>
#include <optional>

struct CommandLine;

/// The status that the program ends with.
namespace ExitStatus
{
constexpr int Passed = 0;
constexpr int StepFailed = 1;
constexpr int WrongUsage = 2; ///< also an unreadable project or step file
constexpr int PortFailed = 3; ///< could not be opened, or went away
constexpr int FileFailed = 4; ///< log or report; standard output
} // namespace ExitStatus

/// What a run tells, on standard output and in its report, and what it comes to: the first cause of
/// a failure decides.
class RunReport
{
  public:
    /// The line lives longer than the report. What is written goes to standard output.
    RunReport(const CommandLine &line, std::function<void(const QByteArray &)> write);

    void Begin(const LineTime &now);
    void Traffic(const TrafficEvent &event);
    void Done(const StepOutcome &outcome, const QString &place);
    /// One that a command asked for.
    void Answered(const StepOutcome &outcome, const QJsonValue &id);
    /// One that has its answer long since: what it forbids has come while no command waited.
    void ForbiddenCame(const StepOutcome &outcome);
    void Refused(int line, const QJsonValue &id, const QString &cause);
    void Fail(int status, const QString &cause);
    /// The last word.
    void End(const LineTime &now);

    int Status() const { return m_end.status; }
    const QString &Cause() const { return m_end.cause; }
    /// The report for servers, if one is wanted, into a file that is open for replacing.
    Result WriteJUnit(ClOutputFile &file);

  private:
    void Count(const StepOutcome &outcome);

    const CommandLine &m_line;
    std::function<void(const QByteArray &)> m_write;
    JsonLines m_json;
    std::optional<JUnitReport> m_junit;
    LineTime m_begin;
    JsonLines::End m_end;
};
