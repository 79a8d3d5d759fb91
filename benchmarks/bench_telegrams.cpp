// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CaptureBench.h"
#include "CaptureSource.h"
#include "Limits.h"
#include "ResponseScan.h"
#include "ResponseStatistics.h"
#include "SampleTraffic.h"
#include "TelegramBook.h"
#include "TelegramView.h"

#include <QEventLoop>

#include <algorithm>
#include <chrono>
#include <limits>
#include <thread>

namespace
{

using namespace CaptureBench;

constexpr int Telegrams = 10'000'000;
constexpr qint64 RowsOfAScreen = 50;

/// Questions and answers of 8 to 71 bytes, a tenth of them sequences of the project.
NextEvent Conversation()
{
    SampleTraffic::Random random(3);
    const QByteArray bytes = SampleTraffic::RandomBytes(random, 1 << 20);
    return [=, i = 0](TrafficEvent &event, qint64) mutable {
        event.kind = i % 2 == 0 ? TrafficEvent::Kind::Sent : TrafficEvent::Kind::Received;
        event.bytes = bytes.mid(qsizetype(random() % (1 << 19)), 8 + qsizetype(random() % 64));
        event.time.wall += 1'000'003;
        event.names.clear();
        if (i % 10 == 0)
            event.names << "Question";
        return i++ < Telegrams;
    };
}

/// About 1 GB, made once.
const std::shared_ptr<const InputDevice> &LargeCapture()
{
    static const File Capture(Conversation());
    return Capture.device;
}

std::shared_ptr<TelegramSource> Source()
{
    return std::make_shared<CaptureSource>(LargeCapture());
}

template <typename Work> double MillisecondsOf(const Work &work)
{
    const auto begin = std::chrono::steady_clock::now();
    benchmark::DoNotOptimize(work());
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin)
        .count();
}

double Median(std::vector<double> times)
{
    return Percentile(std::move(times), 0.5);
}

std::shared_ptr<TelegramIndex> Index()
{
    auto index = std::make_shared<TelegramIndex>(Source(), TelegramRule());
    std::atomic<bool> wanted = true;
    index->Advance(wanted);
    return index;
}

/// Index and walk by turns; the medians count.
void IndexAll(benchmark::State &state)
{
    const InputDevice &file = *LargeCapture();
    std::vector<double> indexTook, walkTook;
    double needs = 0;
    for (auto _ : state) {
        walkTook.push_back(ProcessorTimeOf([&] { return WalkLengths(file); }));
        const double before = Memory("VmRSS:");
        std::shared_ptr<TelegramIndex> index;
        indexTook.push_back(ProcessorTimeOf([&] {
            index = Index();
            return index->Known().end;
        }));
        needs = std::max(needs, Memory("VmRSS:") - before);
        state.SetIterationTime(indexTook.back() / 1000);
    }
    Comparison words(state, "walk");
    words.Add("index in ms", Median(indexTook), Median(walkTook), {3});
    words.AddWithin("memory in MiB", needs, 0, 150);
}

/// A screen at any place, from the question to its rows.
void AnyPlace(benchmark::State &state, const TelegramFilter &filter)
{
    TelegramView view{Index(), nullptr};
    std::atomic<bool> wanted = true;
    if (!filter.IsEmpty()) {
        view.matches = std::make_shared<TelegramMatches>(view.index, filter);
        view.matches->Advance(wanted);
    }
    SampleTraffic::Random random(5);
    std::vector<double> took;
    const qint64 end = view.Rows().second;
    for (auto _ : state) {
        const qint64 row = qint64(random()) % std::max<qint64>(1, end - RowsOfAScreen);
        took.push_back(MillisecondsOf([&] {
            qint64 bytes = 0;
            TelegramReading(view).Visit(row, row + RowsOfAScreen,
                                        [&](qint64, const Telegram &telegram) {
                                            bytes += telegram.bytes.size();
                                            return true;
                                        });
            return bytes;
        }));
        state.SetIterationTime(took.back() / 1000);
    }
    Comparison(state, "median").AddWithin("p99 in ms", Percentile(took, 0.99), Median(took), 16);
}

void TellRate(benchmark::State &state, const std::vector<double> &took, double least,
              const std::string &more = {})
{
    state.SetLabel(RateWords(*LargeCapture(), Median(took), least) + more);
}

void Filter(benchmark::State &state)
{
    const std::shared_ptr<TelegramIndex> index = Index();
    std::atomic<bool> wanted = true;
    std::vector<double> took;
    for (auto _ : state) {
        TelegramMatches matches(index, {.contains = "never there"});
        took.push_back(MillisecondsOf([&] { return matches.Advance(wanted); }));
        state.SetIterationTime(took.back() / 1000);
    }
    TellRate(state, took, 200);
}

/// What a window does: first screen, a search through all, and one that is given up.
void Book(benchmark::State &state)
{
    std::vector<double> first, found, cancelled;
    for (auto _ : state) {
        TelegramBook book;
        QEventLoop loop;
        first.push_back(MillisecondsOf([&] {
            const auto isThere = [&] { return book.Row(0) && book.Row(RowsOfAScreen - 1); };
            const auto look = [&] {
                if (isThere())
                    loop.quit();
            };
            QObject::connect(&book, &TelegramBook::Changed, &loop, look);
            QObject::connect(&book, &TelegramBook::Fetched, &loop, look);
            book.Show(Source());
            return loop.exec();
        }));
        while (book.Background().work != TelegramBook::Progress::Work::None)
            loop.processEvents(QEventLoop::WaitForMoreEvents);
        QObject::connect(&book, &TelegramBook::NotFound, &loop, &QEventLoop::quit);
        found.push_back(MillisecondsOf([&] {
            book.Find({.bytes = "never there"}, 0, true);
            return loop.exec();
        }));
        book.Find({.bytes = "never there"}, 0, true);
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        cancelled.push_back(MillisecondsOf([&] {
            book.Cancel();
            return loop.exec();
        }));
        state.SetIterationTime(found.back() / 1000);
    }
    TellRate(state, found, 200, [&] {
        char words[100] = {};
        std::snprintf(words, sizeof words, "; first screen %.0f ms, limit 100; cancelled %.1f, 20",
                      Median(first), Median(cancelled));
        return std::string(words) +
               (Median(first) <= 100 && Median(cancelled) <= 20 ? "" : ", MISSED");
    }());
}

/// All questions, answers and detections of the capture.
void CountResponses(benchmark::State &state)
{
    std::vector<double> took;
    double needs = 0;
    for (auto _ : state) {
        const double before = Memory("VmRSS:");
        ResponseScan scan(Source(), {}, {});
        ResponseStatistics statistics;
        took.push_back(MillisecondsOf(
            [&] { return scan.Advance(statistics, std::numeric_limits<qint64>::max()); }));
        needs = std::max(needs, Memory("VmRSS:") - before);
        state.SetIterationTime(took.back() / 1000);
    }
    char words[100] = {};
    std::snprintf(words, sizeof words, "; memory in MiB %.1f, limit 150", needs);
    TellRate(state, took, 200, words);
}

#define MEASURED(runs) ->UseManualTime()->Iterations(runs)->Unit(benchmark::kMillisecond)
BENCHMARK(IndexAll) MEASURED(5);
BENCHMARK_CAPTURE(AnyPlace, of all, TelegramFilter()) MEASURED(1000);
BENCHMARK_CAPTURE(AnyPlace, of one in a thousand, TelegramFilter{.contains = "\x11\x22"})
MEASURED(300);
BENCHMARK(Filter) MEASURED(3);
BENCHMARK(Book) MEASURED(3);
BENCHMARK(CountResponses) MEASURED(3);

} // namespace
