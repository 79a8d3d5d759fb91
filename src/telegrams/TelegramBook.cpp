// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TelegramBook.h"

#include "BackgroundWork.h"
#include "TelegramMail.h"
#include "TelegramSource.h"
#include "TelegramView.h"

#include <QTimer>

#include <algorithm>
#include <limits>
#include <map>
#include <utility>

namespace
{

constexpr int FollowMs = 33; ///< between two looks at what is new, and ...
constexpr int IdleMs = 100;  ///< ... while nothing comes
constexpr qint64 RowsOfAPage = 32;
constexpr size_t PagesWanted = 6;
constexpr qsizetype MostBytesAtHand = 16 * 1024 * 1024;

using Wanted = std::shared_ptr<std::atomic<bool>>;

Wanted NewWanted()
{
    return std::make_shared<std::atomic<bool>>(true);
}

/// Rows that were fetched.
struct Page {
    std::vector<Telegram> rows;
    qsizetype bytes = 0; ///< of memory, about
    quint64 used = 0;    ///< when it was asked for last
    bool isOld = false;  ///< to be fetched again
};

using Block = TelegramView::Block;
using Answer = TelegramBook::Answer;

void Look(const TelegramSearch &search, qint64 row, const Telegram &telegram, Answer &answer)
{
    if (search.Finds(telegram))
        answer.row = row;
    if (telegram.marks & Telegram::Unreadable && answer.unread.isEmpty())
        answer.unread = telegram.remark;
}

Answer FindForward(const TelegramView &view, const TelegramSearch &search, qint64 fromRow,
                   const std::atomic<bool> &wanted)
{
    Answer found;
    TelegramReading reading(view);
    std::optional<Block> block = view.BlockOf(fromRow + 1);
    while (block && !found.row && wanted) {
        reading.Visit(*block, [&](qint64 row, const Telegram &telegram) {
            if (row > fromRow)
                Look(search, row, telegram, found);
            return !found.row && wanted;
        });
        block = view.BlockAt(block->telegrams.number + 1);
    }
    return found;
}

Answer FindBackward(const TelegramView &view, const TelegramSearch &search, qint64 fromRow,
                    const std::atomic<bool> &wanted)
{
    Answer found;
    TelegramReading reading(view);
    std::optional<Block> block = view.BlockOf(fromRow - 1);
    while (block && !found.row && wanted) {
        reading.Visit(*block, [&](qint64 row, const Telegram &telegram) {
            if (row < fromRow)
                Look(search, row, telegram, found);
            return row + 1 < fromRow && wanted;
        });
        block = view.BlockAt(block->telegrams.number - 1);
    }
    return found;
}

/// The first row from a block on that is meant, else the last row that there is.
Answer FirstOrLast(const TelegramView &view, qint64 number, const std::atomic<bool> &wanted,
                   const std::function<bool(const Telegram &)> &isMeant)
{
    std::optional<qint64> found;
    TelegramReading reading(view);
    for (std::optional<Block> block = view.BlockAt(number); block && !found && wanted;
         block = view.BlockAt(block->telegrams.number + 1)) {
        reading.Visit(*block, [&](qint64 row, const Telegram &telegram) {
            if (isMeant(telegram))
                found = row;
            return !found && wanted;
        });
    }
    const auto [first, end] = view.Rows();
    if (!found && first < end)
        found = end - 1;
    return {found};
}

/// Bytes of all rows before one, which is given as well; only without a filter.
qint64 BytesBefore(const TelegramView &view, qint64 row, Telegram &telegram)
{
    const std::optional<Block> block = view.BlockOf(row);
    if (!block)
        return 0;
    qint64 bytes = block->telegrams.place.cut.bytes;
    TelegramReading(view).Visit(*block, [&](qint64 each, const Telegram &there) {
        if (each < row)
            bytes += there.bytes.size();
        else
            telegram = there;
        return each < row;
    });
    return bytes;
}

TelegramBook::Totals SumOf(const TelegramView &view, qint64 first, qint64 last,
                           const std::atomic<bool> &wanted)
{
    TelegramBook::Totals totals;
    Telegram begin, end;
    if (!view.matches) {
        totals.bytes = -BytesBefore(view, first, begin);
        totals.bytes += BytesBefore(view, last, end) + end.bytes.size();
        totals.rows = last - first + 1;
        totals.apart = end.time - begin.time;
        return totals;
    }
    TelegramReading(view).Visit(first, last + 1, [&](qint64, const Telegram &telegram) {
        begin.time = totals.rows == 0 ? telegram.time : begin.time;
        ++totals.rows;
        totals.bytes += telegram.bytes.size();
        totals.apart = telegram.time - begin.time;
        return bool(wanted);
    });
    return totals;
}

} // namespace

struct TelegramBook::State {
    explicit State(TelegramBook *book) : mail(std::make_shared<TelegramMail<TelegramBook>>(book)) {}

    std::shared_ptr<const TelegramSource> source;
    TelegramRule rule;
    TelegramFilter filter;
    TelegramView view;                     ///< index is null without a source
    int version = 0;                       ///< of the view
    int edition = 0;                       ///< of what was told of it
    std::shared_ptr<TelegramIndex> former; ///< that of the rule before, until all is cut anew

    // What was told by Changed.
    TelegramIndex::Extent known;
    qint64 first = 0;
    qint64 end = 0;

    std::map<qint64, Page> pages;    ///< by number: rows from RowsOfAPage times it on
    std::vector<qint64> wantedPages; ///< the latest is the last
    bool isFetching = false;
    quint64 uses = 0;

    bool isWorking = false;
    bool isSearching = false;
    Wanted worksOn = NewWanted();
    Wanted asksFor = NewWanted();
    Wanted sums = NewWanted();
    QTimer timer;

    std::shared_ptr<TelegramMail<TelegramBook>> mail;
    // Others for each source: a disk may hold them up for good.
    std::unique_ptr<BackgroundWork> working;
    std::unique_ptr<BackgroundWork> fetching;
    std::unique_ptr<BackgroundWork> asking;
};

TelegramBook::TelegramBook() : m_state(std::make_unique<State>(this))
{
    m_state->timer.setTimerType(Qt::CoarseTimer);
    connect(&m_state->timer, &QTimer::timeout, this, &TelegramBook::Tick);
}

TelegramBook::~TelegramBook()
{
    *m_state->worksOn = *m_state->asksFor = *m_state->sums = false;
    m_state->mail->Close();
}

void TelegramBook::Show(std::shared_ptr<const TelegramSource> source)
{
    State &state = *m_state;
    state.source = std::move(source);
    state.former.reset();
    for (auto *work : {&state.working, &state.fetching, &state.asking})
        *work = state.source ? std::make_unique<BackgroundWork>() : nullptr;
    Begin(state.source ? std::make_shared<TelegramIndex>(state.source, state.rule) : nullptr);
}

const std::shared_ptr<const TelegramSource> &TelegramBook::Source() const
{
    return m_state->source;
}

void TelegramBook::SetRule(const TelegramRule &rule)
{
    State &state = *m_state;
    state.rule = rule;
    if (!state.source)
        return;
    if (!state.former)
        state.former = state.view.index;
    Begin(std::make_shared<TelegramIndex>(state.source, rule));
}

const TelegramRule &TelegramBook::Rule() const
{
    return m_state->rule;
}

void TelegramBook::SetFilter(const TelegramFilter &filter)
{
    m_state->filter = filter;
    Begin(m_state->view.index);
}

const TelegramFilter &TelegramBook::Filter() const
{
    return m_state->filter;
}

/// All rows are others from now on.
void TelegramBook::Begin(std::shared_ptr<TelegramIndex> index)
{
    State &state = *m_state;
    *std::exchange(state.worksOn, NewWanted()) = false;
    *state.asksFor = *state.sums = false;
    const bool wasSearching = std::exchange(state.isSearching, false);
    ++state.version;
    state.view = {std::move(index), nullptr};
    if (state.view.index && !state.filter.IsEmpty())
        state.view.matches = std::make_shared<TelegramMatches>(state.view.index, state.filter);
    state.pages.clear();
    state.wantedPages.clear();
    state.known = {};
    state.first = state.end = 0;
    state.isWorking = state.isFetching = false;
    Q_EMIT Reset();
    if (wasSearching)
        Q_EMIT NotFound();
    Work(true);
    state.timer.start(FollowMs);
}

/// Cuts and filters what is new.
void TelegramBook::Work(bool anew)
{
    State &state = *m_state;
    if (!state.view.index || state.isWorking || (!anew && !state.source->Grows()))
        return;
    state.isWorking = true;
    state.working->Post([view = state.view, wanted = state.worksOn, mail = state.mail,
                         version = state.version, anew] {
        if (view.index->Advance(*wanted) && view.matches)
            view.matches->Advance(*wanted);
        mail->Send([version, anew](TelegramBook &book) {
            if (book.m_state->version != version)
                return;
            book.m_state->isWorking = false;
            if (anew)
                book.Tick();
        });
    });
}

void TelegramBook::Tick()
{
    State &state = *m_state;
    if (!state.view.index) {
        state.timer.stop();
        return;
    }
    const TelegramIndex::Extent known = state.view.index->Known();
    const auto [first, end] = state.view.Rows();
    const bool hasChanged = first != state.first || end != state.end ||
                            known.first != state.known.first || known.end != state.known.end ||
                            known.bytes != state.known.bytes;
    state.timer.setInterval(hasChanged || state.isWorking ? FollowMs : IdleMs);
    if (!state.isWorking && !state.source->Grows())
        state.timer.stop();
    Work(false);
    if (known.isWhole)
        state.former.reset();
    if (hasChanged) {
        ++state.edition;
        for (auto page = state.pages.lower_bound((state.end - 1) / RowsOfAPage);
             page != state.pages.end(); ++page)
            page->second.isOld = true;
        state.known = known;
        state.first = first;
        state.end = end;
        Q_EMIT Changed();
    }
}

const TelegramView &TelegramBook::View() const
{
    return m_state->view;
}

qint64 TelegramBook::First() const
{
    return m_state->first;
}

qint64 TelegramBook::End() const
{
    return m_state->end;
}

qint64 TelegramBook::CountOfAll() const
{
    return m_state->known.end - m_state->known.first;
}

const Telegram *TelegramBook::Row(qint64 row)
{
    State &state = *m_state;
    if (row < state.first || row >= state.end)
        return nullptr;
    const qint64 number = row / RowsOfAPage;
    const auto page = state.pages.find(number);
    const auto place = size_t(row % RowsOfAPage);
    const bool isThere = page != state.pages.end() && page->second.rows[place].number > 0;
    if (!isThere || page->second.isOld)
        Fetch(number);
    if (!isThere)
        return nullptr;
    page->second.used = ++state.uses;
    return &page->second.rows[place];
}

/// One page at a time, the one asked for last first: the others may be out of sight by then.
void TelegramBook::Fetch(qint64 number)
{
    State &state = *m_state;
    std::vector<qint64> &wanted = state.wantedPages;
    wanted.erase(std::remove(wanted.begin(), wanted.end(), number), wanted.end());
    wanted.push_back(number);
    if (wanted.size() > PagesWanted)
        wanted.erase(wanted.begin());
    FetchNext();
}

void TelegramBook::FetchNext()
{
    State &state = *m_state;
    if (state.isFetching || state.wantedPages.empty())
        return;
    const qint64 number = state.wantedPages.back();
    state.wantedPages.pop_back();
    state.isFetching = true;
    state.fetching->Post([view = state.view, mail = state.mail, version = state.version, number,
                          edition = state.edition] {
        const qint64 first = number * RowsOfAPage;
        auto rows = std::make_shared<std::vector<Telegram>>(size_t(RowsOfAPage));
        TelegramReading(view).Visit(first, first + RowsOfAPage,
                                    [&](qint64 row, const Telegram &telegram) {
                                        rows->at(size_t(row - first)) = telegram;
                                        return true;
                                    });
        mail->Send([version, number, rows, edition](TelegramBook &book) {
            if (version != book.m_state->version)
                return;
            book.m_state->isFetching = false;
            book.TakeRows(number, std::move(*rows), edition);
            book.FetchNext();
        });
    });
}

/// Read while less was known, the last of them may be old already.
void TelegramBook::TakeRows(qint64 number, std::vector<Telegram> rows, int edition)
{
    State &state = *m_state;
    Page page;
    page.rows = std::move(rows);
    page.used = ++state.uses;
    page.isOld = edition != state.edition && state.source->Grows();
    for (const Telegram &telegram : page.rows)
        page.bytes += qsizetype(sizeof telegram) + telegram.bytes.size() +
                      telegram.reads.size() * qsizetype(sizeof(Telegram::Read));
    state.pages[number] = std::move(page);
    qsizetype bytes = 0;
    for (const auto &each : state.pages)
        bytes += each.second.bytes;
    while (bytes > MostBytesAtHand && state.pages.size() > 1) {
        const auto oldest = std::min_element(
            state.pages.begin(), state.pages.end(),
            [](const auto &a, const auto &b) { return a.second.used < b.second.used; });
        bytes -= oldest->second.bytes;
        state.pages.erase(oldest);
    }
    Q_EMIT Fetched();
}

TelegramBook::Progress TelegramBook::Background() const
{
    const State &state = *m_state;
    if (state.isSearching)
        return {Progress::Work::Searching, 0, 0};
    if (!state.view.index || !state.isWorking)
        return {};
    const TelegramIndex::Extent known = state.view.index->Known();
    if (!known.isWhole)
        return {Progress::Work::Cutting, known.read, known.whole};
    if (!state.view.matches || state.view.matches->Known().isWhole)
        return {};
    const auto [first, end] = state.view.index->Blocks();
    const qint64 done = state.view.matches->Known().blocks;
    return {Progress::Work::Filtering, known.whole * done / std::max<qint64>(1, end - first),
            known.whole};
}

void TelegramBook::Cancel()
{
    State &state = *m_state;
    if (state.isSearching) {
        *state.asksFor = false;
        return;
    }
    const Progress::Work work = Background().work;
    if (work == Progress::Work::Filtering)
        SetFilter({});
    else if (work == Progress::Work::Cutting && !state.former)
        *state.worksOn = false;
    else if (work == Progress::Work::Cutting) {
        state.rule = state.former->Rule();
        Begin(std::exchange(state.former, nullptr));
    }
}

/// A question that a disk may keep waiting. Empty: there is no such row.
void TelegramBook::Ask(Question question)
{
    State &state = *m_state;
    *std::exchange(state.asksFor, NewWanted()) = false;
    if (!state.view.index) {
        Q_EMIT NotFound();
        return;
    }
    state.isSearching = true;
    state.asking->Post([question = std::move(question), view = state.view, mail = state.mail,
                        wanted = state.asksFor] {
        const Answer answer = *wanted ? question(view, *wanted) : Answer();
        mail->Send([answer, wanted](TelegramBook &book) {
            if (book.m_state->asksFor != wanted || !book.m_state->isSearching)
                return;
            book.m_state->isSearching = false;
            if (answer.row)
                Q_EMIT book.Found(*answer.row);
            else if (!answer.unread.isEmpty())
                Q_EMIT book.SearchFailed({answer.unread});
            else
                Q_EMIT book.NotFound();
        });
    });
}

void TelegramBook::Find(const TelegramSearch &search, qint64 fromRow, bool forward)
{
    Ask([search, fromRow, forward](const TelegramView &view, const std::atomic<bool> &wanted) {
        return forward ? FindForward(view, search, fromRow, wanted)
                       : FindBackward(view, search, fromRow, wanted);
    });
}

void TelegramBook::FindTime(qint64 wall)
{
    Ask([wall](const TelegramView &view, const std::atomic<bool> &wanted) {
        const auto block = view.index->BlockBefore(wall);
        return block ? FirstOrLast(view, block->number, wanted,
                                   [wall](const Telegram &each) { return each.wall >= wall; })
                     : Answer();
    });
}

void TelegramBook::FindNumber(qint64 number)
{
    Ask([number](const TelegramView &view, const std::atomic<bool> &wanted) {
        const auto block = view.index->BlockOf(number - 1);
        return block ? FirstOrLast(view, block->number, wanted,
                                   [number](const Telegram &each) { return each.number >= number; })
                     : Answer();
    });
}

void TelegramBook::Sum(qint64 firstRow, qint64 lastRow)
{
    State &state = *m_state;
    *std::exchange(state.sums, NewWanted()) = false;
    if (!state.view.index)
        return;
    state.asking->Post(
        [firstRow, lastRow, view = state.view, mail = state.mail, wanted = state.sums] {
            const Totals totals = SumOf(view, firstRow, lastRow, *wanted);
            mail->Send([totals, wanted](TelegramBook &book) {
                if (*wanted)
                    Q_EMIT book.Summed(totals);
            });
        });
}
