// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "TelegramBook.h"

#include <QList>
#include <QTimer>
#include <QWidget>

#include <optional>

class QBoxLayout;
class QLabel;
class QProgressBar;
class QPushButton;
class QToolButton;
class TelegramList;

/// The line below the list: how many telegrams are shown of all, what the chosen ones have together
/// and what lies between the first and the last of them, how far work in the background is.
class TrafficStatus final : public QWidget
{
    Q_OBJECT

  public:
    /// Both live longer.
    TrafficStatus(TelegramBook &book, TelegramList &list, QWidget *parent = nullptr);

    /// Where the telegrams come from, what they are cut by, and what is to be said of their times.
    void ShowSource(const QString &text);
    void ShowRule(const QString &text);
    void ShowUncertainty(const QString &text);

    /// "12 rows chosen, 345 bytes, 1.234 ms apart"
    static QString ChosenText(qint64 rows, qint64 bytes, qint64 apart);

  Q_SIGNALS:
    void RuleWanted();
    /// Nothing is being worked on in the background any more.
    void Settled();

  protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

  private:
    void MakeFirstLine(QBoxLayout &line);
    void MakeSecondLine(QBoxLayout &line);
    void ShowCount();
    void ShowWork();
    void Sum();
    void AskNext();
    void TakeSum(const TelegramBook::Totals &totals);

    TelegramBook &m_book;
    TelegramList &m_list;
    QTimer m_timer;
    QTimer m_pause; ///< until it is summed: who drags chooses many times
    QList<std::pair<qint64, qint64>> m_questions; ///< ranges that are not summed yet
    bool m_apart = false;                         ///< the first question is for the time between
    qint64 m_bytes = 0;
    qint64 m_between = 0;
    bool m_asked = false;
    bool m_worked = false;
    bool m_settled = true;
    QLabel *lblShown;
    QLabel *lblChosen;
    QLabel *lblSource;
    QLabel *lblTimes;
    QLabel *lblWork;
    QProgressBar *m_progress;
    QPushButton *cmdCancelWork;
    QToolButton *cmdRule;
    QToolButton *cmdFollow;
};
