// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "PrivateFolderPosix.h"

#include "FileName.h"

#include <QDateTime>
#include <QDir>

#include <algorithm>
#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr mode_t FolderMode = 0700;
constexpr mode_t FileMode = 0600;
constexpr int SecondsToWrite = 60;

const QString UnfinishedSuffix = QStringLiteral(".part");

Descriptor OpenFolder(const QString &path)
{
    return Descriptor(::open(FileName::Encode(path).constData(),
                             O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

} // namespace

bool WriteAll(const Descriptor &file, QByteArrayView content)
{
    while (!content.isEmpty()) {
        const ssize_t count = ::write(file.Number(), content.data(), size_t(content.size()));
        if (count < 0 && errno != EINTR)
            return false;
        content = content.sliced(std::max<ssize_t>(0, count));
    }
    return true;
}

QString PrivateFolder::UsualPath(const char *variable, const QString &belowHome)
{
    QString folder = qEnvironmentVariable(variable);
    if (!QDir::isAbsolutePath(folder))
        folder = QDir::homePath() + u'/' + belowHome;
    return folder + QStringLiteral("/serimonde");
}

PrivateFolder::PrivateFolder(const QString &path) : PrivateFolder(path, OpenFolder(path)) {}

PrivateFolder::PrivateFolder(QString path, Descriptor folder)
    : m_path(std::move(path)), m_folder(std::move(folder))
{
}

PrivateFolder PrivateFolder::Make(const QString &path)
{
    QDir().mkpath(QFileInfo(path).path());
    ::mkdir(FileName::Encode(path).constData(), FolderMode);
    Descriptor folder = OpenFolder(path);
    if (folder.IsOpen() && ::fchmod(folder.Number(), FolderMode) != 0)
        return {path, Descriptor()};
    return {path, std::move(folder)};
}

Descriptor PrivateFolder::Open(const QByteArray &name, int flags) const
{
    return Descriptor(::openat(m_folder.Number(), name.constData(),
                               flags | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, FileMode));
}

Descriptor PrivateFolder::Take(const QByteArray &name, int flags) const
{
    Descriptor file = Open(name, flags);
    struct stat status = {};
    const bool had = file.IsOpen() && ::fstat(file.Number(), &status) == 0 &&
                     S_ISREG(status.st_mode) && status.st_uid == ::geteuid() && Lock(file) &&
                     IsNameOf(m_folder.Number(), name, file);
    return had ? std::move(file) : Descriptor();
}

void PrivateFolder::Remove(const QByteArray &name) const
{
    ::unlinkat(m_folder.Number(), name.constData(), 0);
}

void PrivateFolder::Remove(const QByteArray &name, const Descriptor &file) const
{
    if (IsOpen() && IsNameOf(m_folder.Number(), name, file))
        Remove(name);
}

Descriptor PrivateFolder::Create(const QByteArray &name, QByteArrayView content, Safety safety,
                                 Result &result) const
{
    const QByteArray unfinished = name + FileName::Encode(UnfinishedSuffix);
    Descriptor file = Open(unfinished, O_RDWR | O_CREAT | O_EXCL);
    if (!file.IsOpen()) {
        result = SystemFailure();
        return file;
    }
    const int folder = m_folder.Number();
    const bool synced = safety == Safety::OfDisk;
    if (!Lock(file) || !WriteAll(file, content) || (synced && ::fsync(file.Number()) != 0) ||
        ::renameat(folder, unfinished.constData(), folder, name.constData()) != 0) {
        result = SystemFailure();
        Remove(unfinished);
        return Descriptor();
    }
    if (synced)
        ::fsync(folder);
    return file;
}

/// The file of one that is about to write is never as old as that.
void PrivateFolder::RemoveUnfinished(const QString &prefix) const
{
    const QDateTime longAgo = QDateTime::currentDateTime().addSecs(-SecondsToWrite);
    const QFileInfoList files =
        QDir(m_path).entryInfoList({prefix + u'*' + UnfinishedSuffix}, QDir::Files);
    for (const QFileInfo &each : files) {
        const QByteArray name = FileName::Encode(each.fileName());
        if (each.lastModified() < longAgo && Take(name, O_RDONLY).IsOpen())
            Remove(name);
    }
}
