// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "LineLoop.h"
#include "PortDevices.h"
#include "SerialPort.h"
#include "SerialPortHub.h"
#include "SystemPortName.h"
#include "support/MemoryStore.h"

#include <QCoreApplication>
#include <QFile>

#include <cstdlib>

#include <pwd.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

/// Another process, without an administrator's rights, that opens devices when told to. It must be
/// made first thing in main, before any thread.
class UnprivilegedOpener
{
  public:
    UnprivilegedOpener()
    {
        int ends[2] = {};
        if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) != 0)
            qFatal("no socket pair");
        m_process = ::fork();
        if (m_process == 0) {
            ::close(ends[0]);
            Serve(ends[1]);
        }
        ::close(ends[1]);
        m_socket = ends[0];
    }
    ~UnprivilegedOpener()
    {
        ::close(m_socket);
        ::waitpid(m_process, nullptr, 0);
    }
    Q_DISABLE_COPY_MOVE(UnprivilegedOpener)

    qint64 Process() const { return m_process; }

    /// The description of the failure, or "opened".
    QString Open(const QString &device) const
    {
        const QByteArray name = QFile::encodeName(device);
        ::send(m_socket, name.constData(), size_t(name.size()), 0);
        return QString::fromUtf8(Receive(m_socket));
    }

  private:
    static QByteArray Receive(int socket)
    {
        QByteArray packet(4096, '\0');
        packet.resize(
            std::max<qsizetype>(0, ::recv(socket, packet.data(), size_t(packet.size()), 0)));
        return packet;
    }

    [[noreturn]] static void Serve(int socket)
    {
        if (::geteuid() == 0) {
            const passwd *nobody = ::getpwnam("nobody");
            if (nobody == nullptr || ::setgid(nobody->pw_gid) != 0 || ::setuid(nobody->pw_uid) != 0)
                std::_Exit(1);
        }
        int count = 1;
        char name[] = "opener";
        char *arguments[] = {name, nullptr};
        const QCoreApplication application(count, arguments);
        for (QByteArray device; !(device = Receive(socket)).isEmpty();) {
            const QByteArray answer = Try(QFile::decodeName(device)).toUtf8();
            ::send(socket, answer.constData(), size_t(answer.size()), 0);
        }
        std::_Exit(0);
    }

    static QString Try(const QString &device)
    {
        MemoryStore store;
        PortDevices devices(store, SystemPortName);
        devices.AssignForRun(1, device);
        SerialPortHub hub;
        LineLoop lines;
        SerialPort port(lines, hub, devices);
        const Result opened = port.SetPortOpen(true);
        return opened.Failed() ? opened.Cause() : QStringLiteral("opened");
    }

    pid_t m_process = -1;
    int m_socket = -1;
};
