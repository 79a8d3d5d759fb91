// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SerialPort.h"

#include "LineSettings.h"
#include "PortDevices.h"
#include "PortNumber.h"
#include "SerialDevice.h"
#include "SerialPortHub.h"
#include "SystemPortFinder.h"

#include <QScopedValueRollback>

#include <algorithm>

namespace
{

QString NoDevice(int comNumber)
{
    return QStringLiteral("COM%1 has no device; give it one with --port %1=DEVICE or in the "
                          "settings section Ports, key COM%1")
        .arg(comNumber);
}

} // namespace

SerialPort::SerialPort(LineLoop &loop, SerialPortHub &hub, const PortDevices &devices,
                       QObject *parent)
    : SerialPortControl(parent), m_loop(loop), m_hub(hub), m_devices(devices), m_line(loop)
{
    m_line.Listen(this);
}

SerialPort::~SerialPort()
{
    if (m_open) {
        m_loop.Do([this] { m_line.EndReading(); });
        Close();
    }
    m_hub.Arrivals().Detach(this);
}

template <typename Value> Result SerialPort::Set(Value &property, const Value &value, bool inRange)
{
    if (m_open)
        return Failure{QStringLiteral("COM%1 is open").arg(m_commPort)};
    if (!inRange)
        return Failure{QStringLiteral("%1 is out of range").arg(value)};
    property = value;
    return {};
}

Result SerialPort::SetCommPort(int number)
{
    return Set(m_commPort, number, IsPortNumber(number));
}

Result SerialPort::SetSettings(const QString &settings)
{
    return Set(m_settings, settings, true);
}

Result SerialPort::SetRThreshold(int bytes)
{
    return Set(m_rThreshold, bytes, bytes >= 0);
}

Result SerialPort::SetRTSEnable(bool on)
{
    return Set(m_rtsEnable, on, true);
}

Result SerialPort::SetInputMode(int mode)
{
    return Set(m_inputMode, mode, mode == 0);
}

Result SerialPort::SetInBufferSize(int bytes)
{
    return Set(m_inBufferSize, bytes, bytes >= 2);
}

Result SerialPort::SetInputLen(int bytes)
{
    return Set(m_inputLen, bytes, bytes >= 0);
}

QString SerialPort::Description() const
{
    return SystemPortFinder().DescriptionOf(Device());
}

Result SerialPort::SetPortOpen(bool open)
{
    if (open == m_open)
        return {};
    if (open)
        return Open();

    m_loop.Do([this] { m_line.EndReading(); });
    m_hub.Deliver(this);
    if (m_open) // a handler may have closed it by now
        Close();
    return {};
}

Result SerialPort::Open()
{
    const QString alias = m_devices.DeviceOf(m_commPort);
    if (alias.isEmpty())
        return Failure{NoDevice(m_commPort)};
    const QString device = SerialDevice::CanonicalName(alias);
    if (device.isEmpty())
        return Failure{QStringLiteral("There is no device %1").arg(alias)};
    if (const int user = m_hub.UserOf(device); user != 0)
        return Failure{
            QStringLiteral("%1 is already open in this program as COM%2").arg(device).arg(user)};
    return OpenDevice(device, alias);
}

Result SerialPort::OpenDevice(const QString &device, const QString &alias)
{
    const auto line = ParseLineSettings(m_settings);
    if (!line)
        return Failure{QStringLiteral("The settings %1 do not have the form of 9600,N,8,1 (baud "
                                      "rate, parity, data bits, stop bits)")
                           .arg(m_settings),
                       RefusedLineSettings};

    m_inBuffer.clear();
    m_hub.Arrivals().Attach(this, m_inBufferSize - 1); // a full buffer means overflow to readers
    Result opened =
        m_line.Open({m_commPort, device, alias, *line, m_rtsEnable, m_reopens, m_listensOnly});
    if (opened.Failed())
        return opened;
    m_hub.Claim(device, m_commPort);
    m_claimed = device;
    m_open = true;
    m_loop.Do([this] {
        m_hasRoom = true;
        if (m_line.Listener() == this)
            m_line.BeginReading();
    });
    return {};
}

/// Reading has ended.
void SerialPort::Close()
{
    m_thrownAway = m_line.Close();
    m_hub.Arrivals().DropDeparture(this);
    m_hub.Release(m_claimed);
    m_open = false;
}

QByteArray SerialPort::Input()
{
    const qsizetype count =
        m_inputLen == 0 ? m_inBuffer.size() : std::min<qsizetype>(m_inputLen, m_inBuffer.size());
    QByteArray taken = m_inBuffer.left(count);
    m_inBuffer.remove(0, count);
    return taken;
}

Result SerialPort::Output(const QByteArray &bytes)
{
    Result written;
    m_loop.Do([&] { written = m_line.Write(bytes); });
    return written;
}

/// Comes on the lines' thread, as does OnGone.
void SerialPort::OnRead(const LineRead &read)
{
    const auto arrival =
        ArrivalQueue::Clock::time_point(std::chrono::nanoseconds(read.time.monotonic));
    m_hasRoom = m_hub.Arrivals().Push(this, arrival, read.bytes.toByteArray());
}

void SerialPort::OnGone(const QString &cause, const LineTime &)
{
    m_hub.Arrivals().PushDeparture(this, cause);
}

/// What a handler leaves in the buffer stays there; what then has no room is lost, as in any
/// receive buffer that nobody empties.
void SerialPort::RaiseReceive(const QByteArray &bytes)
{
    m_inBuffer += bytes.left(m_inBufferSize - m_inBuffer.size());
    if (m_rThreshold == 0 || m_inBuffer.size() < m_rThreshold)
        return;
    const QScopedValueRollback event(m_commEvent, CommEvents::Receive);
    Q_EMIT CommEventRaised();
}

void SerialPort::RaiseDisconnected(const QString &description)
{
    Q_EMIT Disconnected(description);
}

void SerialPort::ResumeReading()
{
    m_loop.Post([this] {
        m_hasRoom = true;
        m_line.Resume();
    });
}
