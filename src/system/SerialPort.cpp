// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SerialPort.h"

#include "LineSettings.h"
#include "PortDevices.h"
#include "PortNumber.h"
#include "SerialDevice.h"
#include "SerialPortHub.h"
#include "SystemPortFinder.h"
#include "UserPrompts.h"

#include <QScopedValueRollback>

#include <algorithm>
#include <atomic>

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

QString SerialPort::Device() const
{
    if (!m_open)
        return {};
    return m_line.IsRemote() ? RemoteAddressText(m_line.Remote().Address())
                             : m_line.Local().Device();
}

QString SerialPort::Description() const
{
    return m_open && m_line.IsRemote() ? m_line.Remote().ServerName()
                                       : SystemPortFinder().DescriptionOf(Device());
}

QString SerialPort::SettingsNote() const
{
    if (!m_open || !m_line.IsRemote())
        return {};
    const RemoteAddress &address = m_line.Remote().Address();
    if (address.listens)
        return QStringLiteral("listening only, set by the other side");
    return address.kind == RemoteAddress::Kind::Bytes ? QStringLiteral("set by the other side")
                                                      : QString();
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
    const QString name = m_devices.DeviceOf(m_commPort);
    return name.isEmpty() ? Result(Failure{NoDevice(m_commPort), MissingDevice}) : OpenNamed(name);
}

Result SerialPort::OpenNamed(const QString &name)
{
    if (IsRemoteAddress(name)) {
        const ParsedAddress parsed = ParseRemoteAddress(name);
        if (parsed.state.Failed())
            return parsed.state;
        return OpenAs(RemoteAddressText(parsed.address),
                      [&](const LineSettings &line) { return OpenRemote(parsed.address, line); });
    }
    const QString device = SerialDevice::CanonicalName(name);
    if (device.isEmpty())
        return Failure{QStringLiteral("There is no device %1").arg(name), MissingDevice};
    return OpenAs(device, [&](const LineSettings &line) { return OpenLocal(device, name, line); });
}

/// By its canonical name.
Result SerialPort::OpenAs(const QString &device,
                          const std::function<Result(const LineSettings &)> &open)
{
    if (const int user = m_hub.UserOf(device); user != 0)
        return Failure{
            QStringLiteral("%1 is already open in this program as COM%2").arg(device).arg(user)};
    const auto line = ParseLineSettings(m_settings);
    if (!line)
        return Failure{QStringLiteral("The settings %1 do not have the form of 9600,N,8,1 (baud "
                                      "rate, parity, data bits, stop bits)")
                           .arg(m_settings),
                       RefusedLineSettings};

    m_inBuffer.clear();
    m_hub.Arrivals().Attach(this, m_inBufferSize - 1); // a full buffer means overflow to readers
    Result opened = open(*line);
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

Result SerialPort::OpenLocal(const QString &device, const QString &alias, const LineSettings &line)
{
    return m_line.ChooseLocal().Open(
        {m_commPort, device, alias, line, m_rtsEnable, m_reopens, m_listensOnly});
}

/// The opening goes on by itself if the program ends meanwhile.
Result SerialPort::OpenRemote(const RemoteAddress &address, const LineSettings &line)
{
    RemoteRequest request;
    request.comNumber = m_commPort;
    request.address = address;
    request.address.listens = address.listens || m_listensOnly;
    request.settings = line;
    request.requestToSend = m_rtsEnable;
    request.reopens = m_reopens;
    request.deadSeconds = m_deadSeconds;
    const auto opening = std::make_shared<RemoteOpening>(request);
    const auto wanted = std::make_shared<std::atomic<bool>>(false);
    const auto work = [opening, wanted](WorkProgress &progress) {
        opening->Open([&progress] { return progress.Wanted(); });
        *wanted = progress.Settle();
    };
    WorkProgress unseen;
    if (m_prompts)
        m_prompts->DoWork(QStringLiteral("Connecting to %1 ...").arg(PeerText(address)), work);
    else
        work(unseen);
    if (!*wanted) // cancelled, or the program ends
        return Failure{QStringLiteral("The opening of %1 was cancelled").arg(PeerText(address)),
                       OpeningCancelled};
    if (opening->State().Failed())
        return opening->State();
    m_line.ChooseRemote().Open(request, opening->TakeLink());
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
