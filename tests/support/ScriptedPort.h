// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "SerialPortControl.h"

#include <QStringList>

#include <functional>

/// A serial port without a line: it notes what is asked of it and fails where the test says so.
class ScriptedPort final : public SerialPortControl
{
  public:
    QStringList calls;     ///< every setter, in order, as "Name value"
    PortResult failOpen;   ///< what opening returns
    PortResult failClose;  ///< what closing returns
    PortResult failOutput; ///< what Output returns
    QByteArray sent;       ///< everything that Output took
    QByteArray waiting;    ///< the receive buffer
    std::function<void()> onOutput = [] {};

    PortResult SetCommPort(int number) override { return Note("CommPort", number); }
    PortResult SetSettings(const QString &text) override
    {
        calls << QStringLiteral("Settings ") + text;
        return {};
    }
    PortResult SetRThreshold(int bytes) override { return Note("RThreshold", bytes); }
    PortResult SetRTSEnable(bool on) override { return Note("RTSEnable", on); }
    PortResult SetInputMode(int mode) override { return Note("InputMode", mode); }
    PortResult SetInBufferSize(int bytes) override { return Note("InBufferSize", bytes); }
    PortResult SetInputLen(int bytes) override { return Note("InputLen", bytes); }
    PortResult SetPortOpen(bool open) override
    {
        Note("PortOpen", open);
        const PortResult failure = open ? failOpen : failClose;
        if (!failure)
            m_open = open;
        return failure;
    }
    bool PortOpen() const override { return m_open; }
    int InBufferCount() const override { return int(waiting.size()); }
    void ClearInBuffer() override { waiting.clear(); }
    QByteArray Input() override { return std::exchange(waiting, {}); }
    PortResult Output(const QByteArray &bytes) override
    {
        onOutput();
        if (!failOutput)
            sent += bytes;
        return failOutput;
    }
    int CommEvent() const override { return m_event; }

    /// Bytes arrive as one receive event.
    void Receive(const QByteArray &bytes)
    {
        waiting += bytes;
        Raise(CommEvents::Receive);
    }
    void Raise(int event)
    {
        m_event = event;
        Q_EMIT CommEventRaised();
    }
    void Unplug(const QString &description) { Q_EMIT Disconnected(description); }

  private:
    PortResult Note(const char *name, int value)
    {
        calls << QStringLiteral("%1 %2").arg(QLatin1String(name)).arg(value);
        return {};
    }

    bool m_open = false;
    int m_event = 0;
};
