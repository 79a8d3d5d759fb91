// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "HeardBytes.h"
#include "Result.h"
#include "Step.h"
#include "TrafficEvent.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <optional>
#include <vector>

/// What steps do to the lines. A failure fails the step; its cause is told. What takes long notes
/// the time.
class StepActions
{
  public:
    virtual ~StepActions() = default;

    virtual Result Send(const QByteArray &bytes, const QByteArray &name) = 0;
    virtual Result SetRTS(bool on) = 0;
    virtual Result SetDTR(bool on) = 0;
    virtual Result SetBreak(bool on) = 0;
    virtual Result Open() = 0;
    virtual Result Close() = 0;
};

/// What became of a step, each time that it was its turn.
struct StepOutcome {
    enum class Verdict { Passed, Failed, NotRun };

    Step step;
    Verdict verdict = Verdict::Passed;
    int number = 0;   ///< of the turns, from 1; NotRun: 0
    int group = 0;    ///< turns of groups by then: tells two turns of one group apart
    qint64 began = 0; ///< nanoseconds of LineTime::monotonic
    qint64 ended = 0;
    QString cause{};    ///< Failed
    QByteArray heard{}; ///< Failed: what came since the last match or pause, its last bytes

    /// So much of what came is told.
    static constexpr qsizetype MostHeard = 256;
};

/// Carries out steps one after the other. It has neither clock nor lines: whoever has them tells it
/// what happens and what time it is, in nanoseconds of LineTime::monotonic.
///
/// All is decided by the order of the bytes, not by how reads have cut them, nor by how long this
/// program needed. An expectation looks at what came behind the last match on its channel, be it
/// before the step or after. A pattern is forbidden, and a quiet is broken, by what comes behind
/// the place reached: the last match, or what had come when a wait or a quiet ended, or the ports
/// were closed. A forbidden pattern that is complete no later than an expected one wins.
class StepRunner
{
  public:
    static constexpr qint64 Never = std::numeric_limits<qint64>::max();
    /// So many steps may pass in one call, so that who calls can look at other things.
    static constexpr int MostStepsAtOnce = 200;

    using Report = std::function<void(const StepOutcome &outcome)>;

    /// A runner that goes on does the next step after one that has failed. Actions live longer than
    /// the runner.
    StepRunner(StepActions &actions, Report report, bool goesOn = false)
        : m_actions(actions), m_report(std::move(report)), m_goesOn(goesOn)
    {
    }

    /// The steps of the run; the first Advance begins them.
    void Begin(StepProgram program, qint64 now);
    /// Puts a step behind all others.
    void Add(Step step, qint64 now);

    void Take(const TrafficEvent &event);
    /// Time has passed.
    void Advance(qint64 now);
    /// Time has passed inside of an action, and belongs to its step.
    void NoteTime(qint64 now) { m_now = std::max(m_now, now); }
    /// When Advance is to be called at the latest.
    qint64 NextDeadline() const;

    /// There is nothing left to run.
    bool Done() const { return m_ended || m_place >= m_program.steps.size(); }
    /// Nothing is run any more; the step whose turn it is has failed for that cause.
    void Stop(const QString &cause);
    /// No more will come: what is forbidden is looked for a last time.
    void Finish();

    const StepProgram &Program() const { return m_program; }

  private:
    enum class Progress { Passed, Waits, Failed };
    struct Forbidden {
        Step step;
        HeardBytes::Places from;
        HeardBytes::Places searched;
    };
    struct ForbiddenHit {
        HeardBytes::Hit hit;
        size_t which;
    };

    bool RunOne();
    Progress Start(const Step &step);
    Progress Try(const Step &step);
    Progress TryExpect(const Step &step);
    Progress TryPause(const Step &step);
    Progress TryBreak(const Step &step);
    Progress Act(const Result &result, const QString &failed);
    void Forbid(const Step &step);
    void Allow(const Step &step);
    void Repeat(const Step &step);
    void EndRepeat(const Step &step);

    std::optional<ForbiddenHit> FirstForbidden();
    Progress FailForbidden(const ForbiddenHit &found);
    void LookBehindLastStep();
    void EndStep(StepOutcome::Verdict verdict);
    void EndRun();
    qint64 Deadline() const { return m_began + m_program.steps[m_place].time; }

    StepActions &m_actions;
    Report m_report;
    const bool m_goesOn;
    StepProgram m_program;
    HeardBytes m_heard;

    size_t m_place = 0;      ///< in the program
    bool m_started = false;  ///< the step that stands there
    qint64 m_began = 0;      ///< that step
    int m_number = 0;        ///< of that step
    int m_group = 0;         ///< turns of groups
    QString m_cause;         ///< why it fails
    std::vector<int> m_left; ///< by place of a Repeat: turns left
    bool m_ended = false;
    bool m_busy = false;     ///< a step is being done, and may lead back here
    bool m_goOnSoon = false; ///< more steps may pass at once than one call does

    qint64 m_now = 0;
    qint64 m_reached = 0;            ///< place from which on things are forbidden or quiet
    HeardBytes::Places m_matched{};  ///< behind the last match on each channel
    HeardBytes::Places m_searched{}; ///< by the expectation whose turn it is
    std::vector<Forbidden> m_forbidden;
};
