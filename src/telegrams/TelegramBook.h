// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Result.h"
#include "TelegramFilter.h"
#include "TelegramRows.h"
#include "TelegramRule.h"

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

class TelegramIndex;
class TelegramSource;
struct TelegramView;

/// The telegrams of a source. It cuts, filters and searches on threads of its own, which a disk may
/// hold up without anybody else having to wait.
class TelegramBook final : public TelegramRows
{
    Q_OBJECT

  public:
    TelegramBook();
    /// Waits for nothing.
    ~TelegramBook() override;

    /// Shows another source, from its beginning; null for none. Rule and filter stay.
    void Show(std::shared_ptr<const TelegramSource> source);
    const std::shared_ptr<const TelegramSource> &Source() const;
    /// Cuts all anew.
    void SetRule(const TelegramRule &rule);
    const TelegramRule &Rule() const;
    void SetFilter(const TelegramFilter &filter);
    const TelegramFilter &Filter() const;

    /// What is shown, for work on other threads; its index is null without a source.
    const TelegramView &View() const;

    qint64 First() const override;
    qint64 End() const override;
    qint64 CountOfAll() const override;
    const Telegram *Row(qint64 row) override;

    /// What is being done in the background; following a source that grows is not.
    struct Progress {
        enum class Work { None, Cutting, Filtering, Searching };
        Work work = Work::None;
        qint64 done = 0; ///< bytes of the source
        qint64 whole = 0;
    };
    Progress Background() const;
    /// Gives up what is being done: a search finds nothing, the filter is taken off, rows are those
    /// of the rule before, or those that have been cut by now.
    void Cancel();

    // What follows is answered by one signal: Found, NotFound or SearchFailed. A second question
    // takes the place of the first.

    /// The next row in a direction; the row itself is not looked at.
    void Find(const TelegramSearch &search, qint64 fromRow, bool forward);
    /// The first row that begins at the time or behind it, else the last: ns since 1970.
    void FindTime(qint64 wall);
    /// The row of the telegram; with a filter that keeps it away, the next one shown.
    void FindNumber(qint64 number);

    /// What came of a question.
    struct Answer {
        std::optional<qint64> row{};
        QString unread{}; ///< why not all was looked at; empty if it was
    };

    struct Totals {
        qint64 rows = 0;
        qint64 bytes = 0;
        qint64 apart = 0; ///< from the first read of the first to that of the last, in ns
    };
    /// Of the rows from one to another, both included. Summed follows; the latest question counts.
    void Sum(qint64 firstRow, qint64 lastRow);

  Q_SIGNALS:
    void Found(qint64 row);
    void NotFound();
    /// Not found, but not all could be read.
    void SearchFailed(const Failure &failure);
    void Summed(const TelegramBook::Totals &totals);

  private:
    struct State;
    using Question =
        std::function<Answer(const TelegramView &view, const std::atomic<bool> &wanted)>;

    void Begin(std::shared_ptr<TelegramIndex> index);
    void Work(bool anew);
    void Tick();
    void Fetch(qint64 number);
    void FetchNext();
    void TakeRows(qint64 number, std::vector<Telegram> rows, int edition);
    void Ask(Question question);

    std::unique_ptr<State> m_state;
};
