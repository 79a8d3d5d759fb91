// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "Screenshot.h"

#include "Result.h"
#include "UserPrompts.h"

#include <QFileInfo>
#include <QPixmap>
#include <QSaveFile>
#include <QWidget>

namespace
{

Result WritePng(const QPixmap &picture, const QString &path)
{
    const QFileInfo target(path);
    if (target.exists() && !target.isFile())
        return Failure{QStringLiteral("it is not a regular file")};
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return Failure{file.errorString()};
    if (!picture.save(&file, "PNG") || !file.flush() || file.error() != QFileDevice::NoError) {
        file.cancelWriting();
        return Failure{QStringLiteral("not all of it could be written")};
    }
    return file.commit() ? Result() : Failure{file.errorString()};
}

} // namespace

void WriteScreenshot(QWidget &widget, const QString &path, UserPrompts &prompts)
{
    if (const Result written = WritePng(widget.grab(), path); written.Failed()) {
        prompts.ShowMessage(CriticalMessage(
            QStringLiteral("The picture %1 could not be written: ").arg(path) + written.Cause()));
    }
}
