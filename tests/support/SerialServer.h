// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "PtyPair.h"
#include "TcpServer.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

/// Whether somebody listens at the port; found out without connecting, which would count as a
/// client.
inline bool Listens(quint16 port)
{
    const QByteArray place =
        ':' + QByteArray::number(port, 16).toUpper().rightJustified(4, '0') + ' ';
    for (const char *list : {"/proc/net/tcp", "/proc/net/tcp6"}) {
        QFile sockets(QString::fromLatin1(list));
        if (!sockets.open(QIODevice::ReadOnly))
            continue;
        for (const QByteArray &row : sockets.readAll().split('\n'))
            if (row.contains(":0000 0A") && row.left(row.indexOf(":0000 0A")).contains(place))
                return true;
    }
    return false;
}

/// A real serial port server over a pseudo-terminal, whose far end the test plays.
class SerialServer
{
  public:
    /// The accepter in ser2net's words, less its port. Who must show a certificate is known by its
    /// name in a folder.
    explicit SerialServer(const QString &accepter = QStringLiteral("telnet(rfc2217),tcp(nodelay)"),
                          const QString &users = {})
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
                                  "    dev-to-net-bufsize: 65536\n"
                                  "    net-to-dev-bufsize: 65536\n"
                                  "    max-connections: 2\n"
                                  "    authdir: %4/\n")
                       .arg(accepter)
                       .arg(m_port)
                       .arg(line.DeviceName(), users)
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
        while (!Listens(m_port) && !deadline.hasExpired())
            ::usleep(1000);
    }

    void Kill()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

    PtyPair line;

  private:
    QTemporaryDir m_folder;
    quint16 m_port;
    QProcess m_process;
};
