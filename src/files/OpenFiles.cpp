// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "OpenFiles.h"

QString OpenFiles::Hold(const QString &path)
{
    QString name = m_fileSystem.CanonicalPath(path);
    const std::lock_guard guard(m_lock);
    if (m_held.contains(name))
        return {};
    m_held.insert(name);
    return name;
}

void OpenFiles::Release(const QString &held)
{
    const std::lock_guard guard(m_lock);
    m_held.remove(held);
}

Failure OpenFiles::InUse()
{
    return {QStringLiteral("The file is already open"), FileAlreadyOpen};
}
