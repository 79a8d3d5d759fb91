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

Result WritePng(const QPixmap &picture, const QString &path, OpenFiles &files)
{
    QBuffer png;
    if (!png.open(QIODevice::WriteOnly) || !picture.save(&png, "PNG"))
        return Failure{QStringLiteral("The window gives no picture")};
    ClOutputFile file(files);
    if (Result opened = file.OpenForReplacing(path); opened.Failed())
        return opened;
    file.WriteInFile(png.data());
    return file.Commit();
}

} // namespace

void WriteScreenshot(QWidget &widget, const QString &path, OpenFiles &files, UserPrompts &prompts)
{
    if (const Result written = WritePng(widget.grab(), path, files); written.Failed()) {
        prompts.ShowMessage(
            CriticalMessage(QStringLiteral("The picture %1 could not be written: %2")
                                .arg(FileName::Shown(path), written.Cause())));
    }
}
