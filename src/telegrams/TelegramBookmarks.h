// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "CaptureBookmarks.h"

#include <QObject>

/// The bookmarks of one record or capture, in the order of their times. A bookmark belongs to a
/// moment, not to a row: it stays where it is when telegrams are cut by another rule.
class TelegramBookmarks final : public QObject
{
    Q_OBJECT

  public:
    const QList<CaptureBookmark> &All() const { return m_bookmarks; }
    /// Those that a file holds in the place of all.
    void Replace(QList<CaptureBookmark> bookmarks);
    /// Whether they are others than those that a file holds.
    bool AreUnsaved() const { return m_bookmarks != m_saved; }
    void NoteSaved() { m_saved = m_bookmarks; }

    /// Sets one, or gives the one that is there another note; false if there are too many.
    bool Set(const CaptureBookmark &bookmark);
    void Remove(qint64 wall);

    /// Place of the first bookmark at or behind a moment; the count if there is none.
    qsizetype PlaceFrom(qint64 wall) const;
    /// The first one in a telegram of that begin and end, null if there is none; until the next
    /// change.
    const CaptureBookmark *In(qint64 from, qint64 to) const;

    /// As comments on a capture.
    QStringList Comments() const { return CaptureBookmarks::CommentsOf(m_bookmarks); }

  Q_SIGNALS:
    void Changed();

  private:
    QList<CaptureBookmark> m_bookmarks;
    QList<CaptureBookmark> m_saved;
};
