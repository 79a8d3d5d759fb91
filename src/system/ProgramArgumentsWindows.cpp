// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ProgramArguments.h"

#include <windows.h>

#include <shellapi.h>

/// What main is given has been through the code page, which lacks most characters.
QStringList ProgramArguments(int, char **)
{
    int count = 0;
    wchar_t **words = CommandLineToArgvW(GetCommandLineW(), &count);
    QStringList arguments;
    for (int i = 0; i < count; ++i)
        arguments << QString::fromWCharArray(words[i]);
    LocalFree(words);
    return arguments;
}
