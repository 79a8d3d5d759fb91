// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "BookmarkedCopy.h"

#include "CapturePieces.h"
#include "CaptureSection.h"
#include "ClOutputFile.h"
#include "PcapBlocks.h"
#include "WorkProgress.h"

#include <optional>

namespace
{

qsizetype TakeAll(QByteArray &made, QByteArrayView bytes)
{
    made += bytes;
    return bytes.size();
}

} // namespace

Result BookmarkedCopy::WriteTo(OpenFiles &files, const QString &path, WorkProgress &progress) const
{
    const qint64 size = capture->Size();
    const std::optional<CaptureSection> section = CaptureSection::Of(*capture);
    const QByteArray head = PcapBlocks::HeadOf(*capture);
    if (!section && head.isEmpty())
        return Failure{QStringLiteral("What stands before its packets cannot be read")};
    progress.Begin(CapturePieces::StepsOf(size));
    ClOutputFile file(files);
    if (Result opened = file.OpenForReplacing(path); opened.Failed())
        return opened;
    Result copied;
    if (section) {
        file.WriteInFile(CaptureBookmarks::SectionWith(*section, bookmarks));
        copied = CapturePieces::Copy({*capture, section->Length(), size}, TakeAll, file, progress);
    } else {
        const PcapBlocks packets(head);
        file.WriteInFile(CaptureBookmarks::SectionWith(CaptureSection::New(), bookmarks));
        file.WriteInFile(packets.Interface());
        const auto convert = [&packets](QByteArray &made, QByteArrayView bytes) {
            return packets.Append(made, bytes);
        };
        copied = CapturePieces::Copy({*capture, head.size(), size}, convert, file, progress);
    }
    if (copied.Failed() || file.State().Failed())
        return copied.Failed() ? copied : file.State();
    return progress.Settle() ? file.Commit() : Result();
}
