// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "DescriptorLine.h"

/// A connection to another machine: bytes alone, in both directions. Looking a name up and
/// connecting may take long and are done elsewhere.
class TcpLine final : public DescriptorLine
{
  public:
    explicit TcpLine(LineLoop &loop) : DescriptorLine(loop) {}
    ~TcpLine() override;
    Q_DISABLE_COPY_MOVE(TcpLine)

    /// Takes a connected socket over, which is not read yet; closes it also after a failure.
    /// Messages call the line by its COM number and the other side by the name of the peer.
    Result Open(int comNumber, const QString &peer, int socket);

    /// There are none.
    Result SetRTS(bool on) override;
    Result SetDTR(bool on) override;
    Result SetBreak(bool on) override;

  private:
    bool Remote() const override { return true; }

    qsizetype Receive(char *bytes, size_t most) override;
    qsizetype Transmit(const char *bytes, qsizetype count) override;
    Result Presence() override { return m_end; }
    qint64 UnsentInSystem() const override;
    void PutInOrder(qint64 lost) override;
    void Shut() override;

    void NoteEnd(int error);

    QString m_peer;
    Result m_end; ///< fails once the connection has ended
};
