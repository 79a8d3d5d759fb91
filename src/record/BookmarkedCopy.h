// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "CaptureBookmarks.h"
#include "FileSystem.h"

#include <memory>

class OpenFiles;
class WorkProgress;

/// A capture of anybody with other bookmarks than it has. Of pcapng nothing else changes; classic
/// pcap has no room for any, so that its packets become pcapng.
struct BookmarkedCopy {
    std::shared_ptr<const InputDevice> capture; ///< CaptureReader has begun to read it
    QList<CaptureBookmark> bookmarks;

    /// Writes beside the file, whose place the copy takes when it is whole and on the disk; that
    /// may be the file of the capture. Cancelled work leaves nothing, and is no failure.
    Result WriteTo(OpenFiles &files, const QString &path, WorkProgress &progress) const;
};
