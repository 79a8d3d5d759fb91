// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CommandLine.h"

#include "FileName.h"
#include "PathParts.h"

#include <QCommandLineParser>

#include <algorithm>
#include <array>
#include <cmath>

namespace
{

using Apply = QString (*)(CommandLine &, const QString &value);

/// One option: how it is written, what it means and what it does. Apply returns what is wrong
/// with the value, or nothing.
struct OptionRow {
    const char *name;
    const char *value; ///< name of its value, null if it takes none
    const char *help;
    Apply apply;
};

constexpr int LowestPort = 1;
constexpr int HighestPort = 255;
/// A year; longer runs are a slip of the hand and would overflow a timer.
constexpr double LongestRunSeconds = 365.0 * 24 * 3600;

QString ApplyPort(CommandLine &line, const QString &value)
{
    const qsizetype equals = value.indexOf(u'=');
    const QString device = equals < 0 ? QString() : value.mid(equals + 1);
    bool isNumber = false;
    const int number = value.left(equals).toInt(&isNumber);
    if (device.isEmpty() || !isNumber)
        return QStringLiteral("it must be of the form N=DEVICE, such as 1=/dev/ttyUSB0");
    if (number < LowestPort || number > HighestPort)
        return QStringLiteral("COM numbers go from 1 to 255");
    if (!FileName::IsText(device))
        return QStringLiteral("the name of a device must be UTF-8");
    line.ports[number] = device;
    return {};
}

QString ApplyMode(CommandLine &line, const QString &value)
{
    if (value != u"0" && value != u"1" && value != u"2")
        return QStringLiteral("it must be 0, 1 or 2");
    line.mode = CommMode(value.toInt());
    return {};
}

QString ApplySettings(CommandLine &line, const QString &value)
{
    line.line = ParseLineSettings(value);
    return line.line ? QString()
                     : QStringLiteral("it must be of the form 9600,N,8,1: baud rate, parity E, M, "
                                      "N, O or S, data bits 4 to 8, stop bits 1, 1.5 or 2");
}

QString ApplyQuitAfter(CommandLine &line, const QString &value)
{
    bool isNumber = false;
    const double seconds = value.toDouble(&isNumber);
    if (!isNumber || !std::isfinite(seconds) || seconds < 0 || seconds > LongestRunSeconds)
        return QStringLiteral("it must be a number of seconds");
    line.quitAfterSeconds = seconds;
    return {};
}

QString ApplyScreenshot(CommandLine &line, const QString &value)
{
    line.screenshot = value;
    return value.isEmpty() ? QStringLiteral("it must name a file") : QString();
}

QString ApplyLog(CommandLine &line, const QString &value)
{
    line.log = value;
    return PathParts::FileName(value).trimmed().isEmpty() ? QStringLiteral("it must name a file")
                                                          : QString();
}

template <auto Flag> QString ApplyFlag(CommandLine &line, const QString &)
{
    line.*Flag = true;
    return {};
}

QString ApplyHelp(CommandLine &line, const QString &)
{
    line.action = CommandLine::Action::ShowHelp;
    return {};
}

QString ApplyVersion(CommandLine &line, const QString &)
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
    OptionRow{"log", "FILE", "start logging once the ports are open", ApplyLog},
    OptionRow{"overwrite", nullptr, "let --log overwrite existing files",
              ApplyFlag<&CommandLine::overwrite>},
    OptionRow{"quit-after", "SECONDS", "close by itself; unattended", ApplyQuitAfter},
    OptionRow{"screenshot", "FILE", "write a PNG of the window just before closing",
              ApplyScreenshot},
    OptionRow{"demo", nullptr, "attach the simulated instrument and start",
              ApplyFlag<&CommandLine::demo>},
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
        parsed.error = FileName::Shown(parser.errorText());
        return parsed;
    }
    for (const OptionRow &row : OptionRows) {
        if (!parser.isSet(NameOf(row)))
            continue;
        const QStringList values = row.value ? parser.values(NameOf(row)) : QStringList(QString());
        for (const QString &value : values) {
            const QString wrong = row.apply(parsed.line, value);
            if (!wrong.isEmpty() && parsed.error.isEmpty())
                parsed.error = QStringLiteral("--%1 %2: %3").arg(NameOf(row), value, wrong);
        }
    }
    const QStringList projects = parser.positionalArguments();
    if (parsed.error.isEmpty() && parsed.line.overwrite && parsed.line.log.isEmpty())
        parsed.error = QStringLiteral("--overwrite has a meaning only together with --log");
    if (parsed.error.isEmpty() && projects.size() > 1)
        parsed.error = QStringLiteral("one project file at most: %1").arg(projects.join(u' '));
    parsed.line.project = projects.value(0);
    parsed.error = FileName::Shown(parsed.error);
    return parsed;
}

QString CommandLineHelp()
{
    QString text = QStringLiteral("Usage: serimonde [options] [project.sqx]\n\n"
                                  "Tests and monitors serial communication.\n\nOptions:\n");
    for (const OptionRow &row : OptionRows) {
        QString usage = QStringLiteral("  --") + NameOf(row);
        if (row.value)
            usage += u' ' + QString::fromLatin1(row.value);
        text += usage.leftJustified(25) + QString::fromLatin1(row.help) + u'\n';
    }
    return text;
}
