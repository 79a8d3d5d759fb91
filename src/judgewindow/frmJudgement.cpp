// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "frmJudgement.h"

#include "NamedButton.h"
#include "PlaceRows.h"
#include "PlainText.h"
#include "RowsModel.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QLabel>
#include <QPromise>
#include <QScreen>
#include <QSplitter>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>
#include <thread>
#include <utility>

namespace
{

constexpr QSize UsualSize(900, 660);
constexpr int RowsAtLeast = 3;      ///< that are seen of each list
constexpr int MostLetters = 40;     ///< that a column is wide at first
constexpr int RowsThatMeasure = 50; ///< for the width of a column

QString SequenceText(const JudgedSequence &sequence, int column)
{
    switch (column) {
    case 0:
        return PlaceRows::NameText(sequence.name);
    case 1:
        return PlaceRows::FiredText(sequence);
    case 2:
        return QString::number(sequence.nearMisses);
    case 3:
        return PlaceRows::AnswerText(sequence);
    default:
        return PlaceRows::HexText(sequence.bytes);
    }
}

QString PlaceText(const Judgement &judgement, int row, int column)
{
    const JudgedPlace &place = judgement.places[size_t(row)];
    const JudgedSequence &sequence = judgement.sequences[size_t(place.sequence)];
    const bool fired = place.kind == JudgedPlace::Kind::Fired;
    switch (column) {
    case 0:
        return PlaceRows::TimeText(place.Spot().time);
    case 1:
        return QString::number(place.Spot().packet);
    case 2:
        return PlaceRows::ChannelText(judgement, place.channel);
    case 3:
        return PlaceRows::NameText(sequence.name);
    case 4:
        return PlaceRows::WhatText(place);
    case 5:
        return PlaceRows::ExpectedText(judgement, place);
    case 6:
        return fired ? PlaceRows::AnswerText(sequence) : PlaceRows::FoundText(judgement, place);
    default:
        return QString::number(place.Spot().place);
    }
}

QString TelegramText(const Judgement &judgement, const PlaceTelegram &telegram, int column)
{
    switch (column) {
    case 0:
        return telegram.isHere ? QStringLiteral("here") : QString();
    case 1:
        return QString::number(telegram.number);
    case 2:
        return PlaceRows::TimeText(telegram.time);
    case 3:
        return PlaceRows::ChannelText(judgement, telegram.channel);
    case 4:
        return telegram.what;
    case 5:
        return telegram.hex;
    default:
        return telegram.text;
    }
}

RowsModel::Look MarkedIf(bool marked)
{
    return marked ? RowsModel::Look::Marked : RowsModel::Look::Plain;
}

void FitColumns(QTreeView &list)
{
    const int most = list.fontMetrics().averageCharWidth() * MostLetters;
    for (int column = 0; column + 1 < list.model()->columnCount(); ++column) {
        list.resizeColumnToContents(column);
        list.setColumnWidth(column, std::min(most, list.columnWidth(column)));
    }
}

} // namespace

frmJudgement::frmJudgement(JudgementParts parts, QWidget *parent)
    : QDialog(parent), m_parts(std::move(parts))
{
    setObjectName(QStringLiteral("frmJudgement"));
    setWindowTitle(QStringLiteral("Judgement of ") + m_parts.subjects.capture);
    MakeModels();
    auto *lblSummary = new QLabel(JudgementText::Summary(*m_parts.judgement).join(u'\n'));
    lblSummary->setObjectName(QStringLiteral("lblSummary"));
    lblSummary->setTextFormat(Qt::PlainText);
    lblSummary->setWordWrap(true);
    lblSummary->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    auto *splitter = new QSplitter(Qt::Vertical);
    splitter->setChildrenCollapsible(false);
    lstSequences = MakeList({"lstSequences", "&Receive sequences", m_sequences}, *splitter);
    lstPlaces = MakeList({"lstPlaces", "&Places", m_places}, *splitter);
    lstTelegrams =
        MakeList({"lstTelegrams", "&Telegrams around the place", m_telegrams}, *splitter);
    lblTelegrams = splitter->widget(2)->findChild<QLabel *>();
    auto *column = new QVBoxLayout(this);
    column->addWidget(lblSummary);
    column->addWidget(splitter, 1);
    column->addLayout(MakeFoot());
    resize(UsualSize.boundedTo(screen()->availableSize() - QSize(20, 40)));

    connect(lstSequences, &QTreeView::activated, this,
            [this](const QModelIndex &at) { GoToFirstPlace(at.row()); });
    connect(lstPlaces->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex &at) { ChoosePlace(at.row()); });
    connect(&m_watcher, &QFutureWatcherBase::finished, this, &frmJudgement::ShowTelegrams);
    const auto &places = m_parts.judgement->places;
    const auto first = std::find_if(places.begin(), places.end(), [](const JudgedPlace &place) {
        return place.kind != JudgedPlace::Kind::Fired;
    });
    if (!places.empty())
        lstPlaces->setCurrentIndex(
            m_places->index(first == places.end() ? 0 : int(first - places.begin()), 0));
    lstSequences->setFocus();
}

void frmJudgement::MakeModels()
{
    const std::shared_ptr<const Judgement> judgement = m_parts.judgement;
    m_sequences = new RowsModel(
        {{"Name", "Fired", "Near misses", "Would answer", "Sequence"},
         {4},
         [judgement](int row, int column) {
             return SequenceText(judgement->sequences[size_t(row)], column);
         },
         [judgement](int row) { return MarkedIf(judgement->sequences[size_t(row)].NeverFired()); }},
        this);
    m_places = new RowsModel(
        {{"Time", "Packet", "Channel", "Receive sequence", "What", "Sequence", "Found, or answer",
          "At byte"},
         {5, 6},
         [judgement](int row, int column) { return PlaceText(*judgement, row, column); },
         [judgement](int row) {
             return MarkedIf(judgement->places[size_t(row)].kind != JudgedPlace::Kind::Fired);
         }},
        this);
    m_telegrams =
        new RowsModel({{"Place", "Packet", "Time", "Channel", "What", "HEX", "Text"},
                       {5, 6},
                       [this](int row, int column) {
                           return TelegramText(*m_parts.judgement, m_around.telegrams[row], column);
                       },
                       [this](int row) { return MarkedIf(m_around.telegrams[row].isHere); }},
                      this);
    m_sequences->SetCount(int(judgement->sequences.size()));
    m_places->SetCount(int(judgement->places.size()));
}

/// A list below its caption, whose key leads to it.
QTreeView *frmJudgement::MakeList(const List &list, QSplitter &splitter)
{
    auto *view = new QTreeView;
    view->setObjectName(QString::fromLatin1(list.name));
    view->setAccessibleName(QString::fromLatin1(list.caption).remove(u'&'));
    view->setModel(list.model);
    view->setRootIsDecorated(false);
    view->setUniformRowHeights(true);
    view->setAllColumnsShowFocus(true);
    view->header()->setResizeContentsPrecision(RowsThatMeasure);
    view->setMinimumHeight(view->fontMetrics().height() * (RowsAtLeast + 2));
    FitColumns(*view);
    auto *copy = new QAction(QStringLiteral("&Copy Row"), view);
    copy->setShortcut(QKeySequence::Copy);
    copy->setShortcutContext(Qt::WidgetShortcut);
    connect(copy, &QAction::triggered, view, [view, model = list.model] {
        if (view->currentIndex().isValid())
            QApplication::clipboard()->setText(model->RowText(view->currentIndex().row()));
    });
    view->addAction(copy);
    view->setContextMenuPolicy(Qt::ActionsContextMenu);

    auto *caption = new QLabel(QString::fromLatin1(list.caption));
    caption->setBuddy(view);
    caption->setWordWrap(true);
    auto *page = new QWidget;
    auto *column = new QVBoxLayout(page);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(caption);
    column->addWidget(view, 1);
    splitter.addWidget(page);
    return view;
}

QLayout *frmJudgement::MakeFoot()
{
    QPushButton *cmdSave = NamedButton("cmdSave", "&Save Report...");
    QPushButton *cmdCopy = NamedButton("cmdCopy", "&Copy Report");
    QPushButton *cmdClose = NamedButton("cmdClose", "Close");
    connect(cmdSave, &QPushButton::clicked, this, [this] { m_parts.SaveReport(Report()); });
    connect(cmdCopy, &QPushButton::clicked, this,
            [this] { QApplication::clipboard()->setText(Report()); });
    connect(cmdClose, &QPushButton::clicked, this, &QDialog::reject);
    auto *foot = new QHBoxLayout;
    foot->addStretch();
    for (QPushButton *button : {cmdSave, cmdCopy, cmdClose}) {
        button->setAutoDefault(false); // Enter belongs to the lists
        foot->addWidget(button);
    }
    return foot;
}

QString frmJudgement::Report() const
{
    return JudgementText::Of(*m_parts.judgement, m_parts.subjects);
}

void frmJudgement::GoToFirstPlace(int sequence)
{
    const auto &places = m_parts.judgement->places;
    const auto first =
        std::find_if(places.begin(), places.end(),
                     [sequence](const JudgedPlace &place) { return place.sequence == sequence; });
    if (first == places.end())
        return;
    lstPlaces->setCurrentIndex(m_places->index(int(first - places.begin()), 0));
    lstPlaces->setFocus();
}

void frmJudgement::ChoosePlace(int row)
{
    m_chosen = row;
    if (m_reading < 0)
        ReadTelegrams();
}

/// The thread keeps what it needs; while it reads, only the place that is chosen last is waited
/// for.
void frmJudgement::ReadTelegrams()
{
    m_reading = m_chosen;
    if (m_reading < 0)
        return;
    const auto promise = std::make_shared<QPromise<PlaceTelegrams>>();
    m_watcher.setFuture(promise->future());
    std::thread([promise, judgement = m_parts.judgement, file = m_parts.file, row = m_reading] {
        promise->start();
        promise->addResult(PlaceTelegrams::Around(judgement->places[size_t(row)], *file));
        promise->finish();
    }).detach();
}

/// Says of a near miss what it lacks, however narrow the list of places is.
QString frmJudgement::TelegramsCaption() const
{
    QString caption = QStringLiteral("&Telegrams around the place");
    const Judgement &judgement = *m_parts.judgement;
    const JudgedPlace &place = judgement.places[size_t(m_reading)];
    if (m_around.result.Failed())
        caption += QStringLiteral(": ") + PlainText(m_around.result.Cause());
    else if (place.kind != JudgedPlace::Kind::Fired)
        caption += QStringLiteral(": expected %1, found %2")
                       .arg(PlaceRows::ExpectedText(judgement, place),
                            PlaceRows::FoundText(judgement, place));
    return caption;
}

void frmJudgement::ShowTelegrams()
{
    m_telegrams->SetCount(0);
    m_around = m_watcher.result();
    m_telegrams->SetCount(int(m_around.telegrams.size()));
    lblTelegrams->setText(TelegramsCaption());
    const auto here = std::find_if(m_around.telegrams.begin(), m_around.telegrams.end(),
                                   [](const PlaceTelegram &telegram) { return telegram.isHere; });
    if (here != m_around.telegrams.end()) {
        const QModelIndex at = m_telegrams->index(int(here - m_around.telegrams.begin()), 0);
        lstTelegrams->setCurrentIndex(at);
        lstTelegrams->scrollTo(at, QAbstractItemView::PositionAtCenter);
    }
    FitColumns(*lstTelegrams); // by what is seen now
    const int shown = std::exchange(m_reading, -1);
    if (shown != m_chosen)
        ReadTelegrams();
}
