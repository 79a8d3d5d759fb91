// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CliRun.h"

#include "ByteLook.h"
#include "CaptureFile.h"
#include "CodePage1252.h"
#include "Demo.h"
#include "DemoInstrument.h"
#include "FileName.h"
#include "LineClock.h"
#include "LongDelay.h"
#include "ProgramInfo.h"
#include "ProjectFile.h"
#include "StepCommand.h"
#include "StepParser.h"
#include "TerminationWatch.h"

#include <QCoreApplication>

#include <algorithm>
#include <chrono>
#include <utility>

namespace
{

constexpr qint64 MostBytesOfSteps = 16 * 1024 * 1024;
/// Commands that may wait for their turn before no more are read.
constexpr qsizetype MostCommands = 1000;

/// What came instead of what was expected, as far as it goes into a line.
QString InsteadOf(const StepOutcome &outcome)
{
    constexpr qsizetype Most = 32;
    if (outcome.step.kind != Step::Kind::Expect)
        return {};
    if (outcome.heard.isEmpty())
        return QStringLiteral("; nothing came");
    const QByteArray last = outcome.heard.right(Most);
    return QStringLiteral("; what came ends in %1 \"%2\"")
        .arg(QString::fromLatin1(last.toHex(' ').toUpper()), ByteLook::ToPictures(last));
}

QString NamesOf(const TrafficEvent &event)
{
    return QStringLiteral("\"%1\"").arg(CodePage1252::ToUnicode(event.names.join("\", \"")));
}

/// The devices of a run are those of its command line.
QString NoSystemName(int)
{
    return {};
}

} // namespace

CliRun::CliRun(const CommandLine &line, QTextStream &errors)
    : m_line(line),
      m_errors(errors),
      m_output({[this](const QString &cause) {
                    QMetaObject::invokeMethod(this, [this, cause] {
                        StopFor(ExitStatus::FileFailed,
                                QStringLiteral("standard output cannot be written: ") + cause);
                    });
                },
                [this] { m_communication.Resume(); }}),
      m_report(m_line, [this](const QByteArray &bytes) { m_output.Write(bytes); }),
      m_prompts({[this](const QString &text) { OnFailed(text); },
                 [this](const QString &text) {
                     if (!m_line.quiet)
                         m_errors << "serimonde-cli: " << text << Qt::endl;
                 }}),
      m_devices(m_settings, NoSystemName),
      m_feed([this] { QMetaObject::invokeMethod(this, &CliRun::Drain, Qt::QueuedConnection); }),
      m_log({m_logSettings, m_prompts, m_files, m_state,
             [this] { return m_communication.Running(); }}),
      m_runLog(m_log, [this] { return m_feed.HasRoom() && m_output.HasRoom(); }),
      m_ports(m_devices, &m_prompts),
      m_communication({m_comm, m_display, m_stamp, m_sequences, nullptr, m_runLog, m_prompts,
                       m_clock, m_ports.MSCommA, m_ports.MSCommB, m_ports.lines}),
      m_runner(
          *this, [this](const StepOutcome &outcome) { OnOutcome(outcome); }, line.commands)
{
    m_logSettings.files.fill(true);
    m_log.RoomAgain = [this] { m_communication.Resume(); };
    m_communication.Stream().Feed(m_feed);
    if (!line.capture.isEmpty())
        MakeCapture();
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &CliRun::Drain);
}

CliRun::~CliRun() = default;

int CliRun::Run()
{
    const Result prepared = Prepare();
    if (prepared.Failed() && m_report.Cause().isEmpty())
        m_report.Fail(ExitStatus::WrongUsage, prepared.Cause());
    if (prepared.Failed()) {
        m_errors << "serimonde-cli: " << FileName::Shown(m_report.Cause()) << Qt::endl;
        m_hangs = !m_output.Finish();
        return m_report.Status();
    }
    const TerminationWatch termination;
    connect(&termination, &TerminationWatch::Terminating, this,
            [this] { EndEarly(QStringLiteral("it was ended by a signal")); });
    Begin();
    if (!m_over)
        m_loop.exec();
    return End();
}

/// All that can be found wrong before a line is opened.
Result CliRun::Prepare()
{
    if (m_line.demo) {
        m_acting = true;
        m_demo = AttachDemo({m_comm, m_devices, m_sequences, m_prompts},
                            m_line.mode.value_or(CommMode::SendReceive));
        m_acting = false;
        if (!m_demo) {
            m_report.Fail(ExitStatus::PortFailed, m_failed.value_or(QString()));
            return Failure{QStringLiteral("there is no demo")};
        }
    }
    QList<int> ports = m_line.ports.keys();
    std::sort(ports.begin(), ports.end());
    for (const int port : std::as_const(ports))
        m_devices.AssignForRun(port, m_line.ports[port]);
    if (!ports.isEmpty()) {
        m_comm.run.portA = ports.first();
        m_comm.run.portB = ports.last();
    }
    m_comm.run.mode = m_line.mode.value_or(CommMode::SendReceive);
    if (m_line.line)
        m_comm.run.line = m_line.line;
    m_comm.run.reopen = m_line.reconnect;
    if (!m_line.log.isEmpty())
        m_log.Arm(m_line.log, m_line.overwrite);
    if (Result loaded = LoadProject(); loaded.Failed())
        return loaded;
    m_hasSteps = !m_line.input.isEmpty() || !m_line.steps.isEmpty() || !m_line.stepWords.isEmpty();
    return m_line.input.isEmpty() ? ReadSteps() : OpenReplay();
}

Result CliRun::LoadProject()
{
    if (m_line.project.isEmpty())
        return {};
    const QString path = m_fileSystem.AbsolutePath(m_line.project);
    const Result loaded = ProjectFile::LoadProject(m_sequences, m_files, path);
    if (loaded.Failed()) {
        return Failure{
            QStringLiteral("%1: %2. %3").arg(m_line.project, loaded.Message(), loaded.Cause())};
    }
    m_sequences.RefreshAnswerNames();
    return {};
}

StepMaker CliRun::Maker() const
{
    StepRules rules;
    rules.maySend = m_comm.MaySend();
    rules.twoChannels = m_comm.TwoChannels();
    rules.within = m_line.within.value_or(rules.within);
    return {m_sequences, rules};
}

Result CliRun::ReadSteps()
{
    StepParser::Parsed parsed;
    QString file;
    if (m_line.steps.isEmpty()) {
        parsed = StepParser::FromArguments(m_line.stepWords, Maker());
    } else {
        const FileSystem::Content content =
            m_fileSystem.Read(m_fileSystem.AbsolutePath(m_line.steps), MostBytesOfSteps);
        if (content.result.Failed())
            return Failure{m_line.steps + QStringLiteral(": ") + content.result.Cause()};
        file = m_line.steps + QStringLiteral(": ");
        parsed = StepParser::FromFile(content.bytes, Maker());
    }
    if (parsed.result.Failed())
        return Failure{file + parsed.result.Cause()};
    m_program = std::move(parsed.program);
    return {};
}

Result CliRun::OpenReplay()
{
    const QString path = m_fileSystem.AbsolutePath(m_line.input);
    const auto same = [&](const QString &other) {
        return !other.isEmpty() && m_fileSystem.CanonicalPath(m_fileSystem.AbsolutePath(other)) ==
                                       m_fileSystem.CanonicalPath(path);
    };
    if (same(m_line.capture))
        return Failure{QStringLiteral("the capture that is replayed would be overwritten")};
    FileSystem::Opened opened = m_fileSystem.Open(path);
    ReplaySteps::Options options;
    options.speed = m_line.speed;
    options.inStep = m_line.inStep;
    options.within = m_line.within.value_or(options.within);
    options.channel = m_line.channel;
    Result result = std::move(opened.result);
    if (!result.Failed()) {
        m_replay = std::make_unique<ReplaySteps>(std::move(opened.device), options);
        result = m_replay->Open();
    }
    return result.Failed() ? Failure{m_line.input + QStringLiteral(": ") + result.Cause()}
                           : Result();
}

void CliRun::Begin()
{
    const LineTime now = LineNow();
    m_report.Begin(now);
    m_runner.Begin(std::move(m_program), now.monotonic);
    if (m_line.timeout) {
        const std::chrono::nanoseconds most(*m_line.timeout);
        CallAfter(std::chrono::duration_cast<std::chrono::milliseconds>(most), this,
                  [this] { EndEarly(QStringLiteral("the time of the run is over")); });
    }
    if (!m_line.junit.isEmpty()) {
        const Result made = m_junit.OpenForReplacing(m_fileSystem.AbsolutePath(m_line.junit));
        if (made.Failed()) {
            StopFor(ExitStatus::FileFailed, ReportFailure(made));
            return;
        }
    }
    const Result opened = Open();
    if (opened.Failed() || m_failed) {
        const int status = opened.Failed() ? ExitStatus::PortFailed : ExitStatus::FileFailed;
        StopFor(m_endedOpening && m_hasSteps ? ExitStatus::StepFailed : status,
                m_failed.value_or(opened.Cause()));
        return;
    }
    if (m_line.commands)
        BeginInput();
    Drain();
}

void CliRun::BeginInput()
{
    connect(&m_input, &StandardInput::LineRead, this, &CliRun::OnCommand);
    connect(&m_input, &StandardInput::LineTooLong, this, [this] {
        ++m_commandLines;
        Refuse(QJsonValue::Undefined, QStringLiteral("the line is longer than 1 MiB"));
    });
    connect(&m_input, &StandardInput::Ended, this, [this] {
        m_inputEnded = true;
        Advance();
    });
    m_input.Start();
}

/// What happened first, and then the time.
void CliRun::Drain()
{
    const RunFeed::Taken taken = m_feed.TakeAll();
    QString gone;
    for (const TrafficEvent &event : taken.events) {
        m_report.Traffic(event);
        m_runner.Take(event);
        // One that is waited for has a comment that says so.
        if (event.kind == TrafficEvent::Kind::Gone && event.comment.isEmpty())
            gone = QStringLiteral("The port COM%1 was disconnected. %2")
                       .arg(event.channel == 0 ? m_comm.PortA() : m_comm.PortB())
                       .arg(event.cause);
        if (event.kind == TrafficEvent::Kind::NotSent)
            m_notSent = event.cause;
        if (event.kind == TrafficEvent::Kind::NotSent && event.answer)
            OnNotAnswered(QStringLiteral("the answer to %1 was not sent: %2")
                              .arg(NamesOf(event), event.cause));
    }
    if (taken.wasFull)
        m_communication.Resume();
    if (!gone.isEmpty())
        StopFor(ExitStatus::PortFailed, gone);
    Advance();
}

void CliRun::Advance()
{
    if (m_over || m_acting)
        return;
    m_runner.Advance(MonotonicNow());
    qint64 next = m_replay ? AdvanceReplay() : m_runner.NextDeadline();
    if (m_over)
        return;
    if (m_runner.Done() && !m_replay) {
        if (m_line.commands ? !m_inputEnded : !m_hasSteps)
            return;
        const std::optional<qint64> left = m_report.Status() == 0 ? UntilSent(0) : std::nullopt;
        if (!left) {
            Over();
            return;
        }
        next = MonotonicNow() + *left;
    }
    constexpr qint64 Longest = 3'600'000;
    const qint64 left = next - MonotonicNow();
    m_timer.start(int(std::clamp<qint64>((left + 999'999) / 1'000'000, 0, Longest)));
}

/// The capture's next steps, until one waits; when to go on.
qint64 CliRun::AdvanceReplay()
{
    for (int i = 0; i < StepRunner::MostStepsAtOnce; ++i) {
        if (!m_runner.Done())
            return m_runner.NextDeadline();
        if (m_report.Status() != ExitStatus::Passed) {
            Over();
            return 0;
        }
        if (const std::optional<qint64> left = UntilSent(SendWatch::Ahead))
            return MonotonicNow() + *left;
        if (m_sending.StandsStill(MonotonicNow())) {
            StopFor(
                ExitStatus::StepFailed,
                QStringLiteral("%1 bytes wait, and none of them leaves").arg(m_sending.Waiting()));
            return 0;
        }
        ReplaySteps::Next next = m_replay->Take(MonotonicNow());
        if (next.over) {
            if (!m_replay->Damage().isEmpty())
                m_report.Fail(ExitStatus::StepFailed,
                              m_line.input + QStringLiteral(": ") + m_replay->Damage());
            m_replay.reset();
            return 0;
        }
        if (!next.step)
            return MonotonicNow() + next.wait;
        m_runner.Add(std::move(*next.step), MonotonicNow());
    }
    return 0;
}

/// How long until it is worth looking whether more than so many bytes still wait to leave; nothing
/// if no more do, or they stand still.
std::optional<qint64> CliRun::UntilSent(qint64 most)
{
    if (!m_communication.Running())
        return {};
    qint64 waiting = 0;
    m_ports.lines.Do([&] { waiting = m_ports.MSCommA.Wire().Waiting(); });
    return m_sending.Until(waiting, most, MonotonicNow());
}

void CliRun::OnOutcome(const StepOutcome &outcome)
{
    const StepProgram &program = m_runner.Program();
    const QString place = program.PlaceOf(outcome.step);
    m_report.Done(outcome, place);
    if (m_ids.contains(outcome.step.line))
        m_report.Answered(outcome, m_ids.take(outcome.step.line));
    else if (m_line.commands)
        m_report.ForbiddenCame(outcome);
    if (m_line.commands && m_ids.size() < MostCommands)
        m_input.SetReading(!m_inputEnded);
    if (outcome.verdict != StepOutcome::Verdict::Failed)
        return;
    const QString number =
        program.ofFile ? QStringLiteral("step %1, ").arg(outcome.number) : QString();
    m_report.Fail(m_stopping != 0 ? m_stopping : ExitStatus::StepFailed,
                  QStringLiteral("%1%2: ").arg(number, place) + outcome.step.text +
                      QStringLiteral(": ") + outcome.cause + InsteadOf(outcome));
}

void CliRun::OnCommand(const QByteArray &line)
{
    ++m_commandLines;
    if (m_over)
        return;
    StepCommand command = ReadStepCommand(line, Maker());
    if (command.result.Failed()) {
        Refuse(command.id, command.result.Cause());
        return;
    }
    command.step.line = m_commandLines;
    m_ids.insert(m_commandLines, command.id);
    if (m_ids.size() >= MostCommands)
        m_input.SetReading(false);
    m_runner.Add(std::move(command.step), MonotonicNow());
    Drain();
}

void CliRun::Refuse(const QJsonValue &id, const QString &cause)
{
    m_report.Refused(m_commandLines, id, cause);
}

/// Which failure it is tells the moment: while ports are opened it is looked at behind that.
void CliRun::OnFailed(const QString &text)
{
    if (m_acting) {
        if (!m_failed)
            m_failed = text;
        return;
    }
    Drain(); // a device that went away is told there
    StopFor(ExitStatus::FileFailed, text);
}

/// From outside: that fails the run if there were steps left. Ports that are still being opened
/// are not waited for.
void CliRun::EndEarly(const QString &cause)
{
    if (m_acting) {
        if (!m_later)
            m_later = [this, cause] { EndEarly(cause); };
        m_endedOpening = cause + QStringLiteral(" while a port was being opened");
        m_prompts.EndWork();
        return;
    }
    Drain();
    if (m_over)
        return;
    if (m_runner.Done() && !m_replay)
        Over();
    else
        StopFor(ExitStatus::StepFailed, cause);
}

/// What answers by itself and cannot is no longer the device, or the host, that it stands for.
void CliRun::OnNotAnswered(const QString &cause)
{
    if (m_hasSteps)
        StopFor(ExitStatus::StepFailed, cause);
    else
        m_report.Fail(ExitStatus::StepFailed, cause);
}

void CliRun::StopFor(int status, const QString &cause)
{
    if (m_acting) { // inside a step
        if (!m_later)
            m_later = [this, status, cause] { StopFor(status, cause); };
        return;
    }
    m_stopping = status;
    m_runner.Stop(cause);
    m_report.Fail(status, cause);
    Over();
}

void CliRun::Over()
{
    m_over = true;
    m_timer.stop();
    m_input.SetReading(false);
    m_loop.quit();
}

/// No event loop runs any more, so what the threads have posted is handled here.
int CliRun::End()
{
    m_notSent.clear();
    m_communication.ClosePorts();
    Drain();
    if (!m_notSent.isEmpty() && (m_hasSteps || m_line.commands))
        m_report.Fail(ExitStatus::StepFailed, m_notSent);
    m_runner.Finish();
    m_log.StopLog();
    m_hangs = !m_log.Finish();
    if (m_capture) {
        m_capture->Close();
        m_hangs = !m_capture->WaitUntilWritten(CaptureThread::MostTimeToEnd) || m_hangs;
    }
    QCoreApplication::sendPostedEvents(this);
    QCoreApplication::sendPostedEvents(&m_communication);
    QCoreApplication::sendPostedEvents(&m_log);
    m_communication.ShowWaitingReports();
    WriteReport();
    m_report.End(LineNow());
    m_hangs = !m_output.Finish() || m_hangs;
    QCoreApplication::sendPostedEvents(this);
    if (!m_report.Cause().isEmpty())
        m_errors << "serimonde-cli: " << FileName::Shown(m_report.Cause()) << Qt::endl;
    return m_report.Status();
}

/// One file, however often the ports are closed and opened meanwhile.
void CliRun::MakeCapture()
{
    CaptureFile::Calls calls;
    calls.failed = [this](CaptureFile::Trouble, const Result &result) {
        QMetaObject::invokeMethod(this, [this, cause = result.Cause()] {
            StopFor(
                ExitStatus::FileFailed,
                QStringLiteral("the capture %1 cannot be written: %2").arg(m_line.capture, cause));
        });
    };
    calls.finished = [] {};
    m_capture = std::make_unique<CaptureThread>(
        std::make_unique<CaptureFile>(m_files, m_fileSystem.AbsolutePath(m_line.capture),
                                      m_line.overwrite, std::move(calls)),
        QStringLiteral("Serimonde ") + ProgramInfo::Version());
    m_communication.Stream().Feed(*m_capture);
}

void CliRun::WriteReport()
{
    if (!m_junit.IsOpen())
        return;
    if (const Result written = m_report.WriteJUnit(m_junit); written.Failed())
        m_report.Fail(ExitStatus::FileFailed, ReportFailure(written));
}

QString CliRun::ReportFailure(const Result &result) const
{
    return QStringLiteral("the report %1 cannot be written: %2").arg(m_line.junit, result.Cause());
}

/// Does something to the lines; what would stop the run meanwhile does so when the step is over.
void CliRun::Act(const std::function<void()> &work)
{
    m_acting = true;
    work();
    m_acting = false;
    m_runner.NoteTime(MonotonicNow());
    if (m_later)
        QMetaObject::invokeMethod(this, std::exchange(m_later, {}), Qt::QueuedConnection);
}

/// What came until then, and what was sent, is told in front of what follows.
Result CliRun::Send(const QByteArray &bytes, const QByteArray &name)
{
    Result sent;
    Act([&] {
        sent = m_communication.Send(bytes, name);
        Drain();
    });
    return sent;
}

Result CliRun::OnLine(const std::function<Result(Line &line)> &work)
{
    if (!m_communication.Running())
        return Failure{QStringLiteral("the port is closed")};
    Result done;
    m_ports.lines.Do([&] { done = work(m_ports.MSCommA.Wire()); });
    return done;
}

Result CliRun::SetRTS(bool on)
{
    return OnLine([on](Line &line) { return line.SetRTS(on); });
}

Result CliRun::SetDTR(bool on)
{
    return OnLine([on](Line &line) { return line.SetDTR(on); });
}

Result CliRun::SetBreak(bool on)
{
    return OnLine([on](Line &line) { return line.SetBreak(on); });
}

Result CliRun::Open()
{
    m_failed.reset();
    Act([this] { m_communication.OpenPorts(); });
    if (m_communication.Running())
        return {};
    m_stopping = m_endedOpening ? ExitStatus::StepFailed : ExitStatus::PortFailed;
    return Failure{m_failed.value_or(m_endedOpening.value_or(QString()))};
}

Result CliRun::Close()
{
    Act([this] {
        m_notSent.clear();
        m_communication.ClosePorts();
        Drain();
    });
    return m_notSent.isEmpty() ? Result() : Failure{m_notSent};
}
