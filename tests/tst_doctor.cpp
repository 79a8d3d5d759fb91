// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "PortDoctor.h"
#include "PortFinder.h"
#include "support/Cases.h"

namespace
{

using Kind = DeviceFacts::Kind;
using Stage = RemoteFacts::Stage;
using Membership = DeviceRights::Membership;

/// Says what the test has put into it, and notes what it was asked to do.
class ScriptedMachine final : public PortFinder
{
  public:
    DeviceFacts device;
    DeviceTrial trial;
    RemoteFacts remote;
    mutable QStringList done;

    QList<FoundPort> FindPorts() const override { return {}; }
    DeviceFacts FactsOf(const QString &) const override { return device; }
    DeviceTrial TryDevice(const QString &name, const QString &settings) const override
    {
        done << "open " + name + ' ' + settings;
        return trial;
    }
    RemoteFacts Reach(const QString &, const QString &settings) const override
    {
        done << "reach " + settings;
        return remote;
    }
};

DeviceRights MiasRights()
{
    DeviceRights rights;
    rights.owner = "root";
    rights.group = "dialout";
    rights.mode = "crw-rw----";
    rights.user = "mia";
    rights.groupMay = rights.mayRead = rights.mayWrite = true;
    rights.membership = Membership::Now;
    return rights;
}

/// An adapter with which all is well.
DeviceFacts Adapter()
{
    UsbFacts usb;
    usb.maker = "FTDI";
    usb.product = "USB UART";
    usb.serialNumber = "A5\x1B[2J";
    usb.identity = "0403:6001";
    usb.place = "1-1.2";
    usb.latency = 1;
    DeviceFacts facts;
    facts.kind = Kind::Port;
    facts.device = "/dev/ttyUSB0";
    facts.description = "FTDI USB UART";
    facts.driver = "ftdi_sio";
    facts.stableNames = QStringList{"/dev/serial/by-id/a"};
    facts.usb = usb;
    facts.rights = MiasRights();
    return facts;
}

using Change = void (*)(DeviceFacts &);
using RemoteChange = void (*)(RemoteFacts &);

} // namespace
Q_DECLARE_METATYPE(Change)
Q_DECLARE_METATYPE(RemoteChange)

class tst_doctor : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void AnAdapterThatIsWell()
    {
        ScriptedMachine machine;
        machine.device = Adapter();
        const auto report =
            ExaminePort(machine, "/dev/ttyUSB0", Examination::Connect, "9600,N,8,1");
        QVERIFY(!report.HasFault());
        QCOMPARE(report.Text(), "/dev/ttyUSB0: nothing was found that stands in the way\n"
                                "  Device: FTDI USB UART\n"
                                "  Maker: FTDI USB UART (0403:6001)\n"
                                "  Serial number: A5\u241B[2J\n"
                                "  USB place: 1-1.2\n"
                                "  Driver: ftdi_sio\n"
                                "  Stable name: /dev/serial/by-id/a\n"
                                "  Rights: mia may read and write (root:dialout, crw-rw----)\n"
                                "  Held by: nobody\n"
                                "  Lock file: none\n"
                                "  Console: no\n"
                                "  ModemManager: does not run\n"
                                "  Latency timer: 1 ms\n"
                                "  Trial: not tried\n");
        QVERIFY(machine.done.isEmpty());
    }

    void WhatIsWrongWithADevice_data()
    {
        const Cases<Change, QString, int> row("change", "says", "faults");
        row(
            "missing", [](DeviceFacts &f) { f = {}; }, "! Device: there is no x y\n", 1);
        row(
            "a link to nothing", [](DeviceFacts &f) { f = {}, f.leadsTo = "/dev/z"; },
            "! Device: x y is a link to /dev/z, which is not there\n", 1);
        row(
            "a folder", [](DeviceFacts &f) { f.kind = Kind::Folder; }, "! Device: x y is a folder",
            1);
        row(
            "no serial device", [](DeviceFacts &f) { f.kind = Kind::OtherDevice; },
            "! Device: x y is not a serial device\n", 1);
        row(
            "no chip", [](DeviceFacts &f) { f.hardware = false; },
            "! Device: the driver has found no hardware behind it\n", 1);
        row(
            "not in the group",
            [](DeviceFacts &f) {
                f.rights.mayRead = f.rights.mayWrite = false;
                f.rights.membership = Membership::None;
            },
            "! Rights: mia may neither read nor write (root:dialout, crw-rw----)\n"
            "    sudo usermod -aG dialout mia, then log out and in again\n",
            1);
        row(
            "in the group since the login",
            [](DeviceFacts &f) {
                f.rights.mayWrite = false;
                f.rights.membership = Membership::NextLogin;
            },
            "    log out and in again: mia is in the group dialout", 1);
        row(
            "of the administrator's group",
            [](DeviceFacts &f) {
                f.device = "/dev/it's";
                f.rights.mayRead = f.rights.groupMay = false;
            },
            "    sudo setfacl -m u:mia:rw '/dev/it'\\''s', which", 1);
        row(
            "held",
            [](DeviceFacts &f) {
                f.users = {{"picocom", 7}, {"", 8}};
            },
            "! Held by: picocom (process 7), process 8\n", 1);
        row(
            "held by this program",
            [](DeviceFacts &f) {
                f.users = {{"x", 7, true}};
            },
            "! Held by: this program (process 7)\n    stop communication\n", 1);
        row(
            "hidden processes", [](DeviceFacts &f) { f.hiddenProcesses = 2; },
            "  Held by: nobody who can be seen; 2 processes of other users cannot be looked into\n"
            "    sudo fuser -v /dev/ttyUSB0\n",
            0);
        row(
            "locked",
            [](DeviceFacts &f) {
                f.locks = {{"/l", {"minicom", 7}, true, true}};
            },
            "! Lock file: /l of minicom (process 7)\n", 1);
        row(
            "a lock that stays",
            [](DeviceFacts &f) {
                f.locks = {{"/l", {"", 7}, false, true}};
            },
            "! Lock file: /l was left behind by process 7, which has ended\n    sudo rm /l\n", 1);
        row(
            "a lock that goes",
            [](DeviceFacts &f) {
                f.locks = {{"/l", {}, false, false}};
            },
            "* Lock file: /l says no process that could be asked; it does not keep Serimonde", 0);
        row(
            "a login",
            [](DeviceFacts &f) {
                f.login = PortUser{"agetty", 9};
            },
            "! Console: agetty (process 9) asks for a login there and takes what comes\n"
            "    sudo systemctl mask --now serial-getty@ttyUSB0.service\n",
            1);
        row(
            "a console",
            [](DeviceFacts &f) { f.console = true, f.consoleWords = "console=ttyS0,9600"; },
            "* Console: the kernel writes its messages there\n    take console=ttyS0,9600 out", 0);
        row(
            "a modem manager",
            [](DeviceFacts &f) {
                f.modemManager = PortUser{"ModemManager", 5};
            },
            "* ModemManager: runs as process 5 and may take the device", 0);
        row(
            "one that leaves it alone",
            [](DeviceFacts &f) {
                f.modemManager = PortUser{"ModemManager", 5};
                f.usb->modemManagerIgnores = true;
            },
            "  ModemManager: runs, and is told to leave this device alone\n", 0);
        row(
            "a latency timer",
            [](DeviceFacts &f) { f.usb->latency = 16, f.usb->latencyFile = "/sys/l"; },
            "    echo 1 | sudo tee /sys/l\n", 0);
        row(
            "a pseudo-terminal",
            [](DeviceFacts &f) {
                f.kind = Kind::PseudoTerminal;
                f.leadsTo = f.device;
                f.otherEnd = {{"socat", 3}};
            },
            "  Device: a pseudo-terminal, at its other end socat (process 3); x y leads to "
            "/dev/ttyUSB0\n",
            0);
    }

    void WhatIsWrongWithADevice()
    {
        QFETCH(Change, change);
        ScriptedMachine machine;
        machine.device = Adapter();
        change(machine.device);
        const QString text = ExaminePort(machine, "x y", Examination::Facts, {}).Text();
        QFETCH(QString, says);
        QVERIFY2(text.contains('\n' + says), qPrintable(text));
        QTEST(int(text.count("\n! ")), "faults");
    }

    void ATrial()
    {
        ScriptedMachine machine;
        machine.device = Adapter();
        machine.trial.asked = "9600,N,8,1";
        machine.trial.speeds = {{9600, 9600}, {115200, 115384}};
        const auto report = ExaminePort(machine, "/dev/ttyUSB0", Examination::Try, "9600,N,8,1");
        QCOMPARE(machine.done, QStringList("open /dev/ttyUSB0 9600,N,8,1"));
        QVERIFY2(report.Text().endsWith(
                     "  Trial: it was opened, did 9600,N,8,1 as asked, and was closed\n"
                     "  Speeds set: 9600\n"
                     "* Other speeds set: 115384 in place of 115200\n"),
                 qPrintable(report.Text()));
        machine.trial.cause = "does 8,N,1";
        QVERIFY(ExaminePort(machine, "/dev/ttyUSB0", Examination::Try, {}).HasFault());
        machine.trial.tried = false;
        QVERIFY(!ExaminePort(machine, "/dev/ttyUSB0", Examination::Try, {}).HasFault());
        machine.device = {}; // what is not there is not opened
        machine.done.clear();
        ExaminePort(machine, "/dev/ttyUSB0", Examination::Try, {});
        QVERIFY(machine.done.isEmpty());
    }

    void APortOnAnotherMachine_data()
    {
        const Cases<QString, RemoteChange, QString> row("address", "change", "says");
        row(
            "wrong", "tcp://x:0", [](RemoteFacts &) {}, "! Address: ");
        row(
            "no name", "tcp://x:1",
            [](RemoteFacts &f) { f.reached = Stage::Name, f.cause = "nobody"; },
            "! Name: nobody\n");
        row(
            "dead", "tcp://x:1",
            [](RemoteFacts &f) { f.reached = Stage::Connection, f.cause = "refused"; },
            "  Name: x is 10.0.0.1 ::1\n! Connection: refused\n");
        row(
            "another's certificate", "tls://x:1",
            [](RemoteFacts &f) { f.reached = Stage::Security, f.cause = "expired"; },
            "  Connection: somebody is there\n! TLS: expired\n");
        row(
            "no server", "rfc2217://x:1",
            [](RemoteFacts &f) { f.reached = Stage::Conversation, f.cause = "silent"; },
            "  Connection: somebody is there\n! RFC 2217: silent\n");
        row(
            "a good one", "rfc2217s://x:1?authority=/ca",
            [](RemoteFacts &f) { f.server = "ser2net"; },
            "  TLS: the certificate is valid and made out to x; who certified it is in /ca\n"
            "  RFC 2217: it speaks of serial lines\n"
            "  Server: it calls itself \"ser2net\"\n"
            "  Settings: not asked for, so that nobody who uses the port notices\n"
            "  Character delay: cannot be told from here\n    without \"chardelay: false\"");
        row(
            "bytes alone", "tcp://x:1", [](RemoteFacts &) {},
            "  Connection: somebody is there\n  Character delay: cannot be told from here\n");
        row(
            "settings confirmed", "rfc2217://x:1", [](RemoteFacts &f) { f.asked = "9600,N,8,1"; },
            "  Settings: 9600,N,8,1, as asked; that a server confirms it does not prove");
    }

    void APortOnAnotherMachine()
    {
        QFETCH(QString, address);
        QFETCH(RemoteChange, change);
        ScriptedMachine machine;
        machine.remote.reached = Stage::Done;
        machine.remote.addresses = QStringList{"10.0.0.1", "::1"};
        change(machine.remote);
        const QString text =
            ExaminePort(machine, address, Examination::Connect, "9600,N,8,1").Text();
        QFETCH(QString, says);
        QVERIFY2(text.contains('\n' + says), qPrintable(text));
        QCOMPARE(text.contains("\n! "), says.contains("! "));
    }

    void HowFarAnExaminationGoes_data()
    {
        const Cases<QString, int, QStringList> row("address", "examination", "done");
        row("facts", "tcp://x:1", int(Examination::Facts), {});
        row("a connection", "tcp://x:1", int(Examination::Connect), {"reach "});
        row("a trial", "tcp://x:1", int(Examination::Try), {"reach 1200,E,7,1"});
        row("a trial that only listens", "rfc2217://x:1?listen", int(Examination::Try), {"reach "});
        row("a wrong address", "rfc2217://x", int(Examination::Try), {});
    }

    void HowFarAnExaminationGoes()
    {
        QFETCH(QString, address);
        QFETCH(int, examination);
        ScriptedMachine machine;
        ExaminePort(machine, address, Examination(examination), "1200,E,7,1");
        QTEST(machine.done, "done");
    }
};

QTEST_GUILESS_MAIN(tst_doctor)
#include "tst_doctor.moc"
