// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SystemFiles.h"

#include "FileName.h"
#include "UnfinishedFilePosix.h"

#include <QDir>
#include <QFileInfo>

#include <array>
#include <cerrno>
#include <memory>
#include <utility>

#include <fcntl.h>
#include <limits.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

using std::chrono::milliseconds;

constexpr int MostLinks = 40; ///< one behind the other; as many as the system follows

Failure NotAFile(mode_t mode)
{
    if (S_ISDIR(mode))
        return {QStringLiteral("It is a folder")};
    return {S_ISFIFO(mode) ? QStringLiteral("It is a pipe, not a file")
                           : QStringLiteral("It is a device, not a file")};
}

/// What stands at a place where a file is to be written, if anything does.
struct Target {
    bool exists = false;
    struct stat status = {};
    Result writable; ///< failed: it must not be written
};

Target LookAt(const QByteArray &name)
{
    Target target;
    target.exists = ::stat(name.constData(), &target.status) == 0;
    if (!target.exists) {
        if (errno != ENOENT || name.isEmpty())
            target.writable = SystemFailure();
    } else if (!S_ISREG(target.status.st_mode))
        target.writable = NotAFile(target.status.st_mode);
    else if (::faccessat(AT_FDCWD, name.constData(), W_OK, AT_EACCESS) != 0)
        target.writable = SystemFailure();
    return target;
}

QByteArray FolderOf(const QByteArray &name)
{
    const qsizetype end = name.lastIndexOf('/');
    return end < 0 ? QByteArray("./") : name.first(end + 1);
}

/// Absolute and without links; empty if nothing stands there.
QByteArray RealName(const QByteArray &name)
{
    const std::unique_ptr<char, decltype(&::free)> whole(::realpath(name.constData(), nullptr),
                                                         ::free);
    return QByteArray(whole.get());
}

/// The same for the folder alone, as far as there is one: the file need not exist.
QByteArray InRealFolder(const QByteArray &name)
{
    const QByteArray given = FolderOf(name);
    QByteArray folder = RealName(given);
    if (folder.isEmpty())
        return name;
    if (!folder.endsWith('/'))
        folder += '/';
    return folder + name.sliced(name.lastIndexOf('/') + 1);
}

/// The file that a name leads to, also through a link to a file that has yet to be made.
QByteArray Resolved(QByteArray name)
{
    for (int links = 0; links < MostLinks; ++links) {
        if (QByteArray whole = RealName(name); !whole.isEmpty())
            return whole;
        std::array<char, PATH_MAX> goal;
        const ssize_t length = ::readlink(name.constData(), goal.data(), goal.size());
        if (length <= 0)
            break;
        const QByteArray next(goal.data(), length);
        name = next.startsWith('/') ? next : FolderOf(name) + next;
    }
    return InRealFolder(name);
}

/// A file that is to take a target's place.
struct Unfinished {
    Descriptor file;
    QByteArray name; ///< empty while it has none
};

/// A file without a name, so that nothing is left behind however the program ends. Not every file
/// system can have one: there the file has its name from the beginning, as where it is to keep
/// other programs away.
Unfinished OpenBeside(const QByteArray &target, bool named, milliseconds patience, Result &result)
{
    if (!named) {
        Descriptor nameless(FolderOf(target), O_WRONLY | O_TMPFILE);
        if (nameless.IsOpen())
            return {std::move(nameless), {}};
        if (errno != EOPNOTSUPP && errno != EISDIR && errno != EINVAL) {
            result = SystemFailure();
            return {Descriptor(), {}};
        }
    }
    const QByteArray name = UnfinishedFile::NameFor(target);
    return {UnfinishedFile::Create(name, patience, result), name};
}

/// What was written is safe; this makes the new name safe, too. Not every system can.
Result SyncFolder(const QByteArray &folder)
{
    const Descriptor descriptor(folder, O_RDONLY | O_DIRECTORY);
    if (!descriptor.IsOpen() || ::fsync(descriptor.Number()) == 0 || errno == EINVAL ||
        errno == EROFS || errno == ENOTSUP)
        return {};
    return Failure{QStringLiteral("It is in its place, but the disk may not hold that: ") +
                   SystemFailure().cause};
}

class PosixOutput final : public OutputDevice
{
  public:
    explicit PosixOutput(Descriptor file) : m_file(std::move(file)) {}
    PosixOutput(Unfinished unfinished, QByteArray target, milliseconds patience)
        : m_file(std::move(unfinished.file)),
          m_target(std::move(target)),
          m_temporary(std::move(unfinished.name)),
          m_patience(patience)
    {
    }
    ~PosixOutput() override
    {
        if (!m_temporary.isEmpty())
            ::unlink(m_temporary.constData());
    }
    Q_DISABLE_COPY_MOVE(PosixOutput)

    Taken Write(QByteArrayView bytes) override
    {
        ssize_t count = 0;
        do {
            count = ::write(m_file.Number(), bytes.data(), size_t(bytes.size()));
        } while (count < 0 && errno == EINTR);
        if (count < 0)
            return {0, SystemFailure()};
        return {count, Check()};
    }

    /// What is in a deleted file reaches nobody. One that has yet to take its place has no name.
    Result Check() const override
    {
        struct stat status = {};
        if (!m_target.isEmpty() || ::fstat(m_file.Number(), &status) != 0 || status.st_nlink > 0)
            return {};
        return Failure{QStringLiteral("The file has been deleted")};
    }

    Result CutTo(qint64 size) override
    {
        if (::ftruncate(m_file.Number(), size) == 0 &&
            ::lseek(m_file.Number(), size, SEEK_SET) == size)
            return {};
        return SystemFailure();
    }

    Result Sync() override
    {
        if (::fsync(m_file.Number()) == 0)
            return {};
        return SystemFailure();
    }

    qint64 Size() const override
    {
        struct stat status = {};
        return ::fstat(m_file.Number(), &status) == 0 ? status.st_size : -1;
    }

    Result TakePlace() override
    {
        if (Result named = GiveName(); named.Failed())
            return named;
        if (Result closing = CheckClosing(); closing.Failed())
            return closing;
        if (::rename(m_temporary.constData(), m_target.constData()) != 0)
            return SystemFailure();
        m_temporary.clear();
        return SyncFolder(FolderOf(m_target));
    }

    /// The new file belongs to whom the old one belongs to. Where the system refuses that, as it
    /// may, the file is the user's own, which is no reason not to save.
    void TakeOwnerAndMode(const struct stat &status)
    {
        [[maybe_unused]] const int owner = ::fchown(m_file.Number(), status.st_uid, status.st_gid);
        ::fchmod(m_file.Number(), status.st_mode & 07777);
    }

  private:
    /// A file can only be renamed once it has a name.
    Result GiveName()
    {
        if (!m_temporary.isEmpty())
            return {};
        QByteArray name = UnfinishedFile::NameFor(m_target);
        if (Result named = UnfinishedFile::Name(m_file, name, m_patience); named.Failed())
            return named;
        m_temporary = std::move(name);
        return {};
    }

    /// Some systems tell only then that they have failed. The file itself stays open: with it the
    /// lock on its name would go.
    Result CheckClosing() const
    {
        const int copy = ::fcntl(m_file.Number(), F_DUPFD_CLOEXEC, 0);
        if (copy < 0 || ::close(copy) != 0)
            return SystemFailure();
        return {};
    }

    Descriptor m_file;
    QByteArray m_target;
    QByteArray m_temporary; ///< name of the unfinished file, removed unless it takes its place
    milliseconds m_patience{};
};

/// A regular file, open for reading.
struct OpenFile {
    Descriptor file;
    qint64 size = 0;
    Result result;
};

OpenFile OpenToRead(const QString &path)
{
    OpenFile open;
    open.file = Descriptor(FileName::Encode(path), O_RDONLY);
    struct stat status = {};
    if (!open.file.IsOpen() || ::fstat(open.file.Number(), &status) != 0)
        open.result = SystemFailure();
    else if (!S_ISREG(status.st_mode))
        open.result = NotAFile(status.st_mode);
    open.size = status.st_size;
    return open;
}

FileSystem::Created MakeBeside(const QByteArray &name, bool named, milliseconds patience)
{
    const Target target = LookAt(name);
    if (target.writable.Failed())
        return {nullptr, target.writable};
    Result opened;
    Unfinished unfinished = OpenBeside(name, named, patience, opened);
    if (opened.Failed())
        return {nullptr, opened};
    auto device = std::make_unique<PosixOutput>(std::move(unfinished), name, patience);
    if (target.exists)
        device->TakeOwnerAndMode(target.status);
    return {std::move(device), {}};
}

} // namespace

FileSystem::Created SystemFiles::Create(const QString &path)
{
    const QByteArray name = FileName::Encode(path);
    if (const Target target = LookAt(name); target.writable.Failed())
        return {nullptr, target.writable};
    Descriptor file(name, O_WRONLY | O_CREAT);
    // What was looked at may have been exchanged since: only now is it certain what is open.
    struct stat status = {};
    if (!file.IsOpen() || ::fstat(file.Number(), &status) != 0)
        return {nullptr, SystemFailure()};
    if (!S_ISREG(status.st_mode))
        return {nullptr, NotAFile(status.st_mode)};
    // A file that was cut, be it of nothing, some systems write to the disk when it is closed.
    if (status.st_size > 0 && ::ftruncate(file.Number(), 0) != 0)
        return {nullptr, SystemFailure()};
    return {std::make_unique<PosixOutput>(std::move(file)), {}};
}

/// Through a link the file itself is replaced; the link stays.
FileSystem::Created SystemFiles::CreateBeside(const QString &path)
{
    return MakeBeside(Resolved(FileName::Encode(path)), false, m_patience);
}

FileSystem::Created SystemFiles::CreateForUpdate(const QString &path)
{
    QDir().mkpath(QFileInfo(path).path());
    return MakeBeside(Resolved(FileName::Encode(path)), true, m_patience);
}

void SystemFiles::Tidy(const QString &path)
{
    const QByteArray target = Resolved(FileName::Encode(path));
    UnfinishedFile::RemoveUnheld(UnfinishedFile::NameFor(target)).Ignore();
}

Result SystemFiles::Rename(const QString &from, const QString &to)
{
    const QByteArray old = FileName::Encode(from);
    const QByteArray name = FileName::Encode(to);
    bool done =
        ::renameat2(AT_FDCWD, old.constData(), AT_FDCWD, name.constData(), RENAME_NOREPLACE) == 0;
    if (!done && errno == EINVAL && !Exists(to)) // the file system does not know the flag
        done = ::rename(old.constData(), name.constData()) == 0;
    return done ? SyncFolder(FolderOf(name)) : SystemFailure();
}

FileSystem::Opened SystemFiles::Open(const QString &path) const
{
    OpenFile open = OpenToRead(path);
    if (open.result.Failed())
        return {nullptr, open.result};
    return {InputFrom(std::move(open.file)), {}};
}

FileSystem::Content SystemFiles::Read(const QString &path, qint64 limit)
{
    const OpenFile open = OpenToRead(path);
    if (open.result.Failed())
        return {{}, open.result};
    if (open.size > limit) {
        return {{},
                Failure{QStringLiteral("The file has %1 bytes; at most %2 can be read")
                            .arg(open.size)
                            .arg(limit)}};
    }
    return ReadAll(open.file, limit);
}

void SystemFiles::Remove(const QString &path)
{
    ::unlink(FileName::Encode(path).constData());
}

bool SystemFiles::Exists(const QString &path) const
{
    struct stat status = {};
    return ::stat(FileName::Encode(path).constData(), &status) == 0;
}

QString SystemFiles::CanonicalPath(const QString &path) const
{
    return FileName::Decode(Resolved(FileName::Encode(path)));
}

QString SystemFiles::AbsolutePath(const QString &path) const
{
    return path.startsWith(u'/') ? path : FileName::Decode(InRealFolder(FileName::Encode(path)));
}
