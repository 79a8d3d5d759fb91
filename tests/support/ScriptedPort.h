// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "SerialPortControl.h"

#include <QStringList>

#include <utility>

/// The thread of the lines, without a thread.
class ScriptedLines final : public LineThread
{
  public:
    void Do(const std::function<void()> &work) override { work(); }
    void Post(std::function<void()> work) override { work(); }
    void Schedule(TimedWork *work) override { m_timed = work; }
    QString Priority() const override { return QStringLiteral("normal"); }

    /// It is that time by the clock of the lines.
    void Pass(qint64 now)
    {
        const std::optional<qint64> due = m_timed ? m_timed->Due() : std::nullopt;
        if (due && *due <= now)
            m_timed->OnDue(now);
    }

  private:
    TimedWork *m_timed = nullptr;
};

/// A line without a device: what arrives before reading begins waits.
class ScriptedLine final : public Line
{
  public:
    LineListener *listener = nullptr;
    bool reading = false;
    QByteArray waiting;
    QByteArray sent;   ///< everything that Write took
    Result failWrite;  ///< what Write returns
    LineTime now;      ///< of whatever happens
    LineCounts counts; ///< as they are asked for

    void Listen(LineListener *who) override { listener = who; }
    void BeginReading() override
    {
        reading = true;
        Arrive({});
    }
    void EndReading() override { reading = false; }
    void Resume() override { Arrive({}); }
    Result Write(const QByteArray &bytes) override
    {
        if (!failWrite.Failed())
            sent += bytes;
        return failWrite;
    }
    LineTime Now() const override { return now; }
    Result SetRTS(bool) override { return {}; }
    Result SetDTR(bool) override { return {}; }
    Result SetBreak(bool) override { return {}; }
    LineCounts Counts() const override { return counts; }

    void Arrive(const QByteArray &bytes)
    {
        waiting += bytes;
        if (reading && !waiting.isEmpty() && listener && listener->HasRoom()) {
            const QByteArray read = std::exchange(waiting, {});
            listener->OnRead({read, now, false});
        }
    }
};

/// A serial port without a device: it notes what is asked of it and fails where the test says so.
class ScriptedPort final : public SerialPortControl
{
  public:
    QStringList calls; ///< every setter, in order, as "Name value"
    Result failOpen;   ///< what opening returns
    Result failClose;  ///< what closing returns
    ScriptedLine line;
    qint64 thrownAway = 0;
    bool reopens = false;

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
    void SetReopens(bool on) override { reopens = on; }
    Result SetPortOpen(bool open) override
    {
        Note("PortOpen", open).Ignore();
        Result done = open ? failOpen : failClose;
        if (!done.Failed())
            m_open = open;
        return done;
    }
    bool PortOpen() const override { return m_open; }
    int InBufferCount() const override { return 0; }
    void ClearInBuffer() override {}
    QByteArray Input() override { return {}; }
    Result Output(const QByteArray &) override { return {}; }
    int CommEvent() const override { return 0; }
    Line &Wire() override { return line; }
    qint64 ThrownAway() const override { return thrownAway; }
    QString Device() const override { return m_open ? QStringLiteral("/dev/scripted") : QString(); }

    /// Bytes arrive, in one read.
    void Receive(const QByteArray &bytes) { line.Arrive(bytes); }
    void Unplug(const QString &cause)
    {
        if (std::exchange(line.reading, false))
            line.listener->OnGone(cause, line.now);
    }
    /// The device goes away and is waited for; so many bytes were still to be sent.
    void GoAway(qint64 unsent)
    {
        line.reading = false;
        line.counts.away = true;
        line.failWrite = Failure{QStringLiteral("away")};
        line.listener->OnAway(QStringLiteral("unplugged"), unsent, line.now);
    }
    void ComeBack()
    {
        line.failWrite = {};
        line.counts.away = false;
        line.listener->OnBack(line.now);
        line.BeginReading();
    }

  private:
    Result Note(const char *name, int value)
    {
        calls << QStringLiteral("%1 %2").arg(QLatin1String(name)).arg(value);
        return {};
    }

    bool m_open = false;
};
