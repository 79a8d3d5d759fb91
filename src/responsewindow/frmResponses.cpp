// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "frmResponses.h"

#include "HistogramPlot.h"
#include "NamedButton.h"
#include "PointsPlot.h"
#include "ResponsesModel.h"
#include "TelegramSource.h"
#include "TelegramText.h"
#include "WindowPlace.h"
#include "WindowSettings.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QDateTime>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QShortcut>
#include <QSortFilterProxyModel>
#include <QSpinBox>
#include <QSplitter>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>
#include <array>
#include <utility>

namespace
{

constexpr QSize UsualSize(1020, 600);
/// As wide as what usually stands in a column; the first one takes what is free as well.
constexpr std::array<const char *, ResponsesModel::Columns> WidestTexts = {
    "channel 1 speaks, channel 2 answers",
    "received, channel 2",
    "100,000",
    "Answered",
    "Unanswered",
    "10.000000 s",
    "10.000000 s",
    "10.000000 s",
    "10.000000 s",
    "10.000000 s"};
constexpr qint64 OfMs = 1'000'000;

} // namespace

frmResponses::frmResponses(ResponseWindowSettings &settings, QWidget *parent)
    : QWidget(parent, Qt::Window),
      m_settings(settings),
      m_model(new ResponsesModel(this)),
      m_sorted(new QSortFilterProxyModel(this)),
      m_splitter(new QSplitter(Qt::Vertical)),
      lstResponses(new QTreeView),
      m_points(new PointsPlot),
      m_histogram(new HistogramPlot)
{
    setObjectName(QStringLiteral("frmResponses"));
    setWindowTitle(QStringLiteral("Response Times"));
    MakeList();
    auto *plots = new QSplitter(Qt::Horizontal);
    plots->setChildrenCollapsible(false);
    m_points->setObjectName(QStringLiteral("pltPoints"));
    m_histogram->setObjectName(QStringLiteral("pltHistogram"));
    for (ResponsePlot *plot :
         {static_cast<ResponsePlot *>(m_points), static_cast<ResponsePlot *>(m_histogram)}) {
        plots->addWidget(plot);
        connect(plot, &ResponsePlot::Chosen, this, &frmResponses::RowWanted);
    }
    m_splitter->setChildrenCollapsible(false);
    m_splitter->addWidget(lstResponses);
    m_splitter->addWidget(plots);
    m_splitter->setStretchFactor(1, 1);
    auto *column = new QVBoxLayout(this);
    column->addWidget(m_splitter, 1);
    auto *foot = new QHBoxLayout;
    MakeFoot(*foot);
    auto *buttons = new QHBoxLayout;
    MakeButtons(*buttons);
    column->addLayout(foot);
    column->addLayout(buttons);
    connect(&m_book, &ResponseBook::Changed, this, &frmResponses::ShowReport);
    m_splitter->setSizes({UsualSize.height() * 2 / 5, UsualSize.height() * 3 / 5});
    WindowPlace::Restore(
        *this, {m_settings.Left, m_settings.Top, m_settings.Width, m_settings.Height}, UsualSize);
    ShowReport();
}

frmResponses::~frmResponses() = default;

void frmResponses::MakeList()
{
    m_sorted->setSourceModel(m_model);
    m_sorted->setSortRole(ResponsesModel::NumberRole);
    m_sorted->setSortCaseSensitivity(Qt::CaseInsensitive);
    lstResponses->setObjectName(QStringLiteral("lstResponses"));
    lstResponses->setAccessibleName(QStringLiteral("Response Times"));
    lstResponses->setModel(m_sorted);
    lstResponses->setRootIsDecorated(false);
    lstResponses->setUniformRowHeights(true);
    lstResponses->setAllColumnsShowFocus(true);
    lstResponses->setAlternatingRowColors(true);
    lstResponses->setSortingEnabled(true);
    lstResponses->sortByColumn(-1, Qt::AscendingOrder); // the order of the model, at first
    QHeaderView &header = *lstResponses->header();
    header.setStretchLastSection(false);
    for (int column = 0; column < ResponsesModel::Columns; ++column)
        header.resizeSection(column, UsualWidth(column));
    lstResponses->viewport()->installEventFilter(this);
    connect(lstResponses->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &frmResponses::Choose);
}

int frmResponses::UsualWidth(int column) const
{
    return fontMetrics().height() * 2 / 3 +
           fontMetrics().horizontalAdvance(QString::fromLatin1(WidestTexts[size_t(column)]));
}

void frmResponses::MakeFoot(QBoxLayout &foot)
{
    auto *caption = new QLabel(QStringLiteral("Answers come &within"));
    spnLimit = new QSpinBox;
    spnLimit->setObjectName(QStringLiteral("spnLimit"));
    spnLimit->setRange(1, int(ResponseLimits::LongestAnswer / OfMs));
    spnLimit->setValue(m_settings.LimitMilliseconds);
    spnLimit->setSuffix(QStringLiteral(" ms"));
    spnLimit->setKeyboardTracking(false);
    spnLimit->setAccelerated(true);
    spnLimit->setToolTip(QStringLiteral("What comes later, or not at all, counts as unanswered"));
    caption->setBuddy(spnLimit);
    connect(spnLimit, qOverload<int>(&QSpinBox::valueChanged), this, &frmResponses::TakeLimit);
    chkLogarithmic = new QCheckBox(QStringLiteral("&Logarithmic times"));
    chkLogarithmic->setObjectName(QStringLiteral("chkLogarithmic"));
    chkLogarithmic->setChecked(m_settings.Logarithmic);
    connect(chkLogarithmic, &QCheckBox::toggled, this, [this](bool is) {
        m_settings.Logarithmic = is;
        ShowPlots();
    });
    lblState = new QLabel;
    lblState->setObjectName(QStringLiteral("lblState"));
    lblState->setTextFormat(Qt::PlainText);
    lblState->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    lblState->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    foot.addWidget(caption);
    foot.addWidget(spnLimit);
    foot.addWidget(chkLogarithmic);
    foot.addWidget(lblState, 1);
}

void frmResponses::MakeButtons(QBoxLayout &buttons)
{
    cmdReset = NamedButton("cmdReset", "&Reset");
    cmdCountAll = NamedButton("cmdCountAll", "Count &All");
    cmdSaveTable = NamedButton("cmdSaveTable", "&Save Table...");
    cmdSaveTimes = NamedButton("cmdSaveTimes", "Save All &Times...");
    QPushButton *cmdClose = NamedButton("cmdClose", "Close");
    cmdReset->setToolTip(QStringLiteral("Counts from now on"));
    cmdCountAll->setToolTip(QStringLiteral("Counts what was before the reset as well, as far as "
                                           "it is in the record"));
    cmdSaveTable->setToolTip(QStringLiteral("As comma-separated values (CSV)"));
    cmdSaveTimes->setToolTip(QStringLiteral("Every single time, as comma-separated values (CSV)"));
    connect(cmdReset, &QPushButton::clicked, this,
            [this] { CountFrom(QDateTime::currentMSecsSinceEpoch() * OfMs); });
    connect(cmdCountAll, &QPushButton::clicked, this, [this] { CountFrom(0); });
    connect(cmdSaveTable, &QPushButton::clicked, this, &frmResponses::TableWanted);
    connect(cmdSaveTimes, &QPushButton::clicked, this, &frmResponses::TimesWanted);
    connect(cmdClose, &QPushButton::clicked, this, &QWidget::close);
    for (QPushButton *button : {cmdReset, cmdCountAll, cmdSaveTable, cmdSaveTimes, cmdClose}) {
        if (button == cmdSaveTable || button == cmdClose)
            buttons.addStretch();
        buttons.addWidget(button);
    }
    auto *escape = new QShortcut(QKeySequence(Qt::Key_Escape), this);
    connect(escape, &QShortcut::activated, this, &QWidget::close);
}

void frmResponses::Count(std::shared_ptr<const TelegramSource> source, const TelegramRule &rule)
{
    const bool isSame = source == m_book.Question().source;
    const qint64 since = isSame ? m_book.Question().limits.since : 0;
    m_isNew = m_isNew || !isSame;
    m_book.Show({std::move(source), rule, {spnLimit->value() * OfMs, since}});
}

void frmResponses::CountFrom(qint64 since)
{
    ResponseQuestion question = m_book.Question();
    question.limits.since = since;
    m_book.Show(question);
}

void frmResponses::TakeLimit()
{
    m_settings.LimitMilliseconds = spnLimit->value();
    ResponseQuestion question = m_book.Question();
    question.limits.answer = spnLimit->value() * OfMs;
    m_book.Show(question);
}

void frmResponses::ShowOrigin(const QString &text)
{
    m_origin = text;
    ShowState();
}

void frmResponses::ShowReport()
{
    const ResponseBook::Report &report = m_book.Told();
    // While the same is counted anew, what was counted before stays to be seen.
    if (m_isNew || report.isWhole)
        m_model->Show(report.rows, report.twoChannels);
    m_isNew = m_isNew && !report.isWhole;
    ChooseAgain();
    ShowPlots();
    ShowState();
}

void frmResponses::ShowPlots()
{
    const std::optional<ResponsePicture> &picture = m_book.Told().picture;
    if (!picture && !m_book.Told().isWhole && m_model->rowCount() > 0)
        return; // it comes
    const auto shared = picture ? std::make_shared<const ResponsePicture>(*picture) : nullptr;
    for (ResponsePlot *plot :
         {static_cast<ResponsePlot *>(m_points), static_cast<ResponsePlot *>(m_histogram)})
        plot->Show(shared, chkLogarithmic->isChecked(), m_book.Question().limits.answer);
}

void frmResponses::ShowState()
{
    const ResponseBook::Report &report = m_book.Told();
    const ResponseQuestion &question = m_book.Question();
    const bool grows = question.source && question.source->Grows();
    const bool isPart = question.limits.since > 0;
    const bool some = !report.rows.isEmpty();
    QString state;
    if (question.source && !report.isWhole)
        state = QStringLiteral("Counting, %1 %")
                    .arg(report.whole > 0 ? 100 * report.read / report.whole : 0);
    else if (isPart)
        state = QStringLiteral("Since ") +
                TelegramText::Time(question.limits.since).section(u' ', 1).chopped(4);
    else if (!some)
        state = QStringLiteral("Nothing was sent or detected");
    const QString whole =
        state.isEmpty() ? m_origin : state + QStringLiteral(" \u00B7 ") + m_origin;
    lblState->setText(whole);
    lblState->setToolTip(whole);
    cmdReset->setEnabled(grows);
    cmdCountAll->setEnabled(isPart);
    cmdSaveTable->setEnabled(some);
    cmdSaveTimes->setEnabled(some);
}

void frmResponses::Choose()
{
    const QModelIndex at = m_sorted->mapToSource(lstResponses->currentIndex());
    if (!at.isValid())
        return;
    m_chosen = m_model->Rows()[at.row()].key;
    m_book.Choose(m_chosen);
}

/// The row that was chosen before all were others, else the first one.
void frmResponses::ChooseAgain()
{
    if (lstResponses->currentIndex().isValid() || m_sorted->rowCount() == 0)
        return;
    const int row = m_chosen ? m_model->RowOf(*m_chosen) : -1;
    lstResponses->setCurrentIndex(row < 0 ? m_sorted->index(0, 0)
                                          : m_sorted->mapFromSource(m_model->index(row, 0)));
}

void frmResponses::StorePlace()
{
    const QRect place = WindowPlace::Of(*this);
    m_settings.Left = place.x();
    m_settings.Top = place.y();
    m_settings.Width = place.width();
    m_settings.Height = place.height();
}

/// What the columns leave free belongs to the first one.
bool frmResponses::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize) {
        QHeaderView &header = *lstResponses->header();
        const int others = header.length() - header.sectionSize(ResponsesModel::Sequence);
        header.resizeSection(ResponsesModel::Sequence,
                             std::max(UsualWidth(ResponsesModel::Sequence),
                                      lstResponses->viewport()->width() - others));
    }
    return QWidget::eventFilter(watched, event);
}

void frmResponses::showEvent(QShowEvent *event)
{
    m_book.Follow(true);
    QWidget::showEvent(event);
}

void frmResponses::hideEvent(QHideEvent *event)
{
    m_book.Follow(false);
    QWidget::hideEvent(event);
}

void frmResponses::closeEvent(QCloseEvent *event)
{
    StorePlace();
    QWidget::closeEvent(event);
}
