// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "Screenshot.h"

#include "ClOutputFile.h"
#include "FileName.h"
#include "UserPrompts.h"

#include <QBuffer>
#include <QPixmap>
#include <QWidget>

namespace
{

FileResult WritePng(const QPixmap &picture, const QString &path, OpenFiles &files)
{
    QBuffer png;
    if (!png.open(QIODevice::WriteOnly) || !picture.save(&png, "PNG"))
        return FileFailure{false, QStringLiteral("The window gives no picture")};
    ClOutputFile file(files);
    if (FileResult failure = file.OpenForReplacing(path))
        return failure;
    file.WriteInFile(png.data());
    return file.Commit();
}

} // namespace

void WriteScreenshot(QWidget &widget, const QString &path, OpenFiles &files, UserPrompts &prompts)
{
    const FileResult failure = WritePng(widget.grab(), path, files);
    if (failure) {
        prompts.ShowMessage(
            CriticalMessage(QStringLiteral("The picture %1 could not be written: %2")
                                .arg(FileName::Shown(path), failure->description)));
    }
}
