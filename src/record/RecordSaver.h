// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Result.h"

#include <QStringList>

#include <functional>

class Clock;
class OpenFiles;
class UserPrompts;
class WorkProgress;
struct RecordSettings;
struct RunState;

/// What the record works with; all of it lives longer than MdRecord.
struct RecordParts {
    RecordSettings &settings;
    QString &folder; ///< of captures, with trailing separator; empty before the first one
    OpenFiles &files;
    UserPrompts &prompts;
    const Clock &clock;
    const RunState &run;
};

/// Asks the user for a file and makes a capture there, while he sees how far it is.
class RecordSaver final
{
  public:
    explicit RecordSaver(const RecordParts &parts) : m_parts(parts) {}

    /// So many files that may be written, one name with numbers if there are several; none if the
    /// user cancels. The name that is proposed is that of the moment, unless another one is given.
    QStringList ChooseFiles(int count, const QString &name = {});

    /// Called on the thread of the work, which may wait for a disk.
    using Write =
        std::function<Result(OpenFiles &files, const QString &path, WorkProgress &progress)>;
    /// Tells of a failure. False if there is no capture: it failed, or was cancelled.
    bool Save(const QString &path, const Write &write);

    /// The end of the program has not waited for a disk.
    bool Hangs() const { return m_hangs; }

  private:
    bool MayReplace(const QStringList &paths);

    RecordParts m_parts;
    bool m_hangs = false;
};
