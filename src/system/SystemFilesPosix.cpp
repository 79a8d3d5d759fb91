// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SystemFiles.h"

#include "FileName.h"

#include <QRandomGenerator>

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

constexpr int NoDescriptor = -1;
constexpr mode_t NewFileMode = 0666; ///< less what the user's mask takes away
constexpr int MostLinks = 40;        ///< one behind the other; as many as the system follows

Failure SystemFailure()
{
    const bool inUse = errno == EBUSY || errno == ETXTBSY;
    return {qt_error_string(errno), inUse ? FileAlreadyOpen : 0};
}

Failure NotAFile(mode_t mode)
{
    return {S_ISDIR(mode) ? QStringLiteral("It is a folder")
                          : QStringLiteral("It is a device, not a file")};
}

/// A descriptor that is closed when it goes.
class Descriptor
{
  public:
    explicit Descriptor(int number) : m_number(number) {}
    Descriptor(Descriptor &&other) noexcept : m_number(std::exchange(other.m_number, NoDescriptor))
    {
    }
    Descriptor &operator=(Descriptor &&other) noexcept
    {
        std::swap(m_number, other.m_number);
        return *this;
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    ~Descriptor()
    {
        if (IsOpen())
            ::close(m_number);
    }

    bool IsOpen() const { return m_number != NoDescriptor; }
    int Number() const { return m_number; }

  private:
    int m_number;
};

/// Never waits for the other end of a pipe, never makes a terminal the program's own.
Descriptor Open(const QByteArray &name, int flags, mode_t mode = NewFileMode)
{
    int number = NoDescriptor;
    do {
        number = ::open(name.constData(), flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, mode);
    } while (number < 0 && errno == EINTR);
    return Descriptor(number);
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
    const bool missing = !target.exists && errno == ENOENT && !name.isEmpty();
    if (target.exists && !S_ISREG(target.status.st_mode))
        target.writable = NotAFile(target.status.st_mode);
    else if (!missing && ::faccessat(AT_FDCWD, name.constData(), W_OK, AT_EACCESS) != 0)
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

QByteArray NewNameBeside(const QByteArray &name)
{
    return FolderOf(name) + ".saving-" +
           QByteArray::number(QRandomGenerator::global()->generate(), 36);
}

/// A file without a name, so that nothing is left behind however the program ends. Not every file
/// system can have one: there the file gets a name of its own, which is returned in temporary.
Descriptor OpenBeside(const QByteArray &name, QByteArray &temporary)
{
    Descriptor nameless = Open(FolderOf(name), O_WRONLY | O_TMPFILE);
    if (nameless.IsOpen() || (errno != EOPNOTSUPP && errno != EISDIR && errno != EINVAL))
        return nameless;
    temporary = NewNameBeside(name);
    return Open(temporary, O_WRONLY | O_CREAT | O_EXCL);
}

/// Best effort: the name is in the folder already, this only hastens it to the disk.
void SyncFolder(const QByteArray &folder)
{
    const Descriptor descriptor = Open(folder, O_RDONLY | O_DIRECTORY);
    if (descriptor.IsOpen())
        ::fsync(descriptor.Number());
}

class PosixOutput final : public OutputDevice
{
  public:
    explicit PosixOutput(Descriptor file) : m_file(std::move(file)) {}
    PosixOutput(Descriptor file, QByteArray target, QByteArray temporary)
        : m_file(std::move(file)), m_target(std::move(target)), m_temporary(std::move(temporary))
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
        if (::rename(m_temporary.constData(), m_target.constData()) != 0)
            return SystemFailure();
        m_temporary.clear();
        SyncFolder(FolderOf(m_target));
        return {};
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
        const QByteArray nameless = "/proc/self/fd/" + QByteArray::number(m_file.Number());
        QByteArray name = NewNameBeside(m_target);
        if (::linkat(AT_FDCWD, nameless.constData(), AT_FDCWD, name.constData(),
                     AT_SYMLINK_FOLLOW) != 0)
            return SystemFailure();
        m_temporary = std::move(name);
        return {};
    }

    Descriptor m_file;
    QByteArray m_target;
    QByteArray m_temporary; ///< name of the unfinished file, removed unless it takes its place
};

/// Everything up to the end of the file, but never more than limit bytes.
FileSystem::Content ReadAll(int descriptor, qint64 expected, qint64 limit)
{
    FileSystem::Content content;
    content.bytes.reserve(expected);
    std::array<char, 65536> part;
    while (content.bytes.size() <= limit) {
        const auto count = ::read(descriptor, part.data(), part.size());
        if (count == 0)
            return content;
        if (count > 0)
            content.bytes.append(part.data(), count);
        else if (errno != EINTR)
            return {{}, SystemFailure()};
    }
    return {{}, Failure{QStringLiteral("The file has grown too large")}};
}

} // namespace

FileSystem::Created SystemFiles::Create(const QString &path)
{
    const QByteArray name = FileName::Encode(path);
    if (const Target target = LookAt(name); target.writable.Failed())
        return {nullptr, target.writable};
    Descriptor file = Open(name, O_WRONLY | O_CREAT);
    // What was looked at may have been exchanged since: only now is it certain what is open.
    struct stat status = {};
    if (!file.IsOpen() || ::fstat(file.Number(), &status) != 0)
        return {nullptr, SystemFailure()};
    if (!S_ISREG(status.st_mode))
        return {nullptr, NotAFile(status.st_mode)};
    if (::ftruncate(file.Number(), 0) != 0)
        return {nullptr, SystemFailure()};
    return {std::make_unique<PosixOutput>(std::move(file)), {}};
}

FileSystem::Created SystemFiles::CreateBeside(const QString &path)
{
    // Through a link the file itself is replaced; the link stays.
    const QByteArray name = Resolved(FileName::Encode(path));
    const Target target = LookAt(name);
    if (target.writable.Failed())
        return {nullptr, target.writable};
    QByteArray temporary;
    Descriptor file = OpenBeside(name, temporary);
    if (!file.IsOpen())
        return {nullptr, SystemFailure()};
    auto device = std::make_unique<PosixOutput>(std::move(file), name, temporary);
    if (target.exists)
        device->TakeOwnerAndMode(target.status);
    return {std::move(device), {}};
}

FileSystem::Content SystemFiles::Read(const QString &path, qint64 limit)
{
    const Descriptor file = Open(FileName::Encode(path), O_RDONLY);
    struct stat status = {};
    if (!file.IsOpen() || ::fstat(file.Number(), &status) != 0)
        return {{}, SystemFailure()};
    if (!S_ISREG(status.st_mode))
        return {{}, NotAFile(status.st_mode)};
    if (status.st_size > limit) {
        return {{},
                Failure{QStringLiteral("The file has %1 bytes; at most %2 can be read")
                            .arg(status.st_size)
                            .arg(limit)}};
    }
    return ReadAll(file.Number(), status.st_size, limit);
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
