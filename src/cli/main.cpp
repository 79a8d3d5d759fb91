// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CaptureCommands.h"
#include "CliRun.h"
#include "CommandLine.h"
#include "DoctorCommand.h"
#include "ProgramArguments.h"
#include "ProgramInfo.h"
#include "TerminationWatch.h"

#include <QCoreApplication>
#include <QTextStream>

#include <cstdlib>

int main(int argc, char *argv[])
{
    TerminationWatch::OutliveReaders();
    QTextStream output(stdout);
    QTextStream errors(stderr);
    QStringList arguments = ProgramArguments(argc, argv);
    const Program program = TakeCommand(arguments);
    const ParsedCommandLine parsed = ParseCommandLine(arguments, program);
    if (parsed.result.Failed()) {
        errors << "serimonde-cli: " << parsed.result.Cause()
               << "\nserimonde-cli --help shows the options.\n";
        return ExitStatus::WrongUsage;
    }
    if (parsed.line.action == CommandLine::Action::ShowHelp) {
        output << CommandLineHelp(program);
        return 0;
    }
    if (parsed.line.action == CommandLine::Action::ShowVersion) {
        output << "Serimonde " << ProgramInfo::Version() << '\n';
        return 0;
    }
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("Serimonde"));
    QCoreApplication::setApplicationVersion(ProgramInfo::Version());
    if (program == Program::Judge)
        return CaptureCommands::Judge(parsed.line, errors);
    if (program == Program::Export)
        return CaptureCommands::Export(parsed.line, errors);
    if (program == Program::Doctor)
        return ExaminePorts(parsed.line, output, errors);
    CliRun run(parsed.line, errors);
    const int status = run.Run();
    if (run.Hangs()) {
        errors.flush();
        std::_Exit(status);
    }
    return status;
}
