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
    m_tally.counted = m_damage.Counted();
    m_tally.SetModem(SerialDevice::ReadModemLines(m_handle));
    m_tally.RTS = request.requestToSend;
    m_tally.DTR = true;
    Start(request.comNumber);
    return {};
}

Result SerialLine::Configure(const LineRequest &request)
{
    // Whether this succeeds says little; a device may take a setting and do something else.
    SerialDevice::ApplySettings(m_handle, request.settings);
    BeginMarks();
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

/// Right behind the settings, so that what comes in meanwhile is taken for what it is.
void SerialLine::BeginMarks()
{
    const bool marked = SerialDevice::MarksDamage(m_handle);
    m_marks.Begin(marked, SerialDevice::UnreadBytes(m_handle));
    const DriverCounters counters = SerialDevice::ReadCounters(m_handle);
    m_damage.Begin(marked, counters);
    m_modemChanges = counters.modemChanges;
}

void SerialLine::EndReading()
{
    DescriptorLine::EndReading();
    HearHeld();
}

void SerialLine::Arrived(const LineRead &read)
{
    m_marks.Feed(read.bytes);
    while (const auto piece = m_marks.Next())
        Hear(*piece, read);
    if (m_tally.counted)
        LookAtDriver(false);
}

/// A break has brought no byte.
void SerialLine::Hear(const LineMarks::Piece &piece, LineRead read)
{
    using Mark = LineMarks::Mark;
    const bool isBreak = piece.mark == Mark::DamagedZeroOrBreak &&
                         m_damage.IsBreak(SerialDevice::ReadCounters(m_handle));
    read.bytes = piece.bytes.chopped(isBreak ? 1 : 0);
    if (!read.bytes.isEmpty())
        Deliver(read);
    if (piece.mark != Mark::None)
        Tell(isBreak ? LineCondition::Break : LineCondition::DamagedByte, 1, read.time);
}

/// What looked like a mark and was none.
void SerialLine::HearHeld()
{
    const QByteArray held = m_marks.TakeHeld();
    if (!held.isEmpty())
        Deliver({held, LineNow(), m_loop.SeveralSources()});
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

/// What is told as thrown away would hold up the system's own close. Else all has been handed over,
/// but the other side of a pseudo-terminal may not have been given it yet, and would lose it.
void SerialLine::PutInOrder(qint64 lost)
{
    if (lost > 0)
        SerialDevice::DiscardUnsent(m_handle);
    if (!m_wasRead)
        SerialDevice::DiscardUnread(m_handle);
    SerialDevice::RestoreLineState(m_handle, m_lineBefore);
}

void SerialLine::Shut()
{
    SerialDevice::Close(std::exchange(m_handle, SerialDevice::NoHandle));
    m_lock.reset(); // the name may be another device's by now
    HearHeld();
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
    CountWaiting();
    LookAtDriver(true);
}

/// Asking for the modem lines can take a millisecond, and not every driver counts how they change:
/// it is done with each tick, and with a read if a change has been counted.
void SerialLine::LookAtDriver(bool tick)
{
    const DriverCounters now = SerialDevice::ReadCounters(m_handle);
    const bool changed = std::exchange(m_modemChanges, now.modemChanges) != now.modemChanges;
    if (tick || changed)
        LookAtModemLines();
    TellUntold(LineCondition::Overrun, now);
    if (!tick)
        return;
    TellUntold(LineCondition::DamagedByte, now);
    TellUntold(LineCondition::Break, now);
    if (Reading() && !Paused())
        m_damage.Settle(now);
}

void SerialLine::TellUntold(LineCondition condition, const DriverCounters &now)
{
    if (const quint32 untold = m_damage.Untold(condition, now); untold > 0)
        Tell(condition, untold, LineNow());
}

void SerialLine::Tell(LineCondition condition, quint32 count, const LineTime &time)
{
    m_damage.Told(condition, count);
    m_tally.conditions[size_t(condition)] += count;
    if (m_listener && Reading())
        m_listener->OnCondition(condition, count, time);
}

void SerialLine::LookAtModemLines()
{
    const auto lines = SerialDevice::ReadModemLines(m_handle);
    if (m_tally.SetModem(lines) && lines && m_listener && Reading())
        m_listener->OnModemLines(*lines, LineNow());
}
