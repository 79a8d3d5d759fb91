// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TrafficFiltering.h"

#include "TelegramBook.h"
#include "TelegramList.h"
#include "TrafficActions.h"
#include "TrafficFilterBar.h"
#include "frmTraffic.h"

#include <QShortcut>

#include <utility>

namespace
{

constexpr int WaitMs = 30;

/// What they are called, by StyleIndex.
QStringList Directions(bool twoChannels)
{
    return twoChannels ? QStringList{QStringLiteral("Channel 1"), QStringLiteral("Channel 2")}
                       : QStringList{QStringLiteral("Sent"), QStringLiteral("Received")};
}

} // namespace

TrafficFiltering::TrafficFiltering(frmTraffic &window, TrafficActions &actions,
                                   std::function<QStringList()> names,
                                   std::function<bool()> twoChannels)
    : m_window(window),
      m_book(window.Book()),
      m_actions(actions),
      m_twoChannels(std::move(twoChannels)),
      m_bar(new TrafficFilterBar(std::move(names)))
{
    window.AddBar(*m_bar);
    actions.On(TrafficCommand::Filter, [this] {
        m_bar->SetDirections(Directions(m_twoChannels()));
        m_bar->Open();
    });
    actions.On(TrafficCommand::FilterOff, [this] { TakeOff(); });
    auto *escape = new QShortcut(QKeySequence(Qt::Key_Escape), &window.List());
    escape->setContext(Qt::WidgetShortcut);
    connect(escape, &QShortcut::activated, this, &TrafficFiltering::TakeOff);
    connect(m_bar, &TrafficFilterBar::Changed, this, &TrafficFiltering::Apply);
    connect(m_bar, &TrafficFilterBar::Closed, this, [this] { m_window.List().setFocus(); });
    connect(&m_book, &TelegramBook::Changed, this, &TrafficFiltering::ShowState);
    connect(&m_book, &TelegramBook::Reset, this, &TrafficFiltering::ShowState);
    m_waiting.setInterval(WaitMs);
    connect(&m_waiting, &QTimer::timeout, this, &TrafficFiltering::BringBack);
    ShowState();
}

void TrafficFiltering::TakeOff()
{
    m_bar->TakeOff();
}

void TrafficFiltering::Apply(const TelegramFilter &filter)
{
    const TelegramList &list = m_window.List();
    const Telegram *inHand = list.Follows() ? nullptr : m_book.Row(list.Current());
    if (inHand)
        m_inHand = inHand->number;
    m_book.SetFilter(filter);
    if (m_inHand > 0)
        m_waiting.start();
}

/// The filter may have been given up.
void TrafficFiltering::ShowState()
{
    const TelegramFilter &filter = m_book.Filter();
    if (filter != m_bar->Filter())
        m_bar->ShowFilter(filter);
    m_bar->ShowCount(m_book.End() - m_book.First(), m_book.CountOfAll());
    m_actions.Enable(TrafficCommand::FilterOff,
                     filter.IsEmpty() ? QStringLiteral("No filter is set.") : QString());
}

/// Unless the user has gone elsewhere meanwhile.
void TrafficFiltering::BringBack()
{
    const bool gone = m_window.List().Current() >= 0;
    if (!gone && m_book.Background().work != TelegramBook::Progress::Work::None)
        return;
    m_waiting.stop();
    const qint64 number = std::exchange(m_inHand, 0);
    if (!gone && number > 0)
        m_book.FindNumber(number);
}
