// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "CaptureThread.h"
#include "ClOutputFile.h"
#include "CommConfiguration.h"
#include "CommandLine.h"
#include "DisplaySettings.h"
#include "LogSettings.h"
#include "MdCommunication.h"
#include "MdLogFile.h"
#include "MdSequenceEdition.h"
#include "NoSettings.h"
#include "OpenFiles.h"
#include "OutputThread.h"
#include "PortDevices.h"
#include "ReplaySteps.h"
#include "RunFeed.h"
#include "RunLog.h"
#include "RunPrompts.h"
#include "RunReport.h"
#include "RunState.h"
#include "SendWatch.h"
#include "SerialPorts.h"
#include "StampText.h"
#include "StandardInput.h"
#include "StepMaker.h"
#include "StepRunner.h"
#include "SystemClock.h"
#include "SystemFiles.h"

#include <QEventLoop>
#include <QHash>
#include <QObject>
#include <QTextStream>
#include <QTimer>

class DemoInstrument;

/// One run without a window: owns what its parts work with, wires them, and runs the steps on this
/// thread, which does nothing else. The lines are served by theirs, as in the window.
class CliRun final : public QObject, private StepActions
{
    Q_OBJECT

  public:
    CliRun(const CommandLine &line, QTextStream &errors);
    ~CliRun() override;

    /// Prepares, runs and ends; the exit status.
    int Run();

    /// After Run: something does not take what is to be written. The process must then end without
    /// waiting for it.
    bool Hangs() const { return m_hangs; }

  private:
    Result Prepare();
    Result LoadProject();
    Result ReadSteps();
    Result OpenReplay();
    StepMaker Maker() const;
    void Begin();
    void BeginInput();
    int End();
    void MakeCapture();
    void WriteReport();
    QString ReportFailure(const Result &result) const;

    void Drain();
    void Advance();
    qint64 AdvanceReplay();
    std::optional<qint64> UntilSent(qint64 most);
    void OnOutcome(const StepOutcome &outcome);
    void OnCommand(const QByteArray &line);
    void Refuse(const QJsonValue &id, const QString &cause);
    void OnFailed(const QString &text);
    void EndEarly(const QString &cause);
    void OnNotAnswered(const QString &cause);
    void StopFor(int status, const QString &cause);
    void Over();

    Result Send(const QByteArray &bytes, const QByteArray &name) override;
    Result SetRTS(bool on) override;
    Result SetDTR(bool on) override;
    Result SetBreak(bool on) override;
    Result Open() override;
    Result Close() override;
    Result OnLine(const std::function<Result(Line &line)> &work);
    void Act(const std::function<void()> &work);

    const CommandLine m_line;
    QTextStream &m_errors;
    OutputThread m_output;
    RunReport m_report;
    RunPrompts m_prompts;

    CommConfiguration m_comm;
    DisplaySettings m_display;
    StampSettings m_stamp;
    LogSettings m_logSettings;
    RunState m_state;
    MdSequenceEdition m_sequences;
    SystemClock m_clock;
    SystemFiles m_fileSystem;
    OpenFiles m_files{m_fileSystem};
    NoSettings m_settings;
    PortDevices m_devices;
    std::unique_ptr<DemoInstrument> m_demo; ///< outlives the ports that listen to it
    RunFeed m_feed;
    MdLogFile m_log;
    std::unique_ptr<CaptureThread> m_capture; ///< null if none is wanted
    RunLog m_runLog;
    ClOutputFile m_junit{m_files}; ///< open from the beginning, so that it is sure to be written
    SerialPorts m_ports;
    MdCommunication m_communication;

    StepProgram m_program; ///< until the run begins
    StepRunner m_runner;
    std::unique_ptr<ReplaySteps> m_replay; ///< null if steps come from elsewhere
    bool m_hasSteps = false;               ///< the run is over when all are done
    SendWatch m_sending;
    QString m_notSent; ///< why bytes were not sent, since it was last cleared
    StandardInput m_input;
    QHash<int, QJsonValue> m_ids; ///< of commands that have no answer yet, by their line
    int m_commandLines = 0;
    bool m_inputEnded = false;

    QTimer m_timer; ///< wakes the runner
    QEventLoop m_loop;
    bool m_over = false;
    bool m_hangs = false;
    bool m_acting = false;                 ///< something is being done to the lines
    std::function<void()> m_later;         ///< what would stop the run meanwhile; null for nothing
    std::optional<QString> m_endedOpening; ///< why ports were not waited for any longer
    int m_stopping = 0;              ///< the status of what stops the run; 0 for steps that fail
    std::optional<QString> m_failed; ///< what went wrong while ports were opened
};
