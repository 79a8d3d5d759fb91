// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "app/MdMain.h"

#include "about/MdGetSpecialFolders.h"
#include "about/ProgramInfo.h"
#include "about/SystemInformation.h"
#include "about/frmAbout.h"
#include "app/DemoProject.h"
#include "app/SequenceLists.h"
#include "app/frmMain.h"
#include "find/frmFind.h"
#include "options/frmOptions.h"
#include "platform/DemoInstrument.h"
#include "platform/QtSerialPort.h"
#include "platform/SerialPortHub.h"
#include "platform/SettingsStore.h"
#include "platform/SystemPortFinder.h"
#include "platform/UserPrompts.h"
#include "project/ProgramSettings.h"
#include "sequences/frmEditAction.h"
#include "sequences/frmEditEvent.h"

#include <QApplication>
#include <QBackingStore>
#include <QDir>
#include <QFileInfo>
#include <QPixmap>
#include <QSaveFile>
#include <QTimer>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace
{

/// COM numbers and line settings of the demo.
constexpr int DemoPortA = 1;
constexpr int DemoPortB = 2;
constexpr LineSettings DemoLine = {};

/// Writes the picture. Returns the cause if that fails, else an empty text.
QString WritePng(const QPixmap &picture, const QString &path)
{
    const QFileInfo target(path);
    if (target.exists() && !target.isFile())
        return QStringLiteral("it is not a regular file");
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return file.errorString();
    if (!picture.save(&file, "PNG") || !file.flush() || file.error() != QFileDevice::NoError) {
        file.cancelWriting();
        return QStringLiteral("not all of it could be written");
    }
    return file.commit() ? QString() : file.errorString();
}

} // namespace

MdMain::MdMain(const World &world, const CommandLine &line)
    : m_world(world),
      m_line(line),
      m_help(world.prompts, world.shell),
      m_log({m_settings, world.prompts, m_files, [this] { return PortsOpen(); }}),
      m_devices(world.store),
      m_finder(std::make_shared<SystemPortFinder>()),
      m_hub(std::make_unique<SerialPortHub>()),
      MSCommA(std::make_unique<QtSerialPort>(*m_hub, m_devices)),
      MSCommB(std::make_unique<QtSerialPort>(*m_hub, m_devices)),
      m_communication(std::make_unique<MdCommunication>(
          CommunicationParts{m_settings, m_sequences, m_views, m_log, world.prompts, world.clock,
                             *MSCommA, *MSCommB})),
      m_project({m_settings, m_sequences, *m_communication, world.store, world.prompts, m_files}),
      m_find(m_settings, m_sequences, m_views, world.prompts),
      m_print({m_settings, m_sequences, m_views, world.prompts, world.clock, m_printOutput,
               [this](bool busy) { SetBusy(busy); }})
{
}

MdMain::~MdMain() = default;

bool MdMain::PortsOpen() const
{
    return m_communication && m_communication->Running();
}

int MdMain::Run()
{
    m_help.SetFile(QCoreApplication::applicationDirPath() + QDir::separator() +
                   QLatin1String("serimonde.hlp"));
    m_settings.QuitRequested = false;
    SetProgramTitle(QStringLiteral("Serimonde"));
    if (!LoadMainWindow())
        return 1;
    ShowMainWindow();
    MainLoop(m_settings, *m_communication, m_views).Run();

    m_communication->ClosePorts();
    m_communication->ShowWaitingReports();
    m_lists.reset();
    m_window.reset();
    return m_world.prompts.CriticalShown() ? 1 : 0;
}

bool MdMain::LoadMainWindow()
{
    if (!m_world.store.Read(QStringLiteral("Settings"), QStringLiteral("ProjectPath")))
        m_settings.ProjectDirectory = MdGetSpecialFolders();
    const auto bad = ProgramSettings::LoadSettings(m_world.store, m_settings, m_sequences);
    if (bad) {
        m_world.prompts.ShowMessage(CriticalMessage(bad->Message()));
        return false;
    }
    ApplyCommandLine();
    m_window = std::make_unique<frmMain>(m_settings, m_views);
    ConnectWindow();
    m_log.UpdateLogCommands();
    return true;
}

void MdMain::ApplyCommandLine()
{
    if (m_line.demo)
        AttachDemo();
    for (auto port = m_line.ports.cbegin(); port != m_line.ports.cend(); ++port)
        m_devices.AssignForRun(port.key(), port.value());
    if (m_line.mode)
        m_settings.comm.run.mode = m_line.mode;
    if (m_line.line)
        m_settings.comm.run.line = m_line.line;
    if (!m_line.log.isEmpty())
        m_log.Arm(m_line.log, m_line.overwrite);
}

void MdMain::AttachDemo()
{
    const CommMode mode = m_line.mode.value_or(CommMode::SendReceive);
    m_demo = std::make_unique<DemoInstrument>(mode);
    if (!m_demo->ErrorText().isEmpty()) {
        m_world.prompts.ShowMessage(
            CriticalMessage(QStringLiteral("The simulated instrument could not be attached. ") +
                            m_demo->ErrorText()));
        m_demo.reset(); // and no demo: COM1 would be one of the user's own devices
        return;
    }
    m_settings.comm.run = {mode, DemoLine, DemoPortA, DemoPortB};
    m_devices.AssignForRun(DemoPortA, m_demo->DevicePath(0));
    m_devices.AssignForRun(DemoPortB, m_demo->DevicePath(1));
    FillDemoProject(m_sequences);
}

void MdMain::ConnectWindow()
{
    m_window->AskSaveChanges = [this] { return m_project.AskSaveChanges(); };
    m_window->Unload = [this] { UnloadMainWindow(); };
    connect(m_window.get(), &frmMain::CommandChosen, this, &MdMain::Execute);
    connect(m_communication.get(), &MdCommunication::PortStatusChanged, m_window.get(),
            &frmMain::ShowPortStatus);
    connect(m_communication.get(), &MdCommunication::ToolbarStateChanged, m_window.get(),
            &frmMain::SetToolbarState);
    connect(&m_log, &MdLogFile::CommandsChanged, m_window.get(), &frmMain::EnableLogCommands);
    connect(m_window.get(), &frmMain::RecentProjectChosen, this,
            [this](const QString &entry) { m_project.OpenRecentProject(entry); });
    ConnectLists();
    m_project.Attach(*this);
    m_project.ShowRecentProjects();
}

void MdMain::ConnectLists()
{
    m_lists = std::make_unique<SequenceLists>(
        SequenceListParts{m_settings, m_sequences, *m_communication, m_world.prompts,
                          m_window->SendList(), m_window->ReceiveList()});
    m_lists->EditSend = [this] { EditSendSequence(); };
    m_lists->EditReceive = [this] { EditReceiveSequence(); };
    connect(m_lists.get(), &SequenceLists::ProjectChanged, m_window.get(),
            &frmMain::SetProjectModified);
}

void MdMain::ShowMainWindow()
{
    m_window->show();
    if (!m_line.project.isEmpty())
        QTimer::singleShot(0, m_window.get(), [this] { m_project.OpenFile(m_line.project); });
    if (m_line.start || m_demo)
        QTimer::singleShot(0, m_communication.get(), &MdCommunication::OpenPorts);
    if (m_line.quitAfterSeconds) {
        const auto delay = std::chrono::milliseconds(qint64(*m_line.quitAfterSeconds * 1000));
        QTimer::singleShot(delay, m_window.get(), &QWidget::close);
    }
}

void MdMain::CloseUnasked()
{
    if (m_window) {
        m_window->CloseUnasked();
        return;
    }
    frmMain::UnloadForms(nullptr);
    m_settings.QuitRequested = true;
}

void MdMain::SetProgramTitle(const QString &title)
{
    m_settings.ProgramTitle = title;
    if (m_window)
        m_window->setWindowTitle(title);
}

void MdMain::Execute(Command command)
{
    struct Row {
        Command command;
        void (*act)(MdMain &program);
    };
    // Without those that do nothing, and OpenRecent, whose project comes with a signal of its own.
    static constexpr Row Rows[] = {
        {Command::New, [](MdMain &program) { program.m_project.NewProject(); }},
        {Command::Open, [](MdMain &program) { program.m_project.OpenProject(); }},
        {Command::Save, [](MdMain &program) { program.m_project.SaveProject(); }},
        {Command::SaveAs, [](MdMain &program) { program.m_project.SaveProjectAs(); }},
        {Command::PrintProject, [](MdMain &program) { program.m_print.PrintProject(); }},
        {Command::PrintCommunication,
         [](MdMain &program) { program.m_print.PrintCommunication(); }},
        {Command::Exit, [](MdMain &program) { program.m_window->close(); }},
        {Command::Options, [](MdMain &program) { program.ShowOptions(); }},
        {Command::Find, [](MdMain &program) { program.ShowFind(); }},
        {Command::FindNext, [](MdMain &program) { program.FindNext(); }},
        {Command::Start, [](MdMain &program) { program.m_communication->OpenPorts(); }},
        {Command::Stop, [](MdMain &program) { program.m_communication->ClosePorts(); }},
        {Command::Clean, [](MdMain &program) { program.m_views.ClearViews(); }},
        {Command::StartLog, [](MdMain &program) { program.m_log.StartLog(); }},
        {Command::StopLog, [](MdMain &program) { program.m_log.StopLog(); }},
        {Command::HelpContents, [](MdMain &program) { program.m_help.ShowContents(); }},
        {Command::HelpSearch, [](MdMain &program) { program.m_help.ShowSearch(); }},
        {Command::About, [](MdMain &program) { program.ShowAbout(); }},
    };
    const auto *row = std::find_if(std::begin(Rows), std::end(Rows),
                                   [command](const Row &each) { return each.command == command; });
    if (row != std::end(Rows))
        row->act(*this);
}

void MdMain::EditSendSequence()
{
    frmEditAction editor({m_settings, m_sequences, m_world.prompts, m_sendMode,
                          [this](int index) {
                              m_lists->ShowSendRecord(index);
                              SetProjectModified(true);
                          },
                          [this](int index) {
                              m_lists->RemoveSendRow(index);
                              SetProjectModified(true);
                          }},
                         m_window.get());
    editor.exec();
}

void MdMain::EditReceiveSequence()
{
    frmEditEvent editor({m_settings, m_sequences, m_world.prompts, m_receiveMode,
                         [this](int index) {
                             m_lists->ShowReceiveRecord(index);
                             SetProjectModified(true);
                         },
                         [this](int index) {
                             m_lists->RemoveReceiveRow(index);
                             SetProjectModified(true);
                         }},
                        m_window.get());
    editor.exec();
}

bool MdMain::ProjectModified() const
{
    return m_window->ProjectModified();
}

void MdMain::SetProjectModified(bool modified)
{
    if (modified)
        m_window->SetProjectModified();
    else
        m_window->SetProjectUnmodified();
}

void MdMain::SetCaption(const QString &caption)
{
    // Qt takes [*] for the mark of a modified document unless it is doubled.
    m_window->setWindowTitle(
        QString(caption).replace(QLatin1String("[*]"), QLatin1String("[*][*]")));
}

void MdMain::SetBusy(bool busy)
{
    if (!busy) {
        QGuiApplication::restoreOverrideCursor();
        return;
    }
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    // No event is handled until the work is done, so the place where a dialog stood is painted now.
    // To repaint the window leaves out what lies on it; all of that is in the backing store.
    if (m_window && m_window->isVisible() && m_window->backingStore())
        m_window->backingStore()->flush(m_window->rect());
}

void MdMain::RefreshLists()
{
    m_lists->Refresh();
}

void MdMain::ShowRecentProjects(const QStringList &projects)
{
    m_window->ShowRecentProjects(projects);
}

void MdMain::ShowOptions()
{
    m_communication->ClosePorts();
    // A log that could not be closed may have kept the user until the program ends.
    if (!m_communication->Running() && !m_settings.QuitRequested) {
        const OptionsValues values = {m_settings.comm, m_settings.stamp, m_settings.Display,
                                      m_settings.log};
        frmOptions options(
            {values, m_settings.displayNext, m_world.prompts, m_devices, m_finder,
             [this](const OptionsValues &confirmed) { StoreOptions(confirmed); },
             [this](const DisplaySettings &display) { m_settings.displayNext = display; }},
            m_window.get());
        options.exec();
    }
    m_window->UpdateStatusPanels();
}

void MdMain::ShowFind()
{
    frmFind dialog({m_find, m_sequences, [this] { return m_window->ShowSelection(); }},
                   m_window.get());
    dialog.exec();
}

void MdMain::FindNext()
{
    const std::optional<QByteArray> sequence = m_find.ChosenSequence();
    if (!sequence)
        ShowFind();
    else if (m_find.FindNext(m_find.FindTab, *sequence))
        m_window->ShowSelection();
}

void MdMain::StoreOptions(const OptionsValues &values)
{
    for (auto device = values.devices.cbegin(); device != values.devices.cend(); ++device)
        m_devices.Assign(device.key(), *device);
    m_settings.comm = values.comm;
    m_settings.stamp = values.stamp;
    m_settings.log = values.log;
    const bool otherDisplay = m_settings.Display != values.Display;
    m_settings.Display = values.Display;
    if (otherDisplay)
        m_lists->Refresh();
    m_window->UpdateStatusPanels();
}

void MdMain::ShowAbout()
{
    frmAbout box({ProgramInfo::Version(), ProgramInfo::SupportEmail(), ProgramInfo::WebSite()},
                 m_world.shell, m_world.prompts, m_window.get());
    box.ShowSystemInformation = [this] {
        StartSysInfo(m_world.registry, m_world.shell, m_world.prompts);
    };
    box.exec();
}

void MdMain::UnloadMainWindow()
{
    WriteScreenshot();
    m_project.ShowRecentProjects();
    const QString fault =
        ProgramSettings::SaveSettings(m_world.store, m_settings, m_window->isMinimized());
    if (!fault.isEmpty()) {
        m_world.prompts.ShowMessage(
            CriticalMessage(QStringLiteral("The settings could not be saved. ") + fault));
    }
}

void MdMain::WriteScreenshot()
{
    if (m_line.screenshot.isEmpty())
        return;
    const QString fault = WritePng(m_window->grab(), m_line.screenshot);
    if (!fault.isEmpty()) {
        m_world.prompts.ShowMessage(CriticalMessage(
            QStringLiteral("The picture %1 could not be written: ").arg(m_line.screenshot) +
            fault));
    }
}
