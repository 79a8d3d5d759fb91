// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "CaptureJudging.h"
#include "CaptureSettings.h"
#include "CommConfiguration.h"
#include "CommandLine.h"
#include "CommunicationViews.h"
#include "DisplaySettings.h"
#include "LogSettings.h"
#include "MainCommands.h"
#include "MdCaptureFile.h"
#include "MdFind.h"
#include "MdHelp.h"
#include "MdLogFile.h"
#include "MdPrint.h"
#include "MdProject.h"
#include "MdRecord.h"
#include "MdSequenceEdition.h"
#include "OpenFiles.h"
#include "PortDevices.h"
#include "PrintSettings.h"
#include "ProjectRecovery.h"
#include "ProjectState.h"
#include "QtPrintOutput.h"
#include "RecordSettings.h"
#include "RunState.h"
#include "SendLineSettings.h"
#include "SequenceSettings.h"
#include "StampText.h"
#include "StoredSettings.h"
#include "SystemFiles.h"
#include "ViewSettings.h"
#include "WindowSettings.h"

#include <QObject>

#include <functional>
#include <map>
#include <memory>

class Clock;
class DemoInstrument;
class LineStatusWindow;
class MainDialogs;
class MdCommunication;
class MdTraffic;
class MdSendLine;
class PortFinder;
class ReplayWindow;
struct SerialPorts;
class SequenceLists;
class SettingsStore;
class SendRepeats;
class Shell;
class SystemRegistry;
class TrafficWork;
class UserPrompts;
class frmMain;
class frmTraffic;

/// The program: owns what its parts work with, wires them, and runs the main loop.
class MdMain final : public QObject
{
    Q_OBJECT

  public:
    /// The outside world; it lives longer than the program.
    struct World {
        SettingsStore &store;
        UserPrompts &prompts;
        const Clock &clock;
        Shell &shell;
        SystemRegistry &registry;
        RecoveryFolder &recovery;
        std::shared_ptr<RecordFolder> record; ///< shared with threads that may outlive the program
    };

    MdMain(const World &world, const CommandLine &line);
    ~MdMain() override;

    /// Starts, runs until the main window has gone, and ends. Returns the exit status: 0, or 1 if
    /// the start failed or a critical message was given.
    int Run();

    /// After Run: a disk or printer has not taken the rest of a log or a printout in time. The
    /// process must then end without waiting for it.
    bool DiskHangs() const { return m_diskHangs; }

    /// The system ends the program: open dialogs are rejected and the window closes unasked. What
    /// has not been saved is kept for the next start.
    void CloseUnasked();

    /// Carries out a command of the main window.
    void Execute(Command command);

    /// Its file is looked for in the program's own folder.
    MdHelp &Help() { return m_help; }
    /// For an end that may come without a question.
    ProjectRecovery &Recovery() { return m_recovery; }
    MdRecord &Record() { return m_record; }
    /// The window while the program runs, else null.
    frmMain *Window() const { return m_window.get(); }
    MdCommunication &Communication() { return *m_communication; }
    const CommConfiguration &Comm() const { return m_comm; }
    const DisplaySettings &Display() const { return m_display; }
    MdSequenceEdition &Sequences() { return m_sequences; }
    CommunicationViews &Views() { return m_views; }

  private:
    bool LoadMainWindow();
    void EndCommunication();
    void TellOnceShown(const QString &text);
    void ApplyCommandLine();
    void MakeWindow();
    void WorkOnTraffic(frmTraffic &window);
    void ConnectCommunication();
    void WireCommands();
    void ShowMainWindow();
    void OpenNamedFile();
    void UnloadMainWindow();
    StoredSettings Stored();

    World m_world;
    CommandLine m_line;
    bool m_diskHangs = false;
    MdHelp m_help;

    // What the subjects own and the settings store keeps.
    CommConfiguration m_comm;
    DisplaySettings m_display;     ///< in force
    DisplaySettings m_displayNext; ///< for the next start
    StampSettings m_stamp;
    LogSettings m_logSettings;
    SequenceSettings m_sequenceSettings;
    WindowSettings m_windowSettings;
    ListSettings m_listSettings;
    ViewSettings m_viewSettings;
    PrintSettings m_printSettings;
    CaptureSettings m_captureSettings;
    RecordSettings m_recordSettings;
    TrafficWindowSettings m_trafficSettings;
    ResponseWindowSettings m_responseSettings;
    SendLineSettings m_sendLineSettings;
    ProjectState m_projectState;
    RunState m_run;

    MdSequenceEdition m_sequences;
    CommunicationViews m_views;
    SystemFiles m_fileSystem;
    OpenFiles m_files{m_fileSystem};
    MdLogFile m_log;
    MdCaptureFile m_capture;
    MdRecord m_record;
    PortDevices m_devices;
    std::shared_ptr<const PortFinder> m_finder; ///< shared with searches under way
    std::unique_ptr<DemoInstrument> m_demo;     ///< outlives the ports that listen to it
    std::unique_ptr<SerialPorts> m_ports;
    std::unique_ptr<MdCommunication> m_communication;
    std::unique_ptr<MdSendLine> m_sendLine;
    MdProject m_project;
    ProjectRecovery m_recovery;
    MdFind m_find;
    QtPrintOutput m_printOutput{m_files};
    MdPrint m_print;
    CaptureJudging m_judging;
    std::map<Command, std::function<void()>> m_commands;
    std::unique_ptr<frmMain> m_window;
    std::unique_ptr<SequenceLists> m_lists; ///< works on the lists of the window
    std::unique_ptr<SendRepeats> m_repeats; ///< of the lists
    std::unique_ptr<MainDialogs> m_dialogs; ///< of the window
    std::unique_ptr<LineStatusWindow> m_lineStatus;
    std::unique_ptr<ReplayWindow> m_replay;
    std::unique_ptr<MdTraffic> m_traffic;
    std::unique_ptr<TrafficWork> m_trafficWork; ///< in its window
};
