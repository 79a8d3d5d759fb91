// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TelegramBookmarks.h"

#include <algorithm>
#include <utility>

namespace
{

bool IsBefore(const CaptureBookmark &left, const CaptureBookmark &right)
{
    return left.wall < right.wall;
}

} // namespace

void TelegramBookmarks::Replace(QList<CaptureBookmark> bookmarks)
{
    m_bookmarks = std::move(bookmarks);
    std::stable_sort(m_bookmarks.begin(), m_bookmarks.end(), IsBefore);
    NoteSaved();
    Q_EMIT Changed();
}

bool TelegramBookmarks::Set(const CaptureBookmark &bookmark)
{
    const qsizetype place = PlaceFrom(bookmark.wall);
    if (place < m_bookmarks.size() && m_bookmarks[place].wall == bookmark.wall) {
        if (std::exchange(m_bookmarks[place].note, bookmark.note) != bookmark.note)
            Q_EMIT Changed();
        return true;
    }
    if (m_bookmarks.size() >= CaptureBookmarks::MostBookmarks)
        return false;
    m_bookmarks.insert(place, bookmark);
    Q_EMIT Changed();
    return true;
}

void TelegramBookmarks::Remove(qint64 wall)
{
    const qsizetype place = PlaceFrom(wall);
    if (place == m_bookmarks.size() || m_bookmarks[place].wall != wall)
        return;
    m_bookmarks.removeAt(place);
    Q_EMIT Changed();
}

qsizetype TelegramBookmarks::PlaceFrom(qint64 wall) const
{
    return std::lower_bound(m_bookmarks.begin(), m_bookmarks.end(), CaptureBookmark{wall, {}},
                            IsBefore) -
           m_bookmarks.begin();
}

const CaptureBookmark *TelegramBookmarks::In(qint64 from, qint64 to) const
{
    const qsizetype place = PlaceFrom(from);
    return place < m_bookmarks.size() && m_bookmarks[place].wall <= to ? &m_bookmarks[place]
                                                                       : nullptr;
}
