// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "Limits.h"
#include "Requests.h"

#include <benchmark/benchmark.h>

#include <QFile>

#include <sys/wait.h>
#include <unistd.h>

namespace
{

using Words = QList<QByteArray>;

Words Cli(const PtyPair &line, const Words &steps)
{
    return Words{SERIMONDE_CLI, "--port", "1=" + line.DeviceName().toLocal8Bit()} + steps;
}

pid_t Execute(const Words &words)
{
    std::vector<char *> arguments;
    for (const QByteArray &word : words)
        arguments.push_back(const_cast<char *>(word.constData()));
    arguments.push_back(nullptr);
    const pid_t child = ::vfork();
    if (child == 0) {
        ::execv(arguments.front(), arguments.data());
        ::_exit(127);
    }
    return child;
}

bool EndsWell(pid_t child)
{
    int status = 0;
    return ::waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

/// The most that the process has had in memory until now, in MiB; what its parent had when it was
/// made, which the system adds for who waits for its end, is not part of it.
double MostResident(pid_t process)
{
    QFile status(QStringLiteral("/proc/%1/status").arg(process));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray text = status.readAll();
    const QByteArray name = "VmHWM:";
    const qsizetype at = text.indexOf(name);
    return at < 0 ? 0
                  : text.mid(at + name.size()).simplified().split(' ').first().toDouble() / 1024;
}

struct Start {
    double seconds = 0;  ///< from exec to the first byte on the line
    double resident = 0; ///< MiB, when it has said something, heard something and answered
    bool well = false;
};

Start StartProgram(PtyPair &line, const Words &words)
{
    Start start;
    QElapsedTimer timer;
    timer.start();
    const pid_t child = Execute(words);
    const bool said = !line.Read(1).isEmpty();
    start.seconds = double(timer.nsecsElapsed()) * 1e-9;
    const bool answered = said && line.Write("1") && !line.Read(1).isEmpty();
    start.resident = MostResident(child);
    line.Write("2");
    start.well = EndsWell(child) && answered;
    return start;
}

/// The program with all its threads and buffers, next to an empty one that is linked to the same
/// libraries of the toolkit; by turns.
void StartWithoutWindow(benchmark::State &state)
{
    const Words steps{"--quiet", "send-text x", "expect text:1 within 20s", "send-text x",
                      "expect text:2 within 20s"};
    std::vector<double> ours, bare, oursResident, bareResident;
    for (auto _ : state) {
        PtyPair line;
        const Start program = StartProgram(line, Cli(line, steps));
        PtyPair other;
        const Start empty =
            StartProgram(other, {SERIMONDE_BARE_CORE, other.DeviceName().toLocal8Bit()});
        if (!program.well || !empty.well)
            state.SkipWithError("a program did not run well");
        ours.push_back(1000 * program.seconds);
        bare.push_back(1000 * empty.seconds);
        oursResident.push_back(program.resident);
        bareResident.push_back(empty.resident);
        state.SetIterationTime(program.seconds);
    }
    Comparison comparison(state, "empty program");
    comparison.AddWithin("ms", Percentile(ours, 0.5), Percentile(bare, 0.5), 30);
    comparison.Add("MiB", Percentile(oursResident, 0.5), Percentile(bareResident, 0.5), {1, 4});
}

/// From the last byte of what is expected to the first byte that the next step sends: the time in
/// which it was noticed, and more. By turns with the plain echo.
void ExpectationNoticed(benchmark::State &state)
{
    constexpr int rounds = 15;
    for (auto _ : state) {
        Wires wires;
        Wires bare;
        const Processors processors;
        processors.Take(Processors::Share::Answering); // for all threads of the program
        const pid_t program = Execute(
            Cli(wires.ask, {"--quiet", "--within", "60s", "send-text x",
                            "repeat " + QByteArray::number(rounds * RequestsOfARound),
                            "expect hex:" + Request.toHex(), "send-hex " + Answer.toHex(), "end"}));
        processors.Take(Processors::Share::Asking);
        wires.ask.Read(1);
        std::vector<double> times, plain;
        SampleTraffic::Random random(4);
        bool answered = true;
        for (int round = 0; answered && round < rounds; ++round) {
            answered = Ask(wires, 0, random, times);
            const PlainEcho echo(bare, processors);
            answered = answered && Ask(bare, 0, random, plain);
        }
        processors.Take(Processors::Share::All);
        if (!answered)
            wires.ask.Unplug();
        if (!EndsWell(program) || !answered)
            state.SkipWithError("a request stayed unanswered");
        state.SetIterationTime(Percentile(times, 0.5));
        Comparison comparison(state, "echo");
        comparison.AddWithin("p50 ms", 1000 * Percentile(times, 0.5), 1000 * Percentile(plain, 0.5),
                             1);
        // What else the machine does delays both.
        comparison.Add("p99 ms", 1000 * Percentile(times, 0.99), 1000 * Percentile(plain, 0.99),
                       {1, 1});
    }
}

BENCHMARK(StartWithoutWindow)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(30);
BENCHMARK(ExpectationNoticed)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(1);

} // namespace
