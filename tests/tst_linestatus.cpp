// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ByteRate.h"
#include "Lamp.h"
#include "frmLineStatus.h"
#include "support/ProgramBench.h"
#include "support/PtyPair.h"
#include "support/ScriptedFinder.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QTest>

namespace
{

QString Text(const QWidget &window, const char *field)
{
    return window.findChild<QLineEdit *>(field)->text();
}

/// The window, and ports that are as the test says.
struct Desk {
    QList<LineStatus> lines;
    QStringList switched; ///< such as "0 RTS off"
    Result failSwitch;
    ScriptedPrompts prompts;
    std::shared_ptr<ScriptedFinder> finder = std::make_shared<ScriptedFinder>();
    frmLineStatus window{{{[this] { return lines; },
                           [this](int channel, OwnLine line, bool on) {
                               switched << QStringLiteral("%1 %2 %3")
                                               .arg(QString::number(channel),
                                                    line == OwnLine::RTS ? "RTS" : "DTR",
                                                    on ? "on" : "off");
                               return failSwitch;
                           }},
                          finder,
                          [](const QString &name) { return QString(name).replace("link", "tty"); },
                          prompts,
                          "real time"}};

    QString Texts(const QStringList &fields) const
    {
        QStringList texts;
        for (const QString &field : fields)
            texts << Text(window, field.toLatin1() + "_0");
        return texts.join('|');
    }
    template <typename Widget> Widget *Find(const char *name) const
    {
        return window.findChild<Widget *>(name);
    }
};

LineStatus OpenLine()
{
    LineStatus line{"COM7", PortState::Open, "/dev/ttyUSB1", "/dev/ttyUSB1", "9600,N,8,1", {}};
    line.counts = {.receivedBytes = 1,
                   .receivedChunks = 2,
                   .sentBytes = 3,
                   .sentChunks = 4,
                   .waiting = 5,
                   .damaged = 6,
                   .breaks = 7,
                   .overruns = 0,
                   .modem = ModemLines{true, false, false, true},
                   .RTS = true,
                   .DTR = false};
    return line;
}

} // namespace

class tst_linestatus : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void APortIsShownAsItIs()
    {
        const QStringList counts = {"txtReceivedBytes", "txtReceivedChunks", "txtSentBytes",
                                    "txtSentChunks",    "txtWaiting",        "txtDamaged",
                                    "txtBreaks",        "txtOverruns"};
        const QStringList who = {"txtState", "txtDevice", "txtDescription", "txtStableName",
                                 "txtSettings"};
        Desk desk;
        desk.lines = {OpenLine()};
        desk.window.show();
        QCOMPARE(desk.Texts(counts), "1|2|3|4|5|6|7|0");
        QTRY_COMPARE(desk.Texts(who), "open|/dev/ttyUSB1|Maker of USB Serial|"
                                      "/dev/serial/by-id/usb-adapter|9600,N,8,1");
        QCOMPARE(desk.Find<QGroupBox>("grpLine_0")->title(), "COM7");
        QVERIFY(!desk.Find<QGroupBox>("grpLine_1")->isVisible());
        QCOMPARE(desk.Find<QLabel>("lblPriority")->text(), "Priority: real time");
        QCOMPARE(desk.Find<Lamp>("lmp_0RI")->text() + desk.Find<Lamp>("lmp_0DSR")->text(),
                 "RI onDSR off");
        QVERIFY(desk.Find<QCheckBox>("chk_0RTS")->isChecked());
        QVERIFY(!desk.Find<QCheckBox>("chk_0DTR")->isChecked());

        const QString remote = "tcp://bench:1";
        desk.lines = {
            {"COM7", PortState::Open, remote, remote, "set by the other side", {}, "ser2net"}};
        QTRY_COMPARE(desk.Texts(who),
                     "open|tcp://bench:1|ser2net|not available|set by the other side");

        // A device that tells nothing, without a description, behind a link.
        desk.lines = {{"COM7", PortState::Open, "/dev/link5", "/dev/tty5", "", {}}, OpenLine()};
        const QString none = "not available";
        QTRY_COMPARE(desk.Texts(counts), "0|0|0|0|0|not available|not available|not available");
        QTRY_COMPARE(desk.Texts(who), "open|/dev/tty5|" + none + "|/dev/link5|");
        QVERIFY(desk.Find<QGroupBox>("grpLine_1")->isVisible());
        QCOMPARE(desk.Find<Lamp>("lmp_0RI")->text(), "RI not available");
        QVERIFY(!desk.Find<QCheckBox>("chk_0RTS")->isEnabled());
        QCOMPARE(desk.Find<QCheckBox>("chk_0RTS")->text(), "RTS not available");

        // What has been counted stays after a stop; how the lines stand is not known any more.
        desk.lines = {OpenLine()};
        desk.lines[0].state = PortState::Closed;
        desk.lines[0].device.clear();
        desk.lines[0].name = "/dev/ttyS0";
        QTRY_COMPARE(desk.Texts(who),
                     "closed|/dev/ttyS0|Built-in serial port|" + none + "|9600,N,8,1");
        QCOMPARE(desk.Texts(counts), "1|2|3|4|5|6|7|0");
        QCOMPARE(desk.Find<Lamp>("lmp_0RI")->text(), "RI not available");
        QVERIFY(!desk.Find<QCheckBox>("chk_0DTR")->isEnabled());
    }

    void ASwitchThatFailsGoesBackAndIsTold()
    {
        Desk desk;
        desk.lines = {OpenLine(), OpenLine()};
        desk.window.show();
        auto *box = desk.Find<QCheckBox>("chk_1RTS");
        QTest::keyClick(box, Qt::Key_Space);
        QCOMPARE(desk.switched, QStringList("1 RTS off"));
        QVERIFY(desk.prompts.notices.isEmpty() && box->isChecked()); // the line says so
        desk.failSwitch = Failure{"Input/output error"};
        QTest::keyClick(desk.Find<QCheckBox>("chk_0DTR"), Qt::Key_Space);
        QCOMPARE(desk.switched.last(), "0 DTR on");
        QCOMPARE(desk.prompts.notices,
                 QList{ExclamationMessage(
                     "The line DTR of COM7 cannot be switched: Input/output error")});
        QVERIFY(!desk.Find<QCheckBox>("chk_0DTR")->isChecked());
    }

    void RatesAreThoseOfTheLastSecond()
    {
        ByteRate rate;
        QCOMPARE(rate.PerSecond(), 0);
        for (int look = 0; look <= 10; ++look)
            rate.Note(look < 5 ? 0 : 90 * (look - 4), 300 * look);
        QCOMPARE(rate.PerSecond(), 300);
        rate.Note(40, 3300); // opened anew
        QCOMPARE(rate.PerSecond(), 0);
        rate.Note(140, 3500);
        QCOMPARE(rate.PerSecond(), 500);
    }

    void TheProgramShowsItsPorts()
    {
        PtyPair pty;
        ProgramBench bench;
        bench.AssignPort(1, pty.DeviceName());
        bench.line.start = true;
        const auto window = [&] {
            return bench.program->Window()->findChild<QDialog *>("frmLineStatus");
        };
        const auto text = [&](const char *field) { return Text(*window(), field); };
        QCOMPARE(bench.Run({bench.Started(),
                            {[&] {
                                 bench.program->Window()
                                     ->findChild<QAction *>("mnuToolsLineStatus")
                                     ->trigger();
                                 pty.Write("hello");
                             },
                             [&] {
                                 return text("txtReceivedBytes_0") == "5" &&
                                        text("txtState_0") == "open" &&
                                        text("txtDevice_0") == pty.DeviceName() &&
                                        text("txtDamaged_0") == "not available";
                             }},
                            {[&] { bench.program->Execute(Command::Stop); },
                             [&] {
                                 return text("txtState_0") == "closed" &&
                                        text("txtReceivedBytes_0") == "5";
                             }},
                            {[&] { QTest::keyClick(window(), Qt::Key_Escape); },
                             [&] { return !window()->isVisible(); }}}),
                 0);
        QVERIFY(!bench.stuck);
    }
};

QTEST_MAIN(tst_linestatus)
#include "tst_linestatus.moc"
