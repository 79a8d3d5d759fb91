// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "DescriptorLine.h"
#include "RemoteOpening.h"

#include <memory>
#include <mutex>

class RemoteReturn;

/// A line on another machine: bytes alone, or what a serial port server tells besides.
class RemoteLine final : public DescriptorLine
{
  public:
    explicit RemoteLine(LineLoop &loop);
    ~RemoteLine() override;
    Q_DISABLE_COPY_MOVE(RemoteLine)

    /// Takes an open connection over, which is not read yet.
    void Open(const RemoteRequest &request, RemoteLink link);

    /// Of the line that was opened last.
    const RemoteAddress &Address() const { return m_request.address; }
    /// What the server calls itself; empty if it has not said. May be called from any thread.
    QString ServerName() const;

    void BeginReading() override;
    /// Fails on a line that only listens.
    Result Write(const QByteArray &bytes) override;
    Result SetRTS(bool on) override;
    Result SetDTR(bool on) override;
    Result SetBreak(bool on) override;

  private:
    bool Remote() const override { return true; }
    bool WantsToWrite() const override;
    void Tick() override { CountWaiting(); }

    void Arrived(const LineRead &read) override;
    qsizetype Receive(char *bytes, size_t most) override;
    qsizetype Transmit(const char *bytes, qsizetype count) override;
    Result Presence() override;
    qint64 UnsentInSystem() const override;
    void PutInOrder(qint64 lost) override;
    void Shut() override;
    bool Waits() const override { return m_request.reopens; }
    void BeginWaiting() override;
    void EndWaiting() override;
    void LetGo() override;

    void TakeOver(RemoteLink link);
    void Return(RemoteOpening &opening);
    void Tell(const ComPortClient::Piece &piece, const LineTime &time);
    void TellLineState(quint8 state, const LineTime &time);
    void NoteSignals();
    bool SendWire();
    void Command(void (ComPortClient::*line)(bool), bool on);
    Result Switch(void (ComPortClient::*line)(bool), bool on, const char *name);

    RemoteRequest m_request;
    RemoteLink m_link;
    QDeadlineTimer m_steady;                ///< until then a connection that ends was no good one
    QByteArray m_wire;                      ///< as it travels; the system has not taken it yet
    std::unique_ptr<RemoteReturn> m_return; ///< while the other side is waited for
    mutable std::mutex m_nameLock;          ///< guards what follows
    QString m_serverName;
};
