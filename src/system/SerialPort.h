// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "ArrivalPort.h"
#include "PortLine.h"
#include "SerialPortControl.h"

class PortDevices;
class SerialPortHub;
class UserPrompts;

/// The real serial port: a line on the loop of lines, and the events of the control for those who
/// want them, which the hub raises on the window's thread. Whoever listens to the line itself gets
/// no events, and begins the reading. Destroying it closes the port and drops what has not been
/// handled, without events.
class SerialPort final : public SerialPortControl, private ArrivalPort, private LineListener
{
    Q_OBJECT

  public:
    /// All of it must outlive this object.
    SerialPort(LineLoop &loop, SerialPortHub &hub, const PortDevices &devices,
               QObject *parent = nullptr);
    ~SerialPort() override;

    /// Shows what is waited for while an opening takes long; without it nothing is shown. It
    /// outlives this object.
    void WaitThrough(UserPrompts &prompts) { m_prompts = &prompts; }

    Result SetCommPort(int number) override;
    Result SetSettings(const QString &settings) override;
    Result SetRThreshold(int bytes) override;
    Result SetRTSEnable(bool on) override;
    Result SetInputMode(int mode) override;
    Result SetInBufferSize(int bytes) override;
    Result SetInputLen(int bytes) override;
    void SetReopens(bool on) override { m_reopens = on; }
    void SetDeadSeconds(int seconds) override { m_deadSeconds = seconds; }
    /// See LineRequest.
    void SetListensOnly(bool on) { m_listensOnly = on; }

    Result SetPortOpen(bool open) override;
    bool PortOpen() const override { return m_open; }

    int InBufferCount() const override { return int(m_inBuffer.size()); }
    void ClearInBuffer() override { m_inBuffer.clear(); }
    QByteArray Input() override;

    Result Output(const QByteArray &bytes) override;

    int CommEvent() const override { return m_commEvent; }

    Line &Wire() override { return m_line; }
    qint64 ThrownAway() const override { return m_thrownAway; }
    QString Device() const override;
    QString Description() const override;
    QString SettingsNote() const override;

  private:
    void RaiseReceive(const QByteArray &bytes) override;
    void RaiseDisconnected(const QString &description) override;
    void ResumeReading() override;

    void OnRead(const LineRead &read) override;
    void OnGone(const QString &cause, const LineTime &time) override;
    bool HasRoom() const override { return m_hasRoom; }

    template <typename Value> Result Set(Value &property, const Value &value, bool inRange);
    Result Open();
    Result OpenNamed(const QString &name);
    Result OpenAs(const QString &device, const std::function<Result(const LineSettings &)> &open);
    Result OpenLocal(const QString &device, const QString &alias, const LineSettings &line);
    Result OpenRemote(const RemoteAddress &address, const LineSettings &line);
    void Close();

    LineLoop &m_loop;
    SerialPortHub &m_hub;
    const PortDevices &m_devices;
    UserPrompts *m_prompts = nullptr;
    PortLine m_line;
    bool m_hasRoom = true; ///< in the queue of arrivals; belongs to the lines' thread
    qint64 m_thrownAway = 0;

    int m_commPort = 1;
    QString m_settings = QStringLiteral("9600,N,8,1");
    int m_rThreshold = 1;
    bool m_rtsEnable = true;
    int m_inputMode = 0;
    int m_inBufferSize = 512;
    int m_inputLen = 0;
    bool m_reopens = false; ///< of the next opening, as is what follows
    bool m_listensOnly = false;
    int m_deadSeconds = RemoteRequest().deadSeconds;

    bool m_open = false;
    QString m_claimed; ///< canonical name of the device, as it was opened
    QByteArray m_inBuffer;
    int m_commEvent = 0;
};
