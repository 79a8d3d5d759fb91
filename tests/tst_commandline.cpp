// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "app/CommandLine.h"

#include <QTest>

class tst_commandline : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void EverythingAtOnce();
    void NothingIsARunAtTheKeyboard();
    void WrongUsage_data();
    void WrongUsage();
};

void tst_commandline::EverythingAtOnce()
{
    const auto parsed = ParseCommandLine(
        {"serimonde",   "--port",       "1=/dev/ttyUSB0", "--port=255=a=b", "--mode",
         "2",           "--settings",   "921600,e,7,2",   "--start",        "--quit-after",
         "0.5",         "--screenshot", "a.png",          "--log",          "l.txt",
         "--overwrite", "--demo",       "my.sqx",         "-platform",      "offscreen"});
    QCOMPARE(parsed.error, QString());
    QCOMPARE(parsed.line.ports, (QHash<int, QString>{{1, "/dev/ttyUSB0"}, {255, "a=b"}}));
    QCOMPARE(parsed.line.mode, CommMode::MonitorReceiveAndModify);
    QCOMPARE(LineSettingsText(*parsed.line.line), QStringLiteral("921600,E,7,2"));
    QVERIFY(parsed.line.start && parsed.line.demo && parsed.line.Unattended());
    QCOMPARE(*parsed.line.quitAfterSeconds, 0.5);
    QCOMPARE(parsed.line.screenshot, QStringLiteral("a.png"));
    QCOMPARE(parsed.line.log, QStringLiteral("l.txt"));
    QVERIFY(parsed.line.overwrite);
    QCOMPARE(parsed.line.project, QStringLiteral("my.sqx"));
}

void tst_commandline::NothingIsARunAtTheKeyboard()
{
    const auto parsed = ParseCommandLine({"serimonde"});
    QCOMPARE(parsed.error, QString());
    QVERIFY(!parsed.line.Unattended() && !parsed.line.start && !parsed.line.mode);
    QCOMPARE(ParseCommandLine({"serimonde", "--help"}).line.action, CommandLine::Action::ShowHelp);
    for (const char *option : {"--port N=DEVICE", "--quit-after SECONDS", "--demo"})
        QVERIFY2(CommandLineHelp().contains(option), option);
}

void tst_commandline::WrongUsage_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("named"); // what the message must name

    QTest::newRow("an unknown option") << QStringList{"--colour"} << "colour";
    QTest::newRow("a value is missing") << QStringList{"--port"} << "port";
    QTest::newRow("a port without a device") << QStringList{"--port", "1"} << "N=DEVICE";
    QTest::newRow("a port with an empty device") << QStringList{"--port", "1="} << "N=DEVICE";
    QTest::newRow("a port that is no number") << QStringList{"--port", "COM1=x"} << "COM1=x";
    QTest::newRow("port 0") << QStringList{"--port", "0=x"} << "1 to 255";
    QTest::newRow("port 256") << QStringList{"--port", "256=x"} << "1 to 255";
    QTest::newRow("a port beyond all numbers")
        << QStringList{"--port", "99999999999=x"} << "99999999999";
    QTest::newRow("mode 3") << QStringList{"--mode", "3"} << "0, 1 or 2";
    QTest::newRow("mode with a blank") << QStringList{"--mode", " 1"} << "0, 1 or 2";
    QTest::newRow("settings of three fields")
        << QStringList{"--settings", "9600,8,1"} << "9600,8,1";
    QTest::newRow("no seconds") << QStringList{"--quit-after", "soon"} << "soon";
    QTest::newRow("negative seconds") << QStringList{"--quit-after=-1"} << "seconds";
    QTest::newRow("endless seconds") << QStringList{"--quit-after", "inf"} << "seconds";
    QTest::newRow("a screenshot without a file") << QStringList{"--screenshot="} << "file";
    QTest::newRow("a log without a name") << QStringList{"--log", "logs/"} << "file";
    QTest::newRow("overwriting without a log") << QStringList{"--overwrite"} << "--log";
    QTest::newRow("two projects") << QStringList{"a.sqx", "b.sqx"} << "a.sqx b.sqx";
}

void tst_commandline::WrongUsage()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, named);
    const auto parsed = ParseCommandLine(QStringList{"serimonde"} + arguments);
    QVERIFY2(parsed.error.contains(named), qPrintable(parsed.error));
}

QTEST_GUILESS_MAIN(tst_commandline)
#include "tst_commandline.moc"
