// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CommandLine.h"
#include "ConsolePrompts.h"
#include "Display.h"
#include "DoctorCommand.h"
#include "FileName.h"
#include "FirstWindow.h"
#include "HeadStart.h"
#include "MdMain.h"
#include "ProgramArguments.h"
#include "ProgramInfo.h"
#include "QtPrompts.h"
#include "QtSettingsStore.h"
#include "QtShell.h"
#include "SessionBus.h"
#include "SessionWatch.h"
#include "SystemClock.h"
#include "SystemFiles.h"
#include "SystemRecordFolder.h"
#include "SystemRecoveryFolder.h"
#include "SystemRegistry.h"
#include "TerminationWatch.h"
#include "ThreadTurns.h"
#include "ThriftyStyle.h"

#include <QApplication>
#include <QTextStream>

#include <cstdlib>
#include <memory>
#include <utility>

namespace
{

constexpr int StartFailed = 1;
constexpr int WrongUsage = 2;

/// Whether the program may start.
bool ResetSettings(FileSystem &files, const QString &path, UserPrompts &prompts,
                   QTextStream &errors)
{
    const SetAside old = SetSettingsAside(files, path);
    if (old.result.Failed()) {
        prompts.ShowMessage(CriticalMessage(QStringLiteral("The settings could not be reset. ") +
                                            old.result.Cause()));
    } else if (!old.kept.isEmpty()) {
        errors << "serimonde: the old settings are kept in " << FileName::Shown(old.kept) << '\n'
               << Qt::flush;
    }
    return !old.result.Failed();
}

int RunProgram(const CommandLine &line, QTextStream &errors)
{
    std::unique_ptr<UserPrompts> prompts;
    if (line.Unattended())
        prompts = std::make_unique<ConsolePrompts>(errors);
    else
        prompts = std::make_unique<QtPrompts>(errors);

    SystemFiles files;
    const QString settings = QtSettingsStore::UserPath();
    if (line.resetSettings && !ResetSettings(files, settings, *prompts, errors))
        return StartFailed;
    files.Tidy(settings);
    QtSettingsStore store(files, settings);
    if (store.State().Failed()) {
        prompts->ShowMessage(CriticalMessage(
            QStringLiteral("The settings could not be read. %1. Correct that, or start with "
                           "--reset-settings, which sets the file aside.")
                .arg(store.State().Cause())));
        return StartFailed;
    }
    const SystemClock clock;
    QtShell shell;
    const std::unique_ptr<SystemRegistry> registry = MakeSystemRegistry();
    SystemRecoveryFolder recovery;
    MdMain program({store, *prompts, clock, shell, *registry, recovery,
                    std::make_shared<SystemRecordFolder>()},
                   line);
    const FirstWindow window;

    const auto closeUnasked = [&program, &prompts] {
        prompts->EndUnasked();
        program.CloseUnasked();
    };
    const TerminationWatch termination;
    QObject::connect(&termination, &TerminationWatch::Terminating, &program, closeUnasked);
    const SessionWatch session;
    QObject::connect(&session, &SessionWatch::Lost, &program, [&program, &prompts] {
        prompts->EndUnasked();
        program.Recovery().Keep();
        program.Record().Keep();
    });
    QObject::connect(&session, &SessionWatch::SavingWanted, &program,
                     [&program] { program.Recovery().Keep(); });
    QObject::connect(&session, &SessionWatch::GoesOn, &program,
                     [&program] { program.Recovery().GoOn(); });
    QObject::connect(&session, &SessionWatch::Ending, &program, closeUnasked);
    const int status = program.Run();
    if (program.DiskHangs()) {
        errors.flush();
        std::_Exit(status);
    }
    return status;
}

} // namespace

int main(int argc, char *argv[])
{
    TerminationWatch::OutliveReaders();
    QTextStream output(stdout);
    QTextStream errors(stderr);
    const QStringList arguments = ProgramArguments(argc, argv);
    const ParsedCommandLine parsed = ParseCommandLine(arguments);
    if (parsed.result.Failed()) {
        errors << "serimonde: " << parsed.result.Cause()
               << "\nserimonde --help shows the options.\n";
        return WrongUsage;
    }
    if (parsed.line.action == CommandLine::Action::ShowHelp) {
        output << CommandLineHelp();
        return 0;
    }
    if (parsed.line.action == CommandLine::Action::ShowVersion) {
        output << "Serimonde " << ProgramInfo::Version() << '\n';
        return 0;
    }
    if (parsed.line.doctor) {
        const QCoreApplication application(argc, argv);
        return ExaminePorts(parsed.line, output, errors);
    }
    if (const Result display = CheckDisplay(); display.Failed() && !ChoosesPlatform(arguments)) {
        errors << "serimonde: " << display.Cause() << '\n';
        return StartFailed;
    }
    const SessionBus bus = AskSessionBus();
    if (bus.state.Failed())
        errors << "serimonde: " << bus.state.Cause() << '\n' << Qt::flush;

    ThreadTurns::TakeShort(); // the window is waited for, and hears from others on its way
    HeadStart begun(WillBeSeen(arguments), bus.runs);
    // The menu bar stands in the window; for another place the session's bus would be waited for.
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeMenuBar);
    QApplication application(argc, argv);
    QApplication::setStyle(new ThriftyStyle);
    HeadStart start = std::move(begun); // ends before the application does
    start.LoadFaces();
    ThreadTurns::TakeLong(); // also for all threads that are started; that of the lines has its own
    QCoreApplication::setApplicationName(QStringLiteral("Serimonde"));
    QCoreApplication::setApplicationVersion(ProgramInfo::Version());
    QGuiApplication::setDesktopFileName(QStringLiteral("org.serimonde.Serimonde"));
    QGuiApplication::setQuitOnLastWindowClosed(false);
    return RunProgram(parsed.line, errors);
}
