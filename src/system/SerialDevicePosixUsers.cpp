// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SerialDevice.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QStringList>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr std::array<const char *, 6> LockFolders = {"/var/lock",         "/run/lock",
                                                     "/var/spool/locks",  "/var/spool/uucp",
                                                     "/var/lock/lockdev", "/etc/locks"};

/// Programs disagree on what a device in a folder of its own is called in a lock's name.
QStringList LockNames(const QString &device)
{
    const QString prefix = QStringLiteral("/dev/");
    QString inFolder = device.startsWith(prefix) ? device.mid(prefix.size()) : device;
    return {QStringLiteral("LCK..") + inFolder.replace(u'/', u'_'),
            QStringLiteral("LCK..") + QFileInfo(device).fileName()};
}

QStringList LockFiles(const QString &canonicalName, const QString &alias)
{
    QStringList names = LockNames(canonicalName) + LockNames(alias);
    names.removeDuplicates();
    QStringList files;
    for (const char *folder : LockFolders)
        for (const QString &name : names)
            if (const QString file = QLatin1StringView(folder) + u'/' + name; QFile::exists(file))
                files.append(file);
    return files;
}

/// The number stands in digits, or in old locks as the machine's own 32 bits; 0 if in neither.
qint64 ProcessInLock(const QString &lockFile)
{
    QFile file(lockFile);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray content = file.read(64);
    bool isText = false;
    const qint64 process = content.simplified().split(' ').first().toLongLong(&isText);
    if (isText)
        return process;
    qint32 binary = 0;
    if (content.size() == sizeof binary)
        std::memcpy(&binary, content.constData(), sizeof binary);
    return binary;
}

bool IsOtherLiveProcess(qint64 process)
{
    return process > 0 && process != ::getpid() &&
           (::kill(pid_t(process), 0) == 0 || errno == EPERM);
}

QByteArray Told(qint64 process, const char *what)
{
    QFile file(QStringLiteral("/proc/%1/%2").arg(process).arg(QLatin1StringView(what)));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The system keeps the first 15 characters of a name; how the program was called has all of it.
QString NameOf(qint64 process)
{
    constexpr qsizetype MostCharacters = 15;
    const QByteArray name = Told(process, "comm").trimmed();
    const QByteArray called = Told(process, "cmdline").split('\0').first().split('/').last();
    return QString::fromLocal8Bit(name.size() == MostCharacters && called.startsWith(name) ? called
                                                                                           : name);
}

QString Describe(qint64 process)
{
    const QString name = NameOf(process);
    return name.isEmpty() ? QStringLiteral("process %1").arg(process)
                          : QStringLiteral("%1 (process %2)").arg(name).arg(process);
}

bool HasOpen(const QString &process, const QString &device)
{
    const QDir files(QStringLiteral("/proc/%1/fd").arg(process));
    const QFileInfoList entries = files.entryInfoList(QDir::Files | QDir::System);
    return std::any_of(entries.begin(), entries.end(),
                       [&](const QFileInfo &entry) { return entry.symLinkTarget() == device; });
}

} // namespace

SerialDevice::Lock::Lock(const QString &canonicalName) : m_held(true)
{
    const auto *folder = std::find_if(LockFolders.begin(), LockFolders.end(), [](const char *each) {
        const QFileInfo info(QString::fromLatin1(each));
        return info.isDir() && info.isWritable();
    });
    if (folder == LockFolders.end())
        return;
    m_file = std::make_unique<QLockFile>(QLatin1StringView(*folder) + u'/' +
                                         LockNames(canonicalName).first());
    m_held = m_file->tryLock();
}

SerialDevice::Lock::~Lock() = default;

Failure SerialDevice::LockFailure(const QString &canonicalName, const QString &alias)
{
    const QString file = LockFileOf(canonicalName, alias);
    if (ProcessInLock(file) == ::getpid())
        return {QStringLiteral("%1 is already open in this program").arg(canonicalName)};
    return {file.isEmpty()
                ? QStringLiteral("%1 cannot be locked for this program").arg(canonicalName)
                : QStringLiteral("%1 is locked by the file %2, which an ended program left behind; "
                                 "delete that file")
                      .arg(canonicalName, file)};
}

QString SerialDevice::LockOwner(const QString &canonicalName, const QString &alias)
{
    for (const QString &file : LockFiles(canonicalName, alias))
        if (const qint64 process = ProcessInLock(file); IsOtherLiveProcess(process))
            return Describe(process);
    return {};
}

QString SerialDevice::LockFileOf(const QString &canonicalName, const QString &alias)
{
    return LockFiles(canonicalName, alias).value(0);
}

QString SerialDevice::HolderOf(const QString &canonicalName)
{
    const QStringList processes =
        QDir(QStringLiteral("/proc")).entryList({QStringLiteral("[1-9]*")}, QDir::Dirs);
    for (const QString &process : processes)
        if (process.toLongLong() != ::getpid() && HasOpen(process, canonicalName))
            return Describe(process.toLongLong());
    return {};
}

QString SerialDevice::MissingRights(const QString &canonicalName)
{
    const QFileInfo info(canonicalName);
    const auto groupRights = QFile::ReadGroup | QFile::WriteGroup;
    if (info.permission(groupRights))
        return QStringLiteral("Permission denied: %1 belongs to the group %2; add yourself to it")
            .arg(canonicalName, info.group());
    return QStringLiteral("Permission denied: %1 belongs to the user %2 and is not open to others")
        .arg(canonicalName, info.owner());
}
