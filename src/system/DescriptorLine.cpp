// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "DescriptorLine.h"

#include "LineClock.h"

#include <QDeadlineTimer>
#include <QThread>

#include <chrono>
#include <utility>

using namespace std::chrono_literals;

namespace
{

constexpr auto MostTimeToSend = 1s;
constexpr auto SendPollInterval = 2ms;

/// One after the other, before other lines are looked at.
constexpr int MostReads = 8;

/// An end of reading takes over no more than this from a sender that never pauses.
constexpr qint64 MostBytesAtEnd = 1024 * 1024;

constexpr int BitsOf(const ModemLines &lines)
{
    return int(lines.CTS) | int(lines.DSR) << 1 | int(lines.DCD) << 2 | int(lines.RI) << 3;
}

constexpr ModemLines LinesOf(int bits)
{
    return {(bits & 1) != 0, (bits & 2) != 0, (bits & 4) != 0, (bits & 8) != 0};
}

} // namespace

bool DescriptorLine::Tally::SetModem(const std::optional<ModemLines> &lines)
{
    const int bits = lines ? BitsOf(*lines) : -1;
    return modem.exchange(bits) != bits;
}

/// Where the driver does not count, marks may have told of some, but none tells nothing.
std::optional<qint64> DescriptorLine::Tally::CountOf(LineCondition condition) const
{
    const qint64 count = conditions[size_t(condition)];
    return counted || count > 0 ? std::optional(count) : std::nullopt;
}

/// Counters begin anew with each opening.
void DescriptorLine::Start(int comNumber)
{
    for (std::atomic<qint64> *count : {&m_tally.receivedBytes, &m_tally.receivedChunks,
                                       &m_tally.sentBytes, &m_tally.sentChunks, &m_tally.waiting})
        count->store(0);
    for (std::atomic<qint64> &count : m_tally.conditions)
        count = 0;
    m_comNumber = comNumber;
    m_unsent.clear();
    m_paused = false;
    m_wasRead = false;
    m_tally.away = false;
    m_goneCause.clear();
    m_unsentOfGone = 0;
    m_open = true;
    m_loop.Do([this] { m_loop.Join(*this); });
}

void DescriptorLine::Abandon()
{
    m_loop.Do([this] { m_reading = false; });
    Close();
}

qint64 DescriptorLine::Close()
{
    if (!m_open)
        return 0;
    const qint64 lost = WaitUntilSent();
    m_loop.Do([&] {
        EndWaiting();
        m_loop.Leave(*this);
        m_tally.away = false;
        m_unsent.clear();
        m_tally.waiting = 0;
        if (m_handle == NoHandle)
            return;
        PutInOrder(lost);
        Shut();
    });
    m_open = false;
    LetGo();
    return lost;
}

/// A short poll sees the bytes that wait here and those in the system alike; it also sees a device
/// that goes away meanwhile.
qint64 DescriptorLine::WaitUntilSent()
{
    const QDeadlineTimer deadline(MostTimeToSend);
    qint64 unsent = 0;
    for (;;) {
        bool present = false;
        m_loop.Do([&] {
            CheckPresence();
            present = m_handle != NoHandle;
            unsent = present ? m_unsent.size() + UnsentInSystem() : m_unsentOfGone;
        });
        if (!present || unsent == 0 || deadline.hasExpired())
            return unsent;
        QThread::usleep(std::chrono::microseconds(SendPollInterval).count());
    }
}

void DescriptorLine::BeginReading()
{
    m_reading = m_open && m_handle != NoHandle;
    m_wasRead = m_wasRead || m_reading;
    m_paused = false;
    if (m_open && !m_reading)
        TellGone();
}

void DescriptorLine::EndReading()
{
    qint64 taken = 0;
    for (qsizetype count = 1; m_reading && count > 0 && taken < MostBytesAtEnd; taken += count)
        count = ReadOnce(m_loop.SeveralSources());
    m_reading = false;
    EndWaiting();
}

/// What waits may have come before something that another line has brought meanwhile.
void DescriptorLine::ReadWaiting()
{
    Readable({m_loop.SeveralSources()});
}

void DescriptorLine::Resume()
{
    if (std::exchange(m_paused, false))
        ReadWaiting();
}

void DescriptorLine::Readable(const LineLoop::Wake &wake)
{
    for (int reads = 0; m_reading && reads < MostReads; ++reads) {
        m_paused = m_listener && !m_listener->HasRoom();
        if (m_paused)
            return;
        if (ReadOnce(wake.orderUncertain) <= 0) {
            if (reads == 0)
                CheckPresence();
            return;
        }
    }
}

/// The count as it travelled, whatever was in it; not above 0 if there was nothing to be read.
qsizetype DescriptorLine::ReadOnce(bool orderUncertain)
{
    const qsizetype count = Receive(m_part.data(), m_part.size());
    if (count <= 0)
        return count;
    const qint64 before = m_tally.receivedBytes;
    const LineTime time = LineNow();
    Arrived({QByteArrayView(m_part.data(), count), time,
             Remote() || m_loop.OtherSpoke(*this) || orderUncertain});
    if (m_tally.receivedBytes > before)
        m_tally.receivedChunks += 1;
    return count;
}

void DescriptorLine::Deliver(const LineRead &read)
{
    m_tally.receivedBytes += read.bytes.size();
    if (m_listener)
        m_listener->OnRead(read);
}

Result DescriptorLine::Write(const QByteArray &bytes)
{
    if (!m_open)
        return Failure{QStringLiteral("COM%1 is not open").arg(m_comNumber)};
    if (m_tally.away)
        return Failure{
            QStringLiteral("COM%1 is away; nothing is sent until it is back").arg(m_comNumber)};
    const qint64 waiting = m_unsent.size();
    if (waiting > 0 && waiting + bytes.size() > MostUnsentBytes)
        return Failure{QStringLiteral("COM%1 does not send: %2 bytes are still waiting")
                           .arg(m_comNumber)
                           .arg(waiting)};
    m_tally.sentBytes += bytes.size();
    m_tally.sentChunks += 1;
    if (m_handle == NoHandle)
        return {}; // gone; its user is being told
    m_unsent += bytes;
    if (waiting == 0)
        Send(); // if it has gone, the loop finds out: bytes that came before may still be in hand
    return {};
}

void DescriptorLine::Writable()
{
    if (!Send())
        CheckPresence();
}

/// False if the system will not take any more.
bool DescriptorLine::Send()
{
    const qsizetype taken = Transmit(m_unsent.constData(), m_unsent.size());
    if (taken > 0)
        m_unsent.remove(0, taken);
    CountWaiting();
    return taken >= 0;
}

void DescriptorLine::CountWaiting()
{
    m_tally.waiting = m_handle == NoHandle ? 0 : m_unsent.size() + UnsentInSystem();
}

qint64 DescriptorLine::Waiting()
{
    if (m_open)
        CountWaiting();
    return m_tally.waiting;
}

LineTime DescriptorLine::Now() const
{
    return LineNow();
}

void DescriptorLine::CheckPresence()
{
    if (m_handle == NoHandle)
        return;
    const Result present = Presence();
    if (present.Failed())
        Leave(present.Cause());
}

void DescriptorLine::Leave(const QString &cause)
{
    const bool wasRead = m_reading;
    EndReading(); // its last words
    Shut();
    m_goneCause = cause;
    m_unsentOfGone = m_unsent.size();
    m_unsent.clear();
    m_tally.waiting = 0;
    if (wasRead)
        TellGone();
}

/// Once, and while the line is meant to be read.
void DescriptorLine::TellGone()
{
    const QString cause = std::exchange(m_goneCause, {});
    const qint64 unsent = std::exchange(m_unsentOfGone, 0);
    if (!cause.isEmpty()) {
        m_tally.away = Waits();
        if (m_listener && m_tally.away)
            m_listener->OnAway(cause, unsent, LineNow());
        else if (m_listener)
            m_listener->OnGone(cause, LineNow());
    }
    if (m_tally.away)
        BeginWaiting();
}

/// What came between the opening and this moment is read behind it.
void DescriptorLine::ComeBack()
{
    m_tally.away = false;
    if (m_listener)
        m_listener->OnBack(LineNow());
    BeginReading();
    ReadWaiting();
}

LineCounts DescriptorLine::Counts() const
{
    LineCounts counts;
    counts.receivedBytes = m_tally.receivedBytes;
    counts.receivedChunks = m_tally.receivedChunks;
    counts.sentBytes = m_tally.sentBytes;
    counts.sentChunks = m_tally.sentChunks;
    counts.waiting = m_tally.waiting;
    counts.RTS = m_tally.RTS;
    counts.DTR = m_tally.DTR;
    counts.away = m_tally.away;
    counts.damaged = m_tally.CountOf(LineCondition::DamagedByte);
    counts.breaks = m_tally.CountOf(LineCondition::Break);
    counts.overruns = m_tally.CountOf(LineCondition::Overrun);
    if (const int modem = m_tally.modem; modem >= 0)
        counts.modem = LinesOf(modem);
    return counts;
}
