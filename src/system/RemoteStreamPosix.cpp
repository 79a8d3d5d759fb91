// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "RemoteStream.h"

#include <algorithm>
#include <cerrno>

#include <linux/sockios.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

namespace
{

/// Whether a call without waiting failed because it would have had to wait.
bool MayGoOn(int error)
{
    return error == EAGAIN || error == EINTR;
}

} // namespace

RemoteStream::RemoteStream(Descriptor socket, const QString &peer)
    : m_socket(std::move(socket)), m_peer(peer)
{
}

/// Telegrams leave at once. Whether the other side is alive is asked while nothing is said; the
/// time for bytes on their way is the same.
Result RemoteStream::Prepare(int deadSeconds)
{
    constexpr int Questions = 3;
    constexpr int PartOfATurn = 5;
    constexpr int Milliseconds = 1000;
    const int seconds = std::max(deadSeconds, Questions + 1);
    const int interval = std::max(seconds / PartOfATurn, 1);
    const struct {
        int level;
        int name;
        int value;
    } options[] = {{IPPROTO_TCP, TCP_NODELAY, 1},
                   {SOL_SOCKET, SO_KEEPALIVE, 1},
                   {IPPROTO_TCP, TCP_KEEPIDLE, seconds - Questions * interval},
                   {IPPROTO_TCP, TCP_KEEPINTVL, interval},
                   {IPPROTO_TCP, TCP_KEEPCNT, Questions},
                   {IPPROTO_TCP, TCP_USER_TIMEOUT, seconds * Milliseconds}};
    for (const auto &option : options)
        if (::setsockopt(Handle(), option.level, option.name, &option.value, sizeof option.value) !=
            0)
            NoteEnd(errno);
    if (::fcntl(Handle(), F_SETFL, ::fcntl(Handle(), F_GETFL) | O_NONBLOCK) != 0)
        NoteEnd(errno);
    return m_end;
}

/// The first cause is the true one: the system tells it once. A broken pipe is the answer to bytes
/// for somebody who has closed.
void RemoteStream::NoteEnd(int error)
{
    if (error == EPIPE)
        NoteClosed();
    else
        NoteEnd(qt_error_string(error));
}

void RemoteStream::NoteEnd(const QString &cause)
{
    if (!m_end.Failed())
        m_end = Failure{QStringLiteral("The connection to %1 was lost: %2").arg(m_peer, cause)};
}

void RemoteStream::NoteClosed()
{
    if (!m_end.Failed())
        m_end = Failure{m_peer + QStringLiteral(" closed the connection")};
}

qsizetype RemoteStream::Receive(char *bytes, size_t most)
{
    const ssize_t count = ::recv(Handle(), bytes, most, 0);
    if (count > 0)
        return count;
    if (count < 0 && MayGoOn(errno))
        return 0;
    NoteEnd(count == 0 ? EPIPE : errno);
    return -1;
}

qsizetype RemoteStream::Transmit(const char *bytes, qsizetype count)
{
    const ssize_t taken = ::send(Handle(), bytes, size_t(count), MSG_NOSIGNAL);
    if (taken >= 0)
        return taken;
    if (MayGoOn(errno))
        return 0;
    NoteEnd(errno);
    return -1;
}

qint64 RemoteStream::Unsent() const
{
    int unsent = 0;
    return ::ioctl(Handle(), SIOCOUTQ, &unsent) == 0 ? unsent : 0;
}

void RemoteStream::DropUnsent() const
{
    const linger drop = {1, 0};
    ::setsockopt(Handle(), SOL_SOCKET, SO_LINGER, &drop, sizeof drop);
}
