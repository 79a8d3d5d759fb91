// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// Which project the program works on. It is unnamed while it has no folder or no file name.
struct ProjectState {
    QString ProgramTitle = QStringLiteral("Serimonde");
    QString ProjectDirectory; ///< with trailing separator
    QString ProjectFileName;  ///< without folder and extension
};
