// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Result.h"

#include <QByteArrayView>
#include <QString>

/// The writing end of a named pipe that somebody else has made and reads. Nothing is ever made or
/// cut, whatever stands under the name. A program that writes to one ignores SIGPIPE.
class NamedPipe final
{
  public:
    /// Failure number of Open: nobody has opened it to read yet.
    static constexpr int NoReader = 6;

    /// Takes hold of the pipe, not of what may stand under its name later on.
    explicit NamedPipe(const QString &path);
    ~NamedPipe();
    Q_DISABLE_COPY_MOVE(NamedPipe)

    /// Fails if there is no pipe; a link to one is none.
    const Result &State() const { return m_state; }

    /// Opens it for writing, without waiting.
    Result Open();
    /// To be watched for its reader's leaving; negative before it is open.
    int Descriptor() const { return m_writing; }

    /// Waits until the reader has room for all of it. Fails when the reader has gone.
    Result Write(QByteArrayView bytes);

  private:
    Result TakeHold(const QString &path);

    int m_held = -1; ///< stands for the pipe, and cannot be read nor written
    int m_writing = -1;
    Result m_state;
};
