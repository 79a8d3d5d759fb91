// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SerialDevice.h"
#include "SystemPortFinder.h"
#include "support/PtyPair.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

/// What the system says of a device, from folders that stand in for its own and over real
/// pseudo-terminals.
class tst_portfacts : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    /// An adapter that is held, a console with a login, and a modem manager.
    void WhatTheSystemTells()
    {
        const QTemporaryDir folder;
        const QDir root(folder.path());
        const auto write = [&](const QString &path, const QByteArray &text) {
            root.mkpath(QFileInfo(path).path());
            QFile file(root.filePath(path));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(text);
        };
        const auto link = [&](const QString &target, const QString &path) {
            root.mkpath(QFileInfo(path).path());
            QVERIFY(QFile::link(target.startsWith('/') ? target : root.filePath(target),
                                root.filePath(path)));
        };
        for (const char *file : {"idVendor 0403", "idProduct 6001", "manufacturer FTDI",
                                 "product UART", "serial A5", "1-1.2:1.0/port/latency_timer 16"})
            write("bus/1-1.2/" + QString(file).section(' ', 0, 0),
                  QByteArray(file).split(' ').last() + '\n');
        link("bus/drivers/ftdi_sio", "bus/1-1.2/1-1.2:1.0/port/driver");
        link("bus/1-1.2/1-1.2:1.0/port", "tty/ttyUSB0/device");
        root.mkpath("pnp/layer");
        link("bus/serial-base", "pnp/layer/subsystem");
        link("bus/drivers/port", "pnp/layer/driver");
        link("bus/drivers/serial", "pnp/driver");
        link("pnp/layer", "tty/ttyS0/device");
        write("tty/ttyS0/dev", "4:64\n");
        write("tty/console/active", "tty0 ttyS0\n");
        write("dev/ttyUSB0", "");
        write("dev/ttyS0", "");
        link("dev/ttyUSB0", "dev/serial/by-path/socket");
        link("dev/ttyUSB0", "dev/serial/by-id/adapter");
        write("proc/cmdline", "quiet console=ttyS01 console=ttyS0,9600n8\n");
        const std::pair<int, const char *> programs[] = {
            {7, "picocom"}, {8, "agetty"}, {9, "ModemManager"}};
        for (const auto &[process, name] : programs) {
            const QString place = QStringLiteral("proc/%1/").arg(process);
            write(place + "comm", QByteArray(name) + '\n');
            write(place + "cmdline", name);
            write(place + "stat", "8 (agetty) S 1 8 8 1088 8");
            root.mkpath(place + "fd");
        }
        link("dev/ttyUSB0", "proc/7/fd/3");

        const SystemPortFinder finder(root.filePath("tty"), root.filePath("dev"),
                                      root.filePath("proc"));
        const DeviceFacts adapter = finder.FactsOf(root.filePath("dev/serial/by-id/adapter"));
        QCOMPARE(adapter.device, root.filePath("dev/ttyUSB0"));
        QCOMPARE(adapter.leadsTo, root.filePath("dev/ttyUSB0"));
        QVERIFY(adapter.usb && !adapter.login && !adapter.console);
        QCOMPARE(
            (QStringList{adapter.driver, adapter.usb->maker, adapter.usb->product,
                         adapter.usb->serialNumber, adapter.usb->identity, adapter.usb->place}),
            (QStringList{"ftdi_sio", "FTDI", "UART", "A5", "0403:6001", "1-1.2"}));
        QCOMPARE(adapter.usb->latency, 16);
        QCOMPARE(adapter.stableNames, (QStringList{root.filePath("dev/serial/by-id/adapter"),
                                                   root.filePath("dev/serial/by-path/socket")}));
        QCOMPARE(adapter.users.size(), 1);
        QCOMPARE(adapter.users[0].program + QString::number(adapter.users[0].process), "picocom7");
        QCOMPARE(adapter.modemManager->process, 9);
        const DeviceFacts console = finder.FactsOf(root.filePath("dev/ttyS0"));
        QCOMPARE((QStringList{console.driver, console.consoleWords}),
                 (QStringList{"serial", "console=ttyS0,9600n8"}));
        QVERIFY(console.console && !console.usb && console.users.isEmpty());
        QCOMPARE(console.login->process, 8);
    }

    void WhatKindItIs()
    {
        const QTemporaryDir folder;
        const QString link = folder.filePath("link");
        QVERIFY(QFile::link("/dev/ttyNone", link));
        QFile file(folder.filePath("file"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        using Kind = DeviceFacts::Kind;
        const SystemPortFinder finder;
        QCOMPARE(finder.FactsOf("ttyNone").kind, Kind::Missing);
        QCOMPARE(finder.FactsOf(link).leadsTo, "/dev/ttyNone");
        QCOMPARE(finder.FactsOf(folder.path()).kind, Kind::Folder);
        QCOMPARE(finder.FactsOf(file.fileName()).kind, Kind::File);
        QCOMPARE(finder.FactsOf("/dev/tty").kind, Kind::OtherDevice);
    }

    void APseudoTerminalIsTriedAndLeftAsItWas()
    {
        const PtyPair pty;
        QCOMPARE(::chmod(qPrintable(pty.DeviceName()), 0620), 0);
        const SystemPortFinder finder;
        const DeviceFacts facts = finder.FactsOf(pty.DeviceName());
        QCOMPARE(facts.kind, DeviceFacts::Kind::PseudoTerminal);
        QCOMPARE(facts.rights.mode, "crw--w----");
        QVERIFY(facts.rights.mayRead && facts.rights.mayWrite && !facts.rights.groupMay);
        QVERIFY(facts.users.isEmpty() && facts.locks.isEmpty()); // it keeps both ends
        QCOMPARE(facts.otherEnd.size(), 1);
        QVERIFY(facts.otherEnd[0].own);

        const QByteArray before = SerialDevice::LineState(pty.Device());
        const DeviceTrial trial = finder.TryDevice(pty.DeviceName(), "19200,N,8,2");
        QCOMPARE((QStringList{trial.cause, trial.asked}), (QStringList{"", "19200,N,8,2"}));
        QCOMPARE(trial.speeds.size(), 15);
        for (const DeviceTrial::Speed &speed : trial.speeds)
            QCOMPARE(speed.done, speed.asked);
        QCOMPARE(SerialDevice::LineState(pty.Device()), before);
        QCOMPARE(finder.TryDevice(pty.DeviceName(), "9600,N,6,1").cause,
                 pty.DeviceName() + " was asked for 9600,N,6,1 and does 9600,N,8,1");
    }

    /// By another program, and by a lock file that it has left behind.
    void AHeldDeviceIsNotTried()
    {
        const PtyPair pty;
        QProcess holder;
        holder.setStandardInputFile(pty.DeviceName());
        holder.start("sleep", {"100"});
        QVERIFY(holder.waitForStarted());
        const qint64 process = holder.processId();
        const SystemPortFinder finder;
        QTRY_COMPARE(finder.FactsOf(pty.DeviceName()).users.value(0).program, "sleep");
        QCOMPARE(finder.FactsOf(pty.DeviceName()).users.value(0).process, process);
        const QByteArray before = SerialDevice::LineState(pty.Device());
        QVERIFY(!finder.TryDevice(pty.DeviceName(), "19200,N,8,2").tried);
        QCOMPARE(SerialDevice::LineState(pty.Device()), before);

        // A name that is not tidied up behind other tests meanwhile.
        QFile lock("/var/lock/LCK.." + pty.DeviceName().section('/', -1));
        QVERIFY(lock.open(QIODevice::WriteOnly));
        lock.write(QByteArray::number(process).rightJustified(10) + "\n");
        lock.close();
        const LockFile alive = finder.FactsOf(pty.DeviceName()).locks.value(0);
        holder.kill();
        holder.waitForFinished();
        const QList<LockFile> locks = finder.FactsOf(pty.DeviceName()).locks;
        QVERIFY(lock.remove());
        QVERIFY(alive.alive && alive.inTheWay && alive.user.program == "sleep");
        QCOMPARE(locks.size(), 1); // by whatever name of its folder
        QVERIFY(!locks[0].alive && !locks[0].inTheWay && locks[0].user.process == process);
    }
};

QTEST_GUILESS_MAIN(tst_portfacts)
#include "tst_portfacts.moc"
