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
    QStringList calls;  ///< every setter, in order, as "Name value"
    Result failOpen;    ///< what opening returns
    Result failClose;   ///< what closing returns
    Result failOutput;  ///< what Output returns
    QByteArray sent;    ///< everything that Output took
    QByteArray waiting; ///< the receive buffer
    std::function<void()> onOutput = [] {};

    Result SetCommPort(int number) override { return Note("CommPort", number); }
    Result SetSettings(const QString &text) override
    {
        calls << QStringLiteral("Settings ") + text;
        return {};
    }
    Result SetRThreshold(int bytes) override { return Note("RThreshold", bytes); }
    Result SetRTSEnable(bool on) override { return Note("RTSEnable", on); }
    Result SetInputMode(int mode) override { return Note("InputMode", mode); }
    Result SetInBufferSize(int bytes) override { return Note("InBufferSize", bytes); }
    Result SetInputLen(int bytes) override { return Note("InputLen", bytes); }
    Result SetPortOpen(bool open) override
    {
        Note("PortOpen", open).Ignore();
        Result done = open ? failOpen : failClose;
        if (!done.Failed())
            m_open = open;
        return done;
    }
    bool PortOpen() const override { return m_open; }
    int InBufferCount() const override { return int(waiting.size()); }
    void ClearInBuffer() override { waiting.clear(); }
    QByteArray Input() override { return std::exchange(waiting, {}); }
    Result Output(const QByteArray &bytes) override
    {
        onOutput();
        if (!failOutput.Failed())
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
    Result Note(const char *name, int value)
    {
        calls << QStringLiteral("%1 %2").arg(QLatin1String(name)).arg(value);
        return {};
    }

    bool m_open = false;
    int m_event = 0;
};
