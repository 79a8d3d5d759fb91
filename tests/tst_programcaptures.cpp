// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CaptureBookmarks.h"
#include "CaptureJoiner.h"
#include "RichTextBox.h"
#include "SQSendSequenceList.h"
#include "TelegramBook.h"
#include "TelegramList.h"
#include "UnsavedProject.h"
#include "frmTraffic.h"
#include "support/Cases.h"
#include "support/ProgramBench.h"
#include "support/PtyPair.h"
#include "support/TestCapture.h"

#include <QAbstractButton>
#include <QAction>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTemporaryDir>

/// The session's record and replays in the whole program.
class tst_programcaptures : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    /// Leaves one behind, has it offered after the project, looks at it, and ends by hand.
    void TheRecordIsThereUntilAnEndByHand()
    {
        PtyPair line;
        ProgramBench bench;
        bench.AssignPort(1, line.DeviceName());
        bench.line.start = true;
        const ProgramBench::Step send = {[&] { line.Write("bytes"); },
                                         [&] { return bench.Shown().contains("bytes"); }};
        bench.Run({bench.Started(), send});
        bench.program.reset();
        QCOMPARE(bench.record->Segments().size(), 1);
        QVERIFY(!bench.record->Segments().first().held);

        MdSequenceEdition tables;
        tables.AddSend({"a", "b"});
        bench.recovery.files = {{"a", UnsavedProject::Of(tables, {}).ToText()}};
        bench.prompts.laterAnswers = {PromptAnswer::No, PromptAnswer::No};
        const auto inDialog = [&] {
            QWidget *dialog = QApplication::activeModalWidget();
            const auto field = [&](const char *name) {
                return dialog->findChild<QLineEdit *>(name)->text();
            };
            QVERIFY(field("txtSince").contains(QString::number(QDate::currentDate().year() % 100)));
            QCOMPARE(field("txtFolder"), "/cache/record");
            auto *bound = dialog->findChild<QSpinBox *>("spnBound");
            bench.prompts.answers = {PromptAnswer::No};
            bound->setValue(0);
            QCOMPARE(bound->value(), 1024);
            bound->setValue(7);
            QVERIFY(dialog->findChild<QPushButton *>("cmdSave")->isEnabled());
            dialog->close();
        };
        bench.Run({{.goal = [&] { return bench.prompts.questions.size() == 2; }},
                   {.goal = [&] { return bench.record->Segments().size() == 1; }},
                   {send.act, [&] { return bench.program->Record().State().since > 0; }},
                   {[&] {
                       QTimer::singleShot(0, bench.program.get(), inDialog);
                       bench.program->Execute(Command::SessionRecord);
                       bench.program->Execute(Command::Exit);
                   }}});
        QVERIFY(!bench.stuck);
        QVERIFY(bench.prompts.questions[1].text.contains("Save its capture?"));
        QCOMPARE(bench.record->Segments().size(), 0);
        QCOMPARE(bench.store.texts["Record/MostMegabytes"], "7");
    }

    void ACaptureIsReplayedWhateverItsName_data()
    {
        const Cases<QString, bool> row("name", "isCapture");
        row("a capture", "x.pcapng", true);
        row("a capture by another name", "x.sqx", true);
        row("a project", "x.sqx", false);
    }

    void ACaptureIsReplayedWhateverItsName()
    {
        QFETCH(QString, name);
        QFETCH(bool, isCapture);
        const QTemporaryDir folder;
        TrafficEvent ask, answer;
        ask.bytes = "who? ";
        answer.bytes = "I AM";
        answer.channel = 1;
        answer.time.wall = 300'000'000;
        QFile file(folder.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(isCapture ? CaptureOf({ask, answer}, {{"A", {}, 0}, {"B", {}, 0}})
                             : "VERSION\r\n3\r\n");
        file.close();
        ProgramBench bench;
        bench.line.project = file.fileName();
        bench.line.log = folder.filePath("log.txt");
        QStringList seen;
        const auto see = [&] {
            const frmMain &window = *bench.program->Window();
            seen << window.windowTitle();
            for (const char *panel : {"sbStatusBar_1", "sbStatusBar_2"})
                seen << window.findChild<QLabel *>(panel)->text();
            seen << (window.SendList().isHidden() ? "covered" : "open");
        };
        bench.Run({{.goal = [&] { return bench.Running() == isCapture; }},
                   {see, [&] { return !bench.Running(); }},
                   {see}});
        QVERIFY(!bench.stuck && bench.prompts.shown.isEmpty() && bench.prompts.notices.isEmpty());
        const QStringList stopped = {isCapture ? "Serimonde" : "Serimonde - x",
                                     "Communication port is closed", "COM1", "open"};
        const QStringList replaying = {"Serimonde", "Replaying " + name, "COM1", "covered"};
        QCOMPARE(seen, (isCapture ? replaying : stopped) + stopped);
        QCOMPARE(bench.Shown(), isCapture ? "who? I AM" : "");
        QFile log(folder.filePath("log_asc.txt"));
        QCOMPARE(log.open(QIODevice::ReadOnly), isCapture);
        QCOMPARE(log.isOpen() ? log.readAll() : QByteArray(), bench.Shown());
        QCOMPARE(bench.store.texts["Communication/CommType"], "0");
    }

    /// The user is asked before bookmarks are lost; the copy is the capture with them.
    void BookmarksOfAnOpenedCaptureOutliveTheProgram()
    {
        const QTemporaryDir folder;
        TrafficEvent event;
        event.bytes = "stops";
        event.time.wall = 1'700'000'000'000'000'000;
        const QByteArray capture = CaptureOf({event}, {{"A", {}, 0}});
        const QString path = folder.filePath("x.pcapng"), copy = folder.filePath("y.pcapng");
        const auto bytesOf = [](const QString &name) {
            QFile file(name);
            return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        };
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(capture);
        file.close();
        ProgramBench bench;
        bench.prompts.chosen = {path, copy};
        bench.prompts.answers = {PromptAnswer::Cancel, PromptAnswer::Yes};
        frmTraffic *window = nullptr;
        const auto act = [&window](const char *action) {
            return [&window, action] { window->findChild<QAction *>(action)->trigger(); };
        };
        const auto close = [&] { bench.program->Execute(Command::Exit); };
        bench.Run(
            {{[&] {
                  bench.program->Execute(Command::Traffic);
                  for (QWidget *each : QApplication::topLevelWidgets())
                      window = window ? window : qobject_cast<frmTraffic *>(each);
                  act("mnuTrafficOpen")();
              },
              [&] { return window->Book().End() == 1; }},
             {[&] { window->List().GoTo(0); }, [&] { return window->Book().Row(0); }},
             {act("mnuTrafficBookmark")},
             {act("mnuTrafficMain"), [&] { return bench.program->Window()->isActiveWindow(); }},
             {[&] { bench.program->Execute(Command::Traffic); },
              [&] { return window->isActiveWindow(); }},
             {close, [&] { return bench.prompts.shown.size() == 1; }},
             {close, [&] { return !bytesOf(copy).isEmpty(); }}});
        QVERIFY(!bench.stuck);
        QCOMPARE(bench.prompts.shown.size(), 2);
        QCOMPARE(bench.prompts.shown[0].text, "Save changes to the bookmarks of x.pcapng?");
        QCOMPARE(bench.prompts.asked.last().name, "x with bookmarks.pcapng");
        QCOMPARE(bytesOf(path), capture);
        CaptureJoiner joiner({CaptureBookmarks::CommentOf({event.time.wall, {}})});
        QByteArray expected;
        joiner.Append(expected, capture);
        QCOMPARE(bytesOf(copy).toHex(' '), expected.toHex(' '));
    }

    void TheReplayWindowHasHandsOnIt()
    {
        const QTemporaryDir folder;
        QList<TrafficEvent> events(3);
        for (qint64 hour : {0, 1, 2}) {
            events[hour].bytes = QByteArray::number(hour);
            events[hour].time.wall = hour * 3600 * 1'000'000'000;
        }
        QFile file(folder.filePath("x.pcapng"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(CaptureOf(events, {{"COM1", {}, 0}}));
        file.close();
        ProgramBench bench;
        bench.prompts.chosen << file.fileName();
        const auto click = [&](const char *name) {
            return [&bench, name] {
                bench.program->Window()->findChild<QAbstractButton *>(name)->click();
            };
        };
        const auto says = [&](const char *state) {
            return [&bench, state] {
                return bench.program->Window()->findChild<QLabel *>("lblState")->text() == state;
            };
        };
        const auto shows = [&](const char *text) {
            return [&bench, text] { return bench.Shown() == text; };
        };
        bench.Run({{[&] { bench.program->Execute(Command::ReplayCapture); }, shows("0")},
                   {click("cmdPause"), says("Paused")},
                   {click("cmdNext"), shows("01")},
                   {click("cmdStop"), [&] { return !bench.Running() && says("Stopped")(); }},
                   {click("cmdPause"), shows("010")},
                   {click("cmdNext"), shows("0101")},
                   {click("cmdNext"), says("At the end; communication is stopped")},
                   {click("cmdPause"), shows("010120")},
                   {click("cmdClose"), [&] { return !bench.Running(); }}});
        QVERIFY(!bench.stuck);
        QCOMPARE(bench.Shown(), "010120");
    }
};

QTEST_MAIN(tst_programcaptures)
#include "tst_programcaptures.moc"
