// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "support/Cases.h"
#include "support/CliProgram.h"
#include "support/PtyPair.h"
#include "support/TestCapture.h"

#include <QFile>
#include <QJsonDocument>
#include <QTemporaryDir>

namespace
{

constexpr qint64 Began = 1'700'000'000'000'000'000;

/// Ping is answered after 30 ms; the second one comes in two pieces.
QList<TrafficEvent> Dialogue()
{
    QList<TrafficEvent> events;
    const auto add = [&events](TrafficEvent::Kind kind, int milliseconds, const QByteArray &bytes) {
        TrafficEvent event;
        event.kind = kind;
        event.time.wall = event.time.monotonic = Began + milliseconds * 1'000'000;
        event.bytes = bytes;
        events << event;
    };
    add(TrafficEvent::Kind::Opened, 0, {});
    add(TrafficEvent::Kind::Sent, 10, "PING");
    add(TrafficEvent::Kind::Received, 40, "PONG.");
    add(TrafficEvent::Kind::Sent, 60, "PI");
    add(TrafficEvent::Kind::Sent, 70, "NG2");
    add(TrafficEvent::Kind::Received, 100, "PONG2");
    return events;
}

} // namespace

class tst_capturecommands : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folder;

    void Write(const QString &name, const QByteArray &content) const
    {
        QFile file(m_folder.filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("no file");
    }
    static QByteArray Content(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("none");
    }
    void Start(Program &program, const QStringList &arguments) const
    {
        program.setWorkingDirectory(m_folder.path());
        program.start(SERIMONDE_CLI, arguments);
    }

  private Q_SLOTS:
    void initTestCase() { Write("p.sqx", PingProject); }

    void Export()
    {
        QList<TrafficEvent> events(5);
        for (int i = 0; i < events.size(); ++i)
            events[i].time = {Began + i * qint64(1'234'567'000), Began + i * qint64(1'234'567'000)};
        events[0].bytes = "=1+1, \"a\"\r\n";
        events[0].names = {"-Ping"};
        events[1].kind = TrafficEvent::Kind::Sent;
        events[1].bytes = QByteArray("\x1B[2J\x80", 5);
        events[1].names = {"Yes"};
        events[1].answer = true;
        events[2].kind = TrafficEvent::Kind::ModemLines;
        events[2].modem.CTS = true;
        events[3].kind = TrafficEvent::Kind::Gone;
        events[3].cause = "@un\u202Eplugged";
        events[4].kind = TrafficEvent::Kind::Sent;
        events[4].bytes = QByteArray(10000, 'A');
        Write("e.pcapng", CaptureOf(events, {{"COM1,x", "device", 9600}}));
        Program program;
        QProcessEnvironment world = QProcessEnvironment::systemEnvironment();
        world.insert("TZ", "XXX-05:30");
        program.setProcessEnvironment(world);
        Start(program, {"export", "e.pcapng", "--csv"});
        QCOMPARE(program.Finished(), 0);
        QStringList expected =
            QString::fromUtf8(Content(SERIMONDE_TEST_FOLDER "/support/cli-export.csv"))
                .trimmed()
                .split('\n');
        for (const int count : {8192, 1808}) // of one event
            expected << "2023-11-15T03:43:24.938268+05:30,1,\"COM1,x\",sent,out," +
                            QString("41 ").repeated(count).trimmed() + ',' +
                            QString("A").repeated(count) + ",,";
        const QByteArray written = program.readAllStandardOutput();
        QCOMPARE(QString::fromUtf8(written).split('\n'), expected << QString());
    }

    void WhatWorksOnACapture_data()
    {
        const Cases<QStringList, int, QString> row("arguments", "status", "told");
        row("judged", {"judge", "c.pcapng", "p.sqx"}, 0, "");
        row("judged, nothing missed", {"judge", "--strict", "c.pcapng", "p.sqx"}, 1, "never fired");
        row("judged without a project", {"judge", "c.pcapng"}, 2, "project.sqx");
        row("no project", {"judge", "c.pcapng", "c.pcapng"}, 2, "c.pcapng: ");
        row("no capture", {"export", "--csv", "p.sqx"}, 2, "p.sqx: ");
        row("a damaged one", {"export", "--csv", "cut.pcapng"}, 1, "cut.pcapng: ");
        row("a damaged one judged", {"judge", "cut.pcapng", "p.sqx"}, 1, "cut.pcapng: ");
        row("without a form", {"export", "c.pcapng"}, 2, "--csv");
        row("replayed without a port", {"replay", "c.pcapng"}, 2, "one port");
        row("no such line", {"replay", "--port", "1=none", "--channel", "2", "c.pcapng"}, 2,
            "no channel 2");
        row("one of two", {"replay", "--port", "1=none", "two.pcapng"}, 2, "--channel");
        row("into itself",
            {"replay", "--port", "1=none", "c.pcapng", "--overwrite", "--capture", "./c.pcapng"}, 2,
            "overwritten");
        row("a port that is not there", {"replay", "--port", "1=none", "c.pcapng"}, 3, "COM1");
    }

    void WhatWorksOnACapture()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, told);
        const QByteArray capture = CaptureOf(Dialogue(), {{"COM1", "", 9600}});
        Write("c.pcapng", capture);
        Write("cut.pcapng", capture.chopped(6));
        Write("two.pcapng", CaptureOf(Dialogue(), {{"COM1", "", 9600}, {"COM2", "", 9600}}));
        Program program;
        Start(program, arguments);
        QTEST(program.Finished(), "status");
        const QString errors = program.Errors();
        QVERIFY2(told.isEmpty() ? errors.isEmpty() : errors.contains(told), qPrintable(errors));
        QCOMPARE(program.readAllStandardOutput().contains("Pong"),
                 arguments[0] == "judge" && !told.contains("c.pcapng: ") && arguments.size() > 2);
        QCOMPARE(Content(m_folder.filePath("c.pcapng")), capture);
    }

    void Replay()
    {
        PtyPair line;
        Write("r.pcapng", CaptureOf(Dialogue(), {{"COM1", "", 9600}}));
        Program atOnce;
        Start(atOnce, {"replay", "r.pcapng", "--port", "1=" + line.DeviceName(), "--speed", "max"});
        QCOMPARE(line.Read(10), "PONG.PONG2");
        QCOMPARE(atOnce.Finished(), 0);
        Program inStep;
        Start(inStep, {"replay", "r.pcapng", "--port", "1=" + line.DeviceName(), "--in-step",
                       "--speed", "10", "--json"});
        QVERIFY(inStep.NextLine().contains("opened"));
        QVERIFY(line.Write("xPIN"));
        QVERIFY(inStep.NextLine().contains("received"));
        QVERIFY(line.Write("G"));
        QCOMPARE(line.Read(5), "PONG.");
        QVERIFY(line.Write("PING2"));
        QCOMPARE(line.Read(5), "PONG2");
        QCOMPARE(inStep.Finished(), 0);
        Program late;
        Start(late, {"replay", "r.pcapng", "--port", "1=" + line.DeviceName(), "--in-step",
                     "--within", "20ms"});
        QVERIFY(line.Write("PING"));
        QCOMPARE(line.Read(5), "PONG.");
        QCOMPARE(late.Finished(), 1);
        QVERIFY(late.Errors().contains("step 3: expect hex:50494E4732: it did not come in time"));
    }

    void ReplayAtItsOwnPace()
    {
        PtyPair line;
        Write("r.pcapng", CaptureOf(Dialogue(), {{"COM1", "", 9600}}));
        Program program;
        Start(program, {"replay", "r.pcapng", "--port", "1=" + line.DeviceName(), "--json"});
        QCOMPARE(line.Read(10), "PONG.PONG2");
        QCOMPARE(program.Finished(), 0);
        int opened = 0;
        int last = 0;
        for (const QByteArray &told : program.readAllStandardOutput().split('\n')) {
            const int time = QJsonDocument::fromJson(told)["us"].toInt();
            opened = told.contains("\"opened\"") ? time : opened;
            last = told.contains("\"sent\"") ? time : last;
        }
        QVERIFY2(last - opened >= 60'000, qPrintable(QString::number(last - opened)));
    }

    /// Each of two lines has a device, and what that said came to the other one.
    void ReplayOfTwoLines()
    {
        QList<TrafficEvent> events(3);
        for (int i = 0; i < events.size(); ++i)
            events[i].time = {Began + i, Began + i};
        events[0].bytes = "ASK";
        events[1].bytes = "ANSWER";
        events[1].channel = 1;
        events[2].bytes = "THANKS";
        Write("two.pcapng", CaptureOf(events, {{"COM1", "", 9600}, {"COM2", "", 9600}}));
        for (const bool second : {false, true}) {
            PtyPair line;
            Program program;
            Start(program, {"replay", "two.pcapng", "--in-step", "--port", "1=" + line.DeviceName(),
                            "--channel", second ? "2" : "1", "--within", "20s"});
            if (second)
                QVERIFY(line.Write("ASK"));
            QCOMPARE(line.Read(second ? 6 : 3), second ? "ANSWER" : "ASK");
            QVERIFY(line.Write(second ? "THANKS" : "ANSWER"));
            if (!second)
                QCOMPARE(line.Read(6), "THANKS");
            QCOMPARE(program.Finished(), 0);
        }
    }
};

QTEST_GUILESS_MAIN(tst_capturecommands)
#include "tst_capturecommands.moc"
