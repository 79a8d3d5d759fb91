// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "CommConfiguration.h"
#include "Result.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>

/// What the command line asks for.
struct CommandLine {
    enum class Action { Run, ShowHelp, ShowVersion };

    Action action = Action::Run;
    QHash<int, QString> ports; ///< devices of COM numbers, for this run
    std::optional<CommMode> mode;
    std::optional<LineSettings> line;
    bool start = false;
    bool reconnect = false; ///< a device that went away is opened again when it is back
    bool demo = false;
    QString log;            ///< file that names the log to be started, empty for none
    QString capture;        ///< file that what happens is recorded into, empty for none
    bool overwrite = false; ///< files of log and capture that exist already
    std::optional<double> quitAfterSeconds; ///< set: the run is unattended
    QString screenshot;                     ///< PNG file, empty for none
    QString project;                        ///< project file to open, empty for none
    bool resetSettings = false;             ///< sets the user's settings aside
    bool doctor = false;                    ///< examines ports in the place of a run
    bool tries = false;                     ///< the doctor opens the port
    QString examined;                       ///< its device, empty for all that there are

    // Of the program without a window alone.
    QStringList stepWords;         ///< steps, as they stand on the command line
    QString steps;                 ///< file of them, empty for none
    QString junit;                 ///< report, empty for none
    bool json = false;             ///< tells what happens as JSON lines
    bool commands = false;         ///< reads steps as JSON lines
    bool quiet = false;            ///< tells nothing but why it failed
    std::optional<qint64> within;  ///< nanoseconds that an expectation waits
    std::optional<qint64> timeout; ///< nanoseconds that the run takes at most

    // Of its commands that work on a capture.
    QString input;              ///< the capture
    bool csv = false;           ///< exports it as such
    bool strict = false;        ///< judges that all that is watched for came
    bool inStep = false;        ///< replays what answers when what it answers has come
    int speed = 1;              ///< of a replay; 0 for as fast as it goes
    std::optional<int> channel; ///< 0 or 1: the line of the capture that is replayed

    bool Unattended() const { return quitAfterSeconds.has_value(); }
};

/// A command line, and whether it makes sense; the cause of a failure is a sentence.
struct ParsedCommandLine {
    CommandLine line;
    Result result{};
};

/// The programs, which share most of their options; the commands of the one without a window count
/// as programs.
enum class Program {
    Window = 1,
    WithoutWindow = 2,
    Judge = 4,
    Export = 8,
    Replay = 16,
    Doctor = 32 ///< also what the program with a window does if it is asked to
};

/// The program without a window, or the command of it that the first argument behind the name asks
/// for, which is taken away.
Program TakeCommand(QStringList &arguments);

/// Reads the arguments, the program's own name first. Options of the toolkit, such as -platform,
/// are let through by the program that has a window.
ParsedCommandLine ParseCommandLine(const QStringList &arguments, Program program = Program::Window);

/// The text of --help.
QString CommandLineHelp(Program program = Program::Window);
