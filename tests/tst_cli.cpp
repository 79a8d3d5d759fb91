// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "support/Cases.h"
#include "support/CliProgram.h"
#include "support/PtyPair.h"
#include "support/RunStory.h"
#include "support/TcpServer.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <csignal>
#include <optional>

#include <sys/types.h>

class tst_cli : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folder;
    std::optional<PtyPair> m_line; ///< a new one for each test

    QString PathOf(const QString &name) const { return m_folder.filePath(name); }

    QString Write(const QString &name, const QByteArray &content) const
    {
        QFile file(PathOf(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("no file");
        return file.fileName();
    }
    QByteArray Content(const QString &name) const
    {
        QFile file(PathOf(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("none");
    }

    /// Written by hand.
    static QString Expected(const QString &name)
    {
        QFile file(SERIMONDE_TEST_FOLDER "/support/" + name);
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).trimmed()
                                              : "none";
    }

    void Start(Program &program, const QStringList &arguments) const
    {
        program.setWorkingDirectory(m_folder.path());
        program.start(SERIMONDE_CLI, arguments);
    }
    /// On the line of this test, with its project.
    void StartOnLine(Program &program, const QStringList &arguments) const
    {
        Start(program,
              QStringList{"--port", "1=" + m_line->DeviceName(), PathOf("p.sqx")} + arguments);
    }

  private Q_SLOTS:
    void init()
    {
        m_line.emplace();
        Write("p.sqx", PingProject);
    }

    void Talk_data()
    {
        const Cases<QStringList, QByteArray, QByteArray, int, QString> row("steps", "asked", "said",
                                                                           "status", "told");
        row("pass", {"send", "Ping", "expect", "Pong", "wait 1ms"}, "PING", "PONG", 0, "");
        row("what stands before it does no harm", {"send Ping", "expect Pong"}, "PING", "..PONG.",
            0, "");
        row("a watched sequence answers", {"expect", "Ready", "wait 1ms"}, "", "READY?", 0, "");
        row("a wrong answer", {"send Ping", "expect Pong within 50ms", "close"}, "PING", "NAK", 1,
            "step 2: expect Pong within 50ms: it did not come in time");
        row("no answer", {"send Ping", "expect Pong within 50ms"}, "PING", "", 1, "did not come");
        row("a forbidden one", {"forbid text:NAK", "send Ping", "expect Pong"}, "PING", "NAKPONG",
            1, "step 3: expect Pong: what must not come has come: forbid text:NAK (step 1)");
        row("not quiet", {"send Ping", "quiet 10s"}, "PING", "x", 1,
            "step 2: quiet 10s: something came");
        row("no modem lines", {"rts", "off"}, "", "", 1, "step 1: rts off: not available: ");
        row("no wire for a break", {"break 1ms"}, "", "", 1, "break 1ms: not available: ");
        row("closed", {"close", "send Ping"}, "", "", 1, "step 2: send Ping: not sent: ");
        row("closed and open again", {"close", "open", "send Ping"}, "PING", "", 0, "");
        row("many times", {"repeat 1000", "send Ping", "end"}, QByteArray("PING").repeated(1000),
            "", 0, "");
    }

    void Talk()
    {
        QFETCH(QStringList, steps);
        QFETCH(QByteArray, asked);
        QFETCH(QByteArray, said);
        QFETCH(QString, told);
        Program program;
        StartOnLine(program, steps);
        QCOMPARE(m_line->Read(asked.size()), asked);
        QVERIFY(m_line->Write(said));
        if (said == "READY?")
            QCOMPARE(m_line->Read(3), "YES");
        const int status = program.Finished();
        const QString errors = program.Errors();
        QVERIFY2(told.isEmpty() ? errors.isEmpty() : errors.contains(told), qPrintable(errors));
        QVERIFY(errors.count('\n') == 0);
        QTEST(status, "status");
    }

    void WrongUsage_data()
    {
        const Cases<QStringList, QString> row("arguments", "told");
        const QString port = "1=x";
        row("no port", {"wait 1s"}, "mode 0 needs one port");
        row("no second port", {"--mode", "1", "--port", port}, "needs two ports");
        row("no project", {"--port", port, "none.sqx"}, "none.sqx: Errow while loading");
        row("nothing to be done", {"--port", port, "--steps", "empty"},
            "empty: line 1: there are no");
        row("no step file", {"--port", port, "--steps", "none"}, "none: ");
        row("an unknown name", {"--port", port, "p.sqx", "send", "Pang"}, "step 1: the project");
        row("sending while only listening",
            {"--port", port, "--port", "2=x", "--mode", "1", "send-hex 00"}, "in mode 1");
        row("steps from two places", {"--port", port, "--steps", "x", "close"}, "one of them");
        row("an option of the window", {"--port", port, "--screenshot", "x"}, "screenshot");
        row("no time", {"--port", port, "--timeout", "5"}, "--timeout 5");
        row("ports beside the demo", {"--demo", "--port", port}, "--demo");
    }

    /// Found before anything is opened.
    void WrongUsage()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, told);
        Write("empty", {});
        Program program;
        Start(program, QStringList{"--log", "wrong.txt", "--json"} + arguments);
        QCOMPARE(program.Finished(), 2);
        const QString errors = program.Errors();
        QVERIFY2(errors.contains(told), qPrintable(errors));
        QVERIFY(program.Lines().isEmpty() && !QFile::exists(PathOf("wrong_asc.txt")));
    }

    /// Each kind of damage at each of its places, more than 200 files.
    void DamagedStepFiles()
    {
        const QByteArrayList good = {"send Ping",       "repeat 2", "expect Pong within 50ms",
                                     "forbid hex:1500", "end",      "quiet 20ms",
                                     "rts on",          "wait 1s",  "send-text \"a\\r\""};
        QList<QPair<QByteArrayList, int>> damaged; // with the line at fault
        for (int line = 0; line < good.size(); ++line) {
            const auto with = [&](const QByteArray &text) {
                QByteArrayList lines = good;
                lines[line] = text;
                const bool lostEnd = line == 4;
                damaged << qMakePair(lines, lostEnd && text.isEmpty() ? 2 : line + 1);
            };
            const QByteArray &text = good[line];
            const qsizetype verb = text.indexOf(' ') < 0 ? text.size() : text.indexOf(' ');
            for (qsizetype i = 0; i <= text.size(); ++i)
                with(QByteArray(text).insert(i, '\xFF'));
            for (qsizetype i = 0; i < verb; ++i) {
                with(QByteArray(text).insert(i, '?'));
                with(QByteArray(text).replace(i, 1, "="));
            }
            with(text + " again");
            with(text + " \"");
        }
        QByteArrayList unfinished = good;
        unfinished.removeAt(4);
        damaged << qMakePair(unfinished, 2);
        QVERIFY(damaged.size() >= 200);
        for (const auto &[lines, line] : std::as_const(damaged)) {
            Write("bad.steps", lines.join('\n'));
            Program program;
            StartOnLine(program, {"--steps", "bad.steps"});
            QCOMPARE(program.Finished(), 2);
            const QString errors = program.Errors();
            const QString place = QString("serimonde-cli: bad.steps: line %1: ").arg(line);
            QVERIFY2(errors.startsWith(place), qPrintable(errors));
        }
    }

    void APortThatGoes()
    {
        PtyPair line;
        Write("go.steps", "send Ping\n\n  expect Pong within 1min\nclose\n");
        Program program;
        Start(program, {"--port", "1=" + line.DeviceName(), "p.sqx", "--steps", "go.steps"});
        QCOMPARE(line.Read(4), "PING");
        line.Unplug();
        QCOMPARE(program.Finished(), 3);
        const QString told =
            "serimonde-cli: step 2, line 3: expect Pong within 1min: The port COM1 "
            "was disconnected. ";
        QVERIFY(program.Errors().startsWith(told));
        QVERIFY(program.readAllStandardOutput().contains("not run line 4: close"));
        Program missing;
        Start(missing, {"--port", "1=" + PathOf("none"), "wait 1s"});
        QCOMPARE(missing.Finished(), 3);
        const QString errors = missing.Errors();
        QVERIFY(errors.contains("The port COM1 could not be opened. "));
        QVERIFY(!errors.contains("Options...")); // there are none
    }

    void TheDoctorTriesAPort()
    {
        PtyPair line;
        Program program;
        Start(program, {"doctor", "--try", "--settings", "19200,N,8,1", line.DeviceName()});
        QCOMPARE(program.Finished(), 0);
        const QByteArray text = program.readAllStandardOutput();
        QVERIFY2(text.contains("  Trial: it was opened, did 19200,N,8,1 as asked, and was closed"),
                 text.constData());
    }

    void Json()
    {
        Program program;
        StartOnLine(program,
                    {"--json", "send Ping", "expect Pong", "expect text:Z within 200ms", "close"});
        QCOMPARE(m_line->Read(4), "PING");
        QStringList lines;
        const auto take = [&](int count) {
            while (count-- > 0)
                lines << QString::fromUtf8(program.NextLine());
        };
        take(3);
        QVERIFY(m_line->Write("xPONG"));
        take(2);
        QVERIFY(m_line->Write(QByteArray("AB\0", 3)));
        QCOMPARE(program.Finished(), 1);
        lines << program.Lines();
        QCOMPARE(lines, Expected("cli-run.json").split(QChar(10)));
    }

    void Commands()
    {
        Program program;
        StartOnLine(program, {"--commands", "--junit", "c.xml"});
        const auto ask = [&program](const QByteArray &line) {
            program.write(line + '\n');
            return program.NextLine();
        };
        QCOMPARE(ask(R"({"step":"send","what":"Ping","id":"a"})"),
                 R"({"event":"answer","id":"a","line":1,"ok":true})");
        QCOMPARE(m_line->Read(4), "PING");
        QVERIFY(ask(R"({"step":"expect","what":"Pong","within":"9ms"})").contains("in time"));
        QVERIFY(m_line->Write("PONG")); // too late for that one
        QCOMPARE(ask(R"({"step":"expect","what":"Pong","id":3})"),
                 R"({"event":"answer","id":3,"line":3,"ok":true})");
        QCOMPARE(ask("what?"), R"({"error":"the line is no JSON: illegal value","event":"answer",)"
                               R"("line":4,"ok":false})");
        QVERIFY(ask(QByteArray(1024 * 1024 + 1, 'x')).contains("longer than 1 MiB"));
        QVERIFY(ask(R"({"step":"wait","what":"1ms","group":"A"})").contains(R"("ok":true)"));
        program.write(R"({"step":"close"})"); // the end of input ends the line
        program.closeWriteChannel();
        QCOMPARE(program.Finished(), 1);
        QVERIFY(program.NextLine().contains(R"("line":7,"ok":true)"));
        QCOMPARE(QJsonDocument::fromJson(program.NextLine())["status"].toInt(), 1);
        QCOMPARE(CasesOfReport(PathOf("c.xml")).mid(3), QStringList({"A", "close"}));
        Program refused;
        StartOnLine(refused, {"--commands"});
        refused.write("{}\n");
        refused.closeWriteChannel();
        QCOMPARE(refused.Finished(), 2);
    }

    void Signals_data()
    {
        const Cases<int, QStringList, int> row("signal", "steps", "status");
        row("with steps left", SIGTERM, {"wait 1min"}, 1);
        row("a monitor", SIGINT, {}, 0);
    }

    /// Whatever had been received is in the files.
    void Signals()
    {
        QFETCH(int, signal);
        QFETCH(QStringList, steps);
        Program program;
        StartOnLine(program, QStringList{"--json", "--log", "s.txt", "--capture", "s.pcapng",
                                         "--overwrite"} +
                                 steps);
        QVERIFY(program.NextLine().contains("opened"));
        QVERIFY(m_line->Write("hello"));
        QVERIFY(program.NextLine().contains("received"));
        ::kill(pid_t(program.processId()), signal);
        QTEST(program.Finished(), "status");
        QCOMPARE(Content("s_asc.txt"), "hello");
        QCOMPARE(Content("s_hex.txt"), "68 65 6C 6C 6F ");
        QVERIFY(Content("s.pcapng").startsWith("\x0A\x0D\x0D\x0A") &&
                Content("s.pcapng").contains("hello"));
        QVERIFY(!Content("s_dec.txt").isEmpty() && !Content("s_bin.txt").isEmpty());
    }

    void Time()
    {
        for (const auto &[steps, status] : {qMakePair(QStringList{"wait 1min"}, 1), {{}, 0}}) {
            Program program;
            StartOnLine(program, QStringList{"--timeout", "20ms"} + steps);
            QCOMPARE(program.Finished(), status);
        }
    }

    void OpeningEnds_data()
    {
        const Cases<int, QStringList, int> row("signal", "arguments", "status");
        row("time is over", 0, {"--timeout", "200ms", "wait 1s"}, 1);
        row("time of a monitor", 0, {"--timeout", "200ms"}, 3);
        row("a signal", SIGINT, {"wait 1s"}, 1);
        row("a signal to a monitor", SIGTERM, {}, 3);
    }

    /// A server that says nothing is not waited for any longer.
    void OpeningEnds()
    {
        QFETCH(int, signal);
        QFETCH(QStringList, arguments);
        std::atomic<bool> reached = false;
        const TcpServer server([&reached](const TcpServer::Client &client) {
            reached = true;
            client.Hear();
        });
        Program program;
        const QString port = "1=rfc2217://127.0.0.1:" + QString::number(server.Port());
        Start(program, QStringList{"--port", port} + arguments);
        QTRY_VERIFY(reached);
        if (signal != 0)
            ::kill(pid_t(program.processId()), signal);
        QTEST(program.Finished(), "status");
        const QString errors = program.Errors();
        QVERIFY2(errors.endsWith("while a port was being opened"), qPrintable(errors));
    }

    void WhatIsNotSent_data()
    {
        const Cases<int, QStringList, QString> row("questions", "arguments", "told");
        row("an answer", 12, {"expect text:Z within 20s"},
            "step 1: expect text:Z within 20s: the answer to \"Ready\" was not sent: COM1");
        const QString untold = "the answer to \"Ready\" was not sent: COM1";
        row("an answer of a device", 12, {"--json"}, untold);
        row("an answer between commands", 12, {"--commands"}, untold);
        row("bytes at the end", 1, {"--timeout", "500ms", "expect Ready"}, "COM1 was closed while");
    }

    /// The device asks, and does not read the long answers.
    void WhatIsNotSent()
    {
        QFETCH(int, questions);
        QFETCH(QStringList, arguments);
        QFETCH(QString, told);
        Write("p.sqx", QByteArray(PingProject)
                           .replace("089 | 069", QByteArray("089 | ").repeated(99999) + "069"));
        Program program;
        StartOnLine(program, arguments);
        QVERIFY(m_line->Write(QByteArray("READY?").repeated(questions)));
        if (told.startsWith("the answer")) { // which ends nothing
            QVERIFY(program.Tells("not-sent"));
            ::kill(pid_t(program.processId()), SIGTERM);
        }
        QCOMPARE(program.Finished(), 1);
        const QString errors = program.Errors();
        QVERIFY2(errors.contains("serimonde-cli: " + told), qPrintable(errors));
    }

    void WhatCannotBeWritten()
    {
        for (const QStringList &options : {QStringList{"--log", "none/x"},
                                           {"--junit", "none/x"},
                                           {"--log", "there"},
                                           {"--capture", "none/x"},
                                           {"--capture", "there_asc.txt"}}) {
            Write("there_asc.txt", "kept");
            Program program;
            StartOnLine(program, options + QStringList{"wait 1ms"});
            QCOMPARE(program.Finished(), 4);
            QVERIFY(program.Errors().startsWith("serimonde-cli: "));
        }
        QCOMPARE(Content("there_asc.txt"), "kept");
    }

    void AReaderThatGoes()
    {
        std::array<int, 2> ends;
        QCOMPARE(::pipe2(ends.data(), O_CLOEXEC), 0);
        Program program;
        program.setChildProcessModifier([&ends] { ::dup2(ends[1], STDOUT_FILENO); });
        StartOnLine(program, {"--json", "--log", "deaf"});
        ::close(ends[1]);
        char first = 0;
        QCOMPARE(::read(ends[0], &first, 1), 1);
        ::close(ends[0]);
        QVERIFY(m_line->Write("hello"));
        QCOMPARE(program.Finished(), 4);
        QCOMPARE(Content("deaf_asc.txt"), "hello");
    }

    void JUnit()
    {
        Write("j.steps", "send Ping\nexpect Pong within 300ms\nwait 1s # \"<&>\"\n");
        Program program;
        StartOnLine(program, {"--steps", "j.steps", "--junit", "j.xml"});
        QCOMPARE(m_line->Read(4), "PING");
        QVERIFY(m_line->Write(QByteArray("NA\0\x80\xFF", 5)));
        QCOMPARE(program.Finished(), 1);
        QCOMPARE(CasesOfReport(PathOf("j.xml")).size(), 3); // it keeps to the schema
        QString report = QString::fromUtf8(Content("j.xml"));
        static const QRegularExpression times(" time(stamp)?=\"[^\"]*\"");
        QCOMPARE(report.remove(times).trimmed(), Expected("cli-junit.xml"));
    }

    void Groups()
    {
        Write("g.steps", "send Ping\nrepeat 2\ngroup \"Say <A>\"\nwait 1ms\nexpect text:A within "
                         "400ms\nend\nwait 0ms\ngroup last\nclose\nopen\n");
        Program program;
        StartOnLine(program, {"--steps", "g.steps", "--junit", "g.xml"});
        QCOMPARE(m_line->Read(4), "PING");
        QVERIFY(m_line->Write("AB"));
        QCOMPARE(program.Finished(), 1);
        const QString late = "line 5: expect text:A within 400ms: it did not come in time (42)";
        QCOMPARE(CasesOfReport(PathOf("g.xml")),
                 QStringList({"send Ping", "Say <A>", "Say <A> failed: " + late, "wait 0ms not run",
                              "last not run"}));
    }

    /// What came while no command waited is told at once, and fails the run.
    void ForbiddenBetweenCommands()
    {
        Program program;
        StartOnLine(program, {"--commands"});
        program.write("{\"step\":\"forbid\",\"what\":\"text:NAK\"}\n");
        QVERIFY(program.NextLine().contains("\"ok\":true"));
        QVERIFY(m_line->Write("xNAK"));
        QCOMPARE(program.NextLine(), R"({"event":"forbidden","heard":{"hex":"784E414B","text":)"
                                     R"("xNAK"},"line":1,"step":"forbid text:NAK"})");
        program.closeWriteChannel();
        QCOMPARE(program.Finished(), 1);
    }

    void ExampleOfSteps()
    {
        const QString example = SERIMONDE_TEST_FOLDER "/../examples/modbus-rtu";
        Program program;
        Start(program, {"--port", "1=" + m_line->DeviceName(), example + ".sqx", "--steps",
                        example + ".steps"});
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(m_line->Read(8).toHex(), "1103006b00037687");
            QVERIFY(m_line->Write(QByteArray::fromHex("110306022b00000064c8ba")));
        }
        QCOMPARE(m_line->Read(8).toHex(), "110400080001b298");
        QVERIFY(m_line->Write(QByteArray::fromHex("110402000af8f4")));
        QCOMPARE(program.Finished(), 0);
    }

    void ExampleOfCommands()
    {
        Program python;
        QProcessEnvironment world = QProcessEnvironment::systemEnvironment();
        world.insert("PATH", QFileInfo(SERIMONDE_CLI).path() + ':' + world.value("PATH"));
        python.setProcessEnvironment(world);
        python.start("python3", {SERIMONDE_TEST_FOLDER "/../examples/drive.py"});
        QCOMPARE(python.Finished(), 0);
        QVERIFY(python.readAllStandardOutput().startsWith("answered after "));
    }

    /// The simulated instrument, and a watched sequence of its project.
    void Demo()
    {
        Program program;
        Start(program, {"--demo", "--quiet", "send Identification request",
                        "send:Identification request", "expect text:\\r\\n"});
        QCOMPARE(program.Finished(), 2);
        Start(program, {"--demo", "--quiet", "send", "Identification request", "expect",
                        "text:\\r\\n", "on", "1"});
        QCOMPARE(program.Finished(), 0);
        QVERIFY(program.Lines().isEmpty() && program.Errors().isEmpty());
    }
};

QTEST_GUILESS_MAIN(tst_cli)
#include "tst_cli.moc"
