// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>

/// The words that the program was started with, its own name first, as FileName has names: no
/// locale and no code page comes between, so that every name of a file is the one that was meant.
QStringList ProgramArguments(int argc, char *argv[]);
