// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ListeningLines.h"

#include "PortDevices.h"

#include <utility>

namespace
{

QString NameOf(int comNumber)
{
    return QStringLiteral("COM%1").arg(comNumber);
}

Failure Named(int comNumber, const QString &cause)
{
    return {NameOf(comNumber) + QStringLiteral(": ") + cause};
}

} // namespace

ListeningLines::ListeningLines(const PortDevices &devices)
    : m_devices(devices), m_ports(devices), m_judge(m_board, m_stream, nullptr, Reports())
{
    m_board.Publish(std::make_shared<const WatchSnapshot>());
    int channel = 0;
    for (SerialPort *port : {&m_ports.MSCommA, &m_ports.MSCommB})
        port->Wire().Listen(&m_judge.Ear(channel++));
}

ListeningLines::~ListeningLines()
{
    End();
}

/// They come on the lines' thread.
LineJudge::Reports ListeningLines::Reports()
{
    return {[this](int channel, const QString &cause) {
                const Failure gone = Named(m_comNumbers[channel], cause);
                QMetaObject::invokeMethod(
                    this, [=, this] { Q_EMIT Gone(gone.cause); }, Qt::QueuedConnection);
            },
            [](int, const QString &) {}, [](int) {}};
}

Result ListeningLines::Open(const Request &request)
{
    m_comNumbers = request.comNumbers;
    m_speed = quint64(request.settings.section(u',', 0, 0).toLongLong());
    for (qsizetype channel = 0; channel < m_comNumbers.size(); ++channel) {
        const int comNumber = m_comNumbers[channel];
        SerialPort &port = channel == 0 ? m_ports.MSCommA : m_ports.MSCommB;
        if (const Result opened = OpenPort(port, comNumber, request); opened.Failed())
            return Named(comNumber, opened.Cause());
    }
    return {};
}

Result ListeningLines::OpenPort(SerialPort &port, int comNumber, const Request &request)
{
    if (m_devices.DeviceOf(comNumber).isEmpty())
        return Failure{QStringLiteral("it has no device; name one in the options of the interface, "
                                      "or assign one in Serimonde")};
    port.SetListensOnly(true);
    port.SetReopens(request.reopens);
    for (const Result &set : {port.SetCommPort(comNumber), port.SetSettings(request.settings),
                              port.SetRTSEnable(request.requestToSend)}) {
        if (set.Failed())
            return set;
    }
    return port.SetPortOpen(true);
}

QList<SerialPort *> ListeningLines::Ports()
{
    QList<SerialPort *> open;
    for (SerialPort *port : {&m_ports.MSCommA, &m_ports.MSCommB})
        if (port->PortOpen())
            open.append(port);
    return open;
}

TrafficSession ListeningLines::Session()
{
    TrafficSession session;
    for (const SerialPort *port : Ports()) {
        QString description = port->Device();
        if (const QString own = port->Description(); !own.isEmpty())
            description += QStringLiteral(" (%1)").arg(own);
        session.ports.append({NameOf(m_comNumbers[session.ports.size()]), description, m_speed});
    }
    return session;
}

void ListeningLines::Begin(TrafficConsumer &consumer)
{
    m_stream.Feed(consumer);
    m_stream.Begin(Session(), {});
    m_begun = true;
    Tell(TrafficEvent::Kind::Opened);
    TellModemLines();
    m_ports.lines.Do([this] {
        m_judge.Begin({m_comNumbers.size() == 2,
                       false,
                       {NameOf(m_comNumbers.first()), NameOf(m_comNumbers.last())}});
        for (SerialPort *port : Ports())
            port->Wire().BeginReading();
    });
}

void ListeningLines::End()
{
    m_ports.lines.Do([this] {
        for (SerialPort *port : Ports())
            port->Wire().EndReading();
    });
    if (std::exchange(m_begun, false)) {
        Tell(TrafficEvent::Kind::Closed);
        m_stream.End();
    }
    for (SerialPort *port : Ports())
        port->SetPortOpen(false).Ignore();
}

/// Of all channels.
void ListeningLines::Tell(TrafficEvent::Kind kind)
{
    TrafficEvent event;
    event.kind = kind;
    for (SerialPort *port : Ports()) {
        event.time = port->Wire().Now();
        m_stream.Append(event);
        ++event.channel;
    }
}

/// As they are at the beginning; from then on it is told how they change.
void ListeningLines::TellModemLines()
{
    TrafficEvent event;
    event.kind = TrafficEvent::Kind::ModemLines;
    for (SerialPort *port : Ports()) {
        event.time = port->Wire().Now();
        if (const std::optional<ModemLines> lines = port->Wire().Counts().modem) {
            event.modem = *lines;
            m_stream.Append(event);
        }
        ++event.channel;
    }
}
