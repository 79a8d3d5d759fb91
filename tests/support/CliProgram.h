// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QProcess>
#include <QRegularExpression>
#include <QString>
#include <QStringList>

/// Ping is sent and Pong received; a READY? is answered with YES by the program itself.
inline constexpr const char *PingProject =
    "VERSION\r\n3\r\n\r\n"
    "SEND\r\n0\r\nPing\r\n080 | 073 | 078 | 071\r\n\r\n"
    "SEND\r\n1\r\nYes\r\n089 | 069 | 083\r\n\r\n"
    "RECEIVE\r\n0\r\nPong\r\n080 | 079 | 078 | 071\r\n0\r\n1\r\n"
    "COMMENT \r\n\r\n"
    "RECEIVE\r\n1\r\nReady\r\n082 | 069 | 065 | 068 | 089 | 063\r\n2\r\n1\r\n"
    "COMMENT \r\n\r\n";

/// The program, as another one starts it.
class Program : public QProcess
{
  public:
    int Finished()
    {
        return waitForFinished(20000) && exitStatus() == NormalExit ? exitCode() : -1;
    }
    /// The next line of output, without the times, which no test can know.
    QByteArray NextLine()
    {
        while (!canReadLine() && waitForReadyRead(20000)) {
        }
        static const QRegularExpression times(",?\"(us|wall|took)\":\\d+");
        return QString::fromUtf8(readLine()).remove(times).replace("{,", "{").trimmed().toUtf8();
    }
    /// Reads up to a line that has the text; false if none comes.
    bool Tells(const QByteArray &text)
    {
        QByteArray line = NextLine();
        while (!line.isEmpty() && !line.contains(text))
            line = NextLine();
        return !line.isEmpty();
    }
    QStringList Lines()
    {
        QStringList lines;
        for (QByteArray line = NextLine(); !line.isEmpty(); line = NextLine())
            lines << QString::fromUtf8(line);
        return lines;
    }
    QString Errors() { return QString::fromUtf8(readAllStandardError()).trimmed(); }
};
