// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "PortBox.h"
#include "RemoteAddress.h"
#include "SystemPortFinder.h"
#include "frmDevices.h"
#include "frmNetworkPort.h"
#include "support/ScriptedFinder.h"
#include "support/ScriptedPrompts.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTest>
#include <QTextDocumentFragment>
#include <QTimer>
#include <QTreeWidget>

/// The ports of a machine and the dialog that lists them.
class tst_devices : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void TheDialogOfDevicesDoesNotWait()
    {
        ScriptedPrompts prompts;
        const auto finder = std::make_shared<ScriptedFinder>();
        finder->allowed.acquire(1000);
        auto dialog =
            std::make_unique<frmDevices>(frmDevices::ChosenPort{5, {}, {}}, finder, prompts);
        dialog->show();
        QCOMPARE(dialog->findChild<QLabel *>("lblState")->text(),
                 QStringLiteral("Looking for ports ..."));
        dialog.reset(); // while the search is under way
        finder->allowed.release();
        QTRY_COMPARE(finder.use_count(), 1);

        finder->ports.clear();
        frmDevices second({5, {}, {}}, finder, prompts);
        QVERIFY(RowsOf(second).isEmpty());
        finder->allowed.release();
        QTRY_COMPARE(second.findChild<QLabel *>("lblState")->text(),
                     QStringLiteral("No ports were found."));
        finder->ports = {{"/dev/ttyACM0", "a\x1B<b>c</b>", "/by-id/<i>d</i>"}};
        finder->allowed.release();
        second.findChild<QPushButton *>("cmdLookAgain")->click();
        QTRY_COMPARE(RowsOf(second), QStringList{"|/dev/ttyACM0|a\u241B<b>c</b>|/by-id/<i>d</i>"});
        const auto *list = second.findChild<QTreeWidget *>("lstDevices");
        const QString tip = list->topLevelItem(0)->toolTip(3);
        QCOMPARE(QTextDocumentFragment::fromHtml(tip).toPlainText(), "/by-id/<i>d</i>");
    }

    void AnAddressIsPutTogetherAndTried()
    {
        ScriptedPrompts prompts;
        const auto finder = std::make_shared<ScriptedFinder>();
        frmNetworkPort port(ParseRemoteAddress("tls://bench:1?listen&authority=/a").address, 25,
                            finder);
        QCOMPARE(port.DeadSeconds(), 25);
        const auto *meaning = port.findChild<QLabel *>("lblMeaning");
        auto *cmdOK = port.findChild<QPushButton *>("cmdOK");
        QCOMPARE(port.Address(), "tls://bench:1?listen&authority=/a");
        QVERIFY(meaning->text().startsWith("Listening only: "));
        port.findChild<QPushButton *>("cmdTest")->click();
        QCOMPARE(meaning->text(), "Connecting to bench:1 ...");
        QTRY_COMPARE(meaning->text(), "tried tls://bench:1?listen&authority=/a");
        port.findChild<QLineEdit *>("txtPort")->setText("70000");
        QVERIFY(!cmdOK->isEnabled() && meaning->text().contains("is wrong: "));
        port.findChild<QLineEdit *>("txtPort")->setText("4001");
        port.findChild<QComboBox *>("lstKind")->setCurrentIndex(0);
        port.findChild<QCheckBox *>("chkListen")->setChecked(false);
        QCOMPARE(port.Address(), "rfc2217://bench:4001");
        QVERIFY(cmdOK->isEnabled() && meaning->text().startsWith("Settings, signals and breaks"));

        frmDevices devices({5, {}, {}, false, 25}, finder, prompts);
        const auto *note = devices.findChild<QLabel *>("lblMeaning");
        QVERIFY(note->isHidden());
        devices.findChild<QLineEdit *>("txtDevice")->setText("tcp://bench:1");
        QVERIFY(note->text().startsWith("Bytes alone: ") && !note->isHidden());

        QTimer::singleShot(0, &devices, [&] {
            auto *asked = devices.findChild<frmNetworkPort *>();
            asked->findChild<QSpinBox *>("spnDeadSeconds")->stepBy(-10);
            asked->accept();
        });
        devices.findChild<QPushButton *>("cmdNetworkPort")->click();
        QCOMPARE(devices.DeadSeconds(), 15);
    }

    /// Opening the dialog and choosing in it open nothing; Try It does.
    void WhatIsKnownOfADeviceIsShown()
    {
        const auto finder = std::make_shared<ScriptedFinder>();
        finder->device.kind = DeviceFacts::Kind::PseudoTerminal;
        finder->trial.cause = "refused";
        finder->trialsAllowed.acquire(1000);
        ScriptedPrompts prompts;
        prompts.chosen = QStringList{"/dev/pts/9"};
        using Source = PortDevices::Source;
        const QMap<int, PortDevices::Meaning> meanings = {
            {1, {"/dev/ttyS0", Source::SystemName}},
            {5, {"/dev/none", Source::OwnAssignment}},
            {6, {"/dev/ttyS9", Source::SystemName}},
            {7, {"tcp://a:1", Source::ThisRun}},
            {8, {"tcp://a:1", Source::OwnAssignment}}};
        auto dialog = std::make_unique<frmDevices>(
            frmDevices::ChosenPort{
                5, meanings, {"/dev/ttyS4", Source::SystemName}, false, 10, "1200,E,7,1"},
            finder, prompts);
        auto *device = dialog->findChild<QLineEdit *>("txtDevice");
        auto *cmdTryIt = dialog->findChild<QPushButton *>("cmdTryIt");
        const auto *details = dialog->findChild<QPlainTextEdit *>("txtDetails");
        const auto tells = [&](const QString &text) {
            return details->toPlainText().startsWith(text + ": ");
        };
        QTRY_COMPARE(RowsOf(*dialog).mid(2), (QStringList{"COM5|/dev/none|Is not there|",
                                                          "COM7, COM8|tcp://a:1|Network port|"}));
        QCOMPARE(dialog->findChild<QLabel *>("lblState")->text(),
                 "2 ports were found, 2 more are assigned.");
        QTRY_VERIFY(tells("/dev/none"));
        device->clear();
        QTRY_VERIFY(tells("/dev/ttyS4"));
        dialog->findChild<QPushButton *>("cmdBrowse")->click();
        QCOMPARE(prompts.asked.value(0).folder, "/dev");
        QVERIFY(device->text() == "/dev/pts/9" && dialog->IsChosen());
        QTRY_VERIFY(tells("/dev/pts/9"));
        QVERIFY(finder->tried.isEmpty());

        cmdTryIt->click();
        QVERIFY(!cmdTryIt->isEnabled() && details->toPlainText() == "Trying /dev/pts/9 ...");
        finder->trialsAllowed.release();
        QTRY_VERIFY(cmdTryIt->isEnabled());
        QVERIFY(details->toPlainText().endsWith("! Trial: refused"));
        QCOMPARE(finder->tried, QStringList("/dev/pts/9 1200,E,7,1"));
        cmdTryIt->click();
        device->setText("/dev/other"); // it has not to wait for the trial
        QTRY_VERIFY(tells("/dev/other") && !cmdTryIt->isEnabled());
        finder->trialsAllowed.release();
        QTRY_VERIFY(cmdTryIt->isEnabled());
        QVERIFY(tells("/dev/other"));
        cmdTryIt->click();
        dialog.reset(); // while the trial is under way
        finder->trialsAllowed.release();
        QTRY_COMPARE(finder.use_count(), 1);
    }

    void WhatANumberMeansStandsBelowIt()
    {
        PortBox box("box", "button", "Devices...");
        const std::unique_ptr<QLabel> meaning(box.Meaning());
        box.MeaningOf = [](int) {
            return PortDevices::Meaning{"/dev/a", PortDevices::Source::OwnAssignment};
        };
        box.Show(3);
        QCOMPARE(meaning->text(), "COM3 is /dev/a (your own assignment)");
        box.Edit()->setText("300");
        QCOMPARE(meaning->text(), "A COM port has a number from 1 to 255");
        QVERIFY(meaning->minimumSizeHint().width() == 0); // however long a name is
    }

    /// A system with a built-in port, a place without a chip, a USB adapter and a console.
    void TheSystemsPortsAreFound()
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
            QVERIFY(QFile::link(root.filePath(target), root.filePath(path)));
        };
        root.mkpath("hardware/bus/adapter/port");
        root.mkpath("hardware/platform");
        write("hardware/bus/adapter/idVendor", "0403\n");
        write("hardware/bus/adapter/manufacturer", "Maker\n");
        write("hardware/bus/adapter/product", "USB Serial\n");
        write("tty/ttyS10/type", "4\n");
        write("tty/ttyS2/type", "4\n");
        write("tty/ttyS3/type", "0\n");
        write("tty/console/active", "tty0\n");
        for (const char *name : {"ttyS10", "ttyS2", "ttyS3"})
            link("hardware/platform", QStringLiteral("tty/%1/device").arg(name));
        link("hardware/bus/adapter/port", "tty/ttyUSB0/device");
        link("hardware/bus/adapter/port", "tty/ttyUSB1/device"); // without a device file
        for (const char *name : {"ttyS10", "ttyS2", "ttyS3", "ttyUSB0", "console"})
            write(QStringLiteral("dev/%1").arg(name), "");
        link("dev/ttyS2", "dev/serial/by-path/card");
        link("dev/ttyUSB0", "dev/serial/by-path/socket");
        link("dev/ttyUSB0", "dev/serial/by-id/adapter");
        link("dev/gone", "dev/serial/by-id/gone");

        const SystemPortFinder finder(root.filePath("tty"), root.filePath("dev"));
        QCOMPARE(finder.DescriptionOf("/dev/ttyUSB0"), "Maker USB Serial");
        QCOMPARE(finder.DescriptionOf("/dev/pts/1"), "");
        QStringList found;
        for (const FoundPort &port : finder.FindPorts())
            found << QStringList{port.device, port.description, port.stableName}.join("|").remove(
                root.path());
        QCOMPARE(found, (QStringList{"/dev/ttyS2|Built-in serial port|/dev/serial/by-path/card",
                                     "/dev/ttyS10|Built-in serial port|",
                                     "/dev/ttyUSB0|Maker USB Serial|/dev/serial/by-id/adapter"}));
    }
};

QTEST_MAIN(tst_devices)
#include "tst_devices.moc"
