// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "Limits.h"
#include "LiveProgram.h"
#include "SampleTraffic.h"
#include "support/SerialServer.h"
#include "support/WatchSequence.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>
#include <thread>
#include <vector>

namespace
{

using Clock = std::chrono::steady_clock;

constexpr int Exchanges = 500;
constexpr int Rounds = 5;
constexpr qsizetype BlastBytes = 16 * 1024 * 1024;

/// A client that knows nothing but its socket. The other side takes it for a terminal.
class BareClient
{
  public:
    explicit BareClient(quint16 port) : m_socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_in address = {};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = ::htonl(INADDR_LOOPBACK);
        address.sin_port = ::htons(port);
        const int noDelay = 1;
        ::setsockopt(m_socket, IPPROTO_TCP, 1 /* TCP_NODELAY */, &noDelay, sizeof noDelay);
        if (::connect(m_socket, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0)
            qFatal("no connection");
        constexpr int Quiet = 300; // milliseconds, behind the server's greeting
        for (pollfd in = {m_socket, POLLIN, 0}; ::poll(&in, 1, Quiet) > 0;)
            ::recv(m_socket, m_part.data(), m_part.size(), 0);
    }
    ~BareClient() { ::close(m_socket); }
    Q_DISABLE_COPY_MOVE(BareClient)

    /// Answers so many questions of three bytes.
    void Answer(int count)
    {
        for (qsizetype heard = 0; heard < 3 * qsizetype(count);) {
            const ssize_t bytes = ::recv(m_socket, m_part.data(), m_part.size(), 0);
            if (bytes <= 0)
                return;
            heard += bytes;
            if (heard % 3 == 0 && ::send(m_socket, "YES", 3, MSG_NOSIGNAL) != 3)
                return;
        }
    }

    /// The checksum of so many bytes.
    quint64 Take(qsizetype count)
    {
        quint64 checksum = 0;
        while (count > 0) {
            const ssize_t bytes = ::recv(m_socket, m_part.data(), m_part.size(), 0);
            if (bytes <= 0)
                break;
            checksum = ChecksumLog::Add(checksum, QByteArrayView(m_part.data(), bytes));
            count -= bytes;
        }
        return checksum;
    }

  private:
    int m_socket;
    std::array<char, 65536> m_part;
};

QString AddressOf(const SerialServer &server)
{
    return QStringLiteral("rfc2217://127.0.0.1:%1").arg(server.Port());
}

/// Adds times from question to answer as the device sees them, in milliseconds. False if an answer
/// is missing.
bool Ask(PtyPair &line, std::vector<double> &times)
{
    for (int i = 0; i < Exchanges; ++i) {
        const auto asked = Clock::now();
        if (!line.Write("ask") || line.Read(3, 2000) != "YES")
            return false;
        times.push_back(std::chrono::duration<double, std::milli>(Clock::now() - asked).count());
    }
    return true;
}

bool AskBareClient(std::vector<double> &times)
{
    SerialServer server;
    BareClient client(server.Port());
    std::thread answering([&] { client.Answer(Exchanges); });
    const bool answered = Ask(server.line, times);
    server.Kill();
    answering.join();
    return answered;
}

bool AskProgram(std::vector<double> &times)
{
    SerialServer server;
    LiveProgram program(AddressOf(server));
    WatchSequence(program.tables, "ask", "", "YES");
    bool answered = false;
    std::atomic<bool> done = false;
    std::thread asking([&] {
        answered = Ask(server.line, times);
        done = true;
    });
    program.RunUntil([&] { return done.load(); });
    asking.join();
    program.communication.ClosePorts();
    return answered;
}

/// No byte that telnet gives a meaning, which a bare client would see twice.
QByteArray Block()
{
    SampleTraffic::Random random(5);
    return SampleTraffic::RandomBytes(random, 64 * 1024).replace('\xFF', 'x').replace('\0', 'y');
}

void Blast(PtyPair &line, const QByteArray &block)
{
    for (qsizetype done = 0; done < BlastBytes; done += block.size())
        line.Write(block);
}

quint64 ChecksumOfBlast(const QByteArray &block)
{
    quint64 checksum = 0;
    for (qsizetype done = 0; done < BlastBytes; done += block.size())
        checksum = ChecksumLog::Add(checksum, block);
    return checksum;
}

/// Seconds for a megabyte; infinitely many if bytes were lost or changed.
double Slowness(Clock::time_point began, quint64 checksum, const QByteArray &block)
{
    const double seconds = std::chrono::duration<double>(Clock::now() - began).count();
    return checksum == ChecksumOfBlast(block) ? 1e6 * seconds / double(BlastBytes)
                                              : std::numeric_limits<double>::infinity();
}

double BlastBareClient(const QByteArray &block)
{
    SerialServer server;
    BareClient client(server.Port());
    const auto began = Clock::now();
    std::thread sender([&] { Blast(server.line, block); });
    const quint64 checksum = client.Take(BlastBytes);
    sender.join();
    return Slowness(began, checksum, block);
}

double BlastProgram(const QByteArray &block)
{
    SerialServer server;
    LiveProgram program(AddressOf(server));
    const auto began = Clock::now();
    std::thread sender([&] { Blast(server.line, block); });
    program.RunUntil(
        [&] { return program.log.bytes >= BlastBytes || !program.communication.Running(); });
    const double slowness = Slowness(began, program.log.checksum, block);
    sender.join();
    program.communication.ClosePorts();
    return slowness;
}

/// From a question of a device behind a server to the answer, beside a bare client of that server,
/// by turns.
void BM_RemoteAnswer(benchmark::State &state)
{
    std::vector<double> bare, ours;
    bool answered = true;
    for (auto _ : state)
        for (int round = 0; round < Rounds; ++round)
            answered = AskBareClient(bare) && AskProgram(ours) && answered;
    if (!answered) {
        state.SkipWithError("an answer is missing");
        return;
    }
    Comparison comparison(state, "bare client");
    comparison.Add("p50 ms", Percentile(ours, 0.5), Percentile(bare, 0.5), {1.5, 0});
    comparison.Add("p99 ms", Percentile(ours, 0.99), Percentile(bare, 0.99), {2, 0.5});
}
BENCHMARK(BM_RemoteAnswer)->Iterations(1)->Unit(benchmark::kMillisecond);

/// What a device behind a server says without pause, by turns.
void BM_RemoteBlast(benchmark::State &state)
{
    const QByteArray block = Block();
    std::vector<double> bare, ours;
    for (auto _ : state) {
        for (int round = 0; round < Rounds; ++round) {
            bare.push_back(BlastBareClient(block));
            ours.push_back(BlastProgram(block));
        }
    }
    if (std::isinf(Percentile(bare, 1)) || std::isinf(Percentile(ours, 1))) {
        state.SkipWithError("bytes were lost or changed");
        return;
    }
    state.counters["MB/s"] = 1 / Percentile(ours, 0.5);
    Comparison comparison(state, "bare client");
    comparison.Add("s/MB", Percentile(ours, 0.5), Percentile(bare, 0.5), {1.5, 0});
}
BENCHMARK(BM_RemoteBlast)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace
