// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

struct CommandLine;
class QTextStream;

/// Writes what is to be thought of a port, or of all that are found or assigned: one that is named
/// is connected to if it is on another machine, the others are not touched. The status that the
/// program ends with: 0 if nothing was found that stands in the way of opening, 1 if something was,
/// 4 if the text could not be written.
int ExaminePorts(const CommandLine &line, QTextStream &output, QTextStream &errors);
