// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SystemRecoveryFolder.h"

#include "DescriptorPosix.h"
#include "FileName.h"

#include <QDir>
#include <QRandomGenerator>

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
/// No project is longer, and no file of another making is read beyond it.
constexpr qint64 LongestContent = qint64(1) << 30;

const QString Prefix = QStringLiteral("unsaved-");
const QString Suffix = QStringLiteral(".json");
const QString UnfinishedSuffix = QStringLiteral(".part");

Descriptor OpenFolder(const QString &path)
{
    return Descriptor(::open(FileName::Encode(path).constData(),
                             O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

/// Of the user alone, whatever it was before. Not open with errno set if that cannot be.
Descriptor MakeFolder(const QString &path)
{
    QDir().mkpath(QFileInfo(path).path());
    ::mkdir(FileName::Encode(path).constData(), FolderMode);
    Descriptor folder = OpenFolder(path);
    if (folder.IsOpen() && ::fchmod(folder.Number(), FolderMode) != 0)
        return Descriptor();
    return folder;
}

Descriptor OpenIn(const Descriptor &folder, const QByteArray &name, int flags)
{
    return Descriptor(::openat(folder.Number(), name.constData(),
                               flags | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, FileMode));
}

/// A regular file of the user's that is now held; not open if it cannot be had.
Descriptor TakeIn(const Descriptor &folder, const QByteArray &name)
{
    Descriptor file = OpenIn(folder, name, O_RDONLY);
    struct stat status = {};
    const bool had = file.IsOpen() && ::fstat(file.Number(), &status) == 0 &&
                     S_ISREG(status.st_mode) && status.st_uid == ::geteuid() && Lock(file) &&
                     IsNameOf(folder.Number(), name, file);
    return had ? std::move(file) : Descriptor();
}

/// What a program left behind that was killed while it wrote. The file of one that is about to
/// write is never as old as that.
void RemoveUnfinished(const Descriptor &folder, const QString &path)
{
    const QDateTime longAgo = QDateTime::currentDateTime().addSecs(-SecondsToWrite);
    const QFileInfoList files =
        QDir(path).entryInfoList({Prefix + u'*' + UnfinishedSuffix}, QDir::Files);
    for (const QFileInfo &each : files) {
        const QByteArray name = FileName::Encode(each.fileName());
        if (each.lastModified() < longAgo && TakeIn(folder, name).IsOpen())
            ::unlinkat(folder.Number(), name.constData(), 0);
    }
}

/// By its time, so that names are in the order of their files.
QByteArray NewName()
{
    const QDateTime now = QDateTime::currentDateTimeUtc();
    return FileName::Encode(Prefix + now.toString(QStringLiteral("yyyyMMddhhmmsszzz-")) +
                            QString::number(QRandomGenerator::global()->generate(), 36) + Suffix);
}

bool WriteAll(const Descriptor &file, QByteArrayView content)
{
    while (!content.isEmpty()) {
        const ssize_t count = ::write(file.Number(), content.data(), size_t(content.size()));
        if (count < 0 && errno != EINTR)
            return false;
        content = content.sliced(std::max<ssize_t>(0, count));
    }
    return ::fsync(file.Number()) == 0;
}

class HeldFile final : public RecoveryFolder::File
{
  public:
    HeldFile(QString folder, QByteArray name, Descriptor file)
        : m_folder(std::move(folder)), m_name(std::move(name)), m_file(std::move(file))
    {
    }

    QString Path() const override { return m_folder + u'/' + FileName::Decode(m_name); }

    QDateTime Written() const override
    {
        struct stat status = {};
        ::fstat(m_file.Number(), &status);
        return QDateTime::fromSecsSinceEpoch(status.st_mtime);
    }

    FileSystem::Content Read() const override { return ReadAll(m_file, LongestContent); }

    void Remove() override
    {
        const Descriptor folder = OpenFolder(m_folder);
        if (folder.IsOpen() && IsNameOf(folder.Number(), m_name, m_file))
            ::unlinkat(folder.Number(), m_name.constData(), 0);
    }

  private:
    QString m_folder;
    QByteArray m_name;
    Descriptor m_file;
};

} // namespace

QString SystemRecoveryFolder::UsualPath()
{
    QString states = qEnvironmentVariable("XDG_STATE_HOME");
    if (!QDir::isAbsolutePath(states))
        states = QDir::homePath() + QStringLiteral("/.local/state");
    return states + QStringLiteral("/serimonde");
}

/// The file is held before it has the name by which others look for it.
RecoveryFolder::Kept SystemRecoveryFolder::Keep(QByteArrayView content)
{
    const Descriptor folder = MakeFolder(m_path);
    if (!folder.IsOpen())
        return {nullptr, SystemFailure()};
    RemoveUnfinished(folder, m_path);
    const QByteArray name = NewName();
    const QByteArray unfinished = name + FileName::Encode(UnfinishedSuffix);
    Descriptor file = OpenIn(folder, unfinished, O_RDWR | O_CREAT | O_EXCL);
    if (!file.IsOpen())
        return {nullptr, SystemFailure()};
    if (!Lock(file) || !WriteAll(file, content) ||
        ::renameat(folder.Number(), unfinished.constData(), folder.Number(), name.constData()) !=
            0) {
        const Failure failure = SystemFailure();
        ::unlinkat(folder.Number(), unfinished.constData(), 0);
        return {nullptr, failure};
    }
    ::fsync(folder.Number());
    return {std::make_unique<HeldFile>(m_path, name, std::move(file)), {}};
}

QStringList SystemRecoveryFolder::Names() const
{
    return QDir(m_path).entryList({Prefix + u'*' + Suffix}, QDir::Files,
                                  QDir::Name | QDir::Reversed);
}

std::unique_ptr<RecoveryFolder::File> SystemRecoveryFolder::Take(const QString &name)
{
    const Descriptor folder = OpenFolder(m_path);
    if (!folder.IsOpen())
        return nullptr;
    Descriptor file = TakeIn(folder, FileName::Encode(name));
    if (!file.IsOpen())
        return nullptr;
    return std::make_unique<HeldFile>(m_path, FileName::Encode(name), std::move(file));
}
