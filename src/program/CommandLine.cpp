// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CommandLine.h"

#include "FileName.h"
#include "PathParts.h"
#include "PortNumber.h"

#include <QCommandLineParser>

#include <algorithm>
#include <array>
#include <cmath>

namespace
{

using Apply = Result (*)(CommandLine &, const QString &value);

/// One option: how it is written, what it means and what it does. Apply fails if something is wrong
/// with the value.
struct OptionRow {
    const char *name;
    const char *value; ///< name of its value, null if it takes none
    const char *help;
    Apply apply;
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

Result ApplyScreenshot(CommandLine &line, const QString &value)
{
    line.screenshot = value;
    return MustNameAFile(!value.isEmpty());
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
    OptionRow{"port", "N=DEVICE", "COM N is DEVICE in this run (repeatable)", ApplyPort},
    OptionRow{"mode", "0|1|2", "communication mode of this run", ApplyMode},
    OptionRow{"settings", "TEXT", "port settings of this run, such as 9600,N,8,1", ApplySettings},
    OptionRow{"start", nullptr, "start communication when the window is up",
              ApplyFlag<&CommandLine::start>},
    OptionRow{"reconnect", nullptr, "reopen a device that comes back, in this run",
              ApplyFlag<&CommandLine::reconnect>},
    OptionRow{"log", "FILE", "start logging once the ports are open", ApplyLog},
    OptionRow{"capture", "FILE", "record a capture from the first opening of the ports on",
              ApplyCapture},
    OptionRow{"overwrite", nullptr, "let --log and --capture overwrite existing files",
              ApplyFlag<&CommandLine::overwrite>},
    OptionRow{"quit-after", "SECONDS", "close by itself; unattended", ApplyQuitAfter},
    OptionRow{"screenshot", "FILE", "write a PNG of the window just before closing",
              ApplyScreenshot},
    OptionRow{"demo", nullptr, "attach the simulated instrument and start",
              ApplyFlag<&CommandLine::demo>},
    OptionRow{"reset-settings", nullptr, "start with defaults; the old settings are kept beside",
              ApplyFlag<&CommandLine::resetSettings>},
    OptionRow{"help", nullptr, "show this text", ApplyHelp},
    OptionRow{"version", nullptr, "show the version", ApplyVersion},
};

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

/// What no option can tell by itself.
Result CheckWhole(const CommandLine &line, const QStringList &projects)
{
    if (line.overwrite && line.log.isEmpty() && line.capture.isEmpty())
        return Failure{
            QStringLiteral("--overwrite has a meaning only together with --log or --capture")};
    if (projects.size() > 1)
        return Failure{
            QStringLiteral("one project or capture at most: %1").arg(projects.join(u' '))};
    return {};
}

} // namespace

ParsedCommandLine ParseCommandLine(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    for (const OptionRow &row : OptionRows)
        parser.addOption(OptionOf(row.name, row.value));
    for (const char *name : ToolkitOptions)
        parser.addOption(OptionOf(name, "value"));

    ParsedCommandLine parsed;
    if (!parser.parse(arguments)) {
        parsed.result = Failure{FileName::Shown(parser.errorText())};
        return parsed;
    }
    for (const OptionRow &row : OptionRows) {
        if (!parser.isSet(NameOf(row)))
            continue;
        const QStringList values = row.value ? parser.values(NameOf(row)) : QStringList(QString());
        for (const QString &value : values) {
            const Result applied = row.apply(parsed.line, value);
            if (applied.Failed() && !parsed.result.Failed())
                parsed.result =
                    Failure{QStringLiteral("--%1 %2: %3").arg(NameOf(row), value, applied.Cause())};
        }
    }
    const QStringList projects = parser.positionalArguments();
    if (!parsed.result.Failed())
        parsed.result = CheckWhole(parsed.line, projects);
    parsed.line.project = projects.value(0);
    if (parsed.result.Failed())
        parsed.result = Failure{FileName::Shown(parsed.result.Cause())};
    return parsed;
}

QString CommandLineHelp()
{
    QString text = QStringLiteral("Usage: serimonde [options] [project.sqx|capture.pcapng]\n\n"
                                  "Tests and monitors serial communication.\n\nOptions:\n");
    for (const OptionRow &row : OptionRows) {
        QString usage = QStringLiteral("  --") + NameOf(row);
        if (row.value)
            usage += u' ' + QString::fromLatin1(row.value);
        text += usage.leftJustified(25) + QString::fromLatin1(row.help) + u'\n';
    }
    return text;
}
