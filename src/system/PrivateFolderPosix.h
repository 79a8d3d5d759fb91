// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "DescriptorPosix.h"

#include <QString>

/// A folder among the user's files that is open to nobody else, and its files, in which no link is
/// followed. Who holds a file has a lock on it, which the system takes back when the program is
/// gone.
class PrivateFolder final
{
  public:
    /// "serimonde" in the folder that the variable names, else in one below the user's home.
    static QString UsualPath(const char *variable, const QString &belowHome);

    /// An existing folder; see IsOpen.
    explicit PrivateFolder(const QString &path);
    /// The folder is made if it is missing, and of the user alone, whatever it was before.
    static PrivateFolder Make(const QString &path);

    /// If not, errno tells why.
    bool IsOpen() const { return m_folder.IsOpen(); }
    const Descriptor &Folder() const { return m_folder; }

    /// With flags as of open(2).
    Descriptor Open(const QByteArray &name, int flags) const;
    /// A regular file of the user's that is now held; not open if it cannot be had.
    Descriptor Take(const QByteArray &name, int flags) const;
    void Remove(const QByteArray &name) const;
    /// Unless the name belongs to another file by now.
    void Remove(const QByteArray &name, const Descriptor &file) const;

    enum class Safety { OfProgram, OfDisk };
    /// A new file with that content, on the disk if wanted so, or none. It is held before it has
    /// the name by which others look for it.
    Descriptor Create(const QByteArray &name, QByteArrayView content, Safety safety,
                      Result &result) const;
    /// Takes away what programs left behind that were killed while they created a file whose name
    /// begins so.
    void RemoveUnfinished(const QString &prefix) const;

  private:
    PrivateFolder(QString path, Descriptor folder);

    QString m_path;
    Descriptor m_folder;
};

/// All of it, or false with errno set.
bool WriteAll(const Descriptor &file, QByteArrayView content);
