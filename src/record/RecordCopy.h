// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "FileSystem.h"

#include <QList>
#include <QStringList>

#include <memory>

class OpenFiles;
class WorkProgress;

/// Segments that become one capture. It holds them open, so that they may go meanwhile.
struct RecordCopy {
    struct Part {
        std::shared_ptr<const InputDevice> file;
        qint64 size = 0; ///< bytes of it that belong to the capture
    };

    QList<Part> parts;
    QStringList notes; ///< comments on the whole, if there is anything to say
    QByteArray end;    ///< packets that follow the last segment's

    qint64 Size() const;

    /// Writes beside the file, whose place the capture takes when it is whole and on the disk. The
    /// end of a segment that a program did not live to write is left out. Cancelled work leaves
    /// nothing, and is no failure.
    Result WriteTo(OpenFiles &files, const QString &path, WorkProgress &progress) const;
};
