// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CommandLine.h"
#include "LongDelay.h"
#include "support/Cases.h"

class tst_commandline : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void EverythingAtOnce()
    {
        const auto parsed = ParseCommandLine(
            QString("serimonde --port 1=/dev/ttyUSB0 --port=255=a=b --mode 2 --settings "
                    "921600,e,7,2 --start --reconnect --quit-after 0.5 --screenshot a.png --log "
                    "l.txt --capture c.pcapng --overwrite --demo --reset-settings my.sqx -platform "
                    "offscreen")
                .split(' '));
        const CommandLine &line = parsed.line;
        QCOMPARE(parsed.result.Cause(), QString());
        QCOMPARE(line.ports, (QHash<int, QString>{{1, "/dev/ttyUSB0"}, {255, "a=b"}}));
        QCOMPARE(line.mode, CommMode::MonitorReceiveAndModify);
        QCOMPARE(LineSettingsText(*line.line), "921600,E,7,2");
        QVERIFY(line.start && line.reconnect && line.demo && line.Unattended() && line.overwrite &&
                line.resetSettings);
        QCOMPARE(*line.quitAfterSeconds, 0.5);
        QCOMPARE((QStringList{line.screenshot, line.log, line.capture, line.project}),
                 (QStringList{"a.png", "l.txt", "c.pcapng", "my.sqx"}));
    }

    void WithoutAWindow()
    {
        const auto parsed = ParseCommandLine({"serimonde-cli", "--port", "1=x", "--within", "50ms",
                                              "--timeout", "2min", "--json", "--junit", "j.xml",
                                              "--quiet", "my.sqx", "send Ping", "expect", "Pong"},
                                             Program::WithoutWindow);
        const CommandLine &line = parsed.line;
        QCOMPARE(parsed.result.Cause(), QString());
        QCOMPARE(line.project, "my.sqx");
        QCOMPARE(line.stepWords, QStringList({"send Ping", "expect", "Pong"}));
        QCOMPARE(*line.within, 50000000);
        QCOMPARE(*line.timeout, 120000000000);
        QVERIFY(line.json && line.quiet && line.junit == "j.xml");
        const auto steps =
            ParseCommandLine({"serimonde-cli", "--port", "1=x", "close"}, Program::WithoutWindow);
        QVERIFY(steps.line.project.isEmpty() && steps.line.stepWords == QStringList("close"));
        QVERIFY(CommandLineHelp(Program::WithoutWindow).contains("--junit FILE") &&
                !CommandLineHelp().contains("--junit"));
    }

    void TheDoctorIsAProgramOfItsOwn()
    {
        QStringList command = {"serimonde-cli", "doctor", "--try", "--port", "1=x", "COM1"};
        QCOMPARE(int(TakeCommand(command)), int(Program::Doctor));
        const auto own = ParseCommandLine(command, Program::Doctor);
        command.insert(1, "--doctor");
        const auto option = ParseCommandLine(command);
        QVERIFY(option.line.doctor);
        for (const ParsedCommandLine *parsed : {&own, &option}) {
            QCOMPARE(parsed->result.Cause(), QString());
            QVERIFY(parsed->line.tries && parsed->line.project.isEmpty());
            QCOMPARE(parsed->line.examined + parsed->line.ports[1], "COM1x");
        }
    }

    void NothingIsARunAtTheKeyboard()
    {
        const auto parsed = ParseCommandLine({"serimonde"});
        QCOMPARE(parsed.result.Cause(), QString());
        QVERIFY(!parsed.line.Unattended() && !parsed.line.start && !parsed.line.mode);
        const auto help = ParseCommandLine({"serimonde", "--help"});
        QCOMPARE(help.line.action, CommandLine::Action::ShowHelp);
        QVERIFY(CommandLineHelp().contains("--quit-after SECONDS"));
    }

    void WrongUsage_data()
    {
        const Cases<QStringList, QString> row("arguments", "named"); // by the message
        row("an unknown option", {"--colour"}, "colour");
        row("a port without a device", {"--port", "1"}, "N=DEVICE");
        row("a port that is no number", {"--port", "COM1=x"}, "COM1=x");
        row("a device whose name is no text", {"--port", QString("1=/dev/t") + QChar(0xDCE9)},
            "1=/dev/t\\xE9: the name of a device must be UTF-8");
        row("port 0", {"--port", "0=x"}, "1 to 255");
        row("port 256", {"--port", "256=x"}, "1 to 255");
        row("a port beyond all numbers", {"--port", "99999999999=x"}, "99999999999");
        row("mode 3", {"--mode", "3"}, "0, 1 or 2");
        row("settings of three fields", {"--settings", "9600,8,1"}, "9600,8,1");
        row("no seconds", {"--quit-after", "soon"}, "soon");
        row("negative seconds", {"--quit-after=-1"}, "seconds");
        row("endless seconds", {"--quit-after", "inf"}, "seconds");
        row("a screenshot without a file", {"--screenshot="}, "file");
        row("a log without a name", {"--log", "logs/"}, "file");
        row("a capture without a name", {"--capture", "captures/"}, "file");
        row("overwriting nothing", {"--overwrite"}, "--log or --capture");
        row("a trial without a doctor", {"--try", "a.sqx"}, "--doctor");
        row("a trial of everything", {"--doctor", "--try"}, "named");
        row("a doctor for two", {"--doctor", "a", "b"}, "a b");
        row("a doctor beside a run", {"--doctor", "--start"}, "--start");
        row("two projects", {"a.sqx", "b.sqx"}, "a.sqx b.sqx");
    }

    void WrongUsage()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, named);
        const auto parsed = ParseCommandLine(QStringList{"serimonde"} + arguments);
        QVERIFY2(parsed.result.Cause().contains(named), qPrintable(parsed.result.Cause()));
    }

    void ALongDelayDoesNotEndAtOnce()
    {
        using namespace std::chrono_literals;
        QStringList called;
        QObject context;
        const auto note = [&](const char *name) { return [&called, name] { called << name; }; };
        CallAfter(std::chrono::milliseconds((1LL << 32) + 1), &context, note("in 49 days"));
        CallAfter(30ms, &context, note("soon"));
        QTRY_COMPARE(called, QStringList("soon"));
    }
};

QTEST_GUILESS_MAIN(tst_commandline)
#include "tst_commandline.moc"
