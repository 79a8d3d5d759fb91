// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// The parts of a file name as the program's dialogs take them apart.
namespace PathParts
{

/// Up to and including the last separator; empty if there is none.
QString Folder(const QString &path);

/// Behind the last separator.
QString FileName(const QString &path);

/// The name trimmed of blanks and of an extension of up to three letters: names of five or more
/// characters are cut at the first full stop at or behind their fourth-last character.
QString WithoutExtension(const QString &fileName);

} // namespace PathParts
