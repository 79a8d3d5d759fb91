// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT
//
// TelegramPeer COUNT BAUD KILL CAPTURE PROGRAM [ARGS...]: starts a program that listens on two
// lines, A and B, which are links in the working folder, and records into CAPTURE. When that file
// begins, COUNT numbered telegrams go over the lines, at the pace of BAUD and by turns, the even
// ones over A. The program's first thread, the window's, is stopped now and then meanwhile, where
// it waits for events: elsewhere it may hold a lock for a moment, such as that of the memory, which
// no window keeps while it stands still, and which would stop all other threads too. After KILL
// milliseconds the program is killed, if that is not 0; else it is ended in good order. Prints how
// many telegrams must be in the capture: those that came 100 ms before its end.

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include <poll.h>
#include <pty.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

namespace
{

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;
using std::chrono::nanoseconds;

constexpr int TelegramLength = 12;
constexpr int BitsOfAByte = 10;
constexpr milliseconds StallEach{700};
constexpr milliseconds StallFor{300};

[[noreturn]] void Fail(const char *what)
{
    std::perror(what);
    std::exit(1);
}

/// The other end of a line whose device is the link.
int MakeLine(const char *link)
{
    termios raw = {};
    ::cfmakeraw(&raw);
    ::cfsetspeed(&raw, B9600);
    raw.c_cflag |= CREAD;
    int peer = -1, device = -1;
    std::array<char, 64> name = {};
    if (::openpty(&peer, &device, name.data(), &raw, nullptr) != 0)
        Fail("openpty");
    ::unlink(link);
    if (::symlink(name.data(), link) != 0)
        Fail(link);
    return peer; // the device stays open, too: the line lasts as long as this program
}

pid_t Start(char **arguments)
{
    const pid_t program = ::fork();
    if (program == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL); // it must not stay if this program fails
        ::execv(arguments[0], arguments);
        Fail(arguments[0]);
    }
    return program;
}

void AwaitBeginOf(const char *capture)
{
    struct stat status = {};
    for (int tries = 0; ::stat(capture, &status) != 0 || status.st_size == 0; ++tries) {
        if (tries == 6000)
            Fail(capture);
        std::this_thread::sleep_for(milliseconds(5));
    }
}

/// Whether a thread that was stopped had been waiting for events.
bool WaitedForEvents(pid_t thread)
{
    std::ifstream file("/proc/" + std::to_string(thread) + "/syscall");
    long call = -1; // stays so if it was running
    file >> call;
#ifdef SYS_poll // not every machine has it
    if (call == SYS_poll)
        return true;
#endif
    return call == SYS_ppoll || call == SYS_restart_syscall;
}

/// Stops one thread of the program where it waits, the others go on; true if it is stopped now.
bool SetStalled(pid_t thread, bool stalled)
{
    if (!stalled)
        return ::ptrace(PTRACE_DETACH, thread, nullptr, nullptr) != 0;
    if (::ptrace(PTRACE_SEIZE, thread, nullptr, nullptr) != 0)
        return false;
    int status = 0;
    ::ptrace(PTRACE_INTERRUPT, thread, nullptr, nullptr);
    ::waitpid(thread, &status, __WALL);
    return WaitedForEvents(thread) || SetStalled(thread, false);
}

void Write(int peer, const std::string &telegram)
{
    for (size_t done = 0; done < telegram.size();) {
        const ssize_t count = ::write(peer, telegram.data() + done, telegram.size() - done);
        if (count < 0 && errno != EINTR)
            Fail("write");
        done += size_t(std::max<ssize_t>(0, count));
    }
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc < 6)
        return 2;
    const int count = std::atoi(argv[1]);
    const nanoseconds pause(1'000'000'000LL * TelegramLength * BitsOfAByte / std::atol(argv[2]));
    const milliseconds kill(std::atol(argv[3]));
    const std::array<int, 2> peers = {MakeLine("A"), MakeLine("B")};
    const pid_t program = Start(argv + 5);
    AwaitBeginOf(argv[4]);

    std::vector<Clock::time_point> sent;
    const auto begin = Clock::now();
    bool stalled = false;
    for (int i = 0; i < count; ++i) {
        const auto due = begin + i * pause;
        if (kill.count() > 0 && due > begin + kill)
            break;
        std::this_thread::sleep_until(due);
        const bool stall = (due - begin) % StallEach > StallEach - StallFor;
        if (stall != stalled)
            stalled = SetStalled(program, stall);
        std::array<char, TelegramLength + 1> text = {};
        std::snprintf(text.data(), text.size(), "T%09d\r\n", i);
        Write(peers[size_t(i % 2)], std::string(text.data(), TelegramLength));
        sent.push_back(Clock::now());
    }
    if (stalled)
        SetStalled(program, false);
    auto safe = Clock::now() - milliseconds(100);
    if (kill.count() > 0) {
        ::kill(program, SIGKILL);
    } else {
        safe += milliseconds(200);
        std::this_thread::sleep_for(milliseconds(500));
        ::kill(program, SIGTERM);
    }
    int status = 0;
    ::waitpid(program, &status, 0);
    std::printf("%ld\n", long(std::count_if(sent.begin(), sent.end(),
                                            [safe](auto time) { return time <= safe; })));
    return 0;
}
