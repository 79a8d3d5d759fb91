// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QAbstractTableModel>

#include <memory>

class TelegramBookmarks;

/// Bookmarks as rows: the time, and the note, which can be edited.
class BookmarksModel final : public QAbstractTableModel
{
    Q_OBJECT

  public:
    enum Column { Time, Note, ColumnCount };

    explicit BookmarksModel(std::shared_ptr<TelegramBookmarks> bookmarks, QObject *parent);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

  private:
    void TakeChange();

    std::shared_ptr<TelegramBookmarks> m_bookmarks;
    int m_count = 0;
};
