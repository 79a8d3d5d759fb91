// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArrayView>
#include <QString>
#include <QStringList>

class MdSequenceEdition;

/// How sequences are named in messages, and their names.
namespace NamedSequences
{

/// Of all that a project has, send sequences first, each once and none empty, as Unicode.
QStringList NamesOf(const MdSequenceEdition &sequences);

/// Index and name, such as: 3, "Reset". Of a long name only the begin, and in one line.
QString Title(int index, QByteArrayView name);
/// A name or a comment in quotes, likewise.
QString Quoted(QByteArrayView text);

/// One line for each, not more of them than a message box can show; the last one tells how many
/// are missing.
QString Listed(const QStringList &lines);

} // namespace NamedSequences
