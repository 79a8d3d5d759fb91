// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "support/PtyPair.h"

#include <QFile>
#include <QTemporaryDir>

/// Has LineStandIn.cpp, which must be linked into the test, stand in for drivers.
class LineStandIn
{
  public:
    LineStandIn() { qputenv("LINE_STAND_IN", QFile::encodeName(m_folder.path())); }
    ~LineStandIn() { qunsetenv("LINE_STAND_IN"); }
    Q_DISABLE_COPY_MOVE(LineStandIn)

    /// What the driver of the device answers from now on, such as "cts=1 brk=2"; at once.
    void Say(const PtyPair &pty, const QByteArray &words)
    {
        QFile next(FileOf(pty) + ".next");
        if (!next.open(QIODevice::WriteOnly) || next.write(words) != words.size())
            qFatal("no stand-in");
        next.close();
        std::rename(QFile::encodeName(next.fileName()), QFile::encodeName(FileOf(pty)));
    }

    /// What was switched last, such as "rts=0".
    QByteArray Switched(const PtyPair &pty) const
    {
        QFile file(FileOf(pty) + ".set");
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

  private:
    QString FileOf(const PtyPair &pty) const
    {
        return m_folder.filePath(pty.DeviceName().section('/', -1));
    }

    QTemporaryDir m_folder;
};
