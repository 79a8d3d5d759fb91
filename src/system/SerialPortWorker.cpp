// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SerialPortWorker.h"

#include "ArrivalQueue.h"
#include "SerialDevice.h"

#include <QDeadlineTimer>
#include <QEventLoop>

#include <chrono>

using namespace std::chrono_literals;

namespace
{

constexpr auto WatchdogInterval = 100ms;
constexpr auto MostTimeToSend = 1s;
constexpr auto SendPollInterval = 2ms;

/// A close takes over no more than this from a sender that never pauses.
constexpr qsizetype MostBytesAtClose = 1024 * 1024;

} // namespace

SerialPortWorker::SerialPortWorker(ArrivalQueue &arrivals, ArrivalPort *port)
    : m_arrivals(arrivals), m_receiver(port), m_port(this), m_watchdog(this)
{
    m_port.setReadBufferSize(ArrivalQueue::MostBytesOfARead);
    m_watchdog.setInterval(WatchdogInterval);
    connect(&m_port, &QSerialPort::readyRead, this, &SerialPortWorker::TakeArrivals);
    connect(&m_port, &QSerialPort::bytesWritten, this, [this](qint64 sent) { m_unsent -= sent; });
    // The error and its text say little; the device itself is asked. An error also silences the
    // port object, and some devices leave without one, hence the watchdog.
    connect(&m_port, &QSerialPort::errorOccurred, this, &SerialPortWorker::CheckDevice);
    connect(&m_watchdog, &QTimer::timeout, this, &SerialPortWorker::CheckDevice);
}

Result SerialPortWorker::Open(const PortRequest &request)
{
    const SerialDevice::Probe probe(request.device, request.alias);
    if (probe.State().Failed())
        return probe.State();

    // Bytes that came in before the opening are left to the system: it keeps or drops them.
    m_device = request.device;
    m_port.setPortName(m_device);
    if (!m_port.open(QIODevice::ReadWrite))
        return OpenFailure(request);
    if (Result configured = Configure(request); configured.Failed()) {
        m_port.close();
        probe.RestoreLine();
        return configured;
    }
    m_unsent = 0;
    m_paused = false;
    m_reading = true;
    m_watchdog.start();
    return {};
}

Result SerialPortWorker::Configure(const PortRequest &request)
{
    const SerialDevice::Handle handle = m_port.handle();
    // Whether these succeed says little; a device may take a setting and do something else.
    m_port.setBaudRate(request.line.baud);
    SerialDevice::ApplyCharacterFormat(handle, request.line);
    const auto line = SerialDevice::ReadLineSettings(handle, request.line.baud);
    if (!line) {
        const Result present = SerialDevice::CheckPresence(handle, request.device);
        return present.Failed()
                   ? present
                   : Failure{
                         QStringLiteral("The settings of %1 cannot be read").arg(request.device)};
    }
    if (*line != request.line)
        return Failure{
            QStringLiteral("%1 was asked for %2 and does %3")
                .arg(request.device, LineSettingsText(request.line), LineSettingsText(*line)),
            RefusedLineSettings};

    const Result set = SerialDevice::SetRequestToSend(handle, request.requestToSend);
    if (set.Failed())
        return Failure{QStringLiteral("The request-to-send line of %1 cannot be set: %2")
                           .arg(request.device, set.Cause())};
    SerialDevice::SetLowLatency(handle);
    return {};
}

/// The probe could open the device, so what is left is the port object's own lock.
Failure SerialPortWorker::OpenFailure(const PortRequest &request) const
{
    const QString lock = SerialDevice::LockFileOf(request.device, request.alias);
    if (m_port.error() == QSerialPort::PermissionError && !lock.isEmpty())
        return {QStringLiteral("%1 is locked by the file %2, which an ended program left behind; "
                               "delete that file")
                    .arg(request.device, lock)};
    if (m_port.error() == QSerialPort::UnknownError)
        return {QStringLiteral("%1 cannot be opened").arg(request.device)};
    return {QStringLiteral("%1 cannot be opened: %2").arg(request.device, m_port.errorString())};
}

void SerialPortWorker::StopReading()
{
    if (!m_reading)
        return;
    const auto arrival = ArrivalQueue::Clock::now();
    QByteArray bytes = m_port.readAll();
    bytes += SerialDevice::ReadWaiting(m_port.handle(), MostBytesAtClose);
    m_reading = false;
    m_watchdog.stop();
    if (!bytes.isEmpty())
        m_arrivals.Push(m_receiver, arrival, bytes);
}

void SerialPortWorker::Close()
{
    if (!m_port.isOpen())
        return;
    WaitUntilSent();
    if (HasUnsent())
        SerialDevice::DiscardUnsent(m_port.handle()); // else the system's own close waits for it
    m_port.close();
    m_unsent = 0;
}

/// A short poll sees the bytes in the port object and those in the system alike; it also sees a
/// device that goes away meanwhile.
void SerialPortWorker::WaitUntilSent()
{
    const QDeadlineTimer deadline(MostTimeToSend);
    QEventLoop sending;
    QTimer poll;
    connect(&poll, &QTimer::timeout, &sending, [&] {
        if (!HasUnsent() || deadline.hasExpired())
            sending.quit();
    });
    poll.start(SendPollInterval);
    if (HasUnsent())
        sending.exec();
}

bool SerialPortWorker::HasUnsent()
{
    const SerialDevice::Handle handle = m_port.handle();
    return (m_port.bytesToWrite() > 0 || SerialDevice::UnsentBytes(handle) > 0) &&
           !SerialDevice::CheckPresence(handle, m_device).Failed();
}

bool SerialPortWorker::TryReserve(qint64 bytes)
{
    if (m_unsent + bytes > MostUnsentBytes)
        return false;
    m_unsent += bytes;
    return true;
}

void SerialPortWorker::Write(const QByteArray &bytes)
{
    if (!m_port.isOpen()) {
        m_unsent -= bytes.size();
        return;
    }
    // Pushing against a system that is full would be reported as an error of the device.
    const bool wasIdle = m_port.bytesToWrite() == 0;
    m_port.write(bytes);
    if (wasIdle)
        m_port.flush();
}

void SerialPortWorker::ResumeReading()
{
    m_paused = false;
    TakeArrivals();
}

/// Always takes all that the port object holds; it does not announce the rest again. While the
/// queue is full it takes nothing, and the port object stops reading at its own limit.
void SerialPortWorker::TakeArrivals()
{
    if (!m_reading || m_paused)
        return;
    const auto arrival = ArrivalQueue::Clock::now();
    const QByteArray bytes = m_port.readAll();
    if (!bytes.isEmpty())
        m_paused = !m_arrivals.Push(m_receiver, arrival, bytes);
}

void SerialPortWorker::CheckDevice()
{
    if (!m_reading)
        return;
    const Result present = SerialDevice::CheckPresence(m_port.handle(), m_device);
    if (present.Failed())
        CloseGoneDevice(present.Cause());
    else
        TakeArrivals(); // a port object that an error has silenced reads on after this
}

void SerialPortWorker::CloseGoneDevice(const QString &cause)
{
    m_reading = false;
    m_watchdog.stop();
    const auto arrival = ArrivalQueue::Clock::now();
    const QByteArray bytes = m_port.readAll();
    if (!bytes.isEmpty())
        m_arrivals.Push(m_receiver, arrival, bytes);
    m_unsent -= m_port.bytesToWrite();
    m_port.close();
    m_arrivals.PushDeparture(m_receiver, cause);
}
