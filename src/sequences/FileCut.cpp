// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "FileCut.h"

#include <QStringList>

namespace FileCut
{

QString OfName(QByteArrayView name)
{
    QStringList losses;
    if (name.startsWith(' '))
        losses << QStringLiteral("its leading blanks are lost");
    const QByteArray start = name.toByteArray().trimmed();
    const bool quoted = start.startsWith('"');
    if (quoted && start.indexOf('"', 1) > 0)
        losses << QStringLiteral("its quotes are lost, with all that stands behind them");
    else if (quoted)
        losses << QStringLiteral("the single quote in front swallows what follows in the file");
    else if (name.contains(','))
        losses << QStringLiteral("it ends before its first comma, and the bytes are lost");
    if (losses.isEmpty())
        return {};
    return QStringLiteral("When this name is loaded from a project file, %1.")
        .arg(losses.join(QStringLiteral("; ")));
}

/// A word stands in front of it in the file, so that only a comma matters.
QString OfComment(QByteArrayView comment)
{
    if (!comment.contains(','))
        return {};
    return QStringLiteral("When this comment is loaded from a project file, it ends before its "
                          "first comma.");
}

} // namespace FileCut
