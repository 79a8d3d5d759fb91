// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "QtSerialPort.h"

#include "LineSettings.h"
#include "PortDevices.h"
#include "PortNumber.h"
#include "SerialDevice.h"
#include "SerialPortHub.h"
#include "SerialPortWorker.h"

#include <QMetaObject>
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

QtSerialPort::QtSerialPort(SerialPortHub &hub, const PortDevices &devices, QObject *parent)
    : SerialPortControl(parent),
      m_hub(hub),
      m_devices(devices),
      m_worker(new SerialPortWorker(hub.Arrivals(), this))
{
    m_worker->moveToThread(&m_thread);
    connect(&m_thread, &QThread::finished, m_worker, &QObject::deleteLater);
    m_thread.start();
}

QtSerialPort::~QtSerialPort()
{
    if (m_open) {
        QMetaObject::invokeMethod(m_worker, &SerialPortWorker::StopReading,
                                  Qt::BlockingQueuedConnection);
        Close();
    }
    m_thread.quit();
    m_thread.wait();
    m_hub.Arrivals().Detach(this);
}

template <typename Value>
Result QtSerialPort::Set(Value &property, const Value &value, bool inRange)
{
    if (m_open)
        return Failure{QStringLiteral("COM%1 is open").arg(m_commPort)};
    if (!inRange)
        return Failure{QStringLiteral("%1 is out of range").arg(value)};
    property = value;
    return {};
}

Result QtSerialPort::SetCommPort(int number)
{
    return Set(m_commPort, number, IsPortNumber(number));
}

Result QtSerialPort::SetSettings(const QString &settings)
{
    return Set(m_settings, settings, true);
}

Result QtSerialPort::SetRThreshold(int bytes)
{
    return Set(m_rThreshold, bytes, bytes >= 0);
}

Result QtSerialPort::SetRTSEnable(bool on)
{
    return Set(m_rtsEnable, on, true);
}

Result QtSerialPort::SetInputMode(int mode)
{
    return Set(m_inputMode, mode, mode == 0);
}

Result QtSerialPort::SetInBufferSize(int bytes)
{
    return Set(m_inBufferSize, bytes, bytes >= 2);
}

Result QtSerialPort::SetInputLen(int bytes)
{
    return Set(m_inputLen, bytes, bytes >= 0);
}

Result QtSerialPort::SetPortOpen(bool open)
{
    if (open == m_open)
        return {};
    if (open)
        return Open();

    QMetaObject::invokeMethod(m_worker, &SerialPortWorker::StopReading,
                              Qt::BlockingQueuedConnection);
    m_hub.Deliver(this);
    if (m_open) // a handler may have closed it by now
        Close();
    return {};
}

Result QtSerialPort::Open()
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

Result QtSerialPort::OpenDevice(const QString &device, const QString &alias)
{
    const auto line = ParseLineSettings(m_settings);
    if (!line)
        return Failure{QStringLiteral("The settings %1 do not have the form of 9600,N,8,1 (baud "
                                      "rate, parity, data bits, stop bits)")
                           .arg(m_settings),
                       RefusedLineSettings};

    m_inBuffer.clear();
    m_hub.Arrivals().Attach(this, m_inBufferSize - 1); // a full buffer means overflow to readers
    Result opened;
    QMetaObject::invokeMethod(
        m_worker,
        [&] {
            opened = m_worker->Open({device, alias, *line, m_rtsEnable});
        },
        Qt::BlockingQueuedConnection);
    if (opened.Failed())
        return opened;
    m_hub.Claim(device, m_commPort);
    m_device = device;
    m_open = true;
    return {};
}

/// The worker has stopped reading.
void QtSerialPort::Close()
{
    QMetaObject::invokeMethod(m_worker, &SerialPortWorker::Close, Qt::BlockingQueuedConnection);
    m_hub.Arrivals().DropDeparture(this);
    m_hub.Release(m_device);
    m_open = false;
}

QByteArray QtSerialPort::Input()
{
    const qsizetype count =
        m_inputLen == 0 ? m_inBuffer.size() : std::min<qsizetype>(m_inputLen, m_inBuffer.size());
    QByteArray taken = m_inBuffer.left(count);
    m_inBuffer.remove(0, count);
    return taken;
}

Result QtSerialPort::Output(const QByteArray &bytes)
{
    if (!m_open)
        return Failure{QStringLiteral("COM%1 is not open").arg(m_commPort)};
    if (!m_worker->TryReserve(bytes.size()))
        return Failure{QStringLiteral("COM%1 does not send: %2 bytes are still waiting")
                           .arg(m_commPort)
                           .arg(m_worker->UnsentBytes())};
    QMetaObject::invokeMethod(
        m_worker, [worker = m_worker, bytes] { worker->Write(bytes); }, Qt::QueuedConnection);
    return {};
}

/// What a handler leaves in the buffer stays there; what then has no room is lost, as in any
/// receive buffer that nobody empties.
void QtSerialPort::RaiseReceive(const QByteArray &bytes)
{
    m_inBuffer += bytes.left(m_inBufferSize - m_inBuffer.size());
    if (m_rThreshold == 0 || m_inBuffer.size() < m_rThreshold)
        return;
    const QScopedValueRollback event(m_commEvent, CommEvents::Receive);
    Q_EMIT CommEventRaised();
}

void QtSerialPort::RaiseDisconnected(const QString &description)
{
    Q_EMIT Disconnected(description);
}

void QtSerialPort::ResumeReading()
{
    QMetaObject::invokeMethod(m_worker, &SerialPortWorker::ResumeReading, Qt::QueuedConnection);
}
