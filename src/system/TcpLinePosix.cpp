// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TcpLine.h"

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <linux/sockios.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace
{

struct SocketOption {
    int level;
    int name;
    int value;
};

/// Telegrams leave at once, and a connection that dies without a word is noticed within 10 s.
constexpr SocketOption Options[] = {{IPPROTO_TCP, TCP_NODELAY, 1},
                                    {SOL_SOCKET, SO_KEEPALIVE, 1},
                                    {IPPROTO_TCP, TCP_KEEPIDLE, 4}, // seconds
                                    {IPPROTO_TCP, TCP_KEEPINTVL, 2},
                                    {IPPROTO_TCP, TCP_KEEPCNT, 3}};

bool Prepare(int socket)
{
    for (const SocketOption &option : Options)
        if (::setsockopt(socket, option.level, option.name, &option.value, sizeof option.value) !=
            0)
            return false;
    return ::fcntl(socket, F_SETFL, ::fcntl(socket, F_GETFL) | O_NONBLOCK) == 0;
}

/// Whether a call without waiting failed because it would have had to wait.
bool MayGoOn(int error)
{
    return error == EAGAIN || error == EINTR;
}

} // namespace

TcpLine::~TcpLine()
{
    Abandon();
}

Result TcpLine::Open(int comNumber, const QString &peer, int socket)
{
    m_handle = socket;
    m_peer = peer;
    m_end = {};
    if (!Prepare(socket)) {
        NoteEnd(errno);
        Shut();
        return m_end;
    }
    Start(comNumber);
    return {};
}

/// The first cause is the true one: the system tells it once. A broken pipe is the answer to bytes
/// for somebody who has closed.
void TcpLine::NoteEnd(int error)
{
    if (m_end.Failed())
        return;
    if (error == EPIPE)
        m_end = Failure{m_peer + QStringLiteral(" closed the connection")};
    else
        m_end = Failure{QStringLiteral("The connection to %1 was lost: %2")
                            .arg(m_peer, qt_error_string(error))};
}

qsizetype TcpLine::Receive(char *bytes, size_t most)
{
    const ssize_t count = ::recv(m_handle, bytes, most, 0);
    if (count > 0)
        return count;
    if (count < 0 && MayGoOn(errno))
        return 0;
    NoteEnd(count == 0 ? EPIPE : errno);
    return -1;
}

qsizetype TcpLine::Transmit(const char *bytes, qsizetype count)
{
    const ssize_t taken = ::send(m_handle, bytes, size_t(count), MSG_NOSIGNAL);
    if (taken >= 0)
        return taken;
    if (MayGoOn(errno))
        return 0;
    NoteEnd(errno);
    return -1;
}

/// Those are counted that the other side has not confirmed.
qint64 TcpLine::UnsentInSystem() const
{
    int unsent = 0;
    return ::ioctl(m_handle, SIOCOUTQ, &unsent) == 0 ? unsent : 0;
}

/// What is told as thrown away must not arrive later on.
void TcpLine::PutInOrder(qint64 lost)
{
    const linger drop = {1, 0};
    if (lost > 0)
        ::setsockopt(m_handle, SOL_SOCKET, SO_LINGER, &drop, sizeof drop);
}

void TcpLine::Shut()
{
    ::close(std::exchange(m_handle, NoHandle));
}

Result TcpLine::SetRTS(bool)
{
    return Failure{m_peer + QStringLiteral(" has no request-to-send line")};
}

Result TcpLine::SetDTR(bool)
{
    return Failure{m_peer + QStringLiteral(" has no data-terminal-ready line")};
}

Result TcpLine::SetBreak(bool)
{
    return Failure{m_peer + QStringLiteral(" knows no break")};
}
