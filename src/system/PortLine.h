// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "RemoteLine.h"
#include "SerialLine.h"

#include <atomic>

/// The line of a port, which is a device of this machine or a line on another one, as it was
/// opened last. Whoever knows it need not know which.
class PortLine final : public Line
{
  public:
    explicit PortLine(LineLoop &loop) : m_local(loop), m_remote(loop), m_chosen(&m_local) {}

    /// While it is closed.
    SerialLine &ChooseLocal();
    RemoteLine &ChooseRemote();
    bool IsRemote() const { return m_chosen == &m_remote; }
    const SerialLine &Local() const { return m_local; }
    const RemoteLine &Remote() const { return m_remote; }

    qint64 Close() { return Chosen().Close(); }
    const LineListener *Listener() const { return Chosen().Listener(); }

    void Listen(LineListener *listener) override;
    void BeginReading() override { Chosen().BeginReading(); }
    void EndReading() override { Chosen().EndReading(); }
    void Resume() override { Chosen().Resume(); }
    Result Write(const QByteArray &bytes) override { return Chosen().Write(bytes); }
    LineTime Now() const override { return Chosen().Now(); }
    Result SetRTS(bool on) override { return Chosen().SetRTS(on); }
    Result SetDTR(bool on) override { return Chosen().SetDTR(on); }
    Result SetBreak(bool on) override { return Chosen().SetBreak(on); }
    LineCounts Counts() const override { return Chosen().Counts(); }

  private:
    DescriptorLine &Chosen() const { return *m_chosen; }

    SerialLine m_local;
    RemoteLine m_remote;
    std::atomic<DescriptorLine *> m_chosen;
};
