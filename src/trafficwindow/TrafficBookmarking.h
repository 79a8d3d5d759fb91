// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "TelegramBookmarks.h"

#include <QObject>
#include <QPointer>

#include <memory>

class TelegramBook;
class TrafficActions;
class TrafficFinding;
class UserPrompts;
class frmBookmarks;
class frmTraffic;
struct Telegram;

/// Bookmarks of what the window shows: sets them on the row in hand, leads from one to the next,
/// lets them be seen in the list.
class TrafficBookmarking final : public QObject
{
    Q_OBJECT

  public:
    /// All of it lives longer.
    TrafficBookmarking(frmTraffic &window, TrafficActions &actions, TrafficFinding &finding,
                       UserPrompts &prompts);

    ~TrafficBookmarking() override;

    /// Those of what is shown from now on; they live as long as they are shown.
    void Show(const std::shared_ptr<TelegramBookmarks> &bookmarks);

  private:
    const Telegram *InHand() const;
    const CaptureBookmark *BookmarkOf(const Telegram &telegram) const;
    void SetOrRemove();
    void EditNote();
    void Set(const CaptureBookmark &bookmark);
    void GoToNext(bool forward);
    void ShowList();
    void ShowState();

    frmTraffic &m_window;
    TelegramBook &m_book;
    TrafficActions &m_actions;
    TrafficFinding &m_finding;
    UserPrompts &m_prompts;
    std::shared_ptr<TelegramBookmarks> m_bookmarks = std::make_shared<TelegramBookmarks>();
    QPointer<frmBookmarks> m_list;
};
