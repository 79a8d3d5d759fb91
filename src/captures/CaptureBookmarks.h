// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <QStringView>

#include <optional>

class CaptureSection;
class InputDevice;

/// A place of a capture that somebody has marked.
struct CaptureBookmark {
    qint64 wall = 0; ///< of the first byte there, in nanoseconds since 1970
    QString note;    ///< one line; may be empty

    bool operator==(const CaptureBookmark &) const = default;
};

/// Bookmarks as comments on a capture's first section, such as
/// "bookmark at 2026-11-22T03:12:44.123456789Z: the motor stops".
namespace CaptureBookmarks
{

/// Longer notes are cut, in characters, and more bookmarks are not kept: all of them have room in
/// one block that CaptureReader takes.
constexpr qsizetype LongestNote = 200;
constexpr qsizetype MostBookmarks = 10'000;

QString CommentOf(const CaptureBookmark &bookmark);
QStringList CommentsOf(const QList<CaptureBookmark> &bookmarks);
/// Nothing for another comment.
std::optional<CaptureBookmark> BookmarkOf(QStringView comment);

/// Those that a capture has, as texts of strangers; none if it is not one of ours.
QList<CaptureBookmark> In(const InputDevice &capture);
/// The section's header with these bookmarks in the place of those that it has.
QByteArray SectionWith(const CaptureSection &section, const QList<CaptureBookmark> &bookmarks);

} // namespace CaptureBookmarks
