// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SerialDevice.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <cerrno>

#include <fcntl.h>
#include <linux/serial.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

namespace
{

/// Called right after the system call that failed.
QString LastError()
{
    return qt_error_string(errno);
}

Failure InUse(const QString &device, const QString &who)
{
    return {QStringLiteral("%1 is in use by %2")
                .arg(device, who.isEmpty() ? QStringLiteral("another program") : who)};
}

Failure NotSerial(const QString &device)
{
    return {QStringLiteral("%1 is not a serial device").arg(device)};
}

bool IsCharacterDevice(const QString &device)
{
    struct stat status = {};
    return ::stat(QFile::encodeName(device).constData(), &status) == 0 && S_ISCHR(status.st_mode);
}

Failure OpenFailure(const QString &device)
{
    switch (errno) {
    case EACCES:
    case EPERM:
        return {SerialDevice::MissingRights(device)};
    case EBUSY:
        return InUse(device, SerialDevice::HolderOf(device));
    default:
        return {QStringLiteral("%1 cannot be opened: %2").arg(device, LastError())};
    }
}

} // namespace

QString SerialDevice::CanonicalName(const QString &device)
{
    const QString path = device.contains(u'/') ? device : QStringLiteral("/dev/") + device;
    return QFileInfo(path).canonicalFilePath();
}

SerialDevice::Probe::Probe(const QString &canonicalName, const QString &alias)
    : m_handle(-1), m_state(Open(canonicalName, alias))
{
}

SerialDevice::Probe::~Probe()
{
    if (m_handle >= 0)
        ::close(m_handle);
}

Result SerialDevice::Probe::Open(const QString &canonicalName, const QString &alias)
{
    if (!IsCharacterDevice(canonicalName))
        return NotSerial(canonicalName);
    if (const QString owner = LockOwner(canonicalName, alias); !owner.isEmpty())
        return InUse(canonicalName, owner);

    m_handle = ::open(QFile::encodeName(canonicalName).constData(),
                      O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (m_handle < 0)
        return OpenFailure(canonicalName);

    m_line = LineState(m_handle);
    if (m_line.isEmpty())
        return errno == EIO
                   ? Failure{QStringLiteral("There is no hardware behind %1").arg(canonicalName)}
                   : NotSerial(canonicalName);

    // An administrator is let in even when somebody keeps the device for himself.
    int exclusive = 0;
    if (::ioctl(m_handle, TIOCGEXCL, &exclusive) == 0 && exclusive != 0)
        if (const QString holder = HolderOf(canonicalName); !holder.isEmpty())
            return InUse(canonicalName, holder);
    return {};
}

void SerialDevice::Probe::RestoreLine() const
{
    RestoreLineState(m_handle, m_line);
}

Result SerialDevice::SetRequestToSend(Handle handle, bool on)
{
    const int line = TIOCM_RTS;
    if (::ioctl(handle, on ? TIOCMBIS : TIOCMBIC, &line) == 0 || errno == ENOTTY || errno == EINVAL)
        return {};
    return Failure{LastError()};
}

void SerialDevice::SetLowLatency(Handle handle)
{
    serial_struct driver = {};
    if (::ioctl(handle, TIOCGSERIAL, &driver) != 0)
        return;
    driver.flags |= ASYNC_LOW_LATENCY;
    ::ioctl(handle, TIOCSSERIAL, &driver);
}

Result SerialDevice::CheckPresence(Handle handle, const QString &canonicalName)
{
    constexpr std::array GoneErrors = {EIO, ENXIO, EBADF, ENODEV};
    termios line = {};
    if (::tcgetattr(handle, &line) == 0 ||
        std::find(GoneErrors.begin(), GoneErrors.end(), errno) == GoneErrors.end())
        return {};
    const QString error = LastError();
    return Failure{QFileInfo::exists(canonicalName)
                       ? QStringLiteral("%1 was disconnected: %2").arg(canonicalName, error)
                       : QStringLiteral("%1 was unplugged").arg(canonicalName)};
}

QByteArray SerialDevice::ReadWaiting(Handle handle, qsizetype mostBytes)
{
    QByteArray waiting;
    std::array<char, 4096> part;
    while (waiting.size() < mostBytes) {
        const ssize_t count = ::read(handle, part.data(), part.size());
        if (count <= 0)
            break;
        waiting.append(part.data(), qsizetype(count));
    }
    return waiting;
}

int SerialDevice::UnsentBytes(Handle handle)
{
    int unsent = 0;
    return ::ioctl(handle, TIOCOUTQ, &unsent) == 0 ? unsent : 0;
}

void SerialDevice::DiscardUnsent(Handle handle)
{
    ::tcflush(handle, TCOFLUSH);
}
