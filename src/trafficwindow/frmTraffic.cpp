// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "frmTraffic.h"

#include "Checksum.h"
#include "Icons.h"
#include "SequenceText.h"
#include "TelegramBook.h"
#include "TelegramDetails.h"
#include "TelegramDump.h"
#include "TelegramHeader.h"
#include "TelegramList.h"
#include "TrafficStatus.h"
#include "WindowPlace.h"
#include "WindowSettings.h"
#include "frmTelegramRule.h"

#include <QActionGroup>
#include <QCloseEvent>
#include <QMenuBar>
#include <QSplitter>
#include <QVBoxLayout>

#include <algorithm>
#include <limits>
#include <utility>

namespace
{

constexpr QSize UsualSize(980, 640);
constexpr int UsualDetails = 130; ///< height
constexpr qint64 Micro = 1'000;

constexpr std::array<const char *, 5> MenuCaptions = {"&Capture", "&Edit", "&Search", "&Bookmarks",
                                                      "&View"};
constexpr std::array<const char *, 5> MenuNames = {
    "mnuTrafficCapture", "mnuTrafficEdit", "mnuTrafficSearch", "mnuTrafficMarks", "mnuTrafficView"};

constexpr std::array<const char *, 3> BaseCaptions = {
    "Times After the Row &Before", "Times After the Row Before of the &Same Direction",
    "Times After &This Row"};

} // namespace

frmTraffic::frmTraffic(const TrafficWindowParts &parts)
    : m_parts(parts),
      m_menuBar(new QMenuBar),
      m_bars(new QVBoxLayout),
      m_foot(new QVBoxLayout),
      m_splitter(new QSplitter(Qt::Vertical)),
      lstTelegrams(new TelegramList),
      m_details(new TelegramDetails),
      m_status(new TrafficStatus(parts.book, *lstTelegrams))
{
    setObjectName(QStringLiteral("frmTraffic"));
    setWindowTitle(QStringLiteral("Traffic"));
    setWindowIcon(Icons::Named("serimonde"));
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
    column->addWidget(m_status);
    column->addLayout(m_foot);
    MakeMenus();
    RestorePlace();
    ConnectList();
    SetRule(StoredRule());
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
            m_parts.settings.CountsFrom = base < int(TelegramBase::MarkedRow) ? base : 0;
        });
    }
    lstTelegrams->SetBase(TelegramBase(std::clamp(m_parts.settings.CountsFrom, 0, 1)));
    view.addSeparator();
    QAction *rules = view.addAction(QStringLiteral("Where Telegrams &End..."));
    rules->setObjectName(QStringLiteral("mnuTrafficRules"));
    connect(rules, &QAction::triggered, this, &frmTraffic::ChooseRule);
    QMenu *columns = view.addMenu(QStringLiteral("&Columns"));
    columns->addActions(lstTelegrams->Header().Columns());
    view.addSeparator();
    QAction *main = view.addAction(QStringLiteral("&Main Window"));
    main->setObjectName(QStringLiteral("mnuTrafficMain"));
    main->setShortcut(Qt::Key_F6); // which leads here from there
    connect(main, &QAction::triggered, this, &frmTraffic::MainWindowWanted);
}

void frmTraffic::ConnectList()
{
    connect(lstTelegrams, &TelegramList::CurrentChanged, this, &frmTraffic::ShowDetails);
    connect(lstTelegrams, &TelegramList::DetailsWanted, &m_details->Dump(),
            qOverload<>(&QWidget::setFocus));
    connect(&m_details->Dump(), &TelegramDump::Left, lstTelegrams, qOverload<>(&QWidget::setFocus));
    connect(&m_parts.book, &TelegramBook::Found, this, [this](qint64 row) {
        if (std::exchange(m_seeks, false))
            lstTelegrams->GoTo(row);
    });
    connect(m_status, &TrafficStatus::Settled, this, &frmTraffic::SeekPlace);
    connect(m_status, &TrafficStatus::RuleWanted, this, &frmTraffic::ChooseRule);
}

void frmTraffic::ShowOrigin(const TrafficOrigin &origin)
{
    m_origin = origin;
    m_status->ShowSource(origin.what);
    m_status->ShowUncertainty(origin.uncertainty);
    Q_EMIT OriginChanged();
}

TelegramRule frmTraffic::StoredRule() const
{
    const TrafficWindowSettings &stored = m_parts.settings;
    TelegramRule rule;
    rule.automaticGap = stored.GapMicroseconds < 0;
    rule.gap = std::max<qint64>(0, stored.GapMicroseconds * Micro);
    rule.endMark = SequenceText::Parse(stored.EndMark, Representation::Hex)
                       .bytes.left(TelegramRule::LongestEndMark);
    rule.fixedLength = stored.FixedLength;
    rule.endsWithDetection = stored.EndsWithDetection;
    ChecksumRule checksum;
    if (Checksum::Restore(stored.Checksum, checksum))
        rule.checksum = checksum;
    return rule;
}

void frmTraffic::StoreRule(const TelegramRule &rule)
{
    constexpr qint64 Longest = std::numeric_limits<qint32>::max();
    TrafficWindowSettings &stored = m_parts.settings;
    stored.GapMicroseconds = rule.automaticGap ? -1 : qint32(std::min(rule.gap / Micro, Longest));
    stored.EndMark = QString::fromLatin1(SequenceText::Of(rule.endMark, Representation::Hex));
    stored.FixedLength = rule.fixedLength;
    stored.EndsWithDetection = rule.endsWithDetection;
    stored.Checksum = rule.checksum ? Checksum::Stored(*rule.checksum) : QString();
}

void frmTraffic::ChooseRule()
{
    frmTelegramRule dialog(m_parts.book.Rule(), this);
    if (dialog.exec() != QDialog::Accepted || dialog.Rule() == m_parts.book.Rule())
        return;
    SetRule(dialog.Rule());
    StoreRule(dialog.Rule());
}

void frmTraffic::SetRule(const TelegramRule &rule)
{
    m_status->ShowRule(frmTelegramRule::Summary(rule));
    RememberPlace();
    m_parts.book.SetRule(rule);
}

/// Rows will have other numbers; what is looked at then comes back by its time.
void frmTraffic::RememberPlace()
{
    m_seeks = false;
    m_looksAt.reset();
    if (lstTelegrams->Follows())
        return;
    const qint64 row = lstTelegrams->Current() >= 0
                           ? lstTelegrams->Current()
                           : m_parts.book.First() + lstTelegrams->SeenRows().first;
    if (const Telegram *telegram = m_parts.book.Row(row))
        m_looksAt = telegram->wall;
}

void frmTraffic::SeekPlace()
{
    if (!m_looksAt)
        return;
    m_seeks = true;
    m_parts.book.FindTime(*std::exchange(m_looksAt, std::nullopt));
}

void frmTraffic::ShowDetails(qint64 row)
{
    if (row < 0)
        m_details->Clear();
    else if (const Telegram *telegram = m_parts.book.Row(row))
        m_details->Show(*telegram, lstTelegrams->NoteFor(*telegram));
}

void frmTraffic::AddBar(QWidget &bar, bool first)
{
    m_bars->insertWidget(first ? 0 : -1, &bar);
}

void frmTraffic::SetFoot(QWidget &foot)
{
    m_foot->addWidget(&foot);
    QMenu &view = MenuOf(Menu::View);
    QAction *go = view.addAction(QStringLiteral("Send &Line"));
    go->setObjectName(QStringLiteral("mnuTrafficSendLine"));
    go->setShortcut(Qt::Key_F4);
    connect(go, &QAction::triggered, &foot, qOverload<>(&QWidget::setFocus));
}

void frmTraffic::RestorePlace()
{
    const TrafficWindowSettings &place = m_parts.settings;
    const int details = place.DetailsHeight > 0 ? place.DetailsHeight : UsualDetails;
    m_splitter->setSizes({UsualSize.height(), details});
    WindowPlace::Restore(*this, {place.Left, place.Top, place.Width, place.Height}, UsualSize);
}

void frmTraffic::StorePlace()
{
    TrafficWindowSettings &place = m_parts.settings;
    const QRect frame = WindowPlace::Of(*this);
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
