// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "DescriptorPosix.h"
#include "Result.h"

#include <QString>

/// A connection to another machine. No call waits. A derived class carries the bytes in its own
/// way.
class RemoteStream
{
  public:
    /// Messages call the other side by the name of the peer.
    RemoteStream(Descriptor socket, const QString &peer);
    virtual ~RemoteStream() = default;
    Q_DISABLE_COPY_MOVE(RemoteStream)

    int Handle() const { return m_socket.Number(); }
    const QString &Peer() const { return m_peer; }
    /// Fails once the connection has ended.
    const Result &End() const { return m_end; }

    /// Sets the socket up. A connection that dies without a word ends after so many seconds, 4 at
    /// least.
    Result Prepare(int deadSeconds);
    /// The count; 0 if there is nothing, negative if nothing can be received any more.
    virtual qsizetype Receive(char *bytes, size_t most);
    /// The count; 0 if none are taken now, negative if none will be taken any more. What was not
    /// taken is to come again.
    virtual qsizetype Transmit(const char *bytes, qsizetype count);
    /// Tells the other side that nothing follows.
    virtual void Finish() {}

    /// Bytes that the other side has not confirmed.
    qint64 Unsent() const;
    /// They do not arrive later on.
    void DropUnsent() const;

  protected:
    void NoteEnd(int error);
    void NoteEnd(const QString &cause);
    void NoteClosed();

  private:
    Descriptor m_socket;
    QString m_peer;
    Result m_end;
};
