// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "frmTraffic.h"

#include "TelegramBook.h"
#include "TelegramDetails.h"
#include "TelegramDump.h"
#include "TelegramHeader.h"
#include "TelegramList.h"
#include "WindowSettings.h"

#include <QActionGroup>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QLabel>
#include <QMenuBar>
#include <QScreen>
#include <QSplitter>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace
{

constexpr QSize UsualSize(980, 640);
constexpr int UsualDetails = 130; ///< height
/// A window that would show less of its top edge than this is brought back.
constexpr int LeastVisible = 40;

constexpr std::array<const char *, 3> MenuCaptions = {"&Capture", "&Edit", "&View"};
constexpr std::array<const char *, 3> MenuNames = {"mnuTrafficCapture", "mnuTrafficEdit",
                                                   "mnuTrafficView"};

constexpr std::array<const char *, 3> BaseCaptions = {
    "Times After the Row &Before", "Times After the Row Before of the &Same Direction",
    "Times After &This Row"};

QLabel *PlainLabel(const char *name)
{
    auto *label = new QLabel;
    label->setObjectName(QString::fromLatin1(name));
    label->setTextFormat(Qt::PlainText);
    return label;
}

} // namespace

frmTraffic::frmTraffic(const TrafficWindowParts &parts)
    : m_parts(parts),
      m_menuBar(new QMenuBar),
      m_bars(new QVBoxLayout),
      m_foot(new QVBoxLayout),
      m_splitter(new QSplitter(Qt::Vertical)),
      lstTelegrams(new TelegramList),
      m_details(new TelegramDetails)
{
    setObjectName(QStringLiteral("frmTraffic"));
    setWindowTitle(QStringLiteral("Traffic"));
    setWindowIcon(QGuiApplication::windowIcon());
    lstTelegrams->setObjectName(QStringLiteral("lstTelegrams"));
    lstTelegrams->setAccessibleName(QStringLiteral("Telegrams"));
    lstTelegrams->setContextMenuPolicy(Qt::ActionsContextMenu);
    lstTelegrams->SetColours(parts.display);
    lstTelegrams->Header().SetWidths(parts.settings.widths);
    m_splitter->setChildrenCollapsible(false);
    m_splitter->addWidget(lstTelegrams);
    m_splitter->addWidget(m_details);
    m_details->Dump().SetColours(parts.display);
    m_splitter->setStretchFactor(0, 1);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 4);
    column->setMenuBar(m_menuBar);
    column->addLayout(m_bars);
    column->addWidget(m_splitter, 1);
    MakeStatus();
    column->addLayout(m_foot);
    MakeMenus();
    RestorePlace();
    connect(lstTelegrams, &TelegramList::CurrentChanged, this, &frmTraffic::ShowDetails);
    connect(lstTelegrams, &TelegramList::DetailsWanted, &m_details->Dump(),
            qOverload<>(&QWidget::setFocus));
    connect(&m_details->Dump(), &TelegramDump::Left, lstTelegrams, qOverload<>(&QWidget::setFocus));
    lstTelegrams->Show(&parts.book);
    lstTelegrams->setFocus();
}

frmTraffic::~frmTraffic() = default;

void frmTraffic::MakeMenus()
{
    m_menuBar->setNativeMenuBar(false);
    for (size_t menu = 0; menu < m_menus.size(); ++menu) {
        m_menus[menu] = m_menuBar->addMenu(QString::fromLatin1(MenuCaptions[menu]));
        m_menus[menu]->setObjectName(QString::fromLatin1(MenuNames[menu]));
    }
    QMenu &view = MenuOf(Menu::View);
    auto *bases = new QActionGroup(this);
    for (int base = 0; base < int(BaseCaptions.size()); ++base) {
        QAction *action = view.addAction(QString::fromLatin1(BaseCaptions[size_t(base)]));
        action->setCheckable(true);
        action->setChecked(base == m_parts.settings.CountsFrom);
        bases->addAction(action);
        connect(action, &QAction::triggered, this, [this, base] {
            lstTelegrams->SetBase(TelegramBase(base));
            m_parts.settings.CountsFrom = base;
        });
    }
    view.addSeparator();
    QMenu *columns = view.addMenu(QStringLiteral("&Columns"));
    columns->addActions(lstTelegrams->Header().Columns());
}

void frmTraffic::MakeStatus()
{
    lblShown = PlainLabel("lblShown");
    lblChosen = PlainLabel("lblChosen");
    lblTimes = PlainLabel("lblTimes");
    cmdFollow = new QToolButton;
    cmdFollow->setObjectName(QStringLiteral("cmdFollow"));
    cmdFollow->setText(QStringLiteral("Follow"));
    cmdFollow->setCheckable(true);
    cmdFollow->setChecked(true);
    connect(cmdFollow, &QToolButton::clicked, lstTelegrams, &TelegramList::SetFollows);
    connect(lstTelegrams, &TelegramList::FollowsChanged, cmdFollow, &QToolButton::setChecked);
    auto *line = new QHBoxLayout;
    line->setContentsMargins(6, 0, 6, 0);
    line->addWidget(lblShown);
    line->addStretch();
    line->addWidget(lblChosen);
    line->addStretch();
    line->addWidget(lblTimes);
    line->addWidget(cmdFollow);
    layout()->addItem(line);
}

void frmTraffic::ShowDetails(qint64 row)
{
    if (const Telegram *telegram = row < 0 ? nullptr : m_parts.book.Row(row))
        m_details->Show(*telegram, lstTelegrams->Ports(),
                        lstTelegrams->RemarkOf ? lstTelegrams->RemarkOf(*telegram) : QString());
}

void frmTraffic::AddBar(QWidget &bar)
{
    m_bars->addWidget(&bar);
}

void frmTraffic::SetFoot(QWidget &foot)
{
    m_foot->addWidget(&foot);
}

void frmTraffic::RestorePlace()
{
    const TrafficWindowSettings &place = m_parts.settings;
    const QRect free = QGuiApplication::primaryScreen()->availableGeometry();
    const int details = place.DetailsHeight > 0 ? place.DetailsHeight : UsualDetails;
    m_splitter->setSizes({UsualSize.height(), details});
    const QSize stored(place.Width, place.Height);
    resize((place.Width > 0 ? stored : UsualSize).boundedTo(free.size() - QSize(20, 40)));
    if (place.Width <= 0)
        return;
    const QRect topEdge(place.Left, place.Top, width(), LeastVisible);
    const QList<QScreen *> screens = QGuiApplication::screens();
    const bool shows = std::any_of(screens.begin(), screens.end(), [&](const QScreen *each) {
        const QRect seen = each->availableGeometry() & topEdge;
        return seen.width() >= LeastVisible && seen.height() >= LeastVisible / 2;
    });
    if (shows)
        move(place.Left, place.Top);
}

void frmTraffic::StorePlace()
{
    TrafficWindowSettings &place = m_parts.settings;
    const QRect frame = isMaximized() || isMinimized() ? normalGeometry() : QRect(pos(), size());
    place.Left = frame.x();
    place.Top = frame.y();
    place.Width = frame.width();
    place.Height = frame.height();
    place.DetailsHeight = m_splitter->sizes().value(1);
    place.widths = lstTelegrams->Header().StoredWidths();
}

void frmTraffic::closeEvent(QCloseEvent *event)
{
    StorePlace();
    QWidget::closeEvent(event);
}
