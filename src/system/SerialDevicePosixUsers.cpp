// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SerialDevice.h"

#include "ProcessTable.h"

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

QString Describe(const PortUser &user)
{
    return user.program.isEmpty()
               ? QStringLiteral("process %1").arg(user.process)
               : QStringLiteral("%1 (process %2)").arg(user.program).arg(user.process);
}

QString Describe(qint64 process)
{
    return Describe(ProcessTable().Named(process));
}

/// The first place where a lock can be put; empty if there is none.
QString OwnLockFolder()
{
    for (const char *folder : LockFolders) {
        const QFileInfo info(QString::fromLatin1(folder));
        if (info.isDir() && info.isWritable())
            return info.filePath();
    }
    return {};
}

/// In a folder for all, a file goes only with the consent of who made it.
bool MayDelete(const QString &file)
{
    struct stat folder = {};
    struct stat status = {};
    const QByteArray path = QFile::encodeName(QFileInfo(file).path());
    if (::stat(path.constData(), &folder) != 0 || ::access(path.constData(), W_OK) != 0 ||
        ::stat(QFile::encodeName(file).constData(), &status) != 0)
        return false;
    const uid_t user = ::geteuid();
    return user == 0 || (folder.st_mode & S_ISVTX) == 0 || user == status.st_uid ||
           user == folder.st_uid;
}

} // namespace

SerialDevice::Lock::Lock(const QString &canonicalName) : m_held(true)
{
    const QString folder = OwnLockFolder();
    if (folder.isEmpty())
        return;
    m_file = std::make_unique<QLockFile>(folder + u'/' + LockNames(canonicalName).first());
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

/// One that runs keeps the device wherever its file is, one that has ended only where this program
/// would put its own.
QList<LockFile> SerialDevice::LockFilesOf(const QString &canonicalName, const QString &alias)
{
    const QString own = QFileInfo(OwnLockFolder()).canonicalFilePath();
    QList<LockFile> locks;
    QStringList seen;
    for (const QString &file : LockFiles(canonicalName, alias)) {
        const QFileInfo info(file);
        if (seen.contains(info.canonicalFilePath()))
            continue;
        seen << info.canonicalFilePath();
        const PortUser user = ProcessTable().Named(ProcessInLock(file));
        const bool alive = user.own || IsOtherLiveProcess(user.process);
        const bool stays = info.fileName() == LockNames(canonicalName).first() &&
                           QFileInfo(info.path()).canonicalFilePath() == own && !MayDelete(file);
        locks.append({file, user, alive, alive || stays});
    }
    return locks;
}

QString SerialDevice::HolderOf(const QString &canonicalName)
{
    for (const PortUser &user : ProcessTable().UsersOf(canonicalName).users)
        if (!user.own)
            return Describe(user);
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
