// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "TelegramFilter.h"

#include <QObject>
#include <QStringList>

#include <functional>
#include <optional>

class TelegramBook;
class TrafficActions;
class TrafficFindBar;
class frmTraffic;
struct Failure;

/// Looks for rows and goes to them: by what is in them, by their time and by their number. Whoever
/// asks the book for a row has it shown.
class TrafficFinding final : public QObject
{
    Q_OBJECT

  public:
    /// All of it lives longer; names are those of the project's sequences.
    TrafficFinding(frmTraffic &window, TrafficActions &actions, std::function<QStringList()> names);

    /// To the row that has the moment in it, or else begins next: ns since 1970.
    void GoToMoment(qint64 wall);
    /// To the row of a telegram; with a filter that keeps it away, to the next one shown.
    void GoToNumber(qint64 number);

  private:
    void Find(bool forward);
    void FindInAll(bool forward);
    void FindFrom(qint64 row, bool forward);
    void AskTime();
    void AskNumber();
    void GoToFound(qint64 row);
    void ShowNotFound();
    void ShowFailure(const Failure &failure);
    qint64 LatestMoment() const;

    frmTraffic &m_window;
    TelegramBook &m_book;
    TrafficFindBar *m_bar; ///< of the window
    bool m_forward = true;
    bool m_inAll = false;           ///< no row is left out
    bool m_searching = false;       ///< for what is in the bar
    std::optional<qint64> m_moment; ///< that is gone to
    QString m_typedTime;
};
