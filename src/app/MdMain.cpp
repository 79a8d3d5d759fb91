// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "MdMain.h"

#include "Demo.h"
#include "DemoInstrument.h"
#include "LineStatusWindow.h"
#include "LongDelay.h"
#include "MainDialogs.h"
#include "MainLoop.h"
#include "MdCommunication.h"
#include "MdGetSpecialFolders.h"
#include "MdSendLine.h"
#include "MdTraffic.h"
#include "NamedSequences.h"
#include "ProgramInfo.h"
#include "ProgramSettings.h"
#include "ReplayWindow.h"
#include "Screenshot.h"
#include "SendLine.h"
#include "SendRepeats.h"
#include "SequenceLists.h"
#include "SerialPorts.h"
#include "SettingsStore.h"
#include "SystemPortFinder.h"
#include "SystemPortName.h"
#include "TelegramList.h"
#include "TrafficWork.h"
#include "frmMain.h"

#include <QCoreApplication>
#include <QDir>
#include <QTimer>

MdMain::MdMain(const World &world, const CommandLine &line)
    : m_world(world),
      m_line(line),
      m_help(world.prompts, world.shell),
      m_log({m_logSettings, world.prompts, m_files, m_run,
             [this] { return m_communication && m_communication->Running(); }}),
      m_capture({m_captureSettings, world.prompts, m_files, m_run,
                 QStringLiteral("Serimonde ") + ProgramInfo::Version()}),
      m_record(
          {m_recordSettings, m_captureSettings.Folder, m_files, world.prompts, world.clock, m_run},
          world.record, QStringLiteral("Serimonde ") + ProgramInfo::Version()),
      m_devices(world.store, SystemPortName),
      m_finder(std::make_shared<SystemPortFinder>()),
      m_ports(std::make_unique<SerialPorts>(m_devices, &world.prompts)),
      m_communication(std::make_unique<MdCommunication>(CommunicationParts{
          m_comm, m_display, m_stamp, m_sequences, &m_views, m_log, world.prompts, world.clock,
          m_ports->MSCommA, m_ports->MSCommB, m_ports->lines})),
      m_sendLine(std::make_unique<MdSendLine>(
          SendLineParts{*m_communication, m_comm, m_devices, m_sendLineSettings})),
      m_project({m_projectState, m_sequences, *m_communication, world.store, world.prompts, m_files,
                 m_run}),
      m_recovery({m_projectState, m_sequences, m_project, world.recovery, world.prompts, m_run}),
      m_find(m_sequences, m_views, world.prompts),
      m_print({m_projectState, m_display, m_sequenceSettings, m_sequences, m_views, m_printSettings,
               world.prompts, world.clock, m_printOutput,
               [this](bool busy) { m_window->SetBusy(busy); }}),
      m_judging({m_sequences, m_projectState, m_captureSettings.Folder, m_files, world.prompts})
{
}

MdMain::~MdMain() = default;

/// The place of every setting that is stored.
StoredSettings MdMain::Stored()
{
    return {&m_comm.stored,     &m_windowSettings,   &m_listSettings,
            &m_display,         &m_displayNext,      &m_stamp,
            &m_logSettings,     &m_sequenceSettings, &m_projectState.LastFolder,
            &m_viewSettings,    &m_printSettings,    &m_captureSettings,
            &m_recordSettings,  &m_trafficSettings,  &m_sendLineSettings,
            &m_responseSettings};
}

int MdMain::Run()
{
    m_help.SetFile(QCoreApplication::applicationDirPath() + QDir::separator() +
                   QLatin1String("serimonde.hlp"));
    if (!LoadMainWindow())
        return 1;
    ShowMainWindow();
    MainLoop(m_run, *m_communication).Run();

    EndCommunication();
    m_dialogs.reset();
    m_trafficWork.reset();
    m_traffic.reset();
    m_replay.reset();
    m_repeats.reset();
    m_lists.reset();
    m_window.reset();
    return m_world.prompts.CriticalShown() ? 1 : 0;
}

/// No event loop runs any more, so what the threads have posted is handled here.
void MdMain::EndCommunication()
{
    m_world.prompts.EndNotices();
    m_communication->ClosePorts();
    const bool logged = m_log.Finish();
    const bool captured = m_capture.Finish();
    const bool recorded = m_record.Finish();
    m_diskHangs = !logged || !captured || !recorded || m_print.Hangs() || m_judging.Hangs() ||
                  (m_trafficWork && m_trafficWork->Hangs());
    QCoreApplication::sendPostedEvents(m_communication.get());
    QCoreApplication::sendPostedEvents(&m_log);
    QCoreApplication::sendPostedEvents(&m_capture);
    m_communication->ShowWaitingReports();
}

bool MdMain::LoadMainWindow()
{
    if (!m_world.store.Read(QStringLiteral("Settings"), QStringLiteral("ProjectPath")))
        m_projectState.LastFolder = MdGetSpecialFolders();
    QStringList notices;
    const Result loaded =
        ProgramSettings::LoadSettings(m_world.store, Stored(), m_sequences, notices);
    if (loaded.Failed()) {
        m_world.prompts.ShowMessage(CriticalMessage(loaded.Cause()));
        return false;
    }
    m_projectState.ProjectDirectory = m_projectState.LastFolder;
    m_record.ApplySettings();
    ApplyCommandLine();
    MakeWindow();
    ConnectCommunication();
    WireCommands();
    m_project.Attach(*m_window);
    m_project.ShowRecentProjects();
    m_log.UpdateLogCommands();
    if (!notices.isEmpty())
        TellOnceShown(notices.join(u'\n'));
    return true;
}

void MdMain::TellOnceShown(const QString &text)
{
    QTimer::singleShot(0, m_window.get(), [this, text] {
        m_world.prompts.ShowNotice(QStringLiteral("settings"), ExclamationMessage(text));
    });
}

/// What holds for this run alone.
void MdMain::ApplyCommandLine()
{
    if (m_line.demo) {
        m_demo = AttachDemo({m_comm, m_devices, m_sequences, m_world.prompts},
                            m_line.mode.value_or(CommMode::SendReceive));
    }
    for (auto port = m_line.ports.cbegin(); port != m_line.ports.cend(); ++port)
        m_devices.AssignForRun(port.key(), port.value());
    if (m_line.mode)
        m_comm.run.mode = m_line.mode;
    if (m_line.line)
        m_comm.run.line = m_line.line;
    m_comm.run.reopen = m_line.reconnect;
    if (!m_line.log.isEmpty())
        m_log.Arm(m_line.log, m_line.overwrite);
    if (!m_line.capture.isEmpty())
        m_capture.Arm(m_line.capture, m_line.overwrite);
}

void MdMain::MakeWindow()
{
    m_window = std::make_unique<frmMain>(MainWindowParts{m_comm, m_display, m_windowSettings,
                                                         m_listSettings, m_views, m_run,
                                                         m_projectState.ProgramTitle});
    m_window->ShowControlCharacters(m_viewSettings.ControlCharacters);
    m_lists = std::make_unique<SequenceLists>(
        SequenceListParts{m_sequenceSettings, m_sequences, *m_communication, m_world.prompts,
                          m_window->SendList(), m_window->ReceiveList()});
    m_repeats = std::make_unique<SendRepeats>(
        SendRepeatParts{*m_communication, m_sequences, m_window->SendList(),
                        [this](bool can) { m_window->EnableStopRepeating(can); }});
    m_dialogs = std::make_unique<MainDialogs>(
        MainDialogParts{*m_window,
                        *m_lists,
                        m_sequences,
                        *m_communication,
                        m_find,
                        m_record,
                        m_recordSettings,
                        {m_comm, m_stamp, m_sequenceSettings, m_logSettings, m_devices},
                        m_displayNext,
                        m_finder,
                        m_world.prompts,
                        m_world.shell,
                        m_world.registry,
                        m_run});
    m_lineStatus = std::make_unique<LineStatusWindow>(
        LineStatusWindowParts{m_comm, m_devices, m_ports->MSCommA, m_ports->MSCommB, m_ports->lines,
                              m_finder, m_world.prompts});
    m_replay =
        std::make_unique<ReplayWindow>(ReplayParts{*m_communication, m_comm, m_log, m_world.prompts,
                                                   m_fileSystem, m_captureSettings.Folder},
                                       *m_window);
    m_traffic = std::make_unique<MdTraffic>(MdTrafficParts{
        m_record, m_display, m_trafficSettings, [this] { return m_ports->OpenDevices(); }});
    connect(m_traffic.get(), &MdTraffic::Made, this, &MdMain::WorkOnTraffic);
    m_window->AskSaveChanges = [this] {
        const bool mayClose =
            m_project.AskSaveChanges() && (!m_trafficWork || m_trafficWork->AskSaveBookmarks());
        if (mayClose)
            m_recovery.Drop();
        return mayClose;
    };
    m_window->Unload = [this] { UnloadMainWindow(); };
    m_window->RefreshSequenceLists = [this] { m_lists->Refresh(); };
    m_lists->EditSend = [this] { m_dialogs->EditSendSequence(); };
    m_lists->EditReceive = [this] { m_dialogs->EditReceiveSequence(); };
    connect(m_lists.get(), &SequenceLists::ProjectChanged, m_window.get(),
            [this] { m_window->SetProjectModified(true); });
    connect(m_window.get(), &frmMain::ProjectSettled, this, [this] { m_recovery.Drop(); });
    connect(m_window.get(), &frmMain::CommandChosen, this, &MdMain::Execute);
    connect(m_window.get(), &frmMain::RecentProjectChosen, this,
            [this](const QString &entry) { m_project.OpenRecentProject(entry); });
}

/// What can be done in the window "Traffic", once it is there.
void MdMain::WorkOnTraffic(frmTraffic &window)
{
    const auto bookmarks = std::make_shared<TelegramBookmarks>();
    m_record.Notes = [bookmarks] { return bookmarks->Comments(); };
    const TrafficCopyParts copying = {
        [this] { return m_comm.MaySend(); },
        [this](const QByteArray &bytes, QWidget &over) { m_dialogs->NewSendSequence(bytes, over); },
        [this](const QByteArray &bytes, QWidget &over) {
            m_dialogs->NewReceiveSequence(bytes, over);
        }};
    const TrafficCaptureParts captures = {
        m_captureSettings.Folder,
        m_fileSystem,
        m_world.prompts,
        bookmarks,
        [this](const std::shared_ptr<const TelegramSource> &capture, const QString &name) {
            m_traffic->ShowCapture(capture, name);
        },
        [this] { m_traffic->ShowSession(); },
        [this] { return m_comm.TwoChannels(); },
        [this] { m_record.SaveCapture(); },
        [this](const std::shared_ptr<const InputDevice> &capture, const QString &name,
               const QList<CaptureBookmark> &of) {
            return m_record.SaveCopy({capture, of}, name);
        },
        [this](const QString &path, QWidget &owner) { m_judging.Judge(path, owner); },
        [this](const QString &path) { m_replay->Replay().Start(path); }};
    m_trafficWork = std::make_unique<TrafficWork>(
        window, TrafficWorkParts{[this] { return NamedSequences::NamesOf(m_sequences); },
                                 {m_captureSettings.Folder, m_files, m_world.prompts, m_run},
                                 copying,
                                 captures,
                                 m_responseSettings});
    connect(&window, &frmTraffic::MainWindowWanted, m_window.get(), [this] {
        m_window->setWindowState(m_window->windowState() & ~Qt::WindowMinimized);
        m_window->raise();
        m_window->activateWindow();
    });
    auto *line = new SendLine(*m_sendLine);
    window.SetFoot(*line);
    connect(line, &SendLine::Left, &window.List(), qOverload<>(&QWidget::setFocus));
    connect(line, &SendLine::KeepRequested, this, [this, &window](const QByteArray &telegram) {
        m_dialogs->NewSendSequence(telegram, window);
    });
}

void MdMain::ConnectCommunication()
{
    connect(m_communication.get(), &MdCommunication::PortStatusChanged, m_window.get(),
            &frmMain::ShowPortStatus);
    connect(m_communication.get(), &MdCommunication::ToolbarStateChanged, m_window.get(),
            &frmMain::SetToolbarState);
    connect(m_communication.get(), &MdCommunication::ToolbarStateChanged, m_window.get(),
            &frmMain::UpdateStatusPanels);
    m_communication->Stream().Feed(m_record.Consumer());
    m_log.RoomAgain = [this] { m_communication->Resume(); };
    connect(&m_log, &MdLogFile::CommandsChanged, m_window.get(), &frmMain::EnableLogCommands);
    const auto tick = [this](bool on) { m_window->SetTicked(Command::RecordCapture, on); };
    connect(&m_capture, &MdCaptureFile::Switched, m_window.get(), tick);
    tick(m_capture.IsOn());
    m_communication->Stream().Feed(m_capture);
}

/// Without those that do nothing, and OpenRecent, whose project comes with a signal of its own.
void MdMain::WireCommands()
{
    m_commands = {
        {Command::New, [this] { m_project.NewProject(); }},
        {Command::Open, [this] { m_project.OpenProject(); }},
        {Command::Save, [this] { m_project.SaveProject(); }},
        {Command::SaveAs, [this] { m_project.SaveProjectAs(); }},
        {Command::PrintProject, [this] { m_print.PrintProject(); }},
        {Command::PrintCommunication, [this] { m_print.PrintCommunication(); }},
        {Command::Exit, [this] { m_window->close(); }},
        {Command::Options, [this] { m_dialogs->ShowOptions(); }},
        {Command::LineStatus, [this] { m_lineStatus->Show(*m_window); }},
        {Command::Traffic, [this] { m_traffic->Show(); }},
        {Command::SaveCapture, [this] { m_record.SaveCapture(); }},
        {Command::RecordCapture, [this] { m_capture.Toggle(); }},
        {Command::ReplayCapture, [this] { m_replay->Replay().Choose(); }},
        {Command::JudgeCapture, [this] { m_judging.Judge(*m_window); }},
        {Command::SessionRecord, [this] { m_dialogs->ShowSessionRecord(); }},
        {Command::StopRepeating, [this] { m_communication->EndRepeats(); }},
        {Command::Find, [this] { m_dialogs->ShowFind(); }},
        {Command::FindNext, [this] { m_dialogs->FindNext(); }},
        {Command::Start, [this] { m_communication->OpenPorts(); }},
        {Command::Stop, [this] { m_communication->ClosePorts(); }},
        {Command::Clean, [this] { m_views.ClearViews(); }},
        {Command::ControlCharacters,
         [this] {
             m_viewSettings.ControlCharacters = !m_viewSettings.ControlCharacters;
             m_window->ShowControlCharacters(m_viewSettings.ControlCharacters);
         }},
        {Command::StartLog, [this] { m_log.StartLog(); }},
        {Command::StopLog, [this] { m_log.StopLog(); }},
        {Command::HelpContents, [this] { m_help.ShowContents(); }},
        {Command::HelpSearch, [this] { m_help.ShowSearch(); }},
        {Command::About, [this] { m_dialogs->ShowAbout(); }},
    };
}

void MdMain::Execute(Command command)
{
    const auto wired = m_commands.find(command);
    if (wired != m_commands.end())
        wired->second();
}

void MdMain::ShowMainWindow()
{
    m_window->show();
    if (!m_line.project.isEmpty())
        QTimer::singleShot(0, m_window.get(), [this] { OpenNamedFile(); });
    if (!m_line.Unattended())
        QTimer::singleShot(0, m_window.get(),
                           [this] { m_recovery.Offer([this] { m_record.Offer(); }); });
    if (m_line.start || m_demo)
        QTimer::singleShot(0, m_communication.get(), &MdCommunication::OpenPorts);
    if (m_line.quitAfterSeconds) {
        const auto delay = std::chrono::milliseconds(qint64(*m_line.quitAfterSeconds * 1000));
        CallAfter(delay, m_window.get(), [this] { m_window->close(); });
    }
}

/// A capture is known by its content, whatever its name is.
void MdMain::OpenNamedFile()
{
    if (m_replay->Replay().Knows(m_line.project))
        m_replay->Replay().Start(m_line.project);
    else
        m_project.OpenFile(m_line.project);
}

void MdMain::CloseUnasked()
{
    m_record.Keep();
    if (m_window) {
        m_recovery.Keep();
        m_window->CloseUnasked();
        return;
    }
    frmMain::UnloadForms(nullptr);
    m_run.QuitRequested = true;
}

void MdMain::UnloadMainWindow()
{
    if (!m_line.screenshot.isEmpty())
        WriteScreenshot(*m_window, m_line.screenshot, m_files, m_world.prompts);
    m_window->hide(); // whatever the disk does now, nobody looks at a window that stands still
    m_project.ShowRecentProjects();
    m_traffic->StorePlace();
    if (m_trafficWork)
        m_trafficWork->StorePlace();
    const Result saved =
        ProgramSettings::SaveSettings(m_world.store, Stored(), m_window->isMinimized());
    if (saved.Failed()) {
        m_world.prompts.ShowMessage(
            CriticalMessage(QStringLiteral("The settings could not be saved. ") + saved.Cause()));
    }
}
