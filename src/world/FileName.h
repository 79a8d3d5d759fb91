// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

/// Names of files. The system's are bytes, UTF-8 as a rule; a text holds each byte that is none as
/// a lone surrogate, U+DC80 to U+DCFF, so that every name comes back as the bytes it was. The
/// toolkit's own file classes know nothing of that: such a name is for the FileSystem alone.
namespace FileName
{

QString Decode(QByteArrayView bytes);

/// Empty for a text that stands for no name, which no system call takes.
QByteArray Encode(const QString &name);

/// Whether the name is text throughout, so that dialogs can show it and the settings keep it.
bool IsText(const QString &name);

/// For messages: what is no text, or is not seen as such, is written as its bytes, such as
/// caf\xE9.sqx or two\x0Alines.sqx.
QString Shown(const QString &name);

} // namespace FileName
