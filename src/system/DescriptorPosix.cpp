// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "DescriptorPosix.h"

#include <array>
#include <cerrno>

#include <signal.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

class PosixInput final : public InputDevice
{
  public:
    explicit PosixInput(Descriptor file) : m_file(std::move(file)) {}

    Given ReadAt(qint64 place, char *bytes, qint64 most) const override
    {
        Given given;
        while (given.count < most) {
            const ssize_t count = ::pread(m_file.Number(), bytes + given.count,
                                          size_t(most - given.count), place + given.count);
            if (count == 0)
                break;
            if (count > 0)
                given.count += count;
            else if (errno != EINTR)
                return {given.count, SystemFailure()};
        }
        return given;
    }

    qint64 Size() const override
    {
        struct stat status = {};
        return ::fstat(m_file.Number(), &status) == 0 ? qint64(status.st_size) : 0;
    }

  private:
    Descriptor m_file;
};

} // namespace

Descriptor::Descriptor(const QByteArray &name, int flags, mode_t mode) : m_number(None)
{
    do {
        m_number = ::open(name.constData(), flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, mode);
    } while (m_number < 0 && errno == EINTR);
}

Descriptor::~Descriptor()
{
    if (IsOpen())
        ::close(m_number);
}

void BlockBrokenPipes()
{
    sigset_t set = {};
    ::sigemptyset(&set);
    ::sigaddset(&set, SIGPIPE);
    ::pthread_sigmask(SIG_BLOCK, &set, nullptr);
}

Failure SystemFailure()
{
    const int error = errno;
    const bool inUse = error == EBUSY || error == ETXTBSY;
    return {qt_error_string(error), inUse ? FileAlreadyOpen : error == ENOENT ? FileMissing : 0};
}

bool Lock(const Descriptor &file)
{
    return ::flock(file.Number(), LOCK_EX | LOCK_NB) == 0;
}

bool IsNameOf(int folder, const QByteArray &name, const Descriptor &file)
{
    struct stat open = {};
    struct stat named = {};
    return ::fstat(file.Number(), &open) == 0 &&
           ::fstatat(folder, name.constData(), &named, AT_SYMLINK_NOFOLLOW) == 0 &&
           open.st_dev == named.st_dev && open.st_ino == named.st_ino;
}

FileSystem::Content ReadAll(const Descriptor &file, qint64 limit)
{
    FileSystem::Content content;
    std::array<char, 65536> part;
    while (content.bytes.size() <= limit) {
        const ssize_t count =
            ::pread(file.Number(), part.data(), part.size(), content.bytes.size());
        if (count == 0)
            return content;
        if (count > 0)
            content.bytes.append(part.data(), count);
        else if (errno != EINTR)
            return {{}, SystemFailure()};
    }
    return {{}, Failure{QStringLiteral("The file has more than %1 bytes").arg(limit)}};
}

std::unique_ptr<InputDevice> InputFrom(Descriptor file)
{
    return std::make_unique<PosixInput>(std::move(file));
}
