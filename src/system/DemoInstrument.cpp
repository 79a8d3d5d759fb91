// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "DemoInstrument.h"

#include "DemoProtocol.h"

#include <QtGlobal>

#include <algorithm>

#include <cerrno>
#include <fcntl.h>
#include <limits>
#include <poll.h>
#include <pty.h>
#include <termios.h>
#include <unistd.h>

namespace
{

/// A device that nobody has open gives no sign when it is opened, so it is looked at this often.
constexpr int LookForListenerMs = 50;
/// More bytes without a line end are no request.
constexpr qsizetype LongestRequest = 256;

termios RawSettings()
{
    termios settings{};
    cfmakeraw(&settings);
    settings.c_cflag |= CS8 | CREAD | CLOCAL;
    settings.c_cc[VMIN] = 1;
    cfsetspeed(&settings, B9600);
    return settings;
}

/// Called right after the system call that failed.
Failure SystemFailure()
{
    return {qt_error_string(errno)};
}

bool SomebodyListens(int master)
{
    pollfd state{master, 0, 0};
    return poll(&state, 1, 0) >= 0 && (state.revents & (POLLHUP | POLLERR)) == 0;
}

/// After a standstill what was missed is not made up for.
qint64 NextAfter(qint64 now, qint64 due, int period)
{
    if (period == DemoProtocol::Once)
        return std::numeric_limits<qint64>::max();
    return due + ((now - due) / period + 1) * period;
}

/// Throws away what waits to be read, so that a later listener gets no answers to it.
void Drain(int master)
{
    char bytes[512];
    while (read(master, bytes, sizeof bytes) > 0) {
    }
}

} // namespace

DemoInstrument::DemoInstrument(CommMode mode) : m_mode(mode)
{
    const size_t channels = mode == CommMode::SendReceive ? 1 : 2;
    if (pipe2(m_stopPipe.data(), O_CLOEXEC) != 0)
        m_state = SystemFailure();
    while (!m_state.Failed() && m_lines.size() < channels)
        m_state = AddLine();
    if (m_state.Failed()) {
        CloseAll();
        return;
    }
    m_thread = std::thread([this] { Run(); });
}

DemoInstrument::~DemoInstrument()
{
    if (m_thread.joinable()) {
        close(m_stopPipe[1]);
        m_stopPipe[1] = -1;
        m_thread.join();
    }
    CloseAll();
}

QString DemoInstrument::DevicePath(int channel) const
{
    if (channel < 0 || size_t(channel) >= m_lines.size())
        return {};
    return m_lines[size_t(channel)].path;
}

Result DemoInstrument::AddLine()
{
    const termios settings = RawSettings();
    int master = -1;
    int slave = -1;
    if (openpty(&master, &slave, nullptr, &settings, nullptr) != 0)
        return SystemFailure();
    const char *path = ttyname(slave);
    m_lines.push_back({master, QString::fromLocal8Bit(path), false, {}});
    // From this close on the master tells whether somebody has the device open.
    close(slave);
    if (path == nullptr || fcntl(master, F_SETFD, FD_CLOEXEC) != 0 ||
        fcntl(master, F_SETFL, O_NONBLOCK) != 0)
        return SystemFailure();
    return {};
}

void DemoInstrument::CloseAll()
{
    for (const Line &line : m_lines)
        close(line.master);
    m_lines.clear();
    for (int &end : m_stopPipe) {
        if (end >= 0)
            close(end);
        end = -1;
    }
}

void DemoInstrument::Run()
{
    bool talking = false;
    for (;;) {
        const bool somebodyListens = NoticeListeners();
        if (somebodyListens && !talking)
            StartConversation();
        talking = somebodyListens;
        if (talking)
            SayWhatIsDue();
        Wait(talking);
        pollfd stop{m_stopPipe[0], 0, 0};
        if (poll(&stop, 1, 0) != 0)
            return;
        for (Line &line : m_lines)
            Hear(line);
    }
}

bool DemoInstrument::NoticeListeners()
{
    bool any = false;
    for (Line &line : m_lines) {
        const bool opened = SomebodyListens(line.master);
        if (!opened && line.opened) {
            Drain(line.master);
            line.received.clear();
        }
        line.opened = opened;
        any = any || opened;
    }
    return any;
}

void DemoInstrument::StartConversation()
{
    m_sinceOpened.start();
    m_due.clear();
    for (const DemoProtocol::Utterance &utterance : DemoProtocol::UtterancesOf(m_mode))
        m_due.push_back(utterance.first);
}

void DemoInstrument::SayWhatIsDue()
{
    using DemoProtocol::Text;
    const auto utterances = DemoProtocol::UtterancesOf(m_mode);
    const qint64 now = m_sinceOpened.elapsed();
    for (size_t i = 0; i < utterances.size(); ++i) {
        if (m_due[i] > now)
            continue;
        const Text text = utterances[i].text;
        Say(m_lines[size_t(utterances[i].channel)], DemoProtocol::BytesOf(text, m_readings));
        m_readings += text == Text::Reading ? 1 : 0;
        m_due[i] = NextAfter(now, m_due[i], utterances[i].period);
    }
}

void DemoInstrument::Say(const Line &line, const QByteArray &bytes)
{
    if (!line.opened)
        return;
    // Like on a real line, what a listener does not take in time is lost.
    [[maybe_unused]] const ssize_t written = write(line.master, bytes.data(), size_t(bytes.size()));
}

void DemoInstrument::Wait(bool somebodyListens)
{
    std::vector<pollfd> states{{m_stopPipe[0], 0, 0}};
    bool allOpened = true;
    for (const Line &line : m_lines) {
        allOpened = allOpened && line.opened;
        // A device that nobody has open would end the wait at once: a negative one is passed over.
        states.push_back({line.opened ? line.master : -1, POLLIN, 0});
    }
    int timeout = somebodyListens ? TimeToNextUtterance() : LookForListenerMs;
    if (!allOpened)
        timeout = std::min(timeout, LookForListenerMs);
    poll(states.data(), states.size(), timeout);
}

int DemoInstrument::TimeToNextUtterance() const
{
    const qint64 next = *std::min_element(m_due.begin(), m_due.end());
    return int(std::max<qint64>(0, next - m_sinceOpened.elapsed()));
}

void DemoInstrument::Hear(Line &line)
{
    if (!line.opened)
        return;
    char bytes[512];
    const ssize_t count = read(line.master, bytes, sizeof bytes);
    for (ssize_t i = 0; i < count; ++i)
        TakeIn(line, bytes[i]);
}

void DemoInstrument::TakeIn(Line &line, char byte)
{
    // Instruments that talk to each other do not care what a third one says.
    if (m_mode != CommMode::SendReceive)
        return;
    if (byte != '\r' && byte != '\n') {
        if (line.received.size() < LongestRequest)
            line.received += byte;
        return;
    }
    if (!line.received.isEmpty())
        Answer(line, line.received);
    line.received.clear();
}

void DemoInstrument::Answer(const Line &line, const QByteArray &request)
{
    Say(line, DemoProtocol::BytesOf(DemoProtocol::AnswerTo(request), m_readings));
}
