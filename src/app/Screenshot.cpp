// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "Screenshot.h"

#include "UserPrompts.h"

#include <QFileInfo>
#include <QPixmap>
#include <QSaveFile>
#include <QWidget>

namespace
{

/// Returns the cause if that fails, else an empty text.
QString WritePng(const QPixmap &picture, const QString &path)
{
    const QFileInfo target(path);
    if (target.exists() && !target.isFile())
        return QStringLiteral("it is not a regular file");
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return file.errorString();
    if (!picture.save(&file, "PNG") || !file.flush() || file.error() != QFileDevice::NoError) {
        file.cancelWriting();
        return QStringLiteral("not all of it could be written");
    }
    return file.commit() ? QString() : file.errorString();
}

} // namespace

void WriteScreenshot(QWidget &widget, const QString &path, UserPrompts &prompts)
{
    const QString fault = WritePng(widget.grab(), path);
    if (!fault.isEmpty()) {
        prompts.ShowMessage(CriticalMessage(
            QStringLiteral("The picture %1 could not be written: ").arg(path) + fault));
    }
}
