// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Result.h"
#include "Step.h"

#include <QByteArray>
#include <QStringList>

class StepMaker;

/// Reads whole programs of steps. The cause of a failure names the line or the number of the step.
namespace StepParser
{

/// repeat in repeat.
constexpr int MostNested = 8;

struct Parsed {
    StepProgram program;
    Result result{};
};

/// Steps of a command line: a verb and its words as arguments of their own, or a step in one.
Parsed FromArguments(const QStringList &arguments, const StepMaker &maker);

/// A file of steps in UTF-8, one a line.
Parsed FromFile(const QByteArray &content, const StepMaker &maker);

/// Whether an argument of a command line begins a step.
bool BeginsStep(const QString &argument);

} // namespace StepParser
