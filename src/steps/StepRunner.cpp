// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "StepRunner.h"

#include <algorithm>
#include <utility>

void StepRunner::Begin(StepProgram program, qint64 now)
{
    m_now = now;
    m_program = std::move(program);
    m_left.assign(m_program.steps.size(), 0);
}

void StepRunner::Add(Step step, qint64 now)
{
    if (m_place >= m_program.steps.size()) { // keeps what has been done from piling up
        m_program.steps.clear();
        m_place = 0;
    }
    m_program.steps.push_back(std::move(step));
    m_left.resize(m_program.steps.size());
    Advance(now);
}

/// What was due by then comes first.
void StepRunner::Take(const TrafficEvent &event)
{
    if (event.kind != TrafficEvent::Kind::Received)
        return;
    Advance(event.time.monotonic - 1);
    m_heard.Append(event.channel, event.bytes, event.time.monotonic);
    Advance(event.time.monotonic);
}

void StepRunner::Advance(qint64 now)
{
    NoteTime(now);
    if (m_busy)
        return;
    m_busy = true;
    m_goOnSoon = true;
    for (int i = 0; i < MostStepsAtOnce && m_goOnSoon; ++i)
        m_goOnSoon = RunOne();
    m_busy = false;
}

qint64 StepRunner::NextDeadline() const
{
    if (Done())
        return Never;
    return m_goOnSoon || !m_started ? m_now : Deadline();
}

/// Whether there may be more to do at once.
bool StepRunner::RunOne()
{
    if (Done()) {
        LookBehindLastStep();
        return false;
    }
    const Step step = m_program.steps[m_place];
    if (step.kind == Step::Kind::Repeat) {
        Repeat(step);
        return true;
    }
    if (step.kind == Step::Kind::End) {
        EndRepeat(step);
        return true;
    }
    if (step.kind == Step::Kind::Group) {
        ++m_group;
        ++m_place;
        return true;
    }
    Progress progress = Progress::Waits;
    if (!std::exchange(m_started, true)) {
        m_began = m_now;
        ++m_number;
        progress = Start(step);
    }
    if (progress == Progress::Waits)
        progress = Try(step);
    if (progress == Progress::Waits)
        return false;
    EndStep(progress == Progress::Passed ? StepOutcome::Verdict::Passed
                                         : StepOutcome::Verdict::Failed);
    return true;
}

/// What a step does when its turn comes; those that take time then wait.
StepRunner::Progress StepRunner::Start(const Step &step)
{
    const QString notAvailable = QStringLiteral("not available: ");
    switch (step.kind) {
    case Step::Kind::Send:
        return Act(m_actions.Send(step.bytes, step.name), QStringLiteral("not sent: "));
    case Step::Kind::RTS:
        return Act(m_actions.SetRTS(step.on), notAvailable);
    case Step::Kind::DTR:
        return Act(m_actions.SetDTR(step.on), notAvailable);
    case Step::Kind::Break: {
        const Progress begun = Act(m_actions.SetBreak(true), notAvailable);
        return begun == Progress::Passed ? Progress::Waits : begun;
    }
    case Step::Kind::Close: {
        Progress closed = Act(m_actions.Close(), QStringLiteral("not closed: "));
        m_reached = m_heard.End();
        return closed;
    }
    case Step::Kind::Open:
        return Act(m_actions.Open(), QStringLiteral("not opened: "));
    case Step::Kind::Forbid:
        Forbid(step);
        return Progress::Passed;
    case Step::Kind::Allow:
        Allow(step);
        return Progress::Passed;
    case Step::Kind::Expect:
        m_searched = m_matched;
        return Progress::Waits;
    default:
        return Progress::Waits;
    }
}

StepRunner::Progress StepRunner::Try(const Step &step)
{
    switch (step.kind) {
    case Step::Kind::Expect:
        return TryExpect(step);
    case Step::Kind::Break:
        return TryBreak(step);
    default:
        return TryPause(step);
    }
}

StepRunner::Progress StepRunner::TryExpect(const Step &step)
{
    std::optional<HeardBytes::Hit> hit =
        m_heard.Find(step.bytes, step.channel, m_matched, m_searched);
    if (hit && hit->time > Deadline())
        hit.reset();
    const std::optional<ForbiddenHit> forbidden = FirstForbidden();
    if (forbidden && (!hit || forbidden->hit.end <= hit->end))
        return FailForbidden(*forbidden);
    if (hit) {
        m_matched[size_t(hit->channel)] = hit->channelEnd;
        m_reached = std::max(m_reached, hit->end);
        return Progress::Passed;
    }
    if (m_now < Deadline())
        return Progress::Waits;
    m_cause = QStringLiteral("it did not come in time");
    return Progress::Failed;
}

StepRunner::Progress StepRunner::TryPause(const Step &step)
{
    if (const std::optional<ForbiddenHit> forbidden = FirstForbidden())
        return FailForbidden(*forbidden);
    if (step.kind == Step::Kind::Quiet && m_heard.End() > m_reached) {
        m_cause = QStringLiteral("something came");
        return Progress::Failed;
    }
    if (m_now < Deadline())
        return Progress::Waits;
    m_reached = m_heard.End();
    return Progress::Passed;
}

StepRunner::Progress StepRunner::TryBreak(const Step &step)
{
    Progress progress = TryPause(step);
    if (progress == Progress::Waits)
        return progress;
    const Result ended = m_actions.SetBreak(false);
    return progress == Progress::Passed ? Act(ended, QStringLiteral("the break did not end: "))
                                        : progress;
}

StepRunner::Progress StepRunner::Act(const Result &result, const QString &failed)
{
    if (!result.Failed())
        return Progress::Passed;
    m_cause = failed + result.Cause();
    return Progress::Failed;
}

void StepRunner::Forbid(const Step &step)
{
    Allow(step); // it counts from here
    const HeardBytes::Places from = m_heard.PlacesAt(m_reached);
    m_forbidden.push_back({step, from, from});
}

void StepRunner::Allow(const Step &step)
{
    const auto same = [&step](const Forbidden &forbidden) {
        return forbidden.step.bytes == step.bytes && forbidden.step.channel == step.channel;
    };
    m_forbidden.erase(std::remove_if(m_forbidden.begin(), m_forbidden.end(), same),
                      m_forbidden.end());
}

void StepRunner::Repeat(const Step &step)
{
    m_left[m_place] = step.count;
    ++m_place;
}

void StepRunner::EndRepeat(const Step &step)
{
    m_place = --m_left[step.partner] > 0 ? step.partner + 1 : m_place + 1;
}

std::optional<StepRunner::ForbiddenHit> StepRunner::FirstForbidden()
{
    std::optional<ForbiddenHit> first;
    for (size_t i = 0; i < m_forbidden.size(); ++i) {
        Forbidden &forbidden = m_forbidden[i];
        const std::optional<HeardBytes::Hit> hit = m_heard.Find(
            forbidden.step.bytes, forbidden.step.channel, forbidden.from, forbidden.searched);
        if (hit && (!first || hit->end < first->hit.end))
            first = {*hit, i};
    }
    return first;
}

/// Each time that it comes is told once.
StepRunner::Progress StepRunner::FailForbidden(const ForbiddenHit &found)
{
    Forbidden &forbidden = m_forbidden[found.which];
    const auto channel = size_t(found.hit.channel);
    forbidden.from[channel] = found.hit.channelEnd;
    forbidden.searched[channel] = found.hit.channelEnd;
    m_cause = QStringLiteral("what must not come has come: %1 (%2)")
                  .arg(forbidden.step.text, m_program.PlaceOf(forbidden.step));
    return Progress::Failed;
}

/// No step has its turn, but what is forbidden is so until the end.
void StepRunner::LookBehindLastStep()
{
    while (!m_ended) {
        const std::optional<ForbiddenHit> forbidden = FirstForbidden();
        if (!forbidden)
            return;
        FailForbidden(*forbidden);
        StepOutcome outcome;
        outcome.step = m_forbidden[forbidden->which].step;
        outcome.verdict = StepOutcome::Verdict::Failed;
        outcome.number = ++m_number;
        outcome.group = m_group;
        outcome.began = outcome.ended = m_now;
        outcome.cause = m_cause;
        outcome.heard = m_heard.Last(StepOutcome::MostHeard, {}, m_matched);
        m_ended = !m_goesOn;
        m_report(outcome);
    }
}

void StepRunner::EndStep(StepOutcome::Verdict verdict)
{
    StepOutcome outcome;
    outcome.step = m_program.steps[m_place];
    outcome.verdict = verdict;
    outcome.number = m_number;
    outcome.group = m_group;
    outcome.began = m_began;
    outcome.ended = m_now;
    const bool failed = verdict == StepOutcome::Verdict::Failed;
    if (failed) {
        const bool quiet = outcome.step.kind == Step::Kind::Quiet;
        outcome.cause = m_cause;
        outcome.heard = m_heard.Last(StepOutcome::MostHeard, outcome.step.channel,
                                     quiet ? m_heard.PlacesAt(m_reached) : m_matched);
        m_reached = m_heard.End(); // a runner that goes on does so from here
    }
    m_started = false;
    ++m_place;
    m_report(outcome);
    if (failed && !m_goesOn)
        EndRun();
}

/// What is left is told once each, however often it would have had its turn.
void StepRunner::EndRun()
{
    if (std::exchange(m_ended, true))
        return;
    for (; m_place < m_program.steps.size(); ++m_place) {
        StepOutcome outcome;
        outcome.step = m_program.steps[m_place];
        outcome.verdict = StepOutcome::Verdict::NotRun;
        m_group += outcome.step.kind == Step::Kind::Group;
        outcome.group = m_group;
        outcome.began = outcome.ended = m_now;
        if (outcome.step.Counts())
            m_report(outcome);
    }
}

void StepRunner::Stop(const QString &cause)
{
    if (m_ended)
        return;
    if (!Done() && m_started) {
        if (m_program.steps[m_place].kind == Step::Kind::Break)
            m_actions.SetBreak(false).Ignore();
        m_cause = cause;
        EndStep(StepOutcome::Verdict::Failed);
    }
    EndRun();
}

void StepRunner::Finish()
{
    LookBehindLastStep();
    m_ended = true;
}
