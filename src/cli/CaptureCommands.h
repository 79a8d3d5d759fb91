// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

struct CommandLine;
class QTextStream;

/// The commands that read a capture and write to standard output. Each returns the status that the
/// program ends with, and tells what went wrong in one line.
namespace CaptureCommands
{

int Judge(const CommandLine &line, QTextStream &errors);
int Export(const CommandLine &line, QTextStream &errors);

} // namespace CaptureCommands
