// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "FileSystem.h"

#include <QByteArrayView>
#include <QList>
#include <QString>

#include <memory>

/// Where running sessions keep what happens on their lines: files for the user's eyes alone, the
/// segments, numbered from 1 on in each session. A segment is held by the program that writes or
/// offers it, or by none. A session that lives always holds its last segment, so one whose last
/// segment nobody holds was left behind. All of it may be used from any thread.
class RecordFolder
{
  public:
    virtual ~RecordFolder() = default;

    struct Name {
        QString session;
        qint64 number = 0;

        bool operator==(const Name &) const = default;
    };
    struct Segment {
        Name name;
        qint64 size = 0;    ///< in bytes
        qint64 written = 0; ///< last, in nanoseconds since 1970
        bool held = false;  ///< by this program or another
    };

    /// A segment that this program holds. Destroying it lets go of the segment, which stays.
    class File
    {
      public:
        virtual ~File() = default;

        /// Takes all of the bytes, or none and fails; a file that was deleted fails.
        virtual Result Append(QByteArrayView bytes) = 0;
        /// Takes the file away, best effort.
        virtual void Remove() = 0;
    };
    struct Made {
        std::unique_ptr<File> file; ///< null exactly if that failed
        Result result;
    };

    /// Makes a segment, which is there with its first bytes and held, or not at all.
    virtual Made Make(const Name &name, QByteArrayView first) = 0;
    /// Those of all sessions, the oldest first: in the order in which they were written last.
    virtual QList<Segment> Segments() const = 0;
    /// Null if the segment is held, by this program too, or cannot be opened.
    virtual std::unique_ptr<File> Take(const Name &name) = 0;
    virtual FileSystem::Opened Open(const Name &name) const = 0;

    /// While one lives no other program has one: for what must not be done twice at a time.
    class Turn
    {
      public:
        virtual ~Turn() = default;
    };
    /// Waits a second at most; what it returns may then be null, which keeps nobody from going on.
    virtual std::unique_ptr<Turn> TakeTurn() = 0;

    /// For the user.
    virtual QString Path() const = 0;
};
