// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SerialDevice.h"

#include <array>
#include <cstdlib>
#include <cstring>

// These define the line's full structure and must not meet <termios.h>, which has its own.
#include <asm/termbits.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace
{

/// There is no character of four bits.
struct DataBitsFlag {
    int dataBits;
    tcflag_t flag;
};

constexpr std::array<DataBitsFlag, 4> DataBitsFlags = {{{5, CS5}, {6, CS6}, {7, CS7}, {8, CS8}}};

struct ParityFlags {
    LineParity parity;
    tcflag_t flags;
};

constexpr std::array ParityTable = {ParityFlags{LineParity::None, 0},
                                    ParityFlags{LineParity::Even, PARENB},
                                    ParityFlags{LineParity::Odd, PARENB | PARODD},
                                    ParityFlags{LineParity::Mark, PARENB | PARODD | CMSPAR},
                                    ParityFlags{LineParity::Space, PARENB | CMSPAR}};
static_assert(ParityTable.size() == ParityCount);

constexpr tcflag_t ParityMask = PARENB | PARODD | CMSPAR;

/// Receivers bear more than two in a hundred; drivers report what their divisor really makes, such
/// as 115384 for 115200.
constexpr qint64 BaudToleranceDivisor = 50;

/// Without data bits of that number the flags stay empty; the read-back shows it.
tcflag_t CharacterFlags(const LineSettings &settings)
{
    tcflag_t flags = settings.stopBits == LineStopBits::Two ? CSTOPB : 0;
    for (const DataBitsFlag &entry : DataBitsFlags)
        flags |= entry.dataBits == settings.dataBits ? entry.flag : 0;
    for (const ParityFlags &entry : ParityTable)
        flags |= entry.parity == settings.parity ? entry.flags : 0;
    return flags;
}

qint32 BaudOf(const termios2 &line, qint32 askedBaud)
{
    const qint64 difference = std::llabs(qint64(line.c_ospeed) - askedBaud);
    return difference <= askedBaud / BaudToleranceDivisor ? askedBaud : qint32(line.c_ospeed);
}

bool IsPseudoTerminal(SerialDevice::Handle handle)
{
    struct stat status = {};
    return ::fstat(handle, &status) == 0 && S_ISCHR(status.st_mode) &&
           SerialDevice::IsPseudoTerminal(status.st_rdev);
}

/// A pseudo-terminal has no wire, so nothing comes damaged over it, but while marks are asked for
/// the system takes a third at a time: each byte might need the room of three. One that counts or
/// has modem lines stands for a real line.
bool MayComeDamaged(SerialDevice::Handle handle)
{
    return !IsPseudoTerminal(handle) || SerialDevice::ReadCounters(handle).known ||
           SerialDevice::ReadModemLines(handle).has_value();
}

} // namespace

/// The system gives them these numbers for good.
bool SerialDevice::IsPseudoTerminal(quint64 deviceNumber)
{
    constexpr unsigned First = 136;
    constexpr unsigned Last = 143;
    return ::major(deviceNumber) >= First && ::major(deviceNumber) <= Last;
}

void SerialDevice::ApplySettings(Handle handle, const LineSettings &settings)
{
    termios2 line = {};
    if (::ioctl(handle, TCGETS2, &line) != 0)
        return;

    line.c_iflag &= ~tcflag_t(IGNBRK | BRKINT | IGNPAR | INPCK | PARMRK | ISTRIP | INLCR | IGNCR |
                              ICRNL | IXON | IXOFF | IXANY);
    line.c_iflag |= MayComeDamaged(handle) ? INPCK | PARMRK : 0;
    line.c_oflag &= ~tcflag_t(OPOST);
    line.c_lflag &= ~tcflag_t(ECHO | ECHONL | ICANON | ISIG | IEXTEN);
    line.c_cflag &= ~tcflag_t(CSIZE | CSTOPB | ParityMask | CRTSCTS | CBAUD | CBAUD << IBSHIFT);
    line.c_cflag |= CREAD | CLOCAL | BOTHER | BOTHER << IBSHIFT | CharacterFlags(settings);
    line.c_ispeed = line.c_ospeed = speed_t(settings.baud);
    line.c_cc[VMIN] = 1;
    line.c_cc[VTIME] = 0;
    ::ioctl(handle, TCSETS2, &line);
}

Result SerialDevice::SwitchBreak(Handle handle, bool on)
{
    if (!MayComeDamaged(handle)) // the system would take it as done
        return Failure{QStringLiteral("A pseudo-terminal has no wire")};
    if (::ioctl(handle, on ? TIOCSBRK : TIOCCBRK) == 0)
        return {};
    return Failure{qt_error_string(errno)};
}

bool SerialDevice::MarksDamage(Handle handle)
{
    termios2 line = {};
    return ::ioctl(handle, TCGETS2, &line) == 0 && (line.c_iflag & PARMRK) != 0;
}

std::optional<LineSettings> SerialDevice::ReadLineSettings(Handle handle, qint32 askedBaud)
{
    termios2 line = {};
    if (::ioctl(handle, TCGETS2, &line) != 0)
        return std::nullopt;

    LineSettings settings;
    settings.baud = BaudOf(line, askedBaud);
    settings.stopBits = (line.c_cflag & CSTOPB) != 0 ? LineStopBits::Two : LineStopBits::One;
    for (const DataBitsFlag &entry : DataBitsFlags)
        if ((line.c_cflag & CSIZE) == entry.flag)
            settings.dataBits = entry.dataBits;
    for (const ParityFlags &entry : ParityTable)
        if ((line.c_cflag & ParityMask) == entry.flags)
            settings.parity = entry.parity;
    return settings;
}

QByteArray SerialDevice::LineState(Handle handle)
{
    termios2 line = {};
    if (::ioctl(handle, TCGETS2, &line) != 0)
        return {};
    return QByteArray(reinterpret_cast<const char *>(&line), sizeof line);
}

void SerialDevice::RestoreLineState(Handle handle, const QByteArray &state)
{
    termios2 line = {};
    if (state.size() != sizeof line)
        return;
    std::memcpy(&line, state.constData(), sizeof line);
    ::ioctl(handle, TCSETS2, &line);
}
