// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QDialog>

#include <memory>

class BookmarksModel;
class QPushButton;
class QTreeView;
class TelegramBookmarks;

/// The window "Bookmarks": all of them with their times and notes, which can be changed here. Not
/// modal.
class frmBookmarks final : public QDialog
{
    Q_OBJECT

  public:
    explicit frmBookmarks(std::shared_ptr<TelegramBookmarks> bookmarks, QWidget *parent);

  Q_SIGNALS:
    /// To be gone to: its time, in ns since 1970.
    void Chosen(qint64 wall);

  private:
    void MakeList();
    void MakeButtons();
    void Go();
    void Remove();
    void ShowState();

    std::shared_ptr<TelegramBookmarks> m_bookmarks;
    BookmarksModel *m_model;
    QTreeView *lstBookmarks;
    QPushButton *cmdGo;
    QPushButton *cmdNote;
    QPushButton *cmdRemove;
};
