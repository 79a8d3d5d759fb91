// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// Which project the program works on. It is unnamed while it has no folder or no file name.
struct ProjectState {
    QString ProgramTitle = QStringLiteral("Serimonde");
    QString ProjectDirectory; ///< with trailing separator
    QString ProjectFileName;  ///< without folder and extension

    /// The last one that was used for project files, with trailing separator. The next start begins
    /// there, whether the project has a name by then or not.
    QString LastFolder;

    bool IsNamed() const { return !ProjectDirectory.isEmpty() && !ProjectFileName.isEmpty(); }
};
