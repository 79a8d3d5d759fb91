// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SerialLine.h"

#include "LineClock.h"
#include "SerialPortControl.h"

#include <QDeadlineTimer>
#include <QThread>

#include <algorithm>
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

SerialLine::~SerialLine()
{
    m_loop.Do([this] { m_reading = false; });
    Close();
}

Result SerialLine::Open(const LineRequest &request)
{
    SerialDevice::Probe probe(request.device, request.alias);
    if (probe.State().Failed())
        return probe.State();
    auto lock = std::make_unique<SerialDevice::Lock>(request.device);
    if (!lock->Held())
        return SerialDevice::LockFailure(request.device, request.alias);

    // Bytes that came in before the opening are left to the system: it keeps or drops them.
    m_lineBefore = SerialDevice::LineState(probe.Handle());
    m_handle = probe.Release();
    m_request = request;
    if (Result configured = Configure(request); configured.Failed()) {
        SerialDevice::RestoreLineState(m_handle, m_lineBefore);
        SerialDevice::Close(std::exchange(m_handle, SerialDevice::NoHandle));
        return configured;
    }
    m_lock = std::move(lock);
    Forget();
    m_tally.RTS = request.requestToSend;
    m_tally.DTR = true;
    m_open = true;
    m_loop.Do([this] { m_loop.Join(*this); });
    return {};
}

Result SerialLine::Configure(const LineRequest &request) const
{
    // Whether this succeeds says little; a device may take a setting and do something else.
    SerialDevice::ApplySettings(m_handle, request.settings);
    const auto line = SerialDevice::ReadLineSettings(m_handle, request.settings.baud);
    if (!line)
        return SerialDevice::CheckPresence(m_handle, request.device);
    if (*line != request.settings)
        return Failure{
            QStringLiteral("%1 was asked for %2 and does %3")
                .arg(request.device, LineSettingsText(request.settings), LineSettingsText(*line)),
            RefusedLineSettings};

    const Result switched = SerialDevice::SetRequestToSend(m_handle, request.requestToSend);
    if (switched.Failed())
        return Failure{QStringLiteral("The request-to-send line of %1 cannot be set: %2")
                           .arg(request.device, switched.Cause())};
    SerialDevice::SetLowLatency(m_handle);
    return {};
}

/// Counters begin anew with each opening.
void SerialLine::Forget()
{
    for (std::atomic<qint64> *count :
         {&m_tally.receivedBytes, &m_tally.receivedChunks, &m_tally.sentBytes, &m_tally.sentChunks,
          &m_tally.waiting, &m_tally.damaged, &m_tally.breaks, &m_tally.overruns})
        count->store(0);
    m_unsent.clear();
    m_paused = false;
    m_wasRead = false;
    m_counters = SerialDevice::ReadCounters(m_handle);
    m_tally.counted = m_counters.known;
    const auto lines = SerialDevice::ReadModemLines(m_handle);
    m_tally.modem = lines ? BitsOf(*lines) : -1;
}

qint64 SerialLine::Close()
{
    if (!m_open)
        return 0;
    const qint64 lost = WaitUntilSent();
    m_loop.Do([this] {
        m_loop.Leave(*this);
        m_unsent.clear();
        m_tally.waiting = 0;
        if (m_handle == SerialDevice::NoHandle)
            return;
        SerialDevice::DiscardUnsent(m_handle); // else the system's own close waits for it
        if (!m_wasRead)
            SerialDevice::DiscardUnread(m_handle);
        SerialDevice::RestoreLineState(m_handle, m_lineBefore);
        SerialDevice::Close(std::exchange(m_handle, SerialDevice::NoHandle));
    });
    m_lock.reset();
    m_open = false;
    return lost;
}

/// A short poll sees the bytes that wait here and those in the system alike; it also sees a device
/// that goes away meanwhile.
qint64 SerialLine::WaitUntilSent()
{
    const QDeadlineTimer deadline(MostTimeToSend);
    qint64 unsent = 0;
    for (;;) {
        m_loop.Do([&] {
            CheckDevice();
            unsent = UnsentBytes();
        });
        if (unsent == 0 || deadline.hasExpired())
            return unsent;
        QThread::usleep(std::chrono::microseconds(SendPollInterval).count());
    }
}

/// None of a device that has gone: what it did not take is told with its going.
qint64 SerialLine::UnsentBytes() const
{
    return m_handle == SerialDevice::NoHandle
               ? 0
               : m_unsent.size() + SerialDevice::UnsentBytes(m_handle);
}

void SerialLine::BeginReading()
{
    m_reading = m_open && m_handle != SerialDevice::NoHandle;
    m_wasRead = m_wasRead || m_reading;
    m_paused = false;
}

void SerialLine::EndReading()
{
    const qint64 most = m_tally.receivedBytes + MostBytesAtEnd;
    while (m_reading && m_tally.receivedBytes < most && ReadOnce({})) {
    }
    m_reading = false;
}

void SerialLine::Readable(const LineLoop::Wake &wake)
{
    for (int reads = 0; m_reading && reads < MostReads; ++reads) {
        m_paused = m_listener && !m_listener->HasRoom();
        if (m_paused)
            return;
        // What a further read brings may have come behind something on another line.
        if (!ReadOnce({wake.orderUncertain || (reads > 0 && wake.otherLines), wake.otherLines})) {
            if (reads == 0)
                CheckDevice();
            return;
        }
    }
}

/// False if there was nothing to be read.
bool SerialLine::ReadOnce(const LineLoop::Wake &wake)
{
    const qsizetype count = SerialDevice::Read(m_handle, m_part.data(), m_part.size());
    if (count <= 0)
        return false;
    const LineTime now = LineNow();
    m_tally.receivedBytes += count;
    m_tally.receivedChunks += 1;
    if (m_listener)
        m_listener->OnRead({QByteArrayView(m_part.data(), count), now, wake.orderUncertain});
    return true;
}

Result SerialLine::Write(const QByteArray &bytes)
{
    if (!m_open)
        return Failure{QStringLiteral("COM%1 is not open").arg(m_request.comNumber)};
    const qint64 waiting = m_unsent.size();
    if (waiting > 0 && waiting + bytes.size() > MostUnsentBytes)
        return Failure{QStringLiteral("COM%1 does not send: %2 bytes are still waiting")
                           .arg(m_request.comNumber)
                           .arg(waiting)};
    m_tally.sentBytes += bytes.size();
    m_tally.sentChunks += 1;
    if (m_handle == SerialDevice::NoHandle)
        return {}; // gone; its user is being told
    m_unsent += bytes;
    if (waiting == 0)
        Send();
    return {};
}

void SerialLine::Writable()
{
    Send();
}

void SerialLine::Send()
{
    const qsizetype taken = SerialDevice::Write(m_handle, m_unsent.constData(), m_unsent.size());
    if (taken > 0)
        m_unsent.remove(0, taken);
    else if (taken < 0)
        CheckDevice();
    m_tally.waiting = m_unsent.size();
}

LineTime SerialLine::Now() const
{
    return LineNow();
}

Result SerialLine::SetRTS(bool on)
{
    Result switched = SerialDevice::SwitchLine(m_handle, SerialDevice::OwnLine::RTS, on);
    if (!switched.Failed())
        m_tally.RTS = on;
    return switched;
}

Result SerialLine::SetDTR(bool on)
{
    Result switched = SerialDevice::SwitchLine(m_handle, SerialDevice::OwnLine::DTR, on);
    if (!switched.Failed())
        m_tally.DTR = on;
    return switched;
}

/// Some devices leave without a word; counters and lines have to be asked for.
void SerialLine::Tick()
{
    CheckDevice();
    if (m_handle == SerialDevice::NoHandle)
        return;
    const LineTime now = LineNow();
    LookAtModemLines(now);
    LookAtCounters(now);
}

void SerialLine::LookAtCounters(const LineTime &time)
{
    const SerialDevice::Counters now = SerialDevice::ReadCounters(m_handle);
    if (!now.known)
        return;
    const auto tell = [&](LineCondition condition, int since, std::atomic<qint64> &tally) {
        for (int i = 0; i < since; ++i) {
            ++tally;
            if (m_listener)
                m_listener->OnCondition(condition, time);
        }
    };
    tell(LineCondition::DamagedByte, now.damaged - m_counters.damaged, m_tally.damaged);
    tell(LineCondition::Break, now.breaks - m_counters.breaks, m_tally.breaks);
    tell(LineCondition::Overrun, now.overruns - m_counters.overruns, m_tally.overruns);
    m_counters = now;
}

void SerialLine::LookAtModemLines(const LineTime &time)
{
    const auto lines = SerialDevice::ReadModemLines(m_handle);
    const int bits = lines ? BitsOf(*lines) : -1;
    if (m_tally.modem.exchange(bits) != bits && lines && m_listener)
        m_listener->OnModemLines(*lines, time);
}

void SerialLine::CheckDevice()
{
    if (m_handle == SerialDevice::NoHandle)
        return;
    const Result present = SerialDevice::CheckPresence(m_handle, m_request.device);
    if (present.Failed())
        Leave(present.Cause());
}

void SerialLine::Leave(const QString &cause)
{
    const bool wasRead = std::exchange(m_reading, false);
    SerialDevice::Close(std::exchange(m_handle, SerialDevice::NoHandle));
    m_lock.reset(); // the name may be another device's by now
    m_unsent.clear();
    m_tally.waiting = 0;
    if (m_listener && wasRead)
        m_listener->OnGone(cause, LineNow());
}

LineCounts SerialLine::Counts() const
{
    LineCounts counts;
    counts.receivedBytes = m_tally.receivedBytes;
    counts.receivedChunks = m_tally.receivedChunks;
    counts.sentBytes = m_tally.sentBytes;
    counts.sentChunks = m_tally.sentChunks;
    counts.waiting = m_tally.waiting;
    counts.RTS = m_tally.RTS;
    counts.DTR = m_tally.DTR;
    if (m_tally.counted) {
        counts.damaged = m_tally.damaged;
        counts.breaks = m_tally.breaks;
        counts.overruns = m_tally.overruns;
    }
    if (const int modem = m_tally.modem; modem >= 0)
        counts.modem = LinesOf(modem);
    return counts;
}
