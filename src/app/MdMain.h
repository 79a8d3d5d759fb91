// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "app/CommandLine.h"
#include "app/MainCommands.h"
#include "app/MainLoop.h"
#include "app/MdProject.h"
#include "app/ProjectWindow.h"
#include "comm/CommunicationViews.h"
#include "comm/MdCommunication.h"
#include "comm/PortDevices.h"
#include "find/MdFind.h"
#include "help/MdHelp.h"
#include "log/MdLogFile.h"
#include "platform/SystemFiles.h"
#include "print/MdPrint.h"
#include "print/QtPrintOutput.h"
#include "project/OpenFiles.h"
#include "project/SettingsRecord.h"
#include "sequences/MdSequenceEdition.h"

#include <QObject>

#include <memory>

class Clock;
class DemoInstrument;
class frmMain;
class PortFinder;
class QtSerialPort;
class SequenceLists;
class SerialPortHub;
class SettingsStore;
class Shell;
class SystemRegistry;
class UserPrompts;
struct OptionsValues;

/// The program: owns the state that everything shares, brings its parts up in their order, runs
/// the main loop and carries out the commands that belong to no other part.
class MdMain final : public QObject, private ProjectWindow
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
    };

    MdMain(const World &world, const CommandLine &line);
    ~MdMain() override;

    /// Starts, runs until the main window has gone, and ends. Returns the exit status: 0, or 1 if
    /// the start failed or a critical message was given.
    int Run();

    /// The system ends the program: open dialogs are rejected and the window closes unasked.
    void CloseUnasked();

    /// Sets the title of program and window.
    void SetProgramTitle(const QString &title);

    /// Carries out a command of the main window.
    void Execute(Command command);

    /// Its file is looked for in the program's own folder.
    MdHelp &Help() { return m_help; }
    /// The window while the program runs, else null.
    frmMain *Window() const { return m_window.get(); }
    MdCommunication &Communication() { return *m_communication; }
    SettingsRecord &Settings() { return m_settings; }
    MdSequenceEdition &Sequences() { return m_sequences; }
    CommunicationViews &Views() { return m_views; }

  private:
    bool ProjectModified() const override;
    void SetProjectModified(bool modified) override;
    void SetCaption(const QString &caption) override;
    void SetBusy(bool busy) override;
    void RefreshLists() override;
    void ShowRecentProjects(const QStringList &projects) override;

    bool PortsOpen() const;
    bool LoadMainWindow();
    void ApplyCommandLine();
    void AttachDemo();
    void ConnectWindow();
    void ShowMainWindow();
    void ConnectLists();
    void ShowOptions();
    void ShowFind();
    void FindNext();
    void StoreOptions(const OptionsValues &values);
    void ShowAbout();
    void EditSendSequence();
    void EditReceiveSequence();
    void UnloadMainWindow();
    void WriteScreenshot();

    World m_world;
    CommandLine m_line;
    MdHelp m_help;
    SettingsRecord m_settings;
    MdSequenceEdition m_sequences;
    CommunicationViews m_views;
    SystemFiles m_fileSystem;
    OpenFiles m_files{m_fileSystem};
    MdLogFile m_log;
    PortDevices m_devices;
    std::shared_ptr<const PortFinder> m_finder; ///< shared with searches under way
    std::unique_ptr<DemoInstrument> m_demo;     ///< outlives the ports that listen to it
    std::unique_ptr<SerialPortHub> m_hub;       ///< outlives its ports
    std::unique_ptr<QtSerialPort> MSCommA;
    std::unique_ptr<QtSerialPort> MSCommB;
    std::unique_ptr<MdCommunication> m_communication;
    MdProject m_project;
    MdFind m_find;
    QtPrintOutput m_printOutput{m_files};
    MdPrint m_print;
    Representation m_sendMode = Representation::Ascii;    ///< of the send editor, remembered
    Representation m_receiveMode = Representation::Ascii; ///< of the receive editor
    std::unique_ptr<frmMain> m_window;
    std::unique_ptr<SequenceLists> m_lists; ///< works on the lists of the window
};
