// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QStringList>
#include <QTimer>

#include <functional>

class TelegramBook;
class TrafficActions;
class TrafficFilterBar;
class frmTraffic;
struct TelegramFilter;

/// Lets rows through a filter. The row in hand stays in sight, or the next one that is let through.
class TrafficFiltering final : public QObject
{
    Q_OBJECT

  public:
    /// All of it lives longer; names are those of the project's sequences. Whether there are two
    /// channels is asked when the bar is opened.
    TrafficFiltering(frmTraffic &window, TrafficActions &actions,
                     std::function<QStringList()> names, std::function<bool()> twoChannels);

    void TakeOff();

  private:
    void Apply(const TelegramFilter &filter);
    void ShowState();
    void BringBack();

    frmTraffic &m_window;
    TelegramBook &m_book;
    TrafficActions &m_actions;
    std::function<bool()> m_twoChannels;
    TrafficFilterBar *m_bar; ///< of the window
    qint64 m_inHand = 0;     ///< number of the telegram that is to be in sight again, or 0
    QTimer m_waiting;        ///< until the filter has been through
};
