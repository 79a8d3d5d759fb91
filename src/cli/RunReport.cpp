// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "RunReport.h"

#include "CommandLine.h"
#include "FileName.h"
#include "PathParts.h"

#include <array>
#include <utility>

namespace
{

using Verdict = StepOutcome::Verdict;

QString Milliseconds(qint64 nanoseconds)
{
    return QString::number(double(nanoseconds) / 1e6, 'f', 3) + QStringLiteral(" ms");
}

QString SuiteName(const CommandLine &line)
{
    for (const QString &file : {line.steps, line.project, line.input}) {
        if (!file.isEmpty())
            return FileName::Shown(PathParts::FileName(file));
    }
    return line.demo ? QStringLiteral("demo") : QStringLiteral("serimonde-cli");
}

} // namespace

RunReport::RunReport(const CommandLine &line, std::function<void(const QByteArray &)> write)
    : m_line(line), m_write(std::move(write))
{
    if (!line.junit.isEmpty())
        m_junit.emplace(SuiteName(line));
}

void RunReport::Begin(const LineTime &now)
{
    m_begin = now;
    m_json.Begin(now.monotonic);
}

void RunReport::Traffic(const TrafficEvent &event)
{
    const bool fails = event.kind == TrafficEvent::Kind::NotSent && event.answer;
    if (m_line.json || (m_line.commands && fails))
        m_write(m_json.Traffic(event));
}

void RunReport::Count(const StepOutcome &outcome)
{
    const std::array counts = {&m_end.passed, &m_end.failed, &m_end.notRun};
    ++*counts[size_t(outcome.verdict)];
}

void RunReport::Done(const StepOutcome &outcome, const QString &place)
{
    Count(outcome);
    if (m_junit)
        m_junit->Add(outcome, place);
    if (m_line.json) {
        m_write(m_json.StepDone(outcome));
        return;
    }
    // Of a replay, which may be long, a step for each packet is no news.
    const bool expected = !m_line.input.isEmpty() && outcome.verdict == Verdict::Passed;
    if (m_line.quiet || m_line.commands || expected)
        return;
    constexpr std::array Words = {"ok      ", "FAILED  ", "not run "};
    QString text = QLatin1String(Words[size_t(outcome.verdict)]) + place + QStringLiteral(": ") +
                   outcome.step.text;
    if (outcome.verdict != Verdict::NotRun)
        text += QStringLiteral(" (%1)").arg(Milliseconds(outcome.ended - outcome.began));
    m_write(text.toUtf8() + '\n');
}

void RunReport::Answered(const StepOutcome &outcome, const QJsonValue &id)
{
    m_write(m_json.Answer(outcome, id));
}

void RunReport::ForbiddenCame(const StepOutcome &outcome)
{
    m_write(m_json.Forbidden(outcome));
}

void RunReport::Refused(int line, const QJsonValue &id, const QString &cause)
{
    m_write(m_json.Refusal(line, id, cause));
    Fail(ExitStatus::WrongUsage, QStringLiteral("command %1: %2").arg(line).arg(cause));
}

void RunReport::Fail(int status, const QString &cause)
{
    if (m_end.status != ExitStatus::Passed)
        return;
    m_end.status = status;
    m_end.cause = cause.simplified();
}

void RunReport::End(const LineTime &now)
{
    m_end.time = now.monotonic;
    if (m_line.json || m_line.commands) {
        m_write(m_json.Ended(m_end));
        return;
    }
    if (m_line.quiet || m_end.passed + m_end.failed + m_end.notRun == 0)
        return;
    m_write(QStringLiteral("%1 passed, %2 failed, %3 not run (%4)\n")
                .arg(m_end.passed)
                .arg(m_end.failed)
                .arg(m_end.notRun)
                .arg(Milliseconds(now.monotonic - m_begin.monotonic))
                .toUtf8());
}

Result RunReport::WriteJUnit(ClOutputFile &file)
{
    return m_junit ? m_junit->WriteTo(file, m_begin.wall) : Result();
}
