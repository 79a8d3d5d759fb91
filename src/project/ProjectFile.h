// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Result.h"

#include <QByteArray>

#include <optional>

class FieldReader;
class MdSequenceEdition;
class OpenFiles;

/// Project files: how they are written (version 3) and read (versions 1 to 3).
/// docs/project-format.md describes the format. A failure has both a message for the user and the
/// cause behind it, which names the line of the file where one is to blame.
namespace ProjectFile
{

/// The file of a project: folder (with trailing separator), name and extension. Without a name the
/// folder is the whole path up to the extension.
QString PathOf(const QString &folder, const QString &name);

/// The content of a project's file; nothing if it would be larger than a file that can be read.
std::optional<QByteArray> Written(const MdSequenceEdition &sequences);

/// Replaces the file when the new one is whole and safely on the disk. With a failure the old file
/// is what it was.
Result SaveProject(const MdSequenceEdition &sequences, OpenFiles &files, const QString &path);

/// Empties the tables, then fills them from the file. With a failure the records that were read
/// whole before it stay in the tables. Answer names are not derived.
Result LoadProject(MdSequenceEdition &sequences, OpenFiles &files, const QString &path);

/// The same from a file's content.
Result ReadProject(MdSequenceEdition &sequences, FieldReader &fields);

} // namespace ProjectFile
