// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "SampleTraffic.h"
#include "ThreadTurns.h"
#include "support/PtyPair.h"

#include <QElapsedTimer>

#include <array>
#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include <sched.h>

inline constexpr int RequestsOfARound = 200;
inline const QByteArray Request = QByteArrayLiteral("MEAS?\r\n\x02");
inline const QByteArray Answer = QByteArrayLiteral("21.4");

/// Whose processors are whose. Whoever asks is to the program what a device is: something else that
/// runs at the same time, and that no window keeps waiting, where the system grants it. Left to the
/// system, the one who answers would now share a processor with the one who asks and now wait to be
/// woken on another, which takes three times as long.
class Processors
{
  public:
    enum class Share { All, Asking, Answering };

    Processors()
    {
        ::sched_getaffinity(0, sizeof m_all, &m_all);
        for (int i = 0; i < CPU_SETSIZE && CPU_COUNT(&m_asking) + CPU_COUNT(&m_answering) < 2;
             ++i) {
            if (CPU_ISSET(i, &m_all))
                CPU_SET(i, CPU_COUNT(&m_asking) == 0 ? &m_asking : &m_answering);
        }
    }

    /// Of the calling thread, and those that it starts. A lone processor is everybody's.
    void Take(Share share) const
    {
        const cpu_set_t &set = share == Share::Asking      ? m_asking
                               : share == Share::Answering ? m_answering
                                                           : m_all;
        ::sched_setaffinity(0, sizeof set, CPU_COUNT(&m_answering) == 0 ? &m_all : &set);
        if (share != Share::All)
            ThreadTurns::TakeUsual(); // not those of the window's thread, which started it
        if (share == Share::Asking) {
            sched_param first = {};
            first.sched_priority = ::sched_get_priority_min(SCHED_RR);
            ::sched_setscheduler(0, SCHED_RR | SCHED_RESET_ON_FORK, &first); // not for its echo
        }
    }

  private:
    cpu_set_t m_all = {};
    cpu_set_t m_asking = {};
    cpu_set_t m_answering = {};
};

/// A line on which requests are made, and the one on which their answers come.
struct Wires {
    PtyPair ask;
    PtyPair answer;
    bool two = false;

    PtyPair &Answers() { return two ? answer : ask; }
};

/// What any program could reach: a thread that waits for the request and writes the answer.
class PlainEcho
{
  public:
    PlainEcho(Wires &wires, const Processors &processors)
        : m_thread([this, &wires, &processors] {
              processors.Take(Processors::Share::Answering);
              Run(wires);
          })
    {
    }
    ~PlainEcho()
    {
        m_stop = true;
        m_thread.join();
    }
    Q_DISABLE_COPY_MOVE(PlainEcho)

  private:
    void Run(Wires &wires)
    {
        QByteArray heard;
        pollfd device = {wires.ask.Device(), POLLIN, 0};
        std::array<char, 512> part{};
        while (!m_stop) {
            if (::poll(&device, 1, 50) <= 0)
                continue;
            heard.append(part.data(),
                         std::max<ssize_t>(0, ::read(device.fd, part.data(), part.size())));
            if (!heard.contains(Request))
                continue;
            heard.clear();
            [[maybe_unused]] const auto written =
                ::write(wires.Answers().Device(), Answer.constData(), size_t(Answer.size()));
        }
    }

    std::atomic<bool> m_stop = false;
    std::thread m_thread;
};

/// Asks and notes the seconds from the last byte of the request to the first byte of the answer.
/// False if a request stays unanswered.
inline bool Ask(Wires &wires, int noiseRate, SampleTraffic::Random &random,
                std::vector<double> &times)
{
    const QByteArray noise(noiseRate / 500, 'n'); // what comes in 2 ms
    for (int i = 0; i < RequestsOfARound; ++i) {
        if (noiseRate > 0) {
            wires.ask.Write(noise);
            std::this_thread::sleep_for(std::chrono::microseconds(1000 + random() % 2000));
        }
        wires.ask.Write(Request);
        QElapsedTimer timer;
        timer.start();
        if (wires.Answers().Read(1, 5000).isEmpty())
            return false;
        times.push_back(double(timer.nsecsElapsed()) * 1e-9);
        wires.Answers().Read(Answer.size() - 1, 5000);
    }
    return true;
}
