// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "support/ProgramBench.h"
#include "support/PtyPair.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <numeric>

/// What the program records over real pseudo-terminals, as another program reads it.
class tst_wireshark : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void WhatWasSentIsRead()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath("a.pcapng");
        PtyPair lineA, lineB;
        ProgramBench bench;
        bench.AssignPort(1, lineA.DeviceName());
        QVERIFY(QFile::link(lineB.DeviceName(), folder.filePath("adapter")));
        bench.AssignPort(2, folder.filePath("adapter"));
        bench.line.mode = CommMode::MonitorReceiveAndModify;
        bench.line.line = ParseLineSettings(u"115200,N,8,1");
        bench.line.start = true;
        bench.line.capture = path;
        QByteArray all(256, Qt::Uninitialized);
        std::iota(all.begin(), all.end(), char(0));
        const qint64 begin = QDateTime::currentMSecsSinceEpoch();
        bench.Run(
            {{[&] {
                 auto &tables = bench.program->Sequences();
                 tables.AddSend({"Yes", "YES\r", {}});
                 tables.AddReceive({.Name = "Acknowledgement", .Sequence = "OK\r"});
                 tables.AddReceive({.Name = "Question", .Sequence = "?", .Answer = 1});
                 tables.RefreshAnswerNames();
             }},
             bench.Started(),
             {[&] { lineA.Write("OK\r"); }, [&] { return bench.Shown().endsWith("OK\r"); }},
             {[&] { lineB.Write("really?"); }, [&] { return bench.Shown().endsWith("YES\r"); }},
             {[&] { bench.program->Communication().Transmit(all, "All of them"); },
              [&] { return lineA.Read(260).endsWith(all); }},
             {[&] { bench.program->Execute(Command::Stop); }, [&] { return !bench.Running(); }}});
        const qint64 end = QDateTime::currentMSecsSinceEpoch();
        QVERIFY(!bench.stuck && bench.prompts.notices.isEmpty());

        const QStringList packets =
            Read({path}, {"frame.interface_name", "rtacser.eventtype",
                          "frame.packet_flags_direction", "data.data", "frame.comment"});
        const QString received = "|0x02|0x00000001|", sent = "|0x01|0x00000002|";
        QCOMPARE(packets, QStringList({"COM1|0x00|||opened", "COM2|0x00|||opened",
                                       "COM1" + received + "4f4b0d|Acknowledgement",
                                       "COM2" + received + "7265616c6c793f|Question",
                                       "COM1" + sent + "5945530d|answer to Question",
                                       "COM1" + sent + all.toHex() + "|All of them",
                                       "COM1|0x00|||closed", "COM2|0x00|||closed"}));
        QStringList devices = Read({path}, {"frame.interface_description"});
        devices.removeDuplicates();
        QCOMPARE(devices, QStringList({lineA.DeviceName(), lineB.DeviceName()}));
        double last = double(begin) / 1000;
        for (const QString &time : Read({path}, {"frame.time_epoch"})) {
            QVERIFY2(time.toDouble() >= last, qPrintable(time));
            last = time.toDouble();
        }
        QVERIFY(last <= double(end) / 1000);
    }

    /// The station of the example is asked twice; each answer is known as that of its question.
    void ABusIsDecoded()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath("bus.pcapng");
        const QByteArray questions[] = {QByteArray::fromHex("1103006b00037687"),
                                        QByteArray::fromHex("110400080001b298")};
        PtyPair line;
        ProgramBench bench;
        bench.AssignPort(1, line.DeviceName());
        bench.line.project = SERIMONDE_SOURCE "/examples/modbus-rtu.sqx";
        bench.line.start = true;
        bench.line.capture = path;
        QList<ProgramBench::Step> steps = {
            bench.Started(), {.goal = [&] { return bench.program->Sequences().SendCount() > 0; }}};
        for (const QByteArray &question : questions) {
            steps << ProgramBench::Step{[&] { line.Write(question); },
                                        [&] { return line.Read(7).size() == 7; }};
        }
        bench.Run(steps);
        QVERIFY(!bench.stuck && bench.prompts.shown.isEmpty());
        const QStringList telegrams = Read(
            {path, "-d", "rtacser.data,mbrtu", "-o", "mbrtu.crc_verification:TRUE", "-Y", "mbrtu"},
            {"mbrtu.unit_id", "mbrtu.crc16.status", "modbus.func_code", "modbus.request_frame",
             "frame.comment"});
        QCOMPARE(telegrams, QStringList({"17|1|3||Poll of holding registers",
                                         "17|1|3|2|answer to Poll of holding registers",
                                         "17|1|4||Poll of input register",
                                         "17|1|4|4|answer to Poll of input register"}));
    }

  private:
    /// The fields of each packet, a line for each.
    static QStringList Read(const QStringList &arguments, const QStringList &fields)
    {
        QStringList all = {"-T", "fields", "-E", "separator=|", "-r"};
        all += arguments;
        for (const QString &field : fields)
            all << "-e" << field;
        QProcess tshark;
        tshark.start("tshark", all);
        if (!tshark.waitForFinished())
            qWarning("tshark: %s", qPrintable(tshark.errorString()));
        return QString::fromUtf8(tshark.readAllStandardOutput()).trimmed().split('\n');
    }
};

QTEST_MAIN(tst_wireshark)
#include "tst_wireshark.moc"
