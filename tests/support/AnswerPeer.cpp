// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT
//
// AnswerPeer COUNT: the device at the other end of a line. Its first line of output names the end
// of the line that is for the program. For each line that it reads it asks COUNT times, waits for
// the first byte of each answer, and prints that line with p50, p90, p99 and the maximum in
// milliseconds; then those of a bare echo, a process of its own that is asked by turns.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <random>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <poll.h>
#include <pty.h>
#include <termios.h>
#include <unistd.h>

namespace
{

using Clock = std::chrono::steady_clock;

constexpr std::string_view Request = "MEAS?\r\n\x02";
constexpr std::string_view Answer = "21.4";
constexpr int MostMilliseconds = 5000;

struct Pty {
    int peer = -1;
    int device = -1;
};

Pty MakePty()
{
    termios raw = {};
    ::cfmakeraw(&raw);
    ::cfsetspeed(&raw, B9600);
    raw.c_cflag |= CREAD;
    Pty pty;
    if (::openpty(&pty.peer, &pty.device, nullptr, &raw, nullptr) != 0)
        std::exit(1);
    return pty;
}

/// So many bytes, or fewer if they do not come.
std::string Read(int handle, size_t count)
{
    std::string bytes;
    pollfd line = {handle, POLLIN, 0};
    while (bytes.size() < count && ::poll(&line, 1, MostMilliseconds) > 0) {
        char part[64];
        const ssize_t read = ::read(handle, part, std::min(sizeof part, count - bytes.size()));
        if (read <= 0)
            break;
        bytes.append(part, size_t(read));
    }
    return bytes;
}

void Write(int handle, std::string_view bytes)
{
    if (::write(handle, bytes.data(), bytes.size()) != ssize_t(bytes.size()))
        std::exit(1);
}

/// What any program could reach.
[[noreturn]] void Echo(int device)
{
    pollfd line = {device, POLLIN, 0};
    for (std::string heard; ::poll(&line, 1, -1) > 0;) {
        char part[64];
        const ssize_t read = ::read(device, part, sizeof part);
        if (read <= 0)
            break;
        heard.append(part, size_t(read));
        if (heard.find(Request) == std::string::npos)
            continue;
        heard.clear();
        Write(device, Answer);
    }
    std::exit(0);
}

/// From the last byte of the request to the first of the answer.
double Ask(int line)
{
    Write(line, Request);
    const Clock::time_point start = Clock::now();
    const std::string first = Read(line, 1);
    const std::chrono::duration<double, std::milli> took = Clock::now() - start;
    if (first + Read(line, Answer.size() - 1) != Answer) {
        std::cerr << "A request stayed unanswered\n";
        std::exit(1);
    }
    return took.count();
}

void Print(const std::string &title, std::vector<double> times)
{
    std::sort(times.begin(), times.end());
    const auto at = [&](double part) { return times[size_t(part * double(times.size() - 1))]; };
    std::printf("%-28s %8.3f %8.3f %8.3f %8.3f\n", title.c_str(), at(0.5), at(0.9), at(0.99),
                at(1));
    std::fflush(stdout);
}

} // namespace

int main(int argc, char *argv[])
{
    const int count = argc > 1 ? std::atoi(argv[1]) : 2000;
    const Pty program = MakePty();
    const Pty echo = MakePty();
    if (::fork() == 0) {
        ::close(echo.peer);
        Echo(echo.device);
    }
    std::cout << ::ttyname(program.device) << std::endl;

    std::minstd_rand random(4);
    for (std::string title; std::getline(std::cin, title);) {
        std::vector<double> answers, echoes;
        for (int i = 0; i < count; ++i) {
            for (const auto &[line, times] :
                 {std::pair(program.peer, &answers), std::pair(echo.peer, &echoes)}) {
                std::this_thread::sleep_for(std::chrono::microseconds(500 + random() % 1000));
                times->push_back(Ask(line));
            }
        }
        Print(title, answers);
        Print("  echo", echoes);
    }
    return 0;
}
