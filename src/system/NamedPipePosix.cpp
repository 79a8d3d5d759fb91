// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "NamedPipe.h"

#include "FileName.h"

#include <QByteArray>

#include <cerrno>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

/// Called right after the system call that failed.
Failure LastFailure()
{
    return {qt_error_string(errno), errno};
}

} // namespace

static_assert(NamedPipe::NoReader == ENXIO);

NamedPipe::NamedPipe(const QString &path) : m_state(TakeHold(path)) {}

NamedPipe::~NamedPipe()
{
    for (const int open : {m_held, m_writing})
        if (open >= 0)
            ::close(open);
}

/// To open what is no pipe could do something to it.
Result NamedPipe::TakeHold(const QString &path)
{
    m_held = ::open(FileName::Encode(path).constData(), O_PATH | O_NOFOLLOW | O_CLOEXEC);
    struct stat status = {};
    if (m_held < 0 || ::fstat(m_held, &status) != 0)
        return LastFailure();
    if (!S_ISFIFO(status.st_mode))
        return Failure{QStringLiteral("It is no named pipe")};
    return {};
}

Result NamedPipe::Open()
{
    const QByteArray held = "/proc/self/fd/" + QByteArray::number(m_held);
    m_writing = ::open(held.constData(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
    return m_writing >= 0 ? Result() : LastFailure();
}

Result NamedPipe::Write(QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const ssize_t taken = ::write(m_writing, bytes.data(), size_t(bytes.size()));
        if (taken > 0) {
            bytes = bytes.sliced(taken);
        } else if (errno == EAGAIN) {
            pollfd reader = {m_writing, POLLOUT, 0};
            ::poll(&reader, 1, -1);
        } else if (errno != EINTR) {
            return LastFailure();
        }
    }
    return {};
}
