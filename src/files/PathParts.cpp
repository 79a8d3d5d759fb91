// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "PathParts.h"

#include <QDir>

namespace
{

/// Shorter names keep what looks like an extension.
constexpr qsizetype LeastLength = 5;
/// A full stop further in front belongs to the name.
constexpr qsizetype LongestTail = 4;

/// Index behind the last separator, 0 if there is none.
qsizetype NameStart(const QString &path)
{
    return std::max(path.lastIndexOf(u'/'), path.lastIndexOf(QDir::separator())) + 1;
}

} // namespace

namespace PathParts
{

QString Folder(const QString &path)
{
    return path.left(NameStart(path));
}

QString FileName(const QString &path)
{
    return path.mid(NameStart(path));
}

QString WithoutExtension(const QString &fileName)
{
    QString name = fileName.trimmed();
    if (name.size() < LeastLength)
        return name;
    return name.left(name.indexOf(u'.', name.size() - LongestTail));
}

} // namespace PathParts
