// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "RecordCopy.h"

#include "CaptureJoiner.h"
#include "CapturePieces.h"
#include "ClOutputFile.h"
#include "WorkProgress.h"

qint64 RecordCopy::Size() const
{
    qint64 size = 0;
    for (const Part &part : parts)
        size += part.size;
    return size;
}

Result RecordCopy::WriteTo(OpenFiles &files, const QString &path, WorkProgress &progress) const
{
    int steps = 0;
    for (const Part &part : parts)
        steps += CapturePieces::StepsOf(part.size);
    progress.Begin(steps);
    ClOutputFile file(files);
    if (Result opened = file.OpenForReplacing(path); opened.Failed())
        return opened;
    CaptureJoiner joiner(notes);
    const auto join = [&joiner](QByteArray &joined, QByteArrayView bytes) {
        return joiner.Append(joined, bytes);
    };
    for (const Part &part : parts) {
        const CapturePieces::Part piece = {*part.file, 0, part.size};
        if (Result copied = CapturePieces::Copy(piece, join, file, progress); copied.Failed())
            return copied;
    }
    QByteArray joined;
    joiner.Append(joined, end);
    file.WriteInFile(joined);
    if (file.State().Failed())
        return file.State();
    return progress.Settle() ? file.Commit() : Result();
}
