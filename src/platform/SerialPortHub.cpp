// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "platform/SerialPortHub.h"

#include "platform/ArrivalPort.h"

#include <QElapsedTimer>
#include <QMetaObject>
#include <QScopedValueRollback>

namespace
{

/// So long events are raised in one go before the window gets its turn.
constexpr qint64 DispatchMilliseconds = 5;

} // namespace

SerialPortHub::SerialPortHub(QObject *parent)
    : QObject(parent), m_arrivals([this] {
          QMetaObject::invokeMethod(this, &SerialPortHub::Dispatch, Qt::QueuedConnection);
      })
{
}

void SerialPortHub::Dispatch()
{
    m_arrivals.BeginTaking();
    if (m_inReceiveEvent)
        return; // whoever raises that event goes on when its handler has returned

    QElapsedTimer elapsed;
    elapsed.start();
    while (RaiseOldest()) {
        if (elapsed.elapsed() >= DispatchMilliseconds) {
            m_arrivals.WakeUp();
            break;
        }
    }
    RaiseDepartures();
}

void SerialPortHub::Deliver(ArrivalPort *port)
{
    if (m_inReceiveEvent)
        return;
    while (m_arrivals.Waiting(port) > 0)
        RaiseOldest();
    m_arrivals.WakeUp();
}

bool SerialPortHub::RaiseOldest()
{
    const auto oldest = m_arrivals.TakeOldest();
    if (!oldest)
        return false;
    if (oldest->resume)
        oldest->port->ResumeReading();
    const QScopedValueRollback inEvent(m_inReceiveEvent, true);
    oldest->port->RaiseReceive(oldest->bytes);
    return true;
}

/// Receive events of other ports go on while a handler of this one asks the user something; a
/// second departure waits for its return.
void SerialPortHub::RaiseDepartures()
{
    if (m_inDeparture)
        return;
    const QScopedValueRollback inDeparture(m_inDeparture, true);
    while (const auto departure = m_arrivals.TakeDeparture())
        departure->port->RaiseDisconnected(departure->description);
}
