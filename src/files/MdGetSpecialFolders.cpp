// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "MdGetSpecialFolders.h"

#include "RootFolder.h"

#include <QDir>
#include <QStandardPaths>

namespace
{

QString WithSeparator(const QString &path)
{
    const bool ends = path.endsWith(u'/') || path.endsWith(QDir::separator());
    return ends ? path : path + QDir::separator();
}

} // namespace

QString SpecialFolderBelow(const QString &documents, const QString &subFolder)
{
    const QString above = documents.isEmpty() ? RootFolder() : documents;
    QString folder = WithSeparator(WithSeparator(above) + subFolder);
    QDir().mkpath(folder);
    return folder;
}

QString MdGetSpecialFolders(const QString &subFolder)
{
    QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    if (documents.isEmpty() || !QDir().mkpath(documents))
        documents = QDir::homePath();
    return SpecialFolderBelow(QDir::toNativeSeparators(documents), subFolder);
}
