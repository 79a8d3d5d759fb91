// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QDeadlineTimer>
#include <QString>

#include <array>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <termios.h>
#include <unistd.h>

/// A pseudo-terminal pair: the program opens DeviceName(), the test plays the peer on the line. It
/// starts raw, 9600 baud. The peer's calls never wait for the program's event loop, so they may be
/// used in other threads too.
class PtyPair
{
  public:
    PtyPair()
    {
        termios raw = {};
        ::cfmakeraw(&raw);
        ::cfsetspeed(&raw, B9600);
        raw.c_cflag |= CREAD;
        std::array<char, 64> name = {};
        if (::openpty(&m_peer, &m_device, name.data(), &raw, nullptr) != 0)
            qFatal("no pseudo-terminals");
        m_name = QString::fromLatin1(name.data());
        ::fcntl(m_peer, F_SETFL, O_NONBLOCK);
        ::fcntl(m_peer, F_SETFD, FD_CLOEXEC);
        ::fcntl(m_device, F_SETFD, FD_CLOEXEC);
    }
    ~PtyPair() { Unplug(); }
    Q_DISABLE_COPY_MOVE(PtyPair)

    const QString &DeviceName() const { return m_name; }
    /// The test's own descriptor of the device end.
    int Device() const { return m_device; }

    /// What an unplugged adapter looks like to the program.
    void Unplug()
    {
        for (int *end : {&m_device, &m_peer})
            if (const int open = std::exchange(*end, -1); open >= 0)
                ::close(open);
    }

    /// Sends what the line takes at once; returns the count.
    qsizetype WriteSome(const QByteArray &bytes)
    {
        return std::max<qsizetype>(0, ::write(m_peer, bytes.constData(), size_t(bytes.size())));
    }

    /// Sends all; false if the line does not take them in time.
    bool Write(QByteArray bytes, int milliseconds = 20000)
    {
        const QDeadlineTimer deadline(milliseconds);
        while (!bytes.isEmpty() && Wait(POLLOUT, deadline))
            bytes.remove(0, WriteSome(bytes));
        return bytes.isEmpty();
    }

    /// Returns as soon as so many bytes have come, else what came in time.
    QByteArray Read(qsizetype count, int milliseconds = 20000)
    {
        const QDeadlineTimer deadline(milliseconds);
        QByteArray bytes;
        std::array<char, 4096> part;
        while (bytes.size() < count && Wait(POLLIN, deadline)) {
            const auto room = std::min<qsizetype>(qsizetype(part.size()), count - bytes.size());
            bytes.append(part.data(),
                         std::max<qsizetype>(0, ::read(m_peer, part.data(), size_t(room))));
        }
        return bytes;
    }

  private:
    bool Wait(short event, const QDeadlineTimer &deadline) const
    {
        pollfd peer = {m_peer, event, 0};
        return ::poll(&peer, 1, int(deadline.remainingTime())) > 0 && (peer.revents & event) != 0;
    }

    int m_peer = -1;
    int m_device = -1;
    QString m_name;
};
