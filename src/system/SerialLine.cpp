// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SerialLine.h"

#include "DeviceReturn.h"
#include "LineClock.h"

#include <chrono>
#include <utility>

namespace
{

constexpr std::chrono::seconds MostTimeToLetGo{1};

} // namespace

SerialLine::SerialLine(LineLoop &loop) : DescriptorLine(loop) {}

SerialLine::~SerialLine()
{
    Abandon();
}

Result SerialLine::Open(const LineRequest &request)
{
    if (request.reopens)
        m_search = DeviceSearch(request.device, request.alias);
    SerialOpening opening(request);
    if (opening.State().Failed())
        return opening.State();
    m_request = request;
    TakeOver(opening);
    Start(request.comNumber);
    return {};
}

QString SerialLine::Device() const
{
    const std::lock_guard guard(m_nameLock);
    return m_device;
}

/// The lines' thread does not know the line yet, or does this itself.
void SerialLine::TakeOver(SerialOpening &opening)
{
    m_lineBefore = opening.LineBefore();
    m_handle = opening.TakeHandle();
    m_lock = opening.TakeLock();
    m_request.device = opening.Device();
    const SerialOpening::Marks &marks = opening.MarksFound();
    m_marks.Begin(marks.marked, marks.unmarkedBytes);
    m_damage.Begin(marks.marked, marks.counters);
    m_modemChanges = marks.counters.modemChanges;
    m_tally.counted = m_damage.Counted();
    m_tally.SetModem(SerialDevice::ReadModemLines(m_handle));
    m_tally.RTS = m_request.requestToSend;
    m_tally.DTR = true;
    const std::lock_guard guard(m_nameLock);
    m_device = m_request.device;
}

void SerialLine::BeginWaiting()
{
    m_return = std::make_unique<DeviceReturn>(
        m_request, m_search, std::move(m_lock),
        DeviceReturn::Calls{
            [this](const std::shared_ptr<SerialOpening> &opened, const DeviceSearch &search) {
                m_loop.Post([this, opened, search] { Return(*opened, search); });
            },
            [this](const QString &cause) {
                m_loop.Post([this, cause] {
                    if (m_listener && m_return && !m_return->HasEnded())
                        m_listener->OnRefused(cause);
                });
            }});
}

void SerialLine::Return(SerialOpening &opening, const DeviceSearch &search)
{
    if (!m_return || m_return->HasEnded())
        return;
    m_return.reset();
    m_search = search;
    TakeOver(opening);
    ComeBack();
}

void SerialLine::EndWaiting()
{
    if (m_return)
        m_return->End();
}

/// A device that is being opened meanwhile must not be in the way of the next opening.
void SerialLine::LetGo()
{
    std::unique_ptr<DeviceReturn> waiting;
    m_loop.Do([&] { waiting = std::move(m_return); });
    if (waiting)
        waiting->WaitUntilIdle(MostTimeToLetGo);
    m_lock.reset();
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
    if (SerialDevice::HasLentName(m_request.device))
        m_lock.reset(); // another program may get the name as soon as it is free
    SerialDevice::Close(std::exchange(m_handle, SerialDevice::NoHandle));
    if (!Waits())       // else it goes with the waiting, or with the end of the line
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

Result SerialLine::SetBreak(bool on)
{
    return SerialDevice::SwitchBreak(m_handle, on);
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
