// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CommandLine.h"

#include "FileName.h"
#include "PathParts.h"
#include "PortNumber.h"
#include "StepParser.h"
#include "StepWords.h"

#include <QCommandLineParser>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace
{

using Apply = Result (*)(CommandLine &, const QString &value);

/// Whose option it is.
constexpr int Window = int(Program::Window);
constexpr int WithoutWindow = int(Program::WithoutWindow);
constexpr int Judge = int(Program::Judge);
constexpr int Export = int(Program::Export);
constexpr int Replay = int(Program::Replay);
constexpr int Doctor = int(Program::Doctor);
constexpr int Both = Window | WithoutWindow;
/// Whatever opens a line without a window.
constexpr int Runs = WithoutWindow | Replay;
constexpr int All = Both | Judge | Export | Replay | Doctor;

/// One option: how it is written, what it means and what it does. Apply fails if something is wrong
/// with the value.
struct OptionRow {
    const char *name;
    const char *value; ///< name of its value, null if it takes none
    const char *help;
    Apply apply;
    int programs = Both;
};

/// A year; longer runs are a slip of the hand and would overflow a timer.
constexpr double LongestRunSeconds = 365.0 * 24 * 3600;

Result ApplyPort(CommandLine &line, const QString &value)
{
    const qsizetype equals = value.indexOf(u'=');
    const QString device = equals < 0 ? QString() : value.mid(equals + 1);
    bool isNumber = false;
    const int number = value.left(equals).toInt(&isNumber);
    if (device.isEmpty() || !isNumber)
        return Failure{QStringLiteral("it must be of the form N=DEVICE, such as 1=/dev/ttyUSB0")};
    if (!IsPortNumber(number))
        return Failure{QStringLiteral("COM numbers go from %1 to %2")
                           .arg(LeastPortNumber)
                           .arg(MostPortNumber)};
    if (!FileName::IsText(device))
        return Failure{QStringLiteral("the name of a device must be UTF-8")};
    line.ports[number] = device;
    return {};
}

Result ApplyMode(CommandLine &line, const QString &value)
{
    if (value != u"0" && value != u"1" && value != u"2")
        return Failure{QStringLiteral("it must be 0, 1 or 2")};
    line.mode = CommMode(value.toInt());
    return {};
}

Result ApplySettings(CommandLine &line, const QString &value)
{
    line.line = ParseLineSettings(value);
    if (line.line)
        return {};
    return Failure{QStringLiteral("it must be of the form 9600,N,8,1: baud rate, parity E, M, N, O "
                                  "or S, data bits 4 to 8, stop bits 1, 1.5 or 2")};
}

Result ApplyQuitAfter(CommandLine &line, const QString &value)
{
    bool isNumber = false;
    const double seconds = value.toDouble(&isNumber);
    if (!isNumber || !std::isfinite(seconds) || seconds < 0 || seconds > LongestRunSeconds)
        return Failure{QStringLiteral("it must be a number of seconds")};
    line.quitAfterSeconds = seconds;
    return {};
}

Result MustNameAFile(bool names)
{
    return names ? Result() : Failure{QStringLiteral("it must name a file")};
}

Result ApplyLog(CommandLine &line, const QString &value)
{
    line.log = value;
    return MustNameAFile(!PathParts::FileName(value).trimmed().isEmpty());
}

Result ApplyCapture(CommandLine &line, const QString &value)
{
    line.capture = value;
    return MustNameAFile(!PathParts::FileName(value).trimmed().isEmpty());
}

template <auto File> Result ApplyFile(CommandLine &line, const QString &value)
{
    line.*File = value;
    return MustNameAFile(!value.isEmpty());
}

template <auto Time> Result ApplyTime(CommandLine &line, const QString &value)
{
    StepWords::Time read = StepWords::FromTime(value);
    line.*Time = read.nanoseconds;
    return std::move(read.result);
}

Result ApplySpeed(CommandLine &line, const QString &value)
{
    line.speed = value == u"max" ? 0 : value.toInt();
    if (value == u"1" || value == u"10" || value == u"max")
        return {};
    return Failure{QStringLiteral("it must be 1, 10 or max")};
}

Result ApplyChannel(CommandLine &line, const QString &value)
{
    line.channel = value.toInt() - 1;
    if (value == u"1" || value == u"2")
        return {};
    return Failure{QStringLiteral("it must be 1 or 2")};
}

template <auto Flag> Result ApplyFlag(CommandLine &line, const QString &)
{
    line.*Flag = true;
    return {};
}

Result ApplyHelp(CommandLine &line, const QString &)
{
    line.action = CommandLine::Action::ShowHelp;
    return {};
}

Result ApplyVersion(CommandLine &line, const QString &)
{
    line.action = CommandLine::Action::ShowVersion;
    return {};
}

constexpr std::array OptionRows = {
    OptionRow{"port", "N=DEVICE", "COM N is DEVICE in this run (repeatable)", ApplyPort,
              Window | Runs | Doctor},
    OptionRow{"mode", "0|1|2", "communication mode of this run", ApplyMode},
    OptionRow{"settings", "TEXT", "port settings of this run, such as 9600,N,8,1", ApplySettings,
              Window | Runs | Doctor},
    OptionRow{"start", nullptr, "start communication when the window is up",
              ApplyFlag<&CommandLine::start>, Window},
    OptionRow{"reconnect", nullptr, "reopen a device that comes back, in this run",
              ApplyFlag<&CommandLine::reconnect>, Window | Runs},
    OptionRow{"log", "FILE", "start logging once the ports are open", ApplyLog, Window | Runs},
    OptionRow{"capture", "FILE", "record a capture from the first opening of the ports on",
              ApplyCapture, Window | Runs},
    OptionRow{"overwrite", nullptr, "let --log and --capture overwrite existing files",
              ApplyFlag<&CommandLine::overwrite>, Window | Runs},
    OptionRow{"quit-after", "SECONDS", "close by itself; unattended", ApplyQuitAfter, Window},
    OptionRow{"screenshot", "FILE", "write a PNG of the window just before closing",
              ApplyFile<&CommandLine::screenshot>, Window},
    OptionRow{"steps", "FILE", "read the steps from FILE, one a line",
              ApplyFile<&CommandLine::steps>, WithoutWindow},
    OptionRow{"within", "TIME", "how long an expectation waits that says nothing of it: 1s",
              ApplyTime<&CommandLine::within>, Runs},
    OptionRow{"timeout", "TIME", "end after TIME, such as 30s or 5min",
              ApplyTime<&CommandLine::timeout>, Runs},
    OptionRow{"junit", "FILE", "write a JUnit report of the steps", ApplyFile<&CommandLine::junit>,
              WithoutWindow},
    OptionRow{"json", nullptr, "tell all that happens as JSON, an object a line",
              ApplyFlag<&CommandLine::json>, Runs},
    OptionRow{"commands", nullptr, "read steps as JSON objects from standard input",
              ApplyFlag<&CommandLine::commands>, WithoutWindow},
    OptionRow{"quiet", nullptr, "tell nothing but why the run failed",
              ApplyFlag<&CommandLine::quiet>, Runs},
    OptionRow{"strict", nullptr, "fail if a watched sequence never fired, or nearly did",
              ApplyFlag<&CommandLine::strict>, Judge},
    OptionRow{"csv", nullptr, "as comma-separated values, a row for all that happened",
              ApplyFlag<&CommandLine::csv>, Export},
    OptionRow{"speed", "1|10|max", "at its own speed, ten times as fast, or as fast as it goes",
              ApplySpeed, Replay},
    OptionRow{"in-step", nullptr, "wait for what the other side said in the capture",
              ApplyFlag<&CommandLine::inStep>, Replay},
    OptionRow{"channel", "1|2", "the line whose device is played, of a capture of two",
              ApplyChannel, Replay},
    OptionRow{"demo", nullptr, "attach the simulated instrument and start",
              ApplyFlag<&CommandLine::demo>},
    OptionRow{"reset-settings", nullptr, "start with defaults; the old settings are kept beside",
              ApplyFlag<&CommandLine::resetSettings>, Window},
    OptionRow{"doctor", nullptr, "tell what stands in the way of a port, or of all, and end",
              ApplyFlag<&CommandLine::doctor>, Window},
    OptionRow{"try", nullptr, "the doctor opens the port, sets it, reads it back and closes it",
              ApplyFlag<&CommandLine::tries>, Window | Doctor},
    OptionRow{"help", nullptr, "show this text", ApplyHelp, All},
    OptionRow{"version", nullptr, "show the version", ApplyVersion, All},
};

constexpr const char *StepsHelp = R"(
Steps:
  send NAME | send-hex "01 03" | send-text "ATZ\r"
  expect WHAT [on 1|2] [within TIME]
  forbid WHAT [on 1|2] | allow WHAT [on 1|2]
  quiet TIME | wait TIME | break TIME
  rts on|off | dtr on|off | close | open
  repeat N ... end | group NAME
WHAT is the name of a sequence of the project, hex:BYTES or text:TEXT; send:NAME and
receive:NAME tell sequences of one name apart.

Exit status: 0 passed, 1 a step failed, 2 wrong usage, 3 a port could not be opened or
went away, 4 a file could not be written.
)";

constexpr const char *JudgeHelp = R"(
Exit status: 0 the whole capture was judged, 1 it is damaged, or --strict found something,
2 wrong usage, no capture or no project, 4 the output could not be written.
)";

constexpr const char *ExportHelp = R"(
Exit status: 0 the whole capture was written, 1 it is damaged, 2 wrong usage or no capture,
4 the output could not be written.
)";

constexpr const char *ReplayHelp = R"(
Sends on the port what was received in the capture. With --in-step what the other side said
there must come first, within as much more time than there as --within says.

Exit status: 0 all was sent, 1 something did not come or was not sent, or the capture is
damaged, 2 wrong usage or no capture, 3 the port could not be opened or went away, 4 a file
could not be written.
)";

constexpr const char *DoctorHelp = R"(
DEVICE is the name of a device, the address of a port on another machine, or COM1 and so on.
Without it all that are found or assigned are examined. Nothing is opened without --try; a
port on another machine that is named is connected to.

Exit status: 0 nothing was found that stands in the way, 1 something was, 2 wrong usage,
4 the output could not be written.
)";

/// How a program is called, and what it does.
struct ProgramRow {
    Program program;
    const char *command; ///< null for those that are no command of another one
    const char *usage;
    const char *purpose;
    const char *more; ///< behind the options
};

constexpr std::array ProgramRows = {
    ProgramRow{Program::Window, nullptr,
               "serimonde [options] [project.sqx|capture.pcapng]\n"
               "       serimonde --doctor [--try] [DEVICE]",
               "Tests and monitors serial communication.", ""},
    ProgramRow{Program::WithoutWindow, nullptr,
               "serimonde-cli [options] [project.sqx] [STEP...]\n"
               "       serimonde-cli judge|export|replay [options] capture.pcapng ...\n"
               "       serimonde-cli doctor [options] [DEVICE]",
               "Tests and monitors serial communication without a window.", StepsHelp},
    ProgramRow{Program::Judge, "judge", "serimonde-cli judge [options] capture.pcapng project.sqx",
               "Tells where the project's receive sequences fire in a capture.", JudgeHelp},
    ProgramRow{Program::Export, "export", "serimonde-cli export --csv capture.pcapng",
               "Writes a capture to standard output.", ExportHelp},
    ProgramRow{Program::Replay, "replay",
               "serimonde-cli replay [options] --port N=DEVICE capture.pcapng",
               "Plays the device of a capture.", ReplayHelp},
    ProgramRow{Program::Doctor, "doctor", "serimonde-cli doctor [options] [DEVICE]",
               "Tells what stands in the way of a port, or of all.", DoctorHelp},
};

const ProgramRow &RowOf(Program program)
{
    return *std::find_if(ProgramRows.begin(), ProgramRows.end(),
                         [program](const ProgramRow &row) { return row.program == program; });
}

/// Options that the toolkit takes for itself, with a value each.
constexpr std::array<const char *, 6> ToolkitOptions = {"platform",   "platformtheme", "style",
                                                        "stylesheet", "display",       "geometry"};

QCommandLineOption OptionOf(const char *name, const char *valueName)
{
    QCommandLineOption option(QString::fromLatin1(name));
    if (valueName)
        option.setValueName(QString::fromLatin1(valueName));
    return option;
}

QString NameOf(const OptionRow &row)
{
    return QString::fromLatin1(row.name);
}

/// How many ports the mode takes: the lowest COM number is channel 1.
Result CheckPorts(const CommandLine &line)
{
    const bool two = line.mode.value_or(CommMode::SendReceive) != CommMode::SendReceive;
    if (line.demo && line.ports.isEmpty())
        return {};
    if (line.demo)
        return Failure{QStringLiteral("--demo has its own ports, so --port means nothing")};
    if (line.ports.size() == (two ? 2 : 1))
        return {};
    return Failure{two ? QStringLiteral("this mode needs two ports: --port 1=DEVICE and --port "
                                        "2=DEVICE")
                       : QStringLiteral("mode 0 needs one port: --port 1=DEVICE")};
}

/// The commands name their files, and all that they name is needed.
Result CheckCommand(const CommandLine &line, const QStringList &words, Program program)
{
    if (words.size() != (program == Program::Judge ? 2 : 1))
        return Failure{QStringLiteral("it is called so: ") + QLatin1String(RowOf(program).usage)};
    if (program == Program::Export && !line.csv)
        return Failure{QStringLiteral("there is one form to export to: --csv")};
    return program == Program::Replay ? CheckPorts(line) : Result();
}

Result CheckDoctor(const CommandLine &line, const QStringList &devices)
{
    if (devices.size() > 1)
        return Failure{QStringLiteral("one device at most: %1").arg(devices.join(u' '))};
    if (line.tries && devices.isEmpty())
        return Failure{QStringLiteral("--try needs a device that is named")};
    return {};
}

/// What no option can tell by itself.
Result CheckWhole(const CommandLine &line, const QStringList &projects, Program program)
{
    if (line.overwrite && line.log.isEmpty() && line.capture.isEmpty())
        return Failure{
            QStringLiteral("--overwrite has a meaning only together with --log or --capture")};
    if (program == Program::Doctor)
        return CheckDoctor(line, projects);
    if (line.tries)
        return Failure{QStringLiteral("--try has a meaning only together with --doctor")};
    if (RowOf(program).command)
        return CheckCommand(line, projects, program);
    if (projects.size() > 1)
        return Failure{
            QStringLiteral("one project or capture at most: %1").arg(projects.join(u' '))};
    if (program == Program::Window)
        return {};
    if (line.commands + !line.steps.isEmpty() + !line.stepWords.isEmpty() > 1)
        return Failure{QStringLiteral("steps come from the command line, from --steps or from "
                                      "--commands, but from one of them alone")};
    return CheckPorts(line);
}

/// Behind the project, if there is one, stand steps.
QStringList TakeProjects(CommandLine &line, QStringList words, Program program)
{
    if (program == Program::Doctor)
        line.examined = words.value(0);
    else if (RowOf(program).command)
        line.input = words.value(0);
    if (program != Program::WithoutWindow)
        return words;
    const bool project = !words.isEmpty() && !StepParser::BeginsStep(words.first());
    line.stepWords = words.sliced(project ? 1 : 0);
    return words.first(project ? 1 : 0);
}

bool Belongs(const OptionRow &row, Program program)
{
    return (row.programs & int(program)) != 0;
}

} // namespace

Program TakeCommand(QStringList &arguments)
{
    for (const ProgramRow &row : ProgramRows) {
        if (row.command && arguments.value(1) == QLatin1String(row.command)) {
            arguments.removeAt(1);
            return row.program;
        }
    }
    return Program::WithoutWindow;
}

ParsedCommandLine ParseCommandLine(const QStringList &arguments, Program program)
{
    // The usual start: to tell the parser all options would only hold the window up.
    if (program == Program::Window && arguments.size() <= 1)
        return {};
    QCommandLineParser parser;
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    for (const OptionRow &row : OptionRows) {
        if (Belongs(row, program))
            parser.addOption(OptionOf(row.name, row.value));
    }
    for (const char *name : ToolkitOptions) {
        if (program == Program::Window)
            parser.addOption(OptionOf(name, "value"));
    }

    ParsedCommandLine parsed;
    if (!parser.parse(arguments)) {
        parsed.result = Failure{FileName::Shown(parser.errorText())};
        return parsed;
    }
    const bool doctor = program == Program::Window && parser.isSet(QStringLiteral("doctor"));
    const Program asked = doctor ? Program::Doctor : program;
    for (const OptionRow &row : OptionRows) {
        if (!Belongs(row, program) || !parser.isSet(NameOf(row)))
            continue;
        if (!Belongs(row, asked) && NameOf(row) != QLatin1String("doctor"))
            parsed.result = Failure{
                QStringLiteral("--%1 means nothing together with --doctor").arg(NameOf(row))};
        const QStringList values = row.value ? parser.values(NameOf(row)) : QStringList(QString());
        for (const QString &value : values) {
            const Result applied = row.apply(parsed.line, value);
            if (applied.Failed() && !parsed.result.Failed())
                parsed.result =
                    Failure{QStringLiteral("--%1 %2: %3").arg(NameOf(row), value, applied.Cause())};
        }
    }
    const QStringList projects = TakeProjects(parsed.line, parser.positionalArguments(), asked);
    const bool runs = parsed.line.action == CommandLine::Action::Run;
    if (!parsed.result.Failed() && runs)
        parsed.result = CheckWhole(parsed.line, projects, asked);
    parsed.line.project = projects.value(RowOf(asked).command ? 1 : 0);
    if (parsed.result.Failed())
        parsed.result = Failure{FileName::Shown(parsed.result.Cause())};
    return parsed;
}

QString CommandLineHelp(Program program)
{
    const ProgramRow &about = RowOf(program);
    QString text = QStringLiteral("Usage: %1\n\n%2\n\nOptions:\n")
                       .arg(QLatin1String(about.usage), QLatin1String(about.purpose));
    for (const OptionRow &row : OptionRows) {
        if (!Belongs(row, program))
            continue;
        QString usage = QStringLiteral("  --") + NameOf(row);
        if (row.value)
            usage += u' ' + QString::fromLatin1(row.value);
        text += usage.leftJustified(25) + QString::fromLatin1(row.help) + u'\n';
    }
    return text + QLatin1String(about.more);
}
