// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "TelegramText.h"
#include "TelegramView.h"

class OpenFiles;
class WorkProgress;

/// Rows of a view that are written out, on a thread that may wait for disks.
struct TelegramExport {
    struct Range {
        qint64 first = 0;
        qint64 last = 0; ///< included
    };

    TelegramView view;
    QList<Range> ranges;
    TelegramWriter::Form form = TelegramWriter::Form::Text;

    /// All rows that there are now.
    static TelegramExport All(const TelegramView &view, TelegramWriter::Form form);

    /// Writes beside the file, whose place the rows take when all of them are on the disk.
    /// Cancelled work leaves nothing, and is no failure.
    Result WriteTo(OpenFiles &files, const QString &path, WorkProgress &progress) const;

    struct Copied {
        QByteArray text;
        bool isWhole = true; ///< there was no more
    };
    /// For a clipboard: at most so many bytes, in whole rows.
    Copied Copy(qsizetype most, WorkProgress &progress) const;

  private:
    void Walk(WorkProgress &progress, const std::function<bool(const QByteArray &)> &take) const;
};
