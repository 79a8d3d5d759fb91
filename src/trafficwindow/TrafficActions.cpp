// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TrafficActions.h"

#include "TelegramList.h"
#include "frmTraffic.h"

#include <QAction>
#include <QMenu>

#include <array>
#include <optional>
#include <utility>

namespace
{

using Command = TrafficCommand;
using Menu = frmTraffic::Menu;

/// An entry; without a caption it is a separator.
struct Entry {
    Menu menu;
    const char *name;
    const char *caption;
    Command command{};
    const char *key = nullptr;
    bool ofList = false; ///< the key is: fields and details have it for themselves
};

constexpr std::array Entries = {
    Entry{Menu::Capture, "mnuTrafficOpen", "&Open Capture...", Command::OpenCapture, "Ctrl+O"},
    Entry{Menu::Capture, "mnuTrafficRecord", "&Live Record", Command::ShowRecord, "Ctrl+L"},
    Entry{Menu::Capture, "mnuTrafficSave", "&Save Capture...", Command::SaveCapture, "Ctrl+S"},
    Entry{Menu::Capture, "mnuTrafficBar0", nullptr},
    Entry{Menu::Capture, "mnuTrafficJudge", "&Judge This Capture", Command::JudgeCapture},
    Entry{Menu::Capture, "mnuTrafficReplay", "Re&play This Capture", Command::ReplayCapture},
    Entry{Menu::Capture, "mnuTrafficBar1", nullptr},
    Entry{Menu::Capture, "mnuTrafficExportAll", "Export &All Rows...", Command::ExportAll},
    Entry{Menu::Capture, "mnuTrafficExportShown", "Export S&hown Rows...", Command::ExportShown},
    Entry{Menu::Capture, "mnuTrafficExportSelected", "&Export Selected Rows...",
          Command::ExportSelected, "Ctrl+E"},
    Entry{Menu::Capture, "mnuTrafficBar2", nullptr},
    Entry{Menu::Capture, "mnuTrafficClose", "&Close", Command::Close, "Ctrl+W"},

    Entry{Menu::Edit, "mnuTrafficCopy", "&Copy", Command::Copy, "Ctrl+C", true},
    Entry{Menu::Edit, "mnuTrafficCopyCsv", "Copy as CS&V", Command::CopyAsCsv, "Ctrl+Shift+C",
          true},
    Entry{Menu::Edit, "mnuTrafficCopyArray", "Copy as C A&rray", Command::CopyAsArray, "Ctrl+Alt+C",
          true},
    Entry{Menu::Edit, "mnuTrafficSelectAll", "Select &All", Command::SelectAll, "Ctrl+A", true},
    Entry{Menu::Edit, "mnuTrafficBar3", nullptr},
    Entry{Menu::Edit, "mnuTrafficNewSend", "New &Send Sequence...", Command::NewSendSequence},
    Entry{Menu::Edit, "mnuTrafficNewReceive", "&New Receive Sequence...",
          Command::NewReceiveSequence},

    Entry{Menu::Search, "mnuTrafficFind", "&Find...", Command::Find, "Ctrl+F"},
    Entry{Menu::Search, "mnuTrafficFindNext", "Find &Next", Command::FindNext, "F3"},
    Entry{Menu::Search, "mnuTrafficFindPrevious", "Find Pre&vious", Command::FindPrevious,
          "Shift+F3"},
    Entry{Menu::Search, "mnuTrafficBar4", nullptr},
    Entry{Menu::Search, "mnuTrafficGoToTime", "Go to &Time...", Command::GoToTime, "Ctrl+T"},
    Entry{Menu::Search, "mnuTrafficGoToNumber", "&Go to Number...", Command::GoToNumber, "Ctrl+G"},
    Entry{Menu::Search, "mnuTrafficBar5", nullptr},
    Entry{Menu::Search, "mnuTrafficFilter", "F&ilter...", Command::Filter, "Ctrl+Shift+F"},
    Entry{Menu::Search, "mnuTrafficFilterOff", "Show &All Rows", Command::FilterOff,
          "Ctrl+Shift+A"},

    Entry{Menu::Bookmarks, "mnuTrafficBookmark", "&Set or Remove Bookmark", Command::SetBookmark,
          "Ctrl+F2"},
    Entry{Menu::Bookmarks, "mnuTrafficNote", "Bookmark with N&ote...", Command::BookmarkNote,
          "Ctrl+D"},
    Entry{Menu::Bookmarks, "mnuTrafficBar6", nullptr},
    Entry{Menu::Bookmarks, "mnuTrafficNextBookmark", "&Next Bookmark", Command::NextBookmark, "F2"},
    Entry{Menu::Bookmarks, "mnuTrafficPreviousBookmark", "&Previous Bookmark",
          Command::PreviousBookmark, "Shift+F2"},
    Entry{Menu::Bookmarks, "mnuTrafficBookmarks", "&List of Bookmarks...", Command::Bookmarks,
          "Ctrl+B"},

    Entry{Menu::View, "mnuTrafficBar7", nullptr},
    Entry{Menu::View, "mnuTrafficResponses", "&Response Times...", Command::ResponseTimes,
          "Ctrl+R"},
};

/// Of the list; nothing is a separator.
constexpr std::array<std::optional<Command>, 14> ContextEntries = {
    Command::Copy,
    Command::CopyAsCsv,
    Command::CopyAsArray,
    std::nullopt,
    Command::NewSendSequence,
    Command::NewReceiveSequence,
    std::nullopt,
    Command::SetBookmark,
    Command::BookmarkNote,
    std::nullopt,
    Command::Find,
    Command::Filter,
    Command::ExportSelected,
    Command::ResponseTimes,
};

} // namespace

TrafficActions::TrafficActions(frmTraffic &window) : QObject(&window)
{
    FillMenus(window);
    FillContextMenu(window);
}

void TrafficActions::FillMenus(frmTraffic &window)
{
    for (const Entry &entry : Entries) {
        QMenu &menu = window.MenuOf(entry.menu);
        menu.setToolTipsVisible(true);
        QAction *action = entry.caption ? menu.addAction(QString::fromLatin1(entry.caption))
                                        : menu.addSeparator();
        action->setObjectName(QString::fromLatin1(entry.name));
        if (!entry.caption)
            continue;
        if (entry.key)
            action->setShortcut(QKeySequence(QString::fromLatin1(entry.key)));
        if (entry.ofList)
            action->setShortcutContext(Qt::WidgetShortcut);
        m_actions.emplace(entry.command, action);
    }
}

void TrafficActions::FillContextMenu(frmTraffic &window)
{
    TelegramList &list = window.List();
    for (const std::optional<Command> &entry : ContextEntries) {
        if (entry) {
            list.addAction(&Of(*entry));
            continue;
        }
        auto *separator = new QAction(&list);
        separator->setSeparator(true);
        list.addAction(separator);
    }
}

void TrafficActions::On(TrafficCommand command, std::function<void()> act)
{
    connect(&Of(command), &QAction::triggered, this, [act = std::move(act)] { act(); });
}

void TrafficActions::Enable(TrafficCommand command, const QString &whyNot)
{
    QAction &action = Of(command);
    action.setEnabled(whyNot.isEmpty());
    action.setToolTip(whyNot);
    action.setStatusTip(whyNot);
}
