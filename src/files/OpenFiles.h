// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "FileSystem.h"

#include <QSet>

#include <mutex>

/// The files that the program's own file objects hold open: a file is held by one object at a
/// time. One instance, made before the file objects and outliving them. May be used from any
/// thread.
class OpenFiles
{
  public:
    explicit OpenFiles(FileSystem &fileSystem) : m_fileSystem(fileSystem) {}
    Q_DISABLE_COPY_MOVE(OpenFiles)

    FileSystem &System() { return m_fileSystem; }

    /// The name under which the file is now held, to be given back to Release; empty if another
    /// object holds it.
    QString Hold(const QString &path);
    void Release(const QString &held);

    /// The failure that stands for a held file.
    static Failure InUse();

  private:
    FileSystem &m_fileSystem;
    std::mutex m_lock; ///< guards what follows
    QSet<QString> m_held;
};
