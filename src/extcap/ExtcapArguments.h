// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Result.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <array>
#include <optional>

/// What Wireshark asks of the program, with what its user has answered to the program's questions.
struct ExtcapArguments {
    enum class Action {
        None,
        ShowHelp,
        ShowVersion,
        TellVersion, ///< as Wireshark reads it
        ListLines,
        CheckFilter,
        ListLinkTypes,
        ListQuestions,
        Capture
    };

    Action action = Action::None;
    QString line; ///< as listed
    QString fifo;
    QString filter;                 ///< of the capture; there are none for lines
    std::array<QString, 2> devices; ///< by channel; empty: as assigned
    QString settings;               ///< such as "9600,N,8,1"; empty: the user's own
    std::optional<bool> reconnect;  ///< empty: as the user has it
    bool requestToSend = true;      ///< whether RTS is left on
};

struct ParsedExtcapArguments {
    ExtcapArguments arguments;
    Result result{}; ///< the cause of a failure is a sentence
};

/// Reads the arguments, the program's own name first. What is not known is left out, together with
/// its value: a later Wireshark may say more than this program knows.
ParsedExtcapArguments ParseExtcapArguments(const QStringList &arguments);

/// What Wireshark knows the lines of these COM numbers by, one or two; and the numbers again, none
/// if it is no such name.
QString ExtcapLineName(const QList<int> &comNumbers);
QList<int> ExtcapLineNumbers(const QString &name);
