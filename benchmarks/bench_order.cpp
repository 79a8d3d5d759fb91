// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "LineJudge.h"
#include "LineLoop.h"
#include "SerialDevice.h"
#include "SerialLine.h"
#include "SystemClock.h"
#include "TrafficStream.h"
#include "support/PtyPair.h"

#include <benchmark/benchmark.h>

#include <array>
#include <atomic>
#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace
{

constexpr int TelegramLength = 8;

/// The number of a telegram in the order of sending, as its bytes.
QByteArray Telegram(int number)
{
    return QByteArray::number(number).rightJustified(TelegramLength, '0');
}

/// The telegrams in the order in which the stream tells them, and whether it vouches for it.
class OrderCount final : public TrafficConsumer
{
  public:
    std::atomic<int> telegrams = 0;
    int marked = 0;        ///< reads whose order is said to be uncertain
    int wrong = 0;         ///< telegrams behind one that was sent later
    int wrongUnmarked = 0; ///< of these, where that one is not marked

    void Take(const TrafficEvent &event) override
    {
        if (event.kind != TrafficEvent::Kind::Received)
            return;
        marked += int(event.orderUncertain);
        QByteArray &bytes = m_rest[size_t(event.channel)];
        bytes += event.bytes;
        for (; bytes.size() >= TelegramLength; bytes.remove(0, TelegramLength))
            Count(bytes.first(TelegramLength).toInt(), event.orderUncertain);
    }

  private:
    void Count(int number, bool uncertain)
    {
        if (number < m_latest) {
            ++wrong;
            wrongUnmarked += int(!m_latestUncertain);
        } else {
            m_latest = number;
            m_latestUncertain = uncertain;
        }
        ++telegrams;
    }

    std::array<QByteArray, 2> m_rest; ///< by channel: the beginning of a telegram
    int m_latest = -1;                ///< the telegram sent last of those that came
    bool m_latestUncertain = false;
};

/// Two lines that listen, and the stream that they feed.
class TwoLines
{
  public:
    OrderCount count;
    std::array<PtyPair, 2> ptys;
    LineLoop loop;

    TwoLines()
    {
        m_stream.Feed(count);
        m_board.Publish(std::make_shared<const WatchSnapshot>());
        for (int channel = 0; channel < 2; ++channel) {
            const QString device = SerialDevice::CanonicalName(ptys[size_t(channel)].DeviceName());
            Line(channel).Listen(&m_judge.Ear(channel));
            const Result opened = Line(channel).Open({channel + 1, device, device, {}});
            if (opened.Failed())
                qFatal("%s", qPrintable(opened.Cause()));
        }
        loop.Do([this] {
            m_judge.Begin({true, false});
            m_lineA.BeginReading();
            m_lineB.BeginReading();
        });
    }
    ~TwoLines()
    {
        loop.Do([this] {
            m_lineA.EndReading();
            m_lineB.EndReading();
            m_lineA.Listen(nullptr);
            m_lineB.Listen(nullptr);
        });
    }
    Q_DISABLE_COPY_MOVE(TwoLines)

  private:
    SerialLine &Line(int channel) { return channel == 0 ? m_lineA : m_lineB; }

    SystemClock m_clock;
    WatchBoard m_board;
    TrafficStream m_stream{m_clock};
    SerialLine m_lineA{loop}, m_lineB{loop};
    LineJudge m_judge{m_board, m_stream, &m_lineA, {}};
};

/// Telegrams on two lines by turns, so many microseconds apart at the least.
void OrderOfTwoLines(benchmark::State &state)
{
    const std::chrono::microseconds apart(state.range(0));
    const int telegrams = int(state.range(1));
    for (auto _ : state) {
        TwoLines lines;
        for (int number = 0; number < telegrams; ++number) {
            lines.ptys[size_t(number) % 2].Write(Telegram(number));
            std::this_thread::sleep_for(apart);
        }
        const QDeadlineTimer deadline(5000);
        while (lines.count.telegrams < telegrams && !deadline.hasExpired())
            std::this_thread::sleep_for(apart);
        if (lines.count.telegrams != telegrams)
            state.SkipWithError("telegrams were lost");
        if (lines.count.wrongUnmarked > 0)
            state.SkipWithError((std::to_string(lines.count.wrongUnmarked) +
                                 " telegrams are out of order, and nothing says so")
                                    .c_str());
        state.counters["marked"] = lines.count.marked;
        state.counters["wrong, marked"] = lines.count.wrong - lines.count.wrongUnmarked;
        state.counters["wrong, not marked"] = lines.count.wrongUnmarked;
        state.SetLabel("priority: " + lines.loop.Priority().toStdString());
    }
}

BENCHMARK(OrderOfTwoLines)
    ->ArgNames({"us", "telegrams"})
    ->Args({130, 50000}) // as close as 12 bytes at 921,600 baud
    ->Args({2000, 10000})
    ->Args({5000, 4000})
    ->Iterations(1)
    ->UseRealTime()
    ->Unit(benchmark::kSecond);

} // namespace
