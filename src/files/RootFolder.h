// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// The folder above all others, with its trailing separator.
inline QString RootFolder()
{
#ifdef Q_OS_WIN
    return QStringLiteral("C:\\");
#else
    return QStringLiteral("/");
#endif
}
