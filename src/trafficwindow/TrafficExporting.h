// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Result.h"

#include <QStringList>

#include <functional>

class OpenFiles;
class UserPrompts;
class WorkProgress;
struct RunState;

/// What files are written with; all of it lives longer.
struct TrafficExportParts {
    QString &folder; ///< of exports, with trailing separator; empty before the first one
    OpenFiles &files;
    UserPrompts &prompts;
    const RunState &run;
};

/// Has the user choose a file, and writes it on a thread of its own.
class TrafficExporting final
{
  public:
    explicit TrafficExporting(const TrafficExportParts &parts) : m_parts(parts) {}

    struct Request {
        QString title;
        QString what;   ///< "The rows", for what is told of a failure
        QString filter; ///< of the file dialog
        QString name;   ///< proposed
        /// Of what may be written; a name with none of them gets the first.
        QStringList endings;
    };
    using Write = std::function<Result(OpenFiles &files, const QString &path, WorkProgress &)>;
    void Export(const Request &request, const Write &write);

    /// The end of the program has not waited for a disk.
    bool Hangs() const { return m_hangs; }
    /// The same of other work, which it then takes note of.
    void TakeHanging() { m_hangs = true; }
    const TrafficExportParts &Parts() const { return m_parts; }

  private:
    QString ChooseFile(const Request &request);
    bool MayReplace(const QString &path, const QString &title);

    TrafficExportParts m_parts;
    bool m_hangs = false;
};
