// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SerialDevice.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

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

QByteArray Sight(const struct stat &status)
{
    QByteArray sight;
    for (const auto part : {qint64(status.st_rdev), qint64(status.st_ino),
                            qint64(status.st_ctim.tv_sec), qint64(status.st_ctim.tv_nsec)})
        sight += ' ' + QByteArray::number(part);
    return sight;
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

QString SerialDevice::PathOf(const QString &device)
{
    return device.contains(u'/') ? device : QStringLiteral("/dev/") + device;
}

QString SerialDevice::CanonicalName(const QString &device)
{
    return QFileInfo(PathOf(device)).canonicalFilePath();
}

QByteArray SerialDevice::SightOf(const QString &device)
{
    struct stat status = {};
    if (device.isEmpty() || ::stat(QFile::encodeName(device).constData(), &status) != 0)
        return {};
    return QFile::encodeName(device) + Sight(status);
}

QByteArray SerialDevice::SightOfLinks(const QString &name)
{
    constexpr int MostLinks = 8; // they may lead in a circle
    QByteArray sight;
    QString link = name;
    for (int links = 0; links < MostLinks; ++links) {
        struct stat status = {};
        if (::lstat(QFile::encodeName(link).constData(), &status) != 0 || !S_ISLNK(status.st_mode))
            break;
        sight += Sight(status);
        link = QFileInfo(link).symLinkTarget();
    }
    return sight;
}

bool SerialDevice::HasLentName(const QString &canonicalName)
{
    return canonicalName.startsWith(QLatin1String("/dev/pts/"));
}

SerialDevice::Probe::Probe(const QString &canonicalName, const QString &alias, Access access)
    : m_handle(-1), m_state(Open(canonicalName, alias, access))
{
}

SerialDevice::Probe::~Probe()
{
    if (m_handle >= 0)
        ::close(m_handle);
}

Result SerialDevice::Probe::Open(const QString &canonicalName, const QString &alias, Access access)
{
    if (!IsCharacterDevice(canonicalName))
        return NotSerial(canonicalName);
    if (const QString owner = LockOwner(canonicalName, alias); !owner.isEmpty())
        return InUse(canonicalName, owner);

    const int mode = access == Access::ReadOnly ? O_RDONLY : O_RDWR;
    m_handle = ::open(QFile::encodeName(canonicalName).constData(),
                      mode | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (m_handle < 0)
        return OpenFailure(canonicalName);

    if (LineState(m_handle).isEmpty())
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

SerialDevice::Handle SerialDevice::Probe::Release()
{
    ::ioctl(m_handle, TIOCEXCL);
    return std::exchange(m_handle, NoHandle);
}

void SerialDevice::Close(SerialDevice::Handle handle)
{
    ::ioctl(handle, TIOCNXCL);
    ::close(handle);
}

Result SerialDevice::SetRequestToSend(Handle handle, bool on)
{
    Result switched = SwitchLine(handle, OwnLine::RTS, on);
    return switched.Failed() && (errno == ENOTTY || errno == EINVAL) ? Result() : switched;
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

qsizetype SerialDevice::Read(Handle handle, char *bytes, size_t most)
{
    const ssize_t count = ::read(handle, bytes, most);
    if (count >= 0)
        return count;
    return errno == EAGAIN || errno == EINTR ? 0 : -1;
}

qsizetype SerialDevice::Write(Handle handle, const char *bytes, qsizetype count)
{
    const ssize_t taken = ::write(handle, bytes, size_t(count));
    if (taken >= 0)
        return taken;
    return errno == EAGAIN || errno == EINTR ? 0 : -1;
}

DriverCounters SerialDevice::ReadCounters(Handle handle)
{
    serial_icounter_struct counted = {};
    if (::ioctl(handle, TIOCGICOUNT, &counted) != 0)
        return {};
    return {true, quint32(counted.frame) + quint32(counted.parity), quint32(counted.brk),
            quint32(counted.overrun) + quint32(counted.buf_overrun),
            quint32(counted.cts) + quint32(counted.dsr) + quint32(counted.dcd) +
                quint32(counted.rng)};
}

std::optional<ModemLines> SerialDevice::ReadModemLines(Handle handle)
{
    int lines = 0;
    if (::ioctl(handle, TIOCMGET, &lines) != 0)
        return std::nullopt;
    return ModemLines{(lines & TIOCM_CTS) != 0, (lines & TIOCM_DSR) != 0, (lines & TIOCM_CD) != 0,
                      (lines & TIOCM_RI) != 0};
}

Result SerialDevice::SwitchLine(Handle handle, OwnLine line, bool on)
{
    const int bits = line == OwnLine::RTS ? TIOCM_RTS : TIOCM_DTR;
    if (::ioctl(handle, on ? TIOCMBIS : TIOCMBIC, &bits) == 0)
        return {};
    return Failure{LastError()};
}

int SerialDevice::UnsentBytes(Handle handle)
{
    int unsent = 0;
    return ::ioctl(handle, TIOCOUTQ, &unsent) == 0 ? unsent : 0;
}

int SerialDevice::UnreadBytes(Handle handle)
{
    int unread = 0;
    return ::ioctl(handle, FIONREAD, &unread) == 0 ? unread : 0;
}

void SerialDevice::DiscardUnsent(Handle handle)
{
    ::tcflush(handle, TCOFLUSH);
}

void SerialDevice::DiscardUnread(Handle handle)
{
    ::tcflush(handle, TCIFLUSH);
}
