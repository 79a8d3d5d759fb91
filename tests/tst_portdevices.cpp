// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "PortDevices.h"
#include "SystemPortName.h"
#include "support/Cases.h"
#include "support/MemoryStore.h"

class TestPortDevices : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void FindsTheDevice_data()
    {
        const Cases<int, QString, QString, QString> row("number", "assigned", "stored", "device");
        row("the last built-in port", 32, "", "", "/dev/ttyS31");
        row("the first USB adapter", 33, "", "", "/dev/ttyUSB0");
        row("the last USB modem", 96, "", "", "/dev/ttyACM31");
        row("a number beyond all kinds has none", 97, "", "", "");
        row("nor has number zero", 0, "", "", "");
        row("the user's table comes before the system", 1, "", " /dev/by-id/x ", "/dev/by-id/x");
        row("an empty entry is none", 2, "", " ", "/dev/ttyS1");
        row("this run comes before the table", 1, "/dev/a", "/dev/b", "/dev/a");
    }

    void FindsTheDevice()
    {
        QFETCH(int, number);
        QFETCH(QString, assigned);
        QFETCH(QString, stored);
        MemoryStore store;
        PortDevices devices(store, SystemPortName);
        if (!assigned.isEmpty())
            devices.AssignForRun(number, assigned);
        if (!stored.isEmpty())
            store.Write("Ports", QString("COM%1").arg(number), stored);
        QTEST(devices.DeviceOf(number), "device");
    }

    void AnOwnAssignmentEndsThatOfTheRun()
    {
        MemoryStore store;
        PortDevices devices(store, SystemPortName);
        using Source = PortDevices::Source;
        QCOMPARE(devices.MeaningOf(200).source, Source::None);
        devices.AssignForRun(2, "/dev/a");
        QCOMPARE(devices.MeaningOf(2).source, Source::ThisRun);
        devices.Assign(2, "/dev/b");
        QCOMPARE(devices.MeaningOf(2).source, Source::OwnAssignment);
        QCOMPARE(devices.DeviceOf(2), "/dev/b");
        QCOMPARE(store.texts.value("Ports/COM2"), "/dev/b");
        devices.Assign(2, QString());
        QCOMPARE(devices.MeaningOf(2).source, Source::SystemName);
        devices.AssignForRun(3, "/dev/c");
        devices.Assign(3, QString());
        QCOMPARE(devices.DeviceOf(3), "/dev/ttyS2");
        QVERIFY(!store.texts.contains("Ports/COM3"));
    }
};

QTEST_GUILESS_MAIN(TestPortDevices)
#include "tst_portdevices.moc"
