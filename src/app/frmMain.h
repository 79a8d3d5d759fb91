// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "DialogPlace.h"
#include "MainCommands.h"
#include "MdCommunication.h"
#include "ProjectWindow.h"
#include "Representation.h"

#include <QStringList>
#include <QWidget>

#include <functional>

class CommunicationViews;
class MainActions;
class QFrame;
class QLabel;
class QMenuBar;
class QToolBar;
class RichTextBox;
class SQReceiveSequenceList;
class SQSendSequenceList;
class SendListCover;
class SplitterHandle;
class StatusPanels;
class ViewTabs;
struct CommConfiguration;
struct DisplaySettings;
struct ListSettings;
struct RunState;
struct WindowSettings;

/// What the main window works with; all of it lives longer than the window.
struct MainWindowParts {
    const CommConfiguration &comm;
    const DisplaySettings &display;
    WindowSettings &window;
    ListSettings &lists;
    CommunicationViews &views;
    RunState &run;
    QString title;
};

/// The main window. It shows, lays out and reports what the user asks for; what a command does
/// is decided by those who listen.
class frmMain final : public QWidget, public ProjectWindow
{
    Q_OBJECT

  public:
    /// Who asked for the close.
    enum class UnloadMode { ControlMenu, Code, System };

    /// The window's place, the splitters, the mode and the colours are taken from the parts here.
    explicit frmMain(const MainWindowParts &parts);

    /// Asked before a close by the user or by code; false keeps the window.
    std::function<bool()> AskSaveChanges = [] { return true; };
    /// Called once when the window goes away, after all other forms have gone.
    std::function<void()> Unload = [] {};
    /// Called when the lists are to show the sequence tables anew.
    std::function<void()> RefreshSequenceLists = [] {};

    /// Closes all forms but one, the newest first; a dialog ends as if it had been cancelled.
    static void UnloadForms(const QWidget *except);

    /// Closes as the system does, without a question.
    void CloseUnasked();

    /// Status panels 2 to 6 and the cover of the send list.
    void UpdateStatusPanels();
    void ShowPortStatus(const QString &text);
    void SetToolbarState(MdCommunication::ToolbarState state);
    void EnableStopRepeating(bool can);
    void EnableLogCommands(bool canStart, bool canStop);
    /// In the views, as pictures or as boxes, and as the tick in their menu.
    void ShowControlCharacters(bool show);
    /// For a command whose entries tick.
    void SetTicked(Command command, bool ticked);

    /// Whether the project has been modified is whether "Save" is enabled.
    void SetProjectModified(bool modified) override;
    bool ProjectModified() const override;
    void SetCaption(const QString &caption) override;
    void SetBusy(bool busy) override;
    void RefreshLists() override { RefreshSequenceLists(); }
    /// Without any the entries stay as they are.
    void ShowRecentProjects(const QStringList &projects) override;

    /// Scrolls what is selected in the shown view into sight.
    DialogPlace::Sight ShowSelection();

    SQSendSequenceList &SendList() const { return *ActionList; }
    SQReceiveSequenceList &ReceiveList() const { return *EventList; }

    /// Lay out for the wanted place of a splitter, in twips; the place is bounded and kept.
    void VSizeControls(int x);
    void HSizeControls(int y);

    /// Puts the window's place, its splitters and the columns of the lists into the settings.
    void StorePlace();

  Q_SIGNALS:
    void CommandChosen(Command command);
    /// A recent project, as it was given to ShowRecentProjects.
    void RecentProjectChosen(const QString &project);
    /// There is nothing to save, whether or not there was.
    void ProjectSettled();

  protected:
    void closeEvent(QCloseEvent *event) override;
    void moveEvent(QMoveEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

  private:
    void MakeBars();
    void MakeLists();
    void MakeCover();
    void MakeViews();
    void MakeSplitters();
    void MakeStatusBar();
    void SetOrders();

    void RestorePlace();
    void PlaceFirstSplitter();
    void NoteFrame();
    void InitViews();
    void ShowView(Representation view);
    void LayOut();
    void PlaceBars();

    bool QueryUnload(UnloadMode mode);

    MainWindowParts m_parts;
    bool m_unasked = false; ///< the system wants the window to go
    bool m_asking = false;  ///< the question before a close stands
    QPoint m_frameCorner;   ///< from the frame's corner to the window's, pixels
    int m_vSplitt;          ///< left edge of VimgSplitter, twips
    int m_hSplitt;          ///< top of HimgSplitter, twips

    MainActions *m_actions;
    QMenuBar *m_menuBar;
    QWidget *m_inner; ///< everything below the menu bar
    QToolBar *tbToolBar;
    StatusPanels *sbStatusBar;
    std::array<QLabel *, 3> lblTitle{};
    SQSendSequenceList *ActionList;
    SQReceiveSequenceList *EventList;
    SendListCover *picSendSequenceDeactivated;
    QFrame *m_tabBody;
    ViewTabs *tsTabStrip1;
    std::array<RichTextBox *, RepresentationCount> m_boxes{};
    SplitterHandle *VimgSplitter;
    SplitterHandle *HimgSplitter;
};
