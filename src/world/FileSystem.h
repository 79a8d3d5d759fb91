// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Result.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <memory>

/// Failure numbers: there is no such file; somebody holds it open; there is one already.
constexpr int FileMissing = 53;
constexpr int FileAlreadyOpen = 55;
constexpr int FileAlreadyThere = 58;

/// One file that is being written. Destroying it closes it.
class OutputDevice
{
  public:
    virtual ~OutputDevice() = default;

    struct Taken {
        qint64 count = 0; ///< bytes taken over, from the first; may be fewer than were given
        Result result;
    };

    /// A file made by Create that has been deleted meanwhile takes the bytes, and fails.
    virtual Taken Write(QByteArrayView bytes) = 0;
    /// Takes back what was written behind so many bytes; what is written next follows there.
    virtual Result CutTo(qint64 size) = 0;
    /// Returns when the disk holds what was written.
    virtual Result Sync() = 0;
    /// What has become wrong with the file since, such as that it has been deleted.
    virtual Result Check() const { return {}; }
    /// Bytes in the file, negative if the system cannot tell.
    virtual qint64 Size() const = 0;
    /// Only of a device made beside a target: the file takes the target's place, at once and whole.
    virtual Result TakePlace() = 0;
};

/// One file that is being read. Destroying it closes it.
class InputDevice
{
  public:
    virtual ~InputDevice() = default;

    struct Given {
        qint64 count = 0; ///< bytes; fewer than asked for at the file's end alone
        Result result;
    };

    /// Reads from a place on.
    virtual Given ReadAt(qint64 place, char *bytes, qint64 most) const = 0;
    /// Bytes in the file as it is now.
    virtual qint64 Size() const = 0;
};

/// The system's files, by names as FileName has them. Everything but a regular file is refused,
/// whatever it is opened for.
class FileSystem
{
  public:
    virtual ~FileSystem() = default;

    struct Created {
        std::unique_ptr<OutputDevice> device; ///< null exactly if that failed
        Result result;
    };
    struct Opened {
        std::unique_ptr<InputDevice> device; ///< null exactly if that failed
        Result result;
    };
    struct Content {
        QByteArray bytes;
        Result result;
    };

    /// The file itself, made or emptied.
    virtual Created Create(const QString &path) = 0;
    /// A nameless file in the folder of path. It vanishes unless it takes the place of path, which
    /// stays untouched until then.
    virtual Created CreateBeside(const QString &path) = 0;
    /// The same for a file that is read, changed and written back: while the device lives no other
    /// program has one for this path. Waits a little for its turn, then fails as "in use". The
    /// folder is made if it is missing.
    virtual Created CreateForUpdate(const QString &path) = 0;
    /// Takes away what a program that was killed may have left beside path, best effort.
    virtual void Tidy(const QString &path) = 0;
    /// Gives what stands at a path, file or not, another name; never one that is taken.
    virtual Result Rename(const QString &from, const QString &to) = 0;
    /// For reading piece by piece.
    virtual Opened Open(const QString &path) const = 0;
    /// The whole file; one of more than limit bytes is refused before anything is read.
    virtual Content Read(const QString &path, qint64 limit) = 0;
    /// Whether something stands there, be it a file or not.
    virtual bool Exists(const QString &path) const = 0;
    /// Takes the file away, best effort.
    virtual void Remove(const QString &path) = 0;
    /// One name for a file, however it is reached; it need not exist. A link stands for what it
    /// leads to, even if that has yet to be made.
    virtual QString CanonicalPath(const QString &path) const = 0;
    /// The path itself if it starts at the root; else the same file below the working folder.
    virtual QString AbsolutePath(const QString &path) const = 0;
};
