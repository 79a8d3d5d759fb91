// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QtGlobal>

#include <atomic>
#include <functional>
#include <thread>
#include <utility>

#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

/// A port of this machine at which nobody listens now.
inline int LoopbackSocket(quint16 &port)
{
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int again = 1;
    ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &again, sizeof again);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = ::htonl(INADDR_LOOPBACK);
    address.sin_port = ::htons(port);
    socklen_t size = sizeof address;
    auto *const generic = reinterpret_cast<sockaddr *>(&address);
    if (::bind(socket, generic, size) != 0 || ::getsockname(socket, generic, &size) != 0)
        qFatal("no port");
    port = ::ntohs(address.sin_port);
    return socket;
}

inline quint16 FreePort()
{
    quint16 port = 0;
    ::close(LoopbackSocket(port));
    return port;
}

/// Plays the other side, one connection after the other, in a thread of its own. What it is doing
/// ends with it.
class TcpServer
{
  public:
    class Client
    {
      public:
        Client(int socket, const std::atomic<bool> &ending) : m_socket(socket), m_ending(ending) {}

        /// False if the other side has gone.
        bool Say(const QByteArray &words) const
        {
            for (qsizetype said = 0; said < words.size();) {
                pollfd out = {m_socket, POLLOUT, 0};
                if (m_ending)
                    return false;
                if (::poll(&out, 1, 10) <= 0)
                    continue;
                const ssize_t count =
                    ::send(m_socket, words.constData() + said, size_t(words.size() - said),
                           MSG_NOSIGNAL | MSG_DONTWAIT);
                if (count < 0)
                    return false;
                said += count;
            }
            return true;
        }
        /// What comes until it is enough, the other side goes, or the test ends.
        using Enough = std::function<bool(const QByteArray &heard)>;
        QByteArray Hear(const Enough &enough = [](const QByteArray &) { return false; }) const
        {
            QByteArray heard;
            for (char part[4096]; !m_ending && !enough(heard);) {
                pollfd in = {m_socket, POLLIN, 0};
                if (::poll(&in, 1, 10) <= 0)
                    continue;
                const ssize_t count = ::recv(m_socket, part, sizeof part, 0);
                if (count <= 0)
                    break;
                heard.append(part, count);
            }
            return heard;
        }
        void Reset() const
        {
            const linger drop = {1, 0};
            ::setsockopt(m_socket, SOL_SOCKET, SO_LINGER, &drop, sizeof drop);
        }

      private:
        int m_socket;
        const std::atomic<bool> &m_ending;
    };
    using Script = std::function<void(const Client &client)>;

    explicit TcpServer(Script script)
        : m_script(std::move(script)), m_socket(LoopbackSocket(m_port))
    {
        ::listen(m_socket, 8);
        m_thread = std::thread([this] { Run(); });
    }
    ~TcpServer()
    {
        m_ending = true;
        m_thread.join();
        ::close(m_socket);
    }
    Q_DISABLE_COPY_MOVE(TcpServer)

    quint16 Port() const { return m_port; }

  private:
    void Run() const
    {
        while (!m_ending) {
            pollfd in = {m_socket, POLLIN, 0};
            if (::poll(&in, 1, 10) <= 0)
                continue;
            const int socket = ::accept4(m_socket, nullptr, nullptr, SOCK_CLOEXEC);
            m_script({socket, m_ending});
            ::close(socket);
        }
    }

    Script m_script;
    quint16 m_port = 0;
    int m_socket;
    std::atomic<bool> m_ending = false;
    std::thread m_thread;
};
