// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TrafficFinding.h"

#include "PlainText.h"
#include "TelegramBook.h"
#include "TelegramList.h"
#include "TelegramMoment.h"
#include "TrafficActions.h"
#include "TrafficFindBar.h"
#include "frmAskLine.h"
#include "frmTraffic.h"

#include <QDateTime>
#include <QLocale>

#include <utility>

TrafficFinding::TrafficFinding(frmTraffic &window, TrafficActions &actions,
                               std::function<QStringList()> names)
    : m_window(window), m_book(window.Book()), m_bar(new TrafficFindBar(std::move(names)))
{
    window.AddBar(*m_bar);
    actions.On(TrafficCommand::Find, [this] { m_bar->Open(); });
    actions.On(TrafficCommand::FindNext, [this] { Find(true); });
    actions.On(TrafficCommand::FindPrevious, [this] { Find(false); });
    actions.On(TrafficCommand::GoToTime, [this] { AskTime(); });
    actions.On(TrafficCommand::GoToNumber, [this] { AskNumber(); });
    connect(m_bar, &TrafficFindBar::Wanted, this, &TrafficFinding::Find);
    connect(m_bar, &TrafficFindBar::WantedFromEnd, this, &TrafficFinding::FindInAll);
    connect(m_bar, &TrafficFindBar::GivenUp, this, [this] {
        m_searching = false;
        m_bar->ShowFailure(QStringLiteral("Given up"));
        m_book.Cancel();
    });
    connect(m_bar, &TrafficFindBar::Closed, this, [this] { m_window.List().setFocus(); });
    connect(&m_book, &TelegramBook::Found, this, &TrafficFinding::GoToFound);
    connect(&m_book, &TelegramBook::NotFound, this, &TrafficFinding::ShowNotFound);
    connect(&m_book, &TelegramBook::SearchFailed, this, &TrafficFinding::ShowFailure);
}

/// Without a row in hand all are looked at.
void TrafficFinding::Find(bool forward)
{
    const qint64 current = m_window.List().Current();
    if (current < 0)
        return FindInAll(forward);
    m_inAll = false;
    FindFrom(current, forward);
}

void TrafficFinding::FindInAll(bool forward)
{
    m_inAll = true;
    FindFrom(forward ? m_book.First() - 1 : m_book.End(), forward);
}

void TrafficFinding::FindFrom(qint64 row, bool forward)
{
    if (!m_bar->isVisible())
        m_bar->Open();
    const std::optional<TelegramSearch> search = m_bar->Search();
    if (!search)
        return;
    m_forward = forward;
    m_searching = true;
    m_moment.reset();
    m_bar->ShowSearching();
    m_book.Find(*search, row, forward);
}

void TrafficFinding::GoToMoment(qint64 wall)
{
    m_searching = false;
    m_moment = wall;
    m_book.FindTime(wall);
}

void TrafficFinding::GoToNumber(qint64 number)
{
    m_searching = false;
    m_moment.reset();
    m_book.FindNumber(number);
}

void TrafficFinding::AskTime()
{
    LatestMoment(); // is at hand when it is needed
    frmAskLine dialog(
        {.name = QStringLiteral("dlgGoToTime"),
         .title = QStringLiteral("Go to Time"),
         .caption = QStringLiteral("&Time:"),
         .hint = QStringLiteral("A time of day such as 03:12:44 or 03:12:44.25, with or without a "
                                "day before it, such as 2026-11-22 03:12:44. It leads to the row "
                                "at that time, or to the next one."),
         .text = m_typedTime,
         .Fault =
             [this](const QString &text) {
                 return TelegramMoment::Of(text, LatestMoment())
                            ? QString()
                            : QStringLiteral("\"%1\" is not such a time.").arg(PlainText(text));
             }},
        &m_window);
    if (dialog.exec() != QDialog::Accepted)
        return;
    m_typedTime = dialog.Text();
    if (const std::optional<qint64> wall = TelegramMoment::Of(m_typedTime, LatestMoment()))
        GoToMoment(*wall);
}

void TrafficFinding::AskNumber()
{
    frmAskLine dialog(
        {.name = QStringLiteral("dlgGoToNumber"),
         .title = QStringLiteral("Go to Number"),
         .caption = QStringLiteral("&Number:"),
         .hint = QStringLiteral("The number of a row, as in the first column."),
         .text = {},
         .Fault =
             [](const QString &text) {
                 bool isNumber = false;
                 const qint64 number = QLocale().toLongLong(text, &isNumber);
                 return isNumber && number > 0
                            ? QString()
                            : QStringLiteral("\"%1\" is not such a number.").arg(PlainText(text));
             }},
        &m_window);
    if (dialog.exec() != QDialog::Accepted)
        return;
    GoToNumber(QLocale().toLongLong(dialog.Text()));
}

/// Of the newest row; of now while that is not at hand.
qint64 TrafficFinding::LatestMoment() const
{
    const bool some = m_book.End() > m_book.First();
    const Telegram *last = some ? m_book.Row(m_book.End() - 1) : nullptr;
    return last ? last->wall : QDateTime::currentMSecsSinceEpoch() * 1'000'000;
}

/// A moment within a row is that row's, though the one behind begins next.
void TrafficFinding::GoToFound(qint64 row)
{
    if (const std::optional<qint64> moment = std::exchange(m_moment, std::nullopt);
        moment && row > m_book.First()) {
        const Telegram *before = m_book.Row(row - 1);
        if (before && before->wall <= *moment &&
            *moment <= before->wall + (before->end - before->time))
            --row;
    }
    if (std::exchange(m_searching, false))
        m_bar->ShowFound();
    m_window.List().GoTo(row);
}

void TrafficFinding::ShowNotFound()
{
    m_moment.reset();
    if (std::exchange(m_searching, false))
        m_bar->ShowNotFound(m_forward, m_inAll);
}

void TrafficFinding::ShowFailure(const Failure &failure)
{
    m_moment.reset();
    m_searching = false;
    if (!m_bar->isVisible())
        m_bar->Open();
    m_bar->ShowFailure(PlainText(failure.cause));
}
