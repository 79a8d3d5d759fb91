// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ProgramArguments.h"

#include "FileName.h"

QStringList ProgramArguments(int argc, char *argv[])
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments << FileName::Decode(argv[i]);
    return arguments;
}
