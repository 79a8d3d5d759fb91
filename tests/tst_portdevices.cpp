// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "comm/PortDevices.h"
#include "support/MemoryStore.h"

#include <QTest>

class TestPortDevices : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void FindsTheDevice_data()
    {
        QTest::addColumn<int>("number");
        QTest::addColumn<QString>("assigned");
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("device");

        QTest::newRow("the first built-in port") << 1 << ""
                                                 << ""
                                                 << "/dev/ttyS0";
        QTest::newRow("the last built-in port") << 32 << ""
                                                << ""
                                                << "/dev/ttyS31";
        QTest::newRow("the first USB adapter") << 33 << ""
                                               << ""
                                               << "/dev/ttyUSB0";
        QTest::newRow("the last USB adapter") << 64 << ""
                                              << ""
                                              << "/dev/ttyUSB31";
        QTest::newRow("the first USB modem") << 65 << ""
                                             << ""
                                             << "/dev/ttyACM0";
        QTest::newRow("the last USB modem") << 96 << ""
                                            << ""
                                            << "/dev/ttyACM31";
        QTest::newRow("a number beyond all kinds has none") << 97 << ""
                                                            << ""
                                                            << "";
        QTest::newRow("nor has number zero") << 0 << ""
                                             << ""
                                             << "";
        QTest::newRow("the user's table comes before the system") << 1 << ""
                                                                  << "/dev/serial/by-id/x"
                                                                  << "/dev/serial/by-id/x";
        QTest::newRow("blanks around an entry do not count") << 200 << ""
                                                             << " /dev/x "
                                                             << "/dev/x";
        QTest::newRow("an empty entry is none") << 2 << ""
                                                << " "
                                                << "/dev/ttyS1";
        QTest::newRow("this run comes before the table") << 1 << "/dev/a"
                                                         << "/dev/b"
                                                         << "/dev/a";
    }

    void FindsTheDevice()
    {
        QFETCH(int, number);
        QFETCH(QString, assigned);
        QFETCH(QString, stored);
        MemoryStore store;
        PortDevices devices(store);
        if (!assigned.isEmpty())
            devices.AssignForRun(number, assigned);
        if (!stored.isEmpty())
            store.Write("Ports", QString("COM%1").arg(number), stored);
        QTEST(devices.DeviceOf(number), "device");
    }

    void AnOwnAssignmentEndsThatOfTheRun()
    {
        MemoryStore store;
        PortDevices devices(store);
        using Source = PortDevices::Source;
        QCOMPARE(devices.MeaningOf(200).source, Source::None);
        devices.AssignForRun(2, "/dev/a");
        QCOMPARE(devices.MeaningOf(2).source, Source::ThisRun);
        devices.Assign(2, "/dev/b");
        QCOMPARE(devices.MeaningOf(2).source, Source::OwnAssignment);
        QCOMPARE(devices.DeviceOf(2), QStringLiteral("/dev/b"));
        QCOMPARE(store.texts.value("Ports/COM2"), QStringLiteral("/dev/b"));
        devices.Assign(2, QString());
        QCOMPARE(devices.MeaningOf(2).source, Source::SystemName);
        QCOMPARE(devices.DeviceOf(2), QStringLiteral("/dev/ttyS1"));
        devices.AssignForRun(3, "/dev/c");
        devices.Assign(3, QString());
        QCOMPARE(devices.DeviceOf(3), QStringLiteral("/dev/ttyS2"));
        QVERIFY(!store.texts.contains("Ports/COM3"));
    }
};

QTEST_GUILESS_MAIN(TestPortDevices)
#include "tst_portdevices.moc"
