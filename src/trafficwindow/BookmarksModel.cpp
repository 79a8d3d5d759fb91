// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "BookmarksModel.h"

#include "PlainToolTip.h"
#include "TelegramBookmarks.h"
#include "TelegramCells.h"

#include <utility>

BookmarksModel::BookmarksModel(std::shared_ptr<TelegramBookmarks> bookmarks, QObject *parent)
    : QAbstractTableModel(parent),
      m_bookmarks(std::move(bookmarks)),
      m_count(int(m_bookmarks->All().size()))
{
    connect(m_bookmarks.get(), &TelegramBookmarks::Changed, this, &BookmarksModel::TakeChange);
}

/// A changed note leaves the rows, and what is chosen, where they are.
void BookmarksModel::TakeChange()
{
    const int count = int(m_bookmarks->All().size());
    if (count == m_count) {
        Q_EMIT dataChanged(index(0, 0), index(count - 1, ColumnCount - 1));
        return;
    }
    beginResetModel();
    m_count = count;
    endResetModel();
}

int BookmarksModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_count;
}

int BookmarksModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(ColumnCount);
}

QVariant BookmarksModel::data(const QModelIndex &index, int role) const
{
    const CaptureBookmark &bookmark = m_bookmarks->All().at(index.row());
    const bool isTime = index.column() == Time;
    switch (role) {
    case Qt::DisplayRole:
        return isTime ? TelegramCells::TimeText(bookmark.wall, true) : bookmark.note;
    case Qt::EditRole:
        return isTime ? QVariant() : bookmark.note;
    case Qt::ToolTipRole:
        return isTime ? QVariant() : PlainToolTip(bookmark.note);
    default:
        return {};
    }
}

bool BookmarksModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole || index.column() != Note)
        return false;
    const qint64 wall = m_bookmarks->All().at(index.row()).wall;
    return m_bookmarks->Set(
        {wall, value.toString().simplified().left(CaptureBookmarks::LongestNote)});
}

QVariant BookmarksModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole || orientation != Qt::Horizontal)
        return {};
    return section == Time ? QStringLiteral("Time") : QStringLiteral("Note");
}

Qt::ItemFlags BookmarksModel::flags(const QModelIndex &index) const
{
    const Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    return index.column() == Note ? flags | Qt::ItemIsEditable : flags;
}
