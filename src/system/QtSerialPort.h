// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "ArrivalPort.h"
#include "SerialPortControl.h"

#include <QThread>

class PortDevices;
class SerialPortHub;
class SerialPortWorker;

/// The real serial port. A thread of its own serves the device, so that nothing is lost while the
/// window is busy; the hub raises the events on the window's thread. Destroying it closes the port
/// and drops what has not been handled, without events.
class QtSerialPort final : public SerialPortControl, private ArrivalPort
{
    Q_OBJECT

  public:
    /// Both must outlive this object.
    QtSerialPort(SerialPortHub &hub, const PortDevices &devices, QObject *parent = nullptr);
    ~QtSerialPort() override;

    Result SetCommPort(int number) override;
    Result SetSettings(const QString &settings) override;
    Result SetRThreshold(int bytes) override;
    Result SetRTSEnable(bool on) override;
    Result SetInputMode(int mode) override;
    Result SetInBufferSize(int bytes) override;
    Result SetInputLen(int bytes) override;

    Result SetPortOpen(bool open) override;
    bool PortOpen() const override { return m_open; }

    int InBufferCount() const override { return int(m_inBuffer.size()); }
    void ClearInBuffer() override { m_inBuffer.clear(); }
    QByteArray Input() override;

    Result Output(const QByteArray &bytes) override;

    int CommEvent() const override { return m_commEvent; }

  private:
    void RaiseReceive(const QByteArray &bytes) override;
    void RaiseDisconnected(const QString &description) override;
    void ResumeReading() override;

    template <typename Value> Result Set(Value &property, const Value &value, bool inRange);
    Result Open();
    Result OpenDevice(const QString &device, const QString &alias);
    void Close();

    SerialPortHub &m_hub;
    const PortDevices &m_devices;
    QThread m_thread;
    SerialPortWorker *m_worker; ///< deleted by its thread's end

    int m_commPort = 1;
    QString m_settings = QStringLiteral("9600,N,8,1");
    int m_rThreshold = 1;
    bool m_rtsEnable = true;
    int m_inputMode = 0;
    int m_inBufferSize = 512;
    int m_inputLen = 0;

    bool m_open = false;
    QString m_device; ///< canonical name while open
    QByteArray m_inBuffer;
    int m_commEvent = 0;
};
