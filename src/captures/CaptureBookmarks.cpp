// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CaptureBookmarks.h"

#include "CaptureSection.h"

#include <QDateTime>

namespace
{

const QString Begin = QStringLiteral("bookmark at ");
const QString TimeForm = QStringLiteral("yyyy-MM-ddTHH:mm:ss");
constexpr qsizetype TimeLength = 19;
constexpr qsizetype Digits = 9; ///< of the nanoseconds
constexpr qint64 Second = 1'000'000'000;

} // namespace

namespace CaptureBookmarks
{

QString CommentOf(const CaptureBookmark &bookmark)
{
    const qint64 nanoseconds = (bookmark.wall % Second + Second) % Second;
    const QDateTime time =
        QDateTime::fromSecsSinceEpoch((bookmark.wall - nanoseconds) / Second, Qt::UTC);
    QString comment = Begin + time.toString(TimeForm) + u'.' +
                      QString::number(nanoseconds).rightJustified(Digits, u'0') + u'Z';
    if (!bookmark.note.isEmpty())
        comment += QStringLiteral(": ") + bookmark.note.left(LongestNote);
    return comment;
}

std::optional<CaptureBookmark> BookmarkOf(QStringView comment)
{
    constexpr qsizetype WholeTime = TimeLength + 1 + Digits + 1;
    if (!comment.startsWith(Begin) || comment.size() < Begin.size() + WholeTime)
        return std::nullopt;
    const QStringView text = comment.sliced(Begin.size());
    QDateTime time = QDateTime::fromString(text.first(TimeLength).toString(), TimeForm);
    time.setTimeSpec(Qt::UTC);
    bool isNumber = false;
    const uint nanoseconds = text.sliced(TimeLength + 1, Digits).toUInt(&isNumber);
    const QStringView note = text.sliced(WholeTime);
    const bool told = note.isEmpty() || note.startsWith(u": ");
    if (!time.isValid() || !isNumber || text[TimeLength] != u'.' || text[WholeTime - 1] != u'Z' ||
        !told)
        return std::nullopt;
    return CaptureBookmark{
        time.toSecsSinceEpoch() * Second + nanoseconds,
        note.isEmpty() ? QString() : note.sliced(2, qMin(note.size() - 2, LongestNote)).toString()};
}

QStringList CommentsOf(const QList<CaptureBookmark> &bookmarks)
{
    QStringList comments;
    for (const CaptureBookmark &bookmark : bookmarks)
        comments << CommentOf(bookmark);
    return comments;
}

QList<CaptureBookmark> In(const InputDevice &capture)
{
    QList<CaptureBookmark> bookmarks;
    const std::optional<CaptureSection> section = CaptureSection::Of(capture);
    for (const QString &comment : section ? section->Comments() : QStringList()) {
        const std::optional<CaptureBookmark> bookmark = BookmarkOf(comment);
        if (bookmark && bookmarks.size() < MostBookmarks)
            bookmarks << *bookmark;
    }
    return bookmarks;
}

QByteArray SectionWith(const CaptureSection &section, const QList<CaptureBookmark> &bookmarks)
{
    return section.With(CommentsOf(bookmarks),
                        [](const QString &comment) { return BookmarkOf(comment).has_value(); });
}

} // namespace CaptureBookmarks
