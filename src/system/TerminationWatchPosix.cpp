// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TerminationWatch.h"

#include <QSocketNotifier>

#include <array>
#include <csignal>

#include <sys/socket.h>
#include <unistd.h>

namespace
{

constexpr std::array<int, 3> Signals = {SIGTERM, SIGINT, SIGHUP};

/// A signal handler may do little more than write; the notifier reads at the other end.
std::array<int, 2> wakeUp = {-1, -1};

void NoteSignal(int)
{
    const char byte = 1;
    [[maybe_unused]] const ssize_t written = write(wakeUp[0], &byte, sizeof byte);
}

void Handle(void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    for (const int number : Signals)
        sigaction(number, &action, nullptr);
}

} // namespace

TerminationWatch::TerminationWatch()
{
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, wakeUp.data()) != 0)
        return;
    m_notifier = std::make_unique<QSocketNotifier>(wakeUp[1], QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [this] {
        std::array<char, 16> bytes{};
        while (read(wakeUp[1], bytes.data(), bytes.size()) > 0) {
        }
        Q_EMIT Terminating();
    });
    Handle(NoteSignal);
}

void TerminationWatch::OutliveReaders()
{
    std::signal(SIGPIPE, SIG_IGN);
}

TerminationWatch::~TerminationWatch()
{
    if (!m_notifier)
        return;
    Handle(SIG_DFL);
    m_notifier.reset();
    for (int &end : wakeUp) {
        close(end);
        end = -1;
    }
}
