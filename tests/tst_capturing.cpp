// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CaptureTraffic.h"
#include "ClOutputFile.h"
#include "MdCaptureFile.h"
#include "RunState.h"
#include "SystemFiles.h"
#include "support/Cases.h"
#include "support/CommunicationBench.h"
#include "support/ScriptedDisk.h"

#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>

#include <sys/stat.h>

namespace
{

using Kind = TrafficEvent::Kind;

const QString Path = QStringLiteral("/captures/a.pcapng");
const QByteArray Old = "what was there";

/// A capture in words, by channel; how it ends, should that be amiss.
QString Told(const QByteArray &capture)
{
    const std::map<Kind, const char *> names = {
        {Kind::Sent, ">"},        {Kind::Received, "<"}, {Kind::Opened, "opened"},
        {Kind::Closed, "closed"}, {Kind::Lost, "lost"},  {Kind::ModemLines, "lines"}};
    const ScriptedDisk::Reader input(capture);
    CaptureReader reader(input);
    if (reader.Begin().Failed())
        return "no capture";
    CaptureTraffic traffic(reader);
    QStringList told;
    TrafficEvent event;
    CaptureReader::Step step = traffic.Next(event);
    for (; step == CaptureReader::Step::Packet; step = traffic.Next(event)) {
        const QByteArray what = event.kind == Kind::Lost ? QByteArray::number(event.count)
                                                         : event.bytes + event.names.join('|');
        told << QString::number(event.channel + 1) + names.at(event.kind) + what;
    }
    return told.join(' ') + (step == CaptureReader::Step::Damaged ? " damaged" : "");
}

/// Communication that is recorded on a scripted disk. The user chooses Path.
class CaptureBench : public CommunicationBench
{
  public:
    ScriptedDisk disk;
    OpenFiles files{disk};
    CaptureSettings captureSettings;
    RunState run;
    MdCaptureFile capture;
    QList<bool> ticks;

    explicit CaptureBench(OpenFiles *otherFiles = nullptr)
        : capture({captureSettings, prompts, otherFiles ? *otherFiles : files, run, "Serimonde"})
    {
        communication.Stream().Feed(capture);
        QObject::connect(&capture, &MdCaptureFile::Switched, &capture,
                         [this](bool on) { ticks << on; });
    }

    void Choose(const QStringList &paths = {Path})
    {
        prompts.chosen = paths;
        capture.Toggle();
    }
    /// Waits for the capture's thread, and hears what it has to say.
    void Settle()
    {
        capture.WaitUntilWritten();
        QCoreApplication::processEvents();
    }
    void Receive(const QByteArray &bytes)
    {
        portA.Receive(bytes);
        Settle();
    }
    QString Recorded() const { return Told(disk.files.value(Path)); }
    QStringList Notices() const
    {
        QStringList texts;
        for (const MessagePrompt &notice : prompts.notices)
            texts << notice.text;
        return texts;
    }
};

} // namespace

/// Recording what happens into a file.
class tst_capturing : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void ATickBeforeTheOpeningWaitsForIt()
    {
        CaptureBench bench;
        bench.Watch("k", "asked", "YES");
        bench.Choose();
        QVERIFY(bench.capture.IsOn() && bench.disk.files.isEmpty());
        QCOMPARE(bench.captureSettings.Folder, "/captures/");
        bench.capture.Begin({{{"COM1", {}, 0}}, true}); // a replay is none of its business
        bench.capture.Take({});
        bench.capture.End();
        bench.Open(CommMode::MonitorReceiveAndModify);
        bench.portA.Receive("ok");
        bench.portB.Receive("?");
        bench.communication.Transmit("go", "Go");
        bench.communication.ClosePorts();
        QCoreApplication::processEvents();
        QVERIFY(!bench.capture.IsOn());
        QCOMPARE(bench.ticks, QList({true, false}));
        bench.Open(CommMode::SendReceive);
        bench.Receive("not recorded");
        QCOMPARE(bench.Recorded(), "1opened 2opened 1<ok 1>YES 2<? 1>goGo 1closed 2closed");
        QVERIFY(bench.prompts.notices.isEmpty() && bench.prompts.shown.isEmpty());
    }

    void ATickMeanwhileRecordsFromThereToTheNext()
    {
        CaptureBench bench;
        bench.Open(CommMode::SendReceive);
        bench.portA.line.listener->OnModemLines({.CTS = true}, {});
        bench.portA.Receive("before");
        bench.Choose();
        bench.portA.Receive("a");
        bench.capture.WaitUntilWritten(); // the window's thread has no part in it
        QCOMPARE(bench.Recorded(), "1lines 1<a");
        bench.capture.Toggle();
        bench.Receive("after");
        QCOMPARE(bench.Recorded(), "1lines 1<a");
        bench.Choose({"/captures/b.pcapng"});
        bench.Receive("b");
        QCOMPARE(Told(bench.disk.files["/captures/b.pcapng"]), "1lines 1<b");
        QCOMPARE(bench.ticks.last(), true);
        QVERIFY(bench.capture.Finish());
    }

    void AsksBeforeOverwriting()
    {
        CaptureBench bench;
        bench.disk.files = {{Path, Old}, {"/captures/b.pcapng", Old}};
        bench.Open(CommMode::SendReceive);
        bench.Choose({}); // cancelled
        bench.prompts.answers = {PromptAnswer::No};
        bench.Choose({Path, {}});
        QCOMPARE(bench.ticks, QList({false, false}));
        QCOMPARE(bench.prompts.shown.last().text,
                 "/captures/a.pcapng already exists. Do you want to replace it?");
        QCOMPARE(bench.prompts.asked.last().folder + bench.prompts.asked.last().name, Path);
        QCOMPARE(bench.disk.files[Path], Old);
        bench.prompts.answers = {PromptAnswer::Yes};
        bench.Choose();
        bench.Receive("x");
        QCOMPARE(bench.Recorded(), "1<x");
        bench.capture.Toggle();
        bench.prompts.whileStanding = [&] { bench.run.QuitRequested = true; };
        bench.prompts.answers = {PromptAnswer::Yes};
        bench.Choose({"/captures/b.pcapng"});
        bench.Receive("x");
        QCOMPARE(bench.disk.files["/captures/b.pcapng"], Old);
    }

    void WhatIsNoPlaceForACaptureIsRefused_data()
    {
        const Cases<QString, QString> row("name", "said");
        const QString begin = "Error while writing the capture - ";
        row("a folder", "folder", begin + "It is a folder");
        row("a pipe", "pipe", begin + "It is a pipe, not a file");
        row("in no folder", "none/a.pcapng", begin + "No such file or directory");
        row("a file of the log", "log", begin + OpenFiles::InUse().cause);
        row("one that exists", "old",
            "The capture was not started, because it would overwrite %1. "
            "With --overwrite it may.");
    }
    void WhatIsNoPlaceForACaptureIsRefused()
    {
        QFETCH(const QString, name);
        QFETCH(QString, said);
        const QTemporaryDir home;
        const QDir folder(home.path());
        SystemFiles system;
        OpenFiles files(system);
        QVERIFY(folder.mkdir("folder"));
        QCOMPARE(::mkfifo(qPrintable(folder.filePath("pipe")), 0600), 0);
        ClOutputFile log(files), old(files);
        QVERIFY(!log.OpenFile(folder.filePath("log")).Failed());
        QVERIFY(!old.OpenFile(folder.filePath("old")).Failed());
        old.CloseFile();
        CaptureBench bench(&files);
        bench.capture.Arm(folder.filePath(name), name == "log");
        bench.Open(CommMode::SendReceive);
        bench.Receive("x");
        bench.Receive("y");
        QCOMPARE(bench.Notices(), QStringList(said.replace("%1", folder.filePath(name))));
        QVERIFY(!bench.capture.IsOn() && bench.communication.Running());
        QCOMPARE(QFileInfo(folder.filePath("old")).size(), 0);
        QCOMPARE(folder.entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot),
                 QStringList({"folder", "log", "old", "pipe"}));
    }

    void AFullDiskEndsNothing()
    {
        CaptureBench bench;
        bench.Choose();
        bench.Open(CommMode::SendReceive);
        bench.Receive("whole");
        bench.disk.room = 50; // a packet has more
        bench.Receive("12345");
        bench.Receive("678");
        QCOMPARE(bench.Recorded(), "1opened 1<whole");
        bench.prompts.standing.clear();
        bench.Receive("9");
        QCOMPARE(bench.Notices(),
                 QStringList("Error while writing the capture - No space left on device"));
        QVERIFY(bench.capture.IsOn());
        bench.disk.room = ScriptedDisk::Plenty;
        bench.Receive("on");
        bench.communication.ClosePorts();
        bench.Settle();
        QCOMPARE(bench.Recorded(), "1opened 1<whole 1lost9 1<on 1closed");
    }

    void ADiskThatIsFullFromTheBeginningLeavesNoFile()
    {
        CaptureBench bench;
        bench.disk.room = 10;
        bench.Choose();
        bench.Open(CommMode::SendReceive);
        bench.Receive("x");
        QCOMPARE(bench.disk.files.value(Path), "");
        bench.communication.ClosePorts();
        bench.Settle();
        QVERIFY(bench.disk.files.isEmpty());
        QCOMPARE(bench.prompts.notices.size(), 1);
    }

    void ADeletedFileEndsTheCapture()
    {
        for (const bool meanwhile : {true, false}) {
            const QTemporaryDir home;
            SystemFiles system;
            OpenFiles files(system);
            CaptureBench bench(&files);
            bench.Choose({home.filePath("a.pcapng")});
            bench.Open(CommMode::SendReceive);
            bench.Receive("x");
            QVERIFY(QFile::remove(home.filePath("a.pcapng")));
            if (meanwhile)
                bench.Receive("y");
            QCOMPARE(bench.capture.IsOn(), !meanwhile);
            bench.communication.ClosePorts();
            bench.Settle();
            QCOMPARE(bench.Notices(),
                     QStringList("Error while writing the capture - The file has been deleted"));
        }
    }
};

QTEST_GUILESS_MAIN(tst_capturing)
#include "tst_capturing.moc"
