// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "PtyPair.h"
#include "TcpServer.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

/// A real serial port server over a pseudo-terminal, whose far end the test plays.
class SerialServer
{
  public:
    /// The accepter in ser2net's words, less its port.
    explicit SerialServer(const QString &accepter = QStringLiteral("telnet(rfc2217),tcp(nodelay)"))
        : m_port(FreePort())
    {
        QFile file(m_folder.filePath(QStringLiteral("ser2net.yaml")));
        if (!file.open(QIODevice::WriteOnly))
            qFatal("no configuration");
        file.write(QStringLiteral("%YAML 1.1\n---\n"
                                  "connection: &bench\n"
                                  "  accepter: %1,127.0.0.1,%2\n"
                                  "  connector: serialdev,%3,9600n81,local\n"
                                  "  options:\n"
                                  "    chardelay: false\n"
                                  "    max-connections: 2\n")
                       .arg(accepter)
                       .arg(m_port)
                       .arg(line.DeviceName())
                       .toUtf8());
        file.close();
        Start();
    }
    ~SerialServer() { Kill(); }
    Q_DISABLE_COPY_MOVE(SerialServer)

    quint16 Port() const { return m_port; }

    void Start()
    {
        m_process.start(QStringLiteral("ser2net"),
                        {QStringLiteral("-d"), QStringLiteral("-u"), QStringLiteral("-P"),
                         m_folder.filePath(QStringLiteral("pid")), QStringLiteral("-c"),
                         m_folder.filePath(QStringLiteral("ser2net.yaml"))});
        if (!m_process.waitForStarted())
            qFatal("ser2net does not start");
        const QDeadlineTimer deadline(20000);
        while (!Listens() && !deadline.hasExpired())
            ::usleep(1000);
    }

    void Kill()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

    PtyPair line;

  private:
    /// Without connecting, which would count as a client: whether the port is taken.
    bool Listens() const
    {
        QFile sockets(QStringLiteral("/proc/net/tcp"));
        if (!sockets.open(QIODevice::ReadOnly))
            qFatal("no list of sockets");
        const QByteArray place =
            "0100007F:" + QByteArray::number(m_port, 16).toUpper().rightJustified(4, '0');
        for (const QByteArray &row : sockets.readAll().split('\n'))
            if (row.contains(place + " 00000000:0000 0A"))
                return true;
        return false;
    }

    QTemporaryDir m_folder;
    quint16 m_port;
    QProcess m_process;
};
