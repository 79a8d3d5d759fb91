// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "FileSystem.h"

#include <QDateTime>
#include <QStringList>

/// Where unsaved projects outlive the program that had them, one file each, for the user's eyes
/// alone. Each file is held by a running program or by none: one that nobody holds was left behind.
class RecoveryFolder
{
  public:
    virtual ~RecoveryFolder() = default;

    /// A file that this program holds. Destroying it lets go of the file, which stays.
    class File
    {
      public:
        virtual ~File() = default;

        virtual QString Path() const = 0;
        virtual QDateTime Written() const = 0;
        virtual FileSystem::Content Read() const = 0;
        /// Takes the file away, best effort.
        virtual void Remove() = 0;
    };

    struct Kept {
        std::unique_ptr<File> file; ///< null exactly if that failed
        Result result;
    };

    /// Makes a new file, which is whole and on the disk, or not there at all.
    virtual Kept Keep(QByteArrayView content) = 0;
    /// All files, the newest first, whoever holds them.
    virtual QStringList Names() const = 0;
    /// Null if the file is held, by this program too, or cannot be opened.
    virtual std::unique_ptr<File> Take(const QString &name) = 0;
};
