// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// The user's documents folder, joined with a sub-folder. Both forms return a path with a
/// trailing separator and create the folder; that this fails is not reported.
QString MdGetSpecialFolders(const QString &subFolder = QString());

/// The same below a given folder; an empty one stands for a system that knows no such folder.
QString SpecialFolderBelow(const QString &documents, const QString &subFolder);
