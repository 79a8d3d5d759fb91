// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "sequences/FileCut.h"

namespace
{

const QString CutAtComma =
    QStringLiteral("Loaded from a project file, this text will end before its first comma.");

} // namespace

namespace FileCut
{

QString OfName(QByteArrayView name)
{
    if (name.startsWith(' '))
        return QStringLiteral(
            "Loaded from a project file, this text will lose its leading blanks.");
    if (name.startsWith('"'))
        return QStringLiteral("Loaded from a project file, this text will lose its quotes.");
    return name.contains(',') ? CutAtComma : QString();
}

/// A word stands in front of it in the file, so that only a comma matters.
QString OfComment(QByteArrayView comment)
{
    return comment.contains(',') ? CutAtComma : QString();
}

} // namespace FileCut
