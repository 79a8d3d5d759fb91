// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TrafficStatus.h"

#include "NamedButton.h"
#include "TelegramCells.h"
#include "TelegramList.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QProgressBar>
#include <QToolButton>

#include <array>

namespace
{

constexpr int WorkMilliseconds = 100; ///< between two looks at the work
constexpr int PauseMilliseconds = 60;
constexpr int ProgressSteps = 1000;

constexpr std::array<const char *, 4> Works = {"", "Cutting", "Filtering", "Searching"};

QLabel *PlainLabel(const char *name)
{
    auto *label = new QLabel;
    label->setObjectName(QString::fromLatin1(name));
    label->setTextFormat(Qt::PlainText);
    label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    return label;
}

QToolButton *FlatButton(const char *name)
{
    auto *button = new QToolButton;
    button->setObjectName(QString::fromLatin1(name));
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

/// With separators, as nobody can read seven digits at once.
QString Count(qint64 count)
{
    return QLocale(QLocale::English).toString(count);
}

/// "1 byte", "1,234 bytes"
QString Counted(qint64 count, const char *one)
{
    return Count(count) + u' ' + QString::fromLatin1(one) +
           QString::fromLatin1(count == 1 ? "" : "s");
}

} // namespace

TrafficStatus::TrafficStatus(TelegramBook &book, TelegramList &list, QWidget *parent)
    : QWidget(parent), m_book(book), m_list(list)
{
    auto *first = new QHBoxLayout;
    MakeFirstLine(*first);
    auto *second = new QHBoxLayout;
    MakeSecondLine(*second);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(6, 2, 6, 0);
    column->setSpacing(2);
    column->addLayout(first);
    column->addLayout(second);
    connect(&book, &TelegramRows::Changed, this, &TrafficStatus::ShowCount);
    connect(&book, &TelegramRows::Reset, this, [this] {
        m_settled = false; // work may be done before it is looked at
        ShowCount();
    });
    connect(&book, &TelegramBook::Summed, this, &TrafficStatus::TakeSum);
    connect(&list, &TelegramList::SelectionChanged, &m_pause, qOverload<>(&QTimer::start));
    m_timer.setInterval(WorkMilliseconds);
    connect(&m_timer, &QTimer::timeout, this, &TrafficStatus::ShowWork);
    m_pause.setSingleShot(true);
    m_pause.setInterval(PauseMilliseconds);
    connect(&m_pause, &QTimer::timeout, this, &TrafficStatus::Sum);
    ShowCount();
    ShowWork();
}

void TrafficStatus::showEvent(QShowEvent *event)
{
    m_timer.start();
    QWidget::showEvent(event);
}

void TrafficStatus::hideEvent(QHideEvent *event)
{
    m_timer.stop();
    QWidget::hideEvent(event);
}

void TrafficStatus::MakeFirstLine(QBoxLayout &line)
{
    lblShown = PlainLabel("lblShown");
    lblChosen = PlainLabel("lblChosen");
    cmdRule = FlatButton("cmdRule");
    cmdRule->setToolTip(QStringLiteral("Where telegrams end, and what they are checked for"));
    connect(cmdRule, &QToolButton::clicked, this, &TrafficStatus::RuleWanted);
    cmdFollow = FlatButton("cmdFollow");
    cmdFollow->setText(QStringLiteral("&Follow"));
    cmdFollow->setToolTip(QStringLiteral("Keeps the newest telegram in sight. The key End, or to "
                                         "scroll to the end, does the same."));
    cmdFollow->setCheckable(true);
    cmdFollow->setChecked(m_list.Follows());
    connect(cmdFollow, &QToolButton::clicked, &m_list, &TelegramList::SetFollows);
    connect(&m_list, &TelegramList::FollowsChanged, cmdFollow, &QToolButton::setChecked);
    lblWork = PlainLabel("lblWork");
    lblWork->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    m_progress = new QProgressBar;
    m_progress->setObjectName(QStringLiteral("barWork"));
    m_progress->setMaximumWidth(120);
    m_progress->setMaximumHeight(fontMetrics().height() + 2);
    cmdCancelWork = NamedButton("cmdCancelWork", "Cancel");
    LetNarrow(cmdCancelWork);
    connect(cmdCancelWork, &QPushButton::clicked, &m_book, &TelegramBook::Cancel);
    line.addWidget(lblShown, 2);
    line.addWidget(lblChosen, 3);
    for (QWidget *each : {static_cast<QWidget *>(lblWork), static_cast<QWidget *>(m_progress),
                          static_cast<QWidget *>(cmdCancelWork), static_cast<QWidget *>(cmdRule),
                          static_cast<QWidget *>(cmdFollow)})
        line.addWidget(each);
}

void TrafficStatus::MakeSecondLine(QBoxLayout &line)
{
    lblSource = PlainLabel("lblSource");
    lblTimes = PlainLabel("lblTimes");
    lblTimes->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    line.addWidget(lblSource, 1);
    line.addWidget(lblTimes, 1);
}

void TrafficStatus::ShowSource(const QString &text)
{
    lblSource->setText(text);
    lblSource->setToolTip(text);
}

void TrafficStatus::ShowRule(const QString &text)
{
    cmdRule->setText(text);
}

void TrafficStatus::ShowUncertainty(const QString &text)
{
    lblTimes->setText(text);
    lblTimes->setToolTip(text);
}

void TrafficStatus::ShowCount()
{
    const qint64 shown = m_book.End() - m_book.First();
    const qint64 all = m_book.CountOfAll();
    lblShown->setText(m_book.Filter().IsEmpty()
                          ? Counted(all, "telegram")
                          : QStringLiteral("%1 of %2").arg(Count(shown), Counted(all, "telegram")));
}

void TrafficStatus::ShowWork()
{
    const TelegramBook::Progress work = m_book.Background();
    const bool works = work.work != TelegramBook::Progress::Work::None;
    lblWork->setText(QString::fromLatin1(Works[size_t(work.work)]));
    m_progress->setRange(0, work.whole > 0 ? ProgressSteps : 0);
    if (work.whole > 0)
        m_progress->setValue(int(double(work.done) / double(work.whole) * ProgressSteps));
    // What takes no time needs no bar.
    const bool shows = works && m_worked;
    for (QWidget *each : {static_cast<QWidget *>(lblWork), static_cast<QWidget *>(m_progress),
                          static_cast<QWidget *>(cmdCancelWork)})
        each->setVisible(shows);
    m_worked = works;
    if (!works && !std::exchange(m_settled, true))
        Q_EMIT Settled();
}

void TrafficStatus::Sum()
{
    m_questions.clear();
    m_asked = false;
    m_bytes = m_between = 0;
    const TelegramSelection &chosen = m_list.Selection();
    if (chosen.Count() < 2) {
        lblChosen->clear();
        return;
    }
    // The first question tells what lies between; the others add the bytes up.
    m_apart = chosen.Ranges().size() > 1;
    if (m_apart)
        m_questions.append({chosen.First(), chosen.Last()});
    for (const TelegramSelection::Range &range : chosen.Ranges())
        m_questions.append({range.first, range.last});
    lblChosen->setText(Counted(chosen.Count(), "row") + QStringLiteral(" chosen ..."));
    AskNext();
}

void TrafficStatus::AskNext()
{
    m_asked = !m_questions.isEmpty();
    if (m_asked)
        m_book.Sum(m_questions.first().first, m_questions.first().second);
    else
        lblChosen->setText(ChosenText(m_list.Selection().Count(), m_bytes, m_between));
}

void TrafficStatus::TakeSum(const TelegramBook::Totals &totals)
{
    if (!m_asked)
        return;
    m_questions.removeFirst();
    m_between = std::max(m_between, totals.apart);
    if (!std::exchange(m_apart, false))
        m_bytes += totals.bytes;
    AskNext();
}

QString TrafficStatus::ChosenText(qint64 rows, qint64 bytes, qint64 apart)
{
    return QStringLiteral("%1: %2, %3 from first to last")
        .arg(Counted(rows, "row"), Counted(bytes, "byte"), TelegramCells::SpanText(apart));
}
