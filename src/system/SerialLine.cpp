// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SerialLine.h"

#include "LineClock.h"
#include "SerialPortControl.h"

#include <utility>

SerialLine::~SerialLine()
{
    Abandon();
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
    m_counters = SerialDevice::ReadCounters(m_handle);
    m_tally.counted = m_counters.known;
    m_tally.SetModem(SerialDevice::ReadModemLines(m_handle));
    m_tally.RTS = request.requestToSend;
    m_tally.DTR = true;
    Start(request.comNumber);
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

qsizetype SerialLine::Receive(char *bytes, size_t most)
{
    return SerialDevice::Read(m_handle, bytes, most);
}

qsizetype SerialLine::Transmit(const char *bytes, qsizetype count)
{
    return SerialDevice::Write(m_handle, bytes, count);
}

Result SerialLine::Presence()
{
    return SerialDevice::CheckPresence(m_handle, m_request.device);
}

qint64 SerialLine::UnsentInSystem() const
{
    return SerialDevice::UnsentBytes(m_handle);
}

void SerialLine::PutInOrder(qint64)
{
    SerialDevice::DiscardUnsent(m_handle); // else the system's own close waits for it
    if (!m_wasRead)
        SerialDevice::DiscardUnread(m_handle);
    SerialDevice::RestoreLineState(m_handle, m_lineBefore);
}

void SerialLine::Shut()
{
    SerialDevice::Close(std::exchange(m_handle, SerialDevice::NoHandle));
    m_lock.reset(); // the name may be another device's by now
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
    CheckPresence();
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
    if (m_tally.SetModem(lines) && lines && m_listener)
        m_listener->OnModemLines(*lines, time);
}
