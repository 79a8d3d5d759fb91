// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ExtcapArguments.h"
#include "ExtcapSentences.h"
#include "LineCapture.h"
#include "PlainText.h"
#include "ProgramArguments.h"
#include "ProgramInfo.h"
#include "SystemPortFinder.h"
#include "TerminationWatch.h"
#include "UserLines.h"

#include <QCoreApplication>
#include <QTextStream>

namespace
{

using Action = ExtcapArguments::Action;

constexpr int WrongUsage = 2;

QString Help()
{
    return QStringLiteral(
        "Usage: serimonde-extcap --extcap-interfaces\n"
        "       serimonde-extcap --extcap-interface LINE --extcap-dlts | --extcap-config\n"
        "       serimonde-extcap --extcap-interface LINE --capture --fifo PIPE [OPTIONS]\n\n"
        "Shows the serial lines that Serimonde knows in Wireshark, which starts it. It listens, "
        "and\n"
        "never sends.\n\n"
        "Options:\n"
        "  --device DEVICE            of the line, such as /dev/ttyUSB0\n"
        "  --second-device DEVICE     the same, of the second line\n"
        "  --settings TEXT            port settings, such as 9600,N,8,1\n"
        "  --reconnect true|false     reopen a device that comes back\n"
        "  --request-to-send true|false  RTS is on, or off\n"
        "What is not said is as set in Serimonde.\n");
}

/// One line, whatever strangers have called their devices.
int Fail(const QString &cause, int status)
{
    QTextStream(stderr) << PlainText(cause) << '\n';
    return status;
}

/// The text of what is only asked.
QString Answer(const ExtcapArguments &arguments, const UserLines &user)
{
    switch (arguments.action) {
    case Action::ShowHelp:
        return Help();
    case Action::ShowVersion:
        return QStringLiteral("Serimonde %1\n").arg(ProgramInfo::Version());
    case Action::TellVersion:
        return ExtcapSentences::Version();
    case Action::ListLines:
        return ExtcapSentences::Lines(ExtcapLines(user.comm, user.devices, SystemPortFinder()));
    case Action::CheckFilter: // what is said is what is wrong with it
        return arguments.filter.isEmpty() ? QString() : NoFilters() + u'\n';
    case Action::ListLinkTypes:
        return ExtcapSentences::LinkTypes();
    case Action::ListQuestions:
        return ExtcapSentences::Questions(ExtcapLineNumbers(arguments.line), user.comm,
                                          user.devices);
    case Action::None:
    case Action::Capture:
        break;
    }
    return {};
}

} // namespace

int main(int argc, char *argv[])
{
    TerminationWatch::OutliveReaders();
    const ParsedExtcapArguments parsed = ParseExtcapArguments(ProgramArguments(argc, argv));
    if (parsed.result.Failed())
        return Fail(parsed.result.Cause(), WrongUsage);
    const QCoreApplication application(argc, argv);
    UserLines user;
    if (parsed.arguments.action == Action::Capture) {
        const Result captured = CaptureLines(parsed.arguments, user);
        return captured.Failed() ? Fail(captured.Cause(), 1) : 0;
    }
    QTextStream(stdout) << Answer(parsed.arguments, user);
    return 0;
}
