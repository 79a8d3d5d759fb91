// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SerialPortHub.h"

#include "ArrivalPort.h"

#include <QElapsedTimer>
#include <QMetaObject>
#include <QScopedValueRollback>
#include <QTimer>

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

/// While bytes wait, the one wake-up stays under way and goes on through a timer: a posted event
/// would be handled before the window's own turn comes.
void SerialPortHub::Dispatch()
{
    if (m_inReceiveEvent) { // whoever raises that event goes on when its handler has returned
        m_arrivals.BeginTaking();
        return;
    }
    QElapsedTimer elapsed;
    elapsed.start();
    bool more = true;
    while (more && elapsed.elapsed() < DispatchMilliseconds) {
        more = RaiseOldest();
        if (!more) {
            m_arrivals.BeginTaking();
            more = RaiseOldest(); // what came before the next push would wake up again
        }
    }
    if (more)
        QTimer::singleShot(0, this, &SerialPortHub::Dispatch);
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
