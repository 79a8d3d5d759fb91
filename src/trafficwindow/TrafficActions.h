// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

#include <functional>
#include <map>

class QAction;
class frmTraffic;

/// What can be done with telegrams, in the order of the menus.
enum class TrafficCommand {
    OpenCapture,
    ShowRecord, ///< what happens now in the place of an opened capture
    SaveCapture,
    JudgeCapture,
    ReplayCapture,
    ExportAll,
    ExportShown,
    ExportSelected,
    Close,
    Copy,
    CopyAsCsv,
    CopyAsArray,
    SelectAll,
    NewSendSequence,
    NewReceiveSequence,
    Find,
    FindNext,
    FindPrevious,
    GoToTime,
    GoToNumber,
    Filter,
    FilterOff,
    SetBookmark, ///< or take it away
    BookmarkNote,
    NextBookmark,
    PreviousBookmark,
    Bookmarks,
    ResponseTimes,
};

/// The entries of the traffic window's menus and of its list's context menu, made of one table.
class TrafficActions final : public QObject
{
    Q_OBJECT

  public:
    /// Fills menus and context menu; the actions belong to the window.
    explicit TrafficActions(frmTraffic &window);

    QAction &Of(TrafficCommand command) const { return *m_actions.at(command); }
    /// What a command does, from now on.
    void On(TrafficCommand command, std::function<void()> act);
    /// One that cannot be carried out is disabled, and its tip and its status text say why.
    void Enable(TrafficCommand command, const QString &whyNot);

  private:
    void FillMenus(frmTraffic &window);
    void FillContextMenu(frmTraffic &window);

    std::map<TrafficCommand, QAction *> m_actions;
};
