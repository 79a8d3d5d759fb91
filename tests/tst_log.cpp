// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "MdLogFile.h"
#include "RunState.h"
#include "support/Cases.h"
#include "support/CommunicationBench.h"
#include "support/ScriptedDisk.h"

#include <QCoreApplication>
#include <QDir>

#include <functional>

namespace
{

const QString NoRoom = QStringLiteral("No space left on device");

/// Communication that logs to a scripted disk. The user chooses /logs/test.txt.
class LogBench : public CommunicationBench
{
  public:
    ScriptedDisk disk;
    OpenFiles files{disk};
    LogSettings logSettings;
    RunState run;
    MdLogFile logFile{
        {logSettings, prompts, files, run, [this] { return communication.Running(); }}};
    QString commands; ///< which of them are enabled

    LogBench()
    {
        log.next = &logFile;
        logSettings.Folder = "/logs/";
        logSettings.files = {true, true, true, true};
        QObject::connect(&logFile, &MdLogFile::CommandsChanged, &logFile,
                         [this](bool canStart, bool canStop) {
                             commands = QLatin1String(canStart ? "start " : "") +
                                        QLatin1String(canStop ? "stop" : "");
                         });
    }

    void StartAt(const QString &path)
    {
        prompts.chosen = {path};
        logFile.StartLog();
    }
    void OpenAndStart(CommMode mode = CommMode::SendReceive)
    {
        Open(mode);
        StartAt("/logs/test.txt");
    }
    /// Waits for the log's thread, and hears what it has to say.
    void Settle()
    {
        logFile.WaitUntilWritten();
        QCoreApplication::processEvents();
    }
    void Receive(ScriptedPort &port, const QByteArray &bytes)
    {
        port.Receive(bytes);
        Settle();
    }
    QByteArray Ascii() const { return disk.files.value("/logs/test_asc.txt"); }
    QStringList Texts(const QList<MessagePrompt> &messages) const
    {
        QStringList texts;
        for (const MessagePrompt &message : messages)
            texts << QLatin1String(message.icon == PromptIcon::Critical ? "critical: " : "") +
                         message.text;
        return texts;
    }
};

} // namespace

/// Starting, writing and stopping the log files.
class tst_log : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void NamesAreMadeFromWhatWasChosen_data()
    {
        const Cases<QString, QString> row("chosen", "ascii");
        row("a plain name", "/logs/test.txt", "/logs/test_asc.txt");
        row("a log file means its log", "/logs/x_dec.txt", "/logs/x_asc.txt");
        row("a name that is a suffix stays", "/_hex.txt", "/_hex_asc.txt");
        row("capitals are no suffix", "/x_ASC.txt", "/x_ASC_asc.txt");
        row("four characters keep their extension", "/a.tx", "/a.tx_asc.txt");
        row("five lose it", "/ab.tx", "/ab_asc.txt");
        row("a long extension stays", "/log.2026", "/log.2026_asc.txt");
        row("blanks around go", "/ test.txt ", "/test_asc.txt");
    }
    void NamesAreMadeFromWhatWasChosen()
    {
        QFETCH(const QString, chosen);
        QTEST(LogNames::Of(chosen).PathOf(Representation::Ascii), "ascii");
    }

    void AsksForTheFileAndBeforeOverwriting()
    {
        LogBench bench;
        bench.disk.files = {{"/logs/x_bin.txt", "old"}, {"/logs/y_hex.txt", "not wanted"}};
        bench.logSettings.files[size_t(Representation::Hex)] = false;
        bench.logSettings.Folder.clear();
        bench.Open(CommMode::SendReceive);
        bench.StartAt({}); // cancelled
        QCOMPARE(bench.commands, "start ");
        const FileDialogRequest first = bench.prompts.asked.takeFirst();
        QVERIFY(first.purpose == FileDialogRequest::Purpose::Save);
        QCOMPARE(first.title + first.filter + first.name, "Save Log file as ...log file | *.txt");
        QVERIFY(first.folder.endsWith(QDir::separator()) && QDir(first.folder).exists());
        QCOMPARE(first.flags, 0x282A04U);

        bench.prompts.chosen = {"/logs/x_asc.txt", "/logs/x.txt", "/logs/y.txt"};
        bench.prompts.answers = {PromptAnswer::No, PromptAnswer::No};
        bench.logFile.StartLog();
        const MessagePrompt question = {
            "The is already a file with the same name for at least one log file representation "
            "(ASCII, HEX, decimal or binary). Do you want to overwrite the file(s)?",
            PromptIcon::Exclamation, PromptButtons::YesNo, PromptAnswer::No};
        QCOMPARE(bench.prompts.shown, QList({question, question}));
        QCOMPARE(bench.prompts.asked[1].folder + bench.prompts.asked[1].name, "/logs/x_asc.txt");
        QCOMPARE(bench.disk.files.keys(),
                 QStringList({"/logs/x_bin.txt", "/logs/y_asc.txt", "/logs/y_bin.txt",
                              "/logs/y_dec.txt", "/logs/y_hex.txt"}));
        QCOMPARE(bench.disk.files["/logs/x_bin.txt"] + bench.disk.files["/logs/y_hex.txt"],
                 "oldnot wanted");
        QCOMPARE(bench.logSettings.Folder, "/logs/");

        bench.logFile.StopLog();
        bench.prompts.answers = {PromptAnswer::Yes};
        bench.StartAt("/logs/x.txt");
        QCOMPARE(bench.disk.files["/logs/x_bin.txt"], "");
        QCOMPARE(bench.prompts.asked.last().folder, "/logs/");
    }

    void CommandsFollowTheState()
    {
        LogBench bench;
        bench.logFile.StartLog();
        bench.logFile.StopLog();
        QCOMPARE(bench.commands, "");
        bench.logSettings = {{}, 0, {}};
        bench.OpenAndStart();
        QCOMPARE(bench.logFile.LogState(), 2);
        QCOMPARE(bench.commands, "stop");
        QVERIFY(bench.disk.files.isEmpty()); // no form is wanted, and yet it logs
        bench.logFile.StartLog();
        bench.logFile.StopLog();
        QCOMPARE(bench.logFile.LogState(), 0);
        QCOMPARE(bench.commands, "start ");
        QCOMPARE(bench.prompts.asked.size(), 1);
        bench.StartAt("/logs/again");
        bench.portA.failClose = Failure{"stuck"};
        bench.communication.ClosePorts();
        QCOMPARE(bench.commands, "start ");
        bench.StartAt("/logs/again");
        bench.portA.failClose = {};
        bench.communication.ClosePorts();
        QCOMPARE(bench.commands, "");
    }

    void FilesHoldWhatTheViewsGot_data()
    {
        const Cases<bool, bool, QByteArrayList> row("stamps", "newLine", "files");
        row("plain", false, true,
            {"go?k asked YES", "67 6F 3F 6B  asked 59 45 53 ",
             "103 111 063 107  asked 089 069 083 ",
             "01100111 01101111 00111111 01101011  asked 01011001 01000101 01010011 "});
        row("stamps on lines of their own", true, true,
            {"\r\n5/11/26 07:13:49  - go\r\n5/11/26 07:13:49  - ?k asked "
             "\r\n5/11/26 07:13:49  - YES",
             "\r\n5/11/26 07:13:49  - 67 6F \r\n5/11/26 07:13:49  - 3F 6B  asked "
             "\r\n5/11/26 07:13:49  - 59 45 53 ",
             "\r\n5/11/26 07:13:49  - 103 111 \r\n5/11/26 07:13:49  - 063 107  asked "
             "\r\n5/11/26 07:13:49  - 089 069 083 ",
             "\r\n5/11/26 07:13:49  - 01100111 01101111 \r\n5/11/26 07:13:49  - 00111111 01101011 "
             " asked \r\n5/11/26 07:13:49  - 01011001 01000101 01010011 "});
        row("stamps in the line", true, false,
            {"5/11/26 07:13:49  - go5/11/26 07:13:49  - ?k asked 5/11/26 07:13:49  - YES",
             "5/11/26 07:13:49  - 67 6F 5/11/26 07:13:49  - 3F 6B  asked 5/11/26 07:13:49  - "
             "59 45 53 ",
             "5/11/26 07:13:49  - 103 111 5/11/26 07:13:49  - 063 107  asked 5/11/26 07:13:49  - "
             "089 069 083 ",
             "5/11/26 07:13:49  - 01100111 01101111 5/11/26 07:13:49  - 00111111 01101011  asked "
             "5/11/26 07:13:49  - 01011001 01000101 01010011 "});
    }
    void FilesHoldWhatTheViewsGot()
    {
        QFETCH(const bool, stamps);
        QFETCH(const bool, newLine);
        LogBench bench;
        bench.settings.stamp = {newLine, stamps, stamps};
        bench.Watch("k", "asked", "YES");
        bench.OpenAndStart();
        bench.communication.Transmit("go");
        bench.portA.Receive("?k");
        bench.communication.ClosePorts();
        bench.portA.Receive("too late");
        bench.Settle();
        QByteArrayList written;
        for (const char *suffix : {"asc", "hex", "dec", "bin"})
            written << bench.disk.files.value(QString("/logs/test_%1.txt").arg(suffix));
        QTEST(written, "files");
        QVERIFY(bench.prompts.notices.isEmpty() && bench.prompts.shown.isEmpty());
    }

    void FilesAreUpToDateAfterEachBurst()
    {
        LogBench bench;
        bench.OpenAndStart();
        bench.portA.Receive("one ");
        bench.portA.Receive("burst ");
        bench.logFile.WaitUntilWritten(); // the window's thread has no part in it
        QCOMPARE(bench.Ascii(), "one burst ");
    }

    void AFullDiskEndsNothing()
    {
        LogBench bench;
        bench.OpenAndStart();
        bench.disk.room = 3;
        bench.Receive(bench.portA, "abcde");
        QCOMPARE(bench.Texts(bench.prompts.notices),
                 QStringList({"critical: Error while writing the ASCII log file - " + NoRoom,
                              "critical: Error while writing the Decimal log file - " + NoRoom,
                              "critical: Error while writing the HEX log file - " + NoRoom,
                              "critical: Error while writing the Binary log file - " + NoRoom}));
        bench.Receive(bench.portA, "f"); // while the boxes stand
        QCOMPARE(bench.prompts.notices.size(), 4);
        bench.prompts.standing.removeAll("/logs/test_hex.txt");
        bench.Receive(bench.portA, "g");
        QCOMPARE(bench.prompts.notices.size(), 5);
        QCOMPARE(bench.prompts.notices.last().text,
                 "Error while writing the HEX log file - " + NoRoom);
        QVERIFY(bench.prompts.notices.last().details.startsWith(
            "/logs/test_hex.txt\nCommunication goes on."));
        QVERIFY(bench.communication.Running() && bench.prompts.shown.isEmpty());
        QCOMPARE(bench.commands, "stop");
        QCOMPARE(bench.StagedAscii(), "1:abcdefg");

        bench.logFile.StopLog();
        QCOMPARE(bench.commands, "start ");
        bench.Settle();
        QCOMPARE(bench.Texts({bench.prompts.notices.last()}),
                 QStringList("critical: Error while closing a log file - " + NoRoom));
        QCOMPARE(bench.prompts.notices.last().details,
                 "/logs/test_asc.txt\n/logs/test_dec.txt\n/logs/test_hex.txt\n/logs/test_bin.txt\n"
                 "Not all that was to be logged is in the file. Communication goes on.");
        bench.disk.room = ScriptedDisk::Plenty;
        bench.StartAt("/elsewhere/b");
        bench.Receive(bench.portA, "h");
        QCOMPARE(bench.disk.files["/elsewhere/b_asc.txt"], "h");
        QCOMPARE(bench.Ascii(), "abc");
    }

    void LostTextLeavesAMark()
    {
        LogBench bench;
        bench.logSettings = {{true}, 0, "/logs/"};
        bench.OpenAndStart();
        bench.disk.room = 0;
        for (int i = 0; i < 3000; ++i) // 1.5 MB, of which 1 MiB is held back
            bench.portA.Receive(QByteArray(500, 'x'));
        bench.Settle();
        bench.disk.room = ScriptedDisk::Plenty;
        bench.Receive(bench.portA, "here again");
        bench.Receive(bench.portA, "!");
        const QByteArray log = bench.Ascii();
        const qsizetype mark = log.indexOf("\r\n[");
        QVERIFY(log.first(mark) == QByteArray(mark, 'x'));
        const QByteArray count = log.sliced(mark + 3).split(' ').first();
        const QByteArray rest = "\r\n[" + count + " bytes missing]\r\n";
        const qsizetype written = log.size() - rest.size();
        QVERIFY(log.sliced(mark).startsWith(rest) && log.endsWith('!'));
        QCOMPARE(written + count.toLongLong(), 3000 * 500 + 11);
        QVERIFY(bench.prompts.notices.last().text.endsWith(count + " bytes are missing in it") ||
                bench.prompts.notices.size() == 1); // its box still stands
    }

    void ADeletedFileIsToldAtTheLatestWhenItIsClosed()
    {
        LogBench bench;
        bench.OpenAndStart();
        bench.Receive(bench.portA, "lost");
        bench.disk.files.remove("/logs/test_dec.txt");
        bench.communication.ClosePorts();
        bench.Settle();
        QCOMPARE(bench.Texts(bench.prompts.notices),
                 QStringList("critical: Error while closing a log file - It was deleted"));
        QCOMPARE(bench.prompts.notices.first().details,
                 "/logs/test_dec.txt\nNot all that was to be logged is in the file.");
    }

    void AFileThatCannotBeOpenedStartsNoLog()
    {
        LogBench bench;
        bench.disk.refused = "/logs/test_hex.txt";
        bench.logSettings.Folder = "/before/";
        bench.OpenAndStart();
        QCOMPARE(bench.Texts(bench.prompts.shown),
                 QStringList("critical: Error while writing the HEX log file - "
                             "Read-only file system"));
        QCOMPARE(bench.prompts.shown.first().details,
                 "/logs/test_hex.txt\nThe log was not started. Communication goes on.");
        QCOMPARE(bench.logFile.LogState(), 0);
        QCOMPARE(bench.commands, "start ");
        QCOMPARE(bench.logSettings.Folder, "/before/");
        bench.Receive(bench.portA, "unlogged");
        QVERIFY(bench.disk.files.isEmpty()); // what was new is gone
        bench.disk.refused.clear();
        bench.StartAt("/logs/test"); // and what had been opened is free again
        QCOMPARE(bench.logFile.LogState(), 2);
    }

    void WhatHappensWhileAskingCounts()
    {
        const std::pair<const char *, std::function<void(LogBench &)>> events[] = {
            {"the device is unplugged",
             [](LogBench &b) {
                 b.portA.Unplug("gone");
                 QCoreApplication::processEvents();
             }},
            {"the program ends", [](LogBench &b) { b.run.QuitRequested = true; }}};
        for (const auto &[name, happens] : events) {
            for (const qsizetype at : {1, 2}) { // in the dialog, in the question
                LogBench bench;
                bench.disk.files = {{"/logs/test_asc.txt", "old"}};
                bench.prompts.answers = {PromptAnswer::Yes};
                qsizetype boxes = 0;
                bench.prompts.whileStanding = [&, &happens = happens] {
                    if (++boxes == at)
                        happens(bench);
                };
                bench.OpenAndStart();
                QVERIFY2(bench.logFile.LogState() == 0 && bench.Ascii() == "old", name);
            }
        }
    }

    void AnArmedLogStartsWithThePorts()
    {
        LogBench bench;
        bench.logSettings = {{true, false, true}, 0, "/kept/"};
        bench.logFile.Arm("run_hex.txt", false);
        QCOMPARE(bench.logFile.LogState(), 0);
        bench.Open(CommMode::SendReceive);
        bench.Receive(bench.portA, "x");
        QCOMPARE(bench.disk.files, (QMap<QString, QByteArray>{{"/here/run_asc.txt", "x"},
                                                              {"/here/run_dec.txt", "120 "}}));
        QCOMPARE(bench.logSettings.Folder, "/kept/");
        bench.communication.ClosePorts();
        bench.Open(CommMode::SendReceive);
        QCOMPARE(bench.logFile.LogState(), 0); // once is enough
        QVERIFY(bench.prompts.shown.isEmpty() && bench.prompts.asked.isEmpty());
    }

    void AnArmedLogOverwritesOnlyIfItMay()
    {
        for (const bool may : {false, true}) {
            LogBench bench;
            bench.disk.files = {{"/logs/run_dec.txt", "old"}};
            bench.logFile.Arm("/logs/run.txt", may);
            bench.Open(CommMode::SendReceive);
            QCOMPARE(bench.logFile.LogState(), may ? 2 : 0);
            QCOMPARE(bench.disk.files["/logs/run_dec.txt"], may ? "" : "old");
            QCOMPARE(bench.prompts.CriticalShown(), !may);
            if (!may) {
                for (const char *part : {"/logs/run_dec.txt", "--overwrite"})
                    QVERIFY(bench.prompts.notices.first().text.contains(part));
            }
        }
    }
};

QTEST_GUILESS_MAIN(tst_log)
#include "tst_log.moc"
