// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ArrivalPort.h"
#include "ArrivalQueue.h"

#include <QTest>

namespace
{

class Port final : public ArrivalPort
{
  public:
    void RaiseReceive(const QByteArray &) override {}
    void RaiseDisconnected(const QString &) override {}
    void ResumeReading() override {}
};

} // namespace

/// The order in which arrivals of several ports are handed out.
class tst_arrivalqueue : public QObject
{
    Q_OBJECT

    Port m_a;
    Port m_b;
    ArrivalQueue m_queue{[] {}};

    void Push(Port &port, int millisecond, const char *bytes)
    {
        m_queue.Push(&port, ArrivalQueue::Clock::time_point(std::chrono::milliseconds(millisecond)),
                     bytes);
    }
    QByteArray TakeAll()
    {
        QByteArray taken;
        while (const auto arrival = m_queue.TakeOldest())
            taken += (arrival->port == &m_a ? "A:" : "B:") + arrival->bytes + ' ';
        return taken;
    }

  private Q_SLOTS:
    void init()
    {
        m_queue.Attach(&m_a, 3);
        m_queue.Attach(&m_b, 511);
    }

    void ALateThreadFindsItsPlace()
    {
        Push(m_a, 10, "a1");
        Push(m_a, 30, "a3");
        Push(m_b, 20, "b2"); // its thread came to the queue last
        QCOMPARE(TakeAll(), "A:a1 B:b2 A:a3 ");
    }

    void WhatWasBegunIsFinishedFirst()
    {
        Push(m_a, 30, "abcdef");
        QCOMPARE(m_queue.TakeOldest()->bytes, "abc");
        Push(m_b, 20, "late");
        QCOMPARE(TakeAll(), "A:def B:late ");
    }

    void ADepartureIsToldAfterTheLastBytes()
    {
        Push(m_a, 10, "last words");
        m_queue.PushDeparture(&m_a, "gone");
        m_queue.PushDeparture(&m_b, "gone, too");
        QVERIFY(m_queue.TakeDeparture()->port == &m_b);
        QVERIFY(!m_queue.TakeDeparture());
        QCOMPARE(TakeAll(), "A:las A:t w A:ord A:s ");
        QCOMPARE(m_queue.TakeDeparture()->description, "gone");
        QVERIFY(!m_queue.TakeDeparture());
    }
};

QTEST_GUILESS_MAIN(tst_arrivalqueue)
#include "tst_arrivalqueue.moc"
