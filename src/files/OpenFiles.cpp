// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "OpenFiles.h"

QString OpenFiles::Hold(const QString &path)
{
    QString name = m_fileSystem.CanonicalPath(path);
    if (m_held.contains(name))
        return {};
    m_held.insert(name);
    return name;
}

Failure OpenFiles::InUse()
{
    return {QStringLiteral("The file is already open"), FileAlreadyOpen};
}
