// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "frmMain.h"

#include "CommConfiguration.h"
#include "CommunicationViews.h"
#include "ControlAccessible.h"
#include "DisplaySettings.h"
#include "Icons.h"
#include "MainActions.h"
#include "MainLayout.h"
#include "ReadingOrder.h"
#include "RichTextAccessible.h"
#include "RichTextBox.h"
#include "RunState.h"
#include "SQReceiveSequenceList.h"
#include "SQSendSequenceList.h"
#include "SendListCover.h"
#include "SplitterHandle.h"
#include "StatusPanels.h"
#include "Twips.h"
#include "ViewTabs.h"
#include "WindowSettings.h"

#include <QAccessible>
#include <QApplication>
#include <QBackingStore>
#include <QCloseEvent>
#include <QDialog>
#include <QFrame>
#include <QLabel>
#include <QMenuBar>
#include <QScopedValueRollback>
#include <QScreen>
#include <QToolBar>

#include <algorithm>
#include <cmath>

namespace
{

using MainLayout::Span;

/// Room for the ears of the tab strip, which hang below its body; a large font gets more.
constexpr int TabEarsHeight = 400;
/// A window that would show less of its top edge than this is brought back, in pixels.
constexpr int LeastVisible = 40;

/// Width of the first window where the screen has as much, in twips.
constexpr int LeastFirstWidth = 12000;

constexpr std::array<const char *, 3> Titles = {"Send Sequences", "Communication",
                                                "Receive Sequences"};

int Pixels(int twips)
{
    return int(std::lround(double(twips) / TwipsPerPixel));
}

int Twips(int pixels)
{
    return pixels * TwipsPerPixel;
}

/// A stored float as whole twips; what no window could have is bounded.
int WholeTwips(float stored)
{
    constexpr float Limit = 1000000;
    return int(std::lround(std::clamp(stored, -Limit, Limit)));
}

QRect PixelRect(const Span &horizontal, const Span &vertical)
{
    const int left = Pixels(horizontal.start);
    const int top = Pixels(vertical.start);
    return {left, top, Pixels(horizontal.start + horizontal.length) - left,
            Pixels(vertical.start + vertical.length) - top};
}

void SetHorizontally(QWidget *widget, const Span &span)
{
    const QRect rect = PixelRect(span, {});
    widget->setGeometry(rect.x(), widget->y(), rect.width(), widget->height());
}

void SetVertically(QWidget *widget, const Span &span)
{
    const QRect rect = PixelRect({}, span);
    widget->setGeometry(widget->x(), rect.y(), widget->width(), rect.height());
}

QString Text(const char *latin)
{
    return QString::fromLatin1(latin);
}

} // namespace

frmMain::frmMain(const MainWindowParts &parts)
    : m_parts(parts),
      m_vSplitt(WholeTwips(parts.window.vSplitt)),
      m_hSplitt(WholeTwips(parts.window.hSplitt)),
      m_actions(new MainActions(*this)),
      m_menuBar(new QMenuBar(this)),
      m_inner(new QWidget(this)),
      tbToolBar(new QToolBar(m_inner)),
      sbStatusBar(new StatusPanels(m_inner)),
      ActionList(new SQSendSequenceList(m_inner)),
      EventList(new SQReceiveSequenceList(m_inner)),
      picSendSequenceDeactivated(new SendListCover(m_inner)),
      m_tabBody(new QFrame(m_inner)),
      tsTabStrip1(new ViewTabs(m_inner)),
      VimgSplitter(new SplitterHandle(Qt::Horizontal, MainLayout::VerticalDragLimit, m_inner)),
      HimgSplitter(new SplitterHandle(Qt::Vertical, MainLayout::HorizontalDragLimit, m_inner))
{
    QAccessible::installFactory(RichTextAccessible::Create);
    QAccessible::installFactory(ControlAccessible::Create);
    setObjectName(QStringLiteral("frmMain"));
    SetCaption(parts.title);
    setWindowIcon(Icons::Named("serimonde"));
    setMinimumWidth(Pixels(MainLayout::MinimumWidth));
    MakeBars();
    MakeLists();
    MakeCover();
    MakeViews();
    MakeSplitters();
    MakeStatusBar();
    SetOrders();
    RestorePlace();

    InitViews();
    PlaceFirstSplitter();
    LayOut();
    ShowView(Representation(tsTabStrip1->currentIndex()));
    ShowPortStatus(QStringLiteral("Communication port is closed"));
    UpdateStatusPanels();
    SetToolbarState(MdCommunication::ToolbarState::Closed);
    EnableLogCommands(false, false);
    EnableStopRepeating(false);
    SetProjectModified(false);
}

void frmMain::MakeBars()
{
    m_menuBar->setNativeMenuBar(false);
    tbToolBar->setObjectName(QStringLiteral("tbToolBar"));
    m_actions->FillMenus(*m_menuBar);
    m_actions->FillToolbar(*tbToolBar);
    m_actions->AddKeys();
    connect(m_actions, &MainActions::Chosen, this, &frmMain::CommandChosen);
    connect(m_actions, &MainActions::RecentProjectChosen, this, &frmMain::RecentProjectChosen);
}

void frmMain::ShowRecentProjects(const QStringList &projects)
{
    m_actions->ShowRecentProjects(projects);
}

void frmMain::MakeLists()
{
    for (size_t i = 0; i < lblTitle.size(); ++i) {
        lblTitle[i] = new QLabel(Text(Titles[i]), m_inner);
        lblTitle[i]->setObjectName(QStringLiteral("lblTitle_%1").arg(i));
    }
    ActionList->setObjectName(QStringLiteral("ActionList"));
    ActionList->setAccessibleName(QStringLiteral("Send Sequences"));
    ActionList->SetColumnWidths(m_parts.lists.sendWidths, ListSettings().sendWidths);
    EventList->setObjectName(QStringLiteral("EventList"));
    EventList->setAccessibleName(QStringLiteral("Receive Sequences"));
    EventList->SetColumnWidths(m_parts.lists.receiveWidths, ListSettings().receiveWidths);
}

void frmMain::MakeCover()
{
    picSendSequenceDeactivated->setObjectName(QStringLiteral("picSendSequenceDeactivated"));
    connect(picSendSequenceDeactivated, &SendListCover::OptionsClicked, this,
            [this] { Q_EMIT CommandChosen(Command::Options); });
}

void frmMain::MakeViews()
{
    m_tabBody->setFrameStyle(QFrame::StyledPanel | QFrame::Raised);
    tsTabStrip1->setObjectName(QStringLiteral("tsTabStrip1"));
    tsTabStrip1->setAccessibleName(QStringLiteral("Representation"));
    tsTabStrip1->AddKeys(*this);
    const QList<QAction *> entries = m_actions->ViewEntries();
    for (const Representation r : AllRepresentations) {
        auto *box = new RichTextBox(m_parts.views.View(r), m_inner);
        box->setObjectName(Text(RowOf(r).viewName));
        box->setAccessibleName(QStringLiteral("Communication in ") + Text(RowOf(r).caption));
        connect(box, &RichTextBox::CaretReleased, this,
                [this](qint64 position) { m_parts.views.CaretPosition = position; });
        box->addActions(entries);
        m_boxes[size_t(r)] = box;
    }
}

void frmMain::InitViews()
{
    tsTabStrip1->AddTabs();
    for (RichTextBox *box : m_boxes) {
        box->SetColours(m_parts.display);
        box->SetTypingStyle(m_parts.display.styles[StyleIndex::Comment]);
    }
    connect(tsTabStrip1, &ViewTabs::Chosen, this, &frmMain::ShowView);
}

/// Who reads in a view goes on reading in the one that takes its place.
void frmMain::ShowView(Representation view)
{
    RichTextBox *shown = m_boxes[size_t(view)];
    shown->show();
    if (std::find(m_boxes.begin(), m_boxes.end(), focusWidget()) != m_boxes.end())
        shown->setFocus();
    for (RichTextBox *box : m_boxes)
        box->setVisible(box == shown);
    m_parts.views.DisplayedRepresentation = view;
    m_parts.views.CaretPosition = 0;
}

DialogPlace::Sight frmMain::ShowSelection()
{
    RichTextBox &box = *m_boxes[size_t(m_parts.views.DisplayedRepresentation)];
    box.ScrollToSelection();
    const QPoint origin = box.viewport()->mapToGlobal(QPoint(0, 0));
    return {box.SelectionRect().translated(origin), box.viewport()->rect().translated(origin)};
}

void frmMain::MakeSplitters()
{
    VimgSplitter->setObjectName(QStringLiteral("VimgSplitter"));
    VimgSplitter->setAccessibleName(QStringLiteral("Width of the sequence lists"));
    VimgSplitter->Picture()->setObjectName(QStringLiteral("VpicSplitter"));
    HimgSplitter->setObjectName(QStringLiteral("HimgSplitter"));
    HimgSplitter->setAccessibleName(QStringLiteral("Height of the send sequence list"));
    HimgSplitter->Picture()->setObjectName(QStringLiteral("HpicSplitter"));
    connect(VimgSplitter, &SplitterHandle::Moved, this, &frmMain::VSizeControls);
    connect(HimgSplitter, &SplitterHandle::Moved, this, &frmMain::HSizeControls);
}

void frmMain::MakeStatusBar()
{
    sbStatusBar->setObjectName(QStringLiteral("sbStatusBar"));
    connect(sbStatusBar, &StatusPanels::SettingsClicked, this,
            [this] { Q_EMIT CommandChosen(Command::Options); });
}

/// The order of the page, for reading and for the Tab key: lists from the top, then the views and
/// their tabs.
void frmMain::SetOrders()
{
    const QWidgetList views(m_boxes.begin(), m_boxes.end());
    ReadInOrder(QWidgetList{tbToolBar, lblTitle[0], ActionList, picSendSequenceDeactivated,
                            HimgSplitter, lblTitle[2], EventList, VimgSplitter, m_tabBody,
                            lblTitle[1]} +
                views + QWidgetList{tsTabStrip1, sbStatusBar});

    QWidgetList order = tbToolBar->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
    order << ActionList
          << picSendSequenceDeactivated->findChild<QWidget *>(QStringLiteral("lblClickChangeComm"));
    order << HimgSplitter << EventList << VimgSplitter << views << tsTabStrip1;
    for (qsizetype i = 1; i < order.size(); ++i)
        setTabOrder(order[i - 1], order[i]);
    m_boxes[0]->setFocus();
}

void frmMain::RestorePlace()
{
    const QRect screen = QApplication::primaryScreen()->availableGeometry();
    const WindowSettings &place = m_parts.window;
    const auto size = [](float stored, int least, int ofScreen) {
        return stored > 0 ? std::max(1, Pixels(WholeTwips(stored)))
                          : std::max(ofScreen * 3 / 4, std::min(least, ofScreen));
    };
    QRect all;
    for (const QScreen *each : QApplication::screens())
        all |= each->availableGeometry();
    resize(QSize(size(place.MainWidth, Pixels(LeastFirstWidth), screen.width()),
                 size(place.MainHeight, 0, screen.height()))
               .boundedTo(all.size()));
    move(Pixels(WholeTwips(place.MainLeft)), Pixels(WholeTwips(place.MainTop)));

    const QRect topEdge(pos(), QSize(width(), LeastVisible));
    const auto shows = [&](const QScreen *each) {
        const QRect seen = each->availableGeometry() & topEdge;
        return seen.width() >= LeastVisible && seen.height() >= LeastVisible / 2;
    };
    const QList<QScreen *> screens = QApplication::screens();
    if (std::none_of(screens.begin(), screens.end(), shows))
        move(screen.topLeft());
}

void frmMain::StorePlace()
{
    NoteFrame();
    // The size without the frame, the place with it.
    const QRect frame = isMaximized() || isFullScreen()
                            ? normalGeometry().translated(-m_frameCorner)
                            : QRect(pos(), size());
    WindowSettings &place = m_parts.window;
    place.MainLeft = float(Twips(frame.x()));
    place.MainTop = float(Twips(frame.y()));
    place.MainWidth = float(Twips(frame.width()));
    place.MainHeight = float(Twips(frame.height()));
    place.vSplitt = float(m_vSplitt);
    place.hSplitt = float(m_hSplitt);
    ActionList->StoreColumnWidths(m_parts.lists.sendWidths);
    EventList->StoreColumnWidths(m_parts.lists.receiveWidths);
}

/// While nothing is stored: on a small screen in the middle, but all tabs are to be seen.
void frmMain::PlaceFirstSplitter()
{
    if (m_parts.window.MainWidth > 0 || width() >= Pixels(LeastFirstWidth))
        return;
    const int beside = Twips(width() - tsTabStrip1->sizeHint().width()) - MainLayout::BesideTabs;
    m_vSplitt = std::min(Twips(width()) / 2, beside);
}

/// How wide the frame is while the window has its normal size; maximised it may have another.
void frmMain::NoteFrame()
{
    if (!isMaximized() && !isFullScreen() && !isMinimized())
        m_frameCorner = geometry().topLeft() - pos();
}

void frmMain::moveEvent(QMoveEvent *)
{
    NoteFrame();
}

void frmMain::resizeEvent(QResizeEvent *)
{
    NoteFrame();
    if (!isMinimized())
        LayOut();
}

void frmMain::LayOut()
{
    PlaceBars();
    VSizeControls(m_vSplitt);
    HSizeControls(m_hSplitt);
}

void frmMain::PlaceBars()
{
    const int menuHeight = m_menuBar->heightForWidth(width()) > 0
                               ? m_menuBar->heightForWidth(width())
                               : m_menuBar->sizeHint().height();
    m_menuBar->setGeometry(0, 0, width(), menuHeight);
    m_inner->setGeometry(0, menuHeight, width(), std::max(0, height() - menuHeight));
    tbToolBar->setGeometry(0, 0, m_inner->width(), tbToolBar->sizeHint().height());
    const int statusHeight = sbStatusBar->sizeHint().height();
    sbStatusBar->setGeometry(0, m_inner->height() - statusHeight, m_inner->width(), statusHeight);
}

void frmMain::VSizeControls(int x)
{
    const auto sums = MainLayout::VSizeControls(x, Twips(m_inner->width()));
    m_vSplitt = sums.splitter;
    for (QWidget *widget :
         {static_cast<QWidget *>(ActionList), static_cast<QWidget *>(picSendSequenceDeactivated),
          static_cast<QWidget *>(EventList), static_cast<QWidget *>(lblTitle[0]),
          static_cast<QWidget *>(lblTitle[2]), static_cast<QWidget *>(HimgSplitter)})
        SetHorizontally(widget, sums.lists);
    SetHorizontally(VimgSplitter, {sums.splitter, MainLayout::SplitterThickness});
    SetHorizontally(m_tabBody, sums.tabs);
    SetHorizontally(tsTabStrip1, sums.tabs);
    SetHorizontally(lblTitle[1], sums.title);
    for (RichTextBox *box : m_boxes)
        SetHorizontally(box, sums.views);
}

void frmMain::HSizeControls(int y)
{
    const int title = std::max(MainLayout::TitleHeight, Twips(lblTitle[0]->sizeHint().height()));
    const MainLayout::InnerArea inner = {Twips(m_inner->height()), Twips(tbToolBar->height()),
                                         Twips(sbStatusBar->height()), title};
    const auto sums = MainLayout::HSizeControls(y, inner);
    m_hSplitt = sums.splitter;
    const int ears =
        std::clamp(Twips(tsTabStrip1->sizeHint().height()), TabEarsHeight, MainLayout::BelowTabs);
    const Span titleRow = {sums.titleRow, title};
    SetVertically(lblTitle[0], titleRow);
    SetVertically(lblTitle[1], titleRow);
    SetVertically(lblTitle[2], {sums.receiveTitle, title});
    SetVertically(ActionList, sums.sendList);
    SetVertically(picSendSequenceDeactivated, sums.sendList);
    SetVertically(HimgSplitter, {sums.splitter, MainLayout::SplitterThickness});
    SetVertically(EventList, sums.receiveList);
    SetVertically(m_tabBody, sums.tabs);
    SetVertically(tsTabStrip1, {sums.tabs.start + sums.tabs.length, ears});
    for (RichTextBox *box : m_boxes)
        SetVertically(box, sums.views);
    SetVertically(VimgSplitter, {inner.toolBar, inner.height - inner.toolBar - inner.statusBar});
}

void frmMain::UpdateStatusPanels()
{
    const bool covered = !m_parts.comm.MaySend();
    picSendSequenceDeactivated->setVisible(covered);
    ActionList->setDisabled(covered); // keys must not reach what cannot be seen
    ActionList->setHidden(covered);   // nor must it be read aloud
    sbStatusBar->ShowSettings(m_parts.comm);
}

void frmMain::ShowPortStatus(const QString &text)
{
    sbStatusBar->ShowPortStatus(text);
}

void frmMain::SetToolbarState(MdCommunication::ToolbarState state)
{
    const bool closed = state == MdCommunication::ToolbarState::Closed;
    for (const Command command : {Command::Cut, Command::Copy, Command::Paste, Command::Start,
                                  Command::Clean, Command::ReplayCapture})
        m_actions->Enable(command, closed);
    m_actions->Enable(Command::Stop, !closed);
}

void frmMain::EnableStopRepeating(bool can)
{
    m_actions->Enable(Command::StopRepeating, can);
}

void frmMain::EnableLogCommands(bool canStart, bool canStop)
{
    m_actions->Enable(Command::StartLog, canStart);
    m_actions->Enable(Command::StopLog, canStop);
}

void frmMain::ShowControlCharacters(bool show)
{
    for (RichTextBox *box : m_boxes)
        box->SetShowsControls(show);
    SetTicked(Command::ControlCharacters, show);
}

void frmMain::SetTicked(Command command, bool ticked)
{
    m_actions->SetTicked(command, ticked);
}

void frmMain::SetProjectModified(bool modified)
{
    m_actions->Enable(Command::Save, modified);
    if (!modified)
        Q_EMIT ProjectSettled();
}

bool frmMain::ProjectModified() const
{
    return m_actions->Enabled(Command::Save);
}

void frmMain::SetCaption(const QString &caption)
{
    // Qt takes [*] for the mark of a modified document unless it is doubled.
    setWindowTitle(QString(caption).replace(QLatin1String("[*]"), QLatin1String("[*][*]")));
}

void frmMain::SetBusy(bool busy)
{
    if (!busy) {
        QGuiApplication::restoreOverrideCursor();
        return;
    }
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    // No event is handled until the work is done, so the place where a dialog stood is painted now.
    // To repaint the window leaves out what lies on it; all of that is in the backing store.
    if (isVisible() && backingStore() && !backingStore()->size().isEmpty())
        backingStore()->flush(rect());
}

/// While a close is being asked about, that close goes through: its question is taken back. A
/// window that has gone takes only the boxes with it that still stand.
void frmMain::CloseUnasked()
{
    m_unasked = true;
    if (m_asking || (m_parts.run.QuitRequested && !isVisible()))
        UnloadForms(this);
    else
        close();
}

void frmMain::closeEvent(QCloseEvent *event)
{
    const UnloadMode mode = m_unasked              ? UnloadMode::System
                            : event->spontaneous() ? UnloadMode::ControlMenu
                                                   : UnloadMode::Code;
    if (!QueryUnload(mode)) {
        event->ignore();
        return;
    }
    UnloadForms(this);
    StorePlace();
    Unload();
    m_parts.run.QuitRequested = true;
}

/// Whether the window may go.
bool frmMain::QueryUnload(UnloadMode mode)
{
    if (m_parts.run.QuitRequested)
        return true;
    bool mayGo = mode == UnloadMode::System;
    if (!mayGo) {
        const QScopedValueRollback<bool> asking(m_asking, true);
        mayGo = AskSaveChanges() || m_unasked;
    }
    m_parts.run.QuitRequested = mayGo;
    return mayGo;
}

void frmMain::UnloadForms(const QWidget *except)
{
    const QWidgetList forms = QApplication::topLevelWidgets();
    for (auto form = forms.rbegin(); form != forms.rend(); ++form) {
        if (*form == except)
            continue;
        (*form)->close(); // a message box takes its escape button, which to reject it would not
        auto *dialog = qobject_cast<QDialog *>(*form);
        if (dialog && dialog->isVisible())
            dialog->reject();
    }
}
