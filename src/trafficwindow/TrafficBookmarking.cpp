// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TrafficBookmarking.h"

#include "Telegram.h"
#include "TelegramBook.h"
#include "TelegramCells.h"
#include "TelegramList.h"
#include "TrafficActions.h"
#include "TrafficFinding.h"
#include "UserPrompts.h"
#include "frmAskLine.h"
#include "frmBookmarks.h"
#include "frmTraffic.h"

#include <QAction>
#include <QLocale>

namespace
{

/// Of its last read, by the clock on the wall.
qint64 EndOf(const Telegram &telegram)
{
    return telegram.wall + (telegram.end - telegram.time);
}

} // namespace

TrafficBookmarking::TrafficBookmarking(frmTraffic &window, TrafficActions &actions,
                                       TrafficFinding &finding, UserPrompts &prompts)
    : m_window(window),
      m_book(window.Book()),
      m_actions(actions),
      m_finding(finding),
      m_prompts(prompts)
{
    actions.On(TrafficCommand::SetBookmark, [this] { SetOrRemove(); });
    actions.On(TrafficCommand::BookmarkNote, [this] { EditNote(); });
    actions.On(TrafficCommand::NextBookmark, [this] { GoToNext(true); });
    actions.On(TrafficCommand::PreviousBookmark, [this] { GoToNext(false); });
    actions.On(TrafficCommand::Bookmarks, [this] { ShowList(); });
    window.List().NoteOf = [this](const Telegram &telegram) -> std::optional<QString> {
        const CaptureBookmark *bookmark = BookmarkOf(telegram);
        return bookmark ? std::optional(bookmark->note) : std::nullopt;
    };
    connect(&window.List(), &TelegramList::CurrentChanged, this, &TrafficBookmarking::ShowState);
    Show(m_bookmarks);
}

TrafficBookmarking::~TrafficBookmarking()
{
    m_window.List().NoteOf = nullptr;
}

void TrafficBookmarking::Show(const std::shared_ptr<TelegramBookmarks> &bookmarks)
{
    disconnect(m_bookmarks.get(), nullptr, this, nullptr);
    m_bookmarks = bookmarks;
    connect(m_bookmarks.get(), &TelegramBookmarks::Changed, this, &TrafficBookmarking::ShowState);
    connect(m_bookmarks.get(), &TelegramBookmarks::Changed, &m_window.List(),
            &TelegramList::Refresh);
    delete m_list;
    m_window.List().Refresh();
    ShowState();
}

const Telegram *TrafficBookmarking::InHand() const
{
    return m_book.Row(m_window.List().Current());
}

const CaptureBookmark *TrafficBookmarking::BookmarkOf(const Telegram &telegram) const
{
    return m_bookmarks->In(telegram.wall, EndOf(telegram));
}

void TrafficBookmarking::SetOrRemove()
{
    const Telegram *telegram = InHand();
    if (!telegram)
        return;
    if (const CaptureBookmark *bookmark = BookmarkOf(*telegram))
        m_bookmarks->Remove(bookmark->wall);
    else
        Set({telegram->wall, {}});
}

/// The row may have gone while the note was typed.
void TrafficBookmarking::EditNote()
{
    const Telegram *telegram = InHand();
    if (!telegram)
        return;
    const CaptureBookmark *there = BookmarkOf(*telegram);
    CaptureBookmark bookmark = there ? *there : CaptureBookmark{telegram->wall, {}};
    frmAskLine dialog(
        {.name = QStringLiteral("dlgBookmark"),
         .title = QStringLiteral("Bookmark"),
         .caption = QStringLiteral("&Note on row %1:").arg(QLocale().toString(telegram->number)),
         .hint = QStringLiteral("It is shown among the row's marks."),
         .text = bookmark.note},
        &m_window);
    if (dialog.exec() != QDialog::Accepted)
        return;
    bookmark.note = dialog.Text().simplified().left(CaptureBookmarks::LongestNote);
    Set(bookmark);
}

void TrafficBookmarking::Set(const CaptureBookmark &bookmark)
{
    if (!m_bookmarks->Set(bookmark))
        m_prompts.ShowMessage(
            ExclamationMessage(QStringLiteral("There are %1 bookmarks already; no more can be set.")
                                   .arg(QLocale().toString(CaptureBookmarks::MostBookmarks))));
}

/// From the row in hand, and from the last one to the first.
void TrafficBookmarking::GoToNext(bool forward)
{
    const QList<CaptureBookmark> &all = m_bookmarks->All();
    const Telegram *telegram = InHand();
    const qsizetype behind = telegram ? m_bookmarks->PlaceFrom(EndOf(*telegram) + 1) : 0;
    const qsizetype before = telegram ? m_bookmarks->PlaceFrom(telegram->wall) : all.size();
    const qsizetype next = forward ? behind : before - 1 + all.size();
    if (!all.isEmpty())
        m_finding.GoToMoment(all[next % all.size()].wall);
}

void TrafficBookmarking::ShowList()
{
    if (!m_list) {
        m_list = new frmBookmarks(m_bookmarks, &m_window);
        connect(m_list, &frmBookmarks::Chosen, this,
                [this](qint64 wall) { m_finding.GoToMoment(wall); });
    }
    m_list->show();
    m_list->raise();
    m_list->activateWindow();
}

void TrafficBookmarking::ShowState()
{
    const bool none = m_window.List().Current() < 0;
    const QString noRow = none ? QStringLiteral("No row is chosen.") : QString();
    const QString noBookmark =
        m_bookmarks->All().isEmpty() ? QStringLiteral("There are no bookmarks.") : QString();
    for (const TrafficCommand command : {TrafficCommand::SetBookmark, TrafficCommand::BookmarkNote})
        m_actions.Enable(command, noRow);
    for (const TrafficCommand command :
         {TrafficCommand::NextBookmark, TrafficCommand::PreviousBookmark})
        m_actions.Enable(command, noBookmark);
}
