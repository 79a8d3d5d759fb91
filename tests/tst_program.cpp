// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "FileName.h"
#include "LineLoop.h"
#include "MainLoop.h"
#include "Representation.h"
#include "RichTextBox.h"
#include "RunState.h"
#include "SQReceiveSequenceList.h"
#include "SQSendSequenceList.h"
#include "SerialPort.h"
#include "SerialPortHub.h"
#include "SystemPortName.h"
#include "UnsavedProject.h"
#include "support/Cases.h"
#include "support/CommunicationBench.h"
#include "support/NamesIn.h"
#include "support/ProgramBench.h"
#include "support/PtyPair.h"

#include <QAction>
#include <QFile>
#include <QImage>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QThread>

#include <ctime>

/// The whole program over real pseudo-terminals.
class tst_program : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void EachModeTalksToItsLines_data()
    {
        const Cases<int, QByteArray, QByteArray> row("mode", "shown", "farEndA");
        row("mode 0 answers and hears one line", 0, "who? asked I AM", "I AM");
        row("mode 1 listens to both and never answers", 1, "who? asked there", "");
        row("mode 2 answers on channel 1", 2, "who? asked I AMthere", "I AM");
    }

    void EachModeTalksToItsLines()
    {
        QFETCH(int, mode);
        QFETCH(QByteArray, shown);
        QFETCH(QByteArray, farEndA);
        PtyPair lineA, lineB;
        ProgramBench bench;
        bench.AssignPort(1, lineA.DeviceName());
        bench.AssignPort(2, lineB.DeviceName());
        bench.line.mode = CommMode(mode);
        bench.line.start = true;
        const int status = bench.Run(
            {{[&] { bench.Watch("who?", "asked", "I AM"); }},
             bench.Started(),
             {[&] { lineA.Write("who?"); }, [&] { return bench.Shown().contains("asked"); }},
             {[&] { lineB.Write("there"); },
              [&] { return bench.Shown().size() >= shown.size(); }}});
        QVERIFY(!bench.stuck);
        QCOMPARE(bench.Shown(), shown);
        QCOMPARE(lineA.Read(farEndA.size()), farEndA);
        QCOMPARE(lineA.Read(1, 0) + lineB.Read(1, 0), "");
        QCOMPARE(status, 0);
        QVERIFY(bench.prompts.shown.isEmpty());
    }

    void ABurstIsShownToItsLastByte()
    {
        constexpr int Size = 1024 * 1024;
        QByteArray bytes(Size, Qt::Uninitialized);
        QRandomGenerator random(20261105);
        std::generate(bytes.begin(), bytes.end(), [&] { return char(random.bounded(256)); });
        PtyPair lineA;
        ProgramBench bench;
        bench.AssignPort(1, lineA.DeviceName());
        bench.line.start = true;
        std::unique_ptr<QThread> sender(QThread::create([&] { lineA.Write(bytes); }));
        const auto stall = [&] { // the window's thread stands still meanwhile
            sender->start();
            sender->wait(300);
        };
        const auto allShown = [&] {
            return bench.Shown().endsWith(ViewText(Representation::Ascii, bytes.right(1000)));
        };
        bench.Run({bench.Started(), {stall, allShown}});
        sender->wait();
        QVERIFY(!bench.stuck);
        for (const Representation r : AllRepresentations) {
            const qsizetype width = ViewWidth(r);
            const QByteArray shown = bench.Shown(r);
            const QByteArray lastBytes = bytes.right(qMin(shown.size(), 120000) / width);
            QVERIFY(lastBytes.size() > 10000);
            QVERIFY(shown.endsWith(ViewText(r, lastBytes)));
        }
    }

    void TwoLinesKeepTheirOrderWhileTheWindowStalls()
    {
        PtyPair lineA, lineB;
        MemoryStore store;
        PortDevices devices(store, SystemPortName);
        devices.AssignForRun(1, lineA.DeviceName());
        devices.AssignForRun(2, lineB.DeviceName());
        SerialPortHub hub;
        LineLoop lines;
        SerialPort portA(lines, hub, devices);
        SerialPort portB(lines, hub, devices);
        CommunicationBench bench;
        bench.settings.comm.run.mode = CommMode::MonitorReceiveOnly;
        MdCommunication communication({bench.settings.comm, bench.settings.display,
                                       bench.settings.stamp, bench.tables, &bench.views, bench.log,
                                       bench.prompts, bench.clock, portA, portB, lines});
        RunState run;
        MainLoop loop(run, communication);
        communication.OpenPorts();

        // The window's thread handles no event for a second, while the telegrams come one by one.
        QByteArray expected;
        const QDeadlineTimer stall(1000);
        const QDeadlineTimer arrival(30000);
        for (int i = 0; i < 100 || !stall.hasExpired(); ++i) {
            for (PtyPair *line : {&lineA, &lineB}) {
                const QByteArray telegram =
                    (line == &lineA ? 'A' : 'B') + QByteArray::number(i) + ' ';
                expected += telegram;
                line->Write(telegram);
                while (portA.Wire().Counts().receivedBytes + portB.Wire().Counts().receivedBytes <
                           expected.size() &&
                       !arrival.hasExpired())
                    QThread::yieldCurrentThread();
            }
        }
        expected = expected.right(RichTextModel::MaxViewLength / 2);
        const auto shown = [&] {
            loop.Pass();
            return bench.views.View(Representation::Ascii)
                .Bytes()
                .toByteArray()
                .right(expected.size());
        };
        QTRY_COMPARE(shown(), expected);
    }

    void AHundredUnplugs()
    {
        constexpr int Rounds = 100;
        std::unique_ptr<PtyPair> line;
        ProgramBench bench;
        int round = 0;
        const auto plugAndStart = [&] {
            line = std::make_unique<PtyPair>();
            bench.store.texts["Ports/COM1"] = line->DeviceName();
            bench.program->Execute(Command::Start);
            line->Write("reading");
            ++round;
        };
        const auto isRead = [&] { return bench.View(Representation::Ascii).End() >= 7 * round; };
        const auto isTold = [&] { return !bench.Running() && bench.prompts.shown.size() == round; };
        QList<ProgramBench::Step> steps;
        for (int i = 0; i < Rounds; ++i)
            steps << ProgramBench::Step{plugAndStart, isRead}
                  << ProgramBench::Step{[&] { line->Unplug(); }, isTold};
        QElapsedTimer idle;
        std::clock_t idleClocks = 0;
        const auto rest = [&] {
            idle.start();
            idleClocks = std::clock();
        };
        steps << ProgramBench::Step{rest, [&] { return idle.hasExpired(500); }}
              << ProgramBench::Step{[&] { idleClocks = std::clock() - idleClocks; }};
        const int status = bench.Run(steps);
        QVERIFY(!bench.stuck);
        QCOMPARE(bench.prompts.shown.size(), Rounds);
        for (const MessagePrompt &prompt : bench.prompts.shown) {
            QCOMPARE(prompt.icon, PromptIcon::Critical);
            QVERIFY(prompt.text.startsWith("The port COM1 was disconnected. "));
        }
        QVERIFY(idleClocks < CLOCKS_PER_SEC / 4);
        QCOMPARE(status, 1);
    }

    void TheOptionsStopFirstAndNothingThatCameIsLost()
    {
        PtyPair lineA;
        ProgramBench bench;
        bench.AssignPort(1, lineA.DeviceName());
        bool runningMeanwhile = true;
        QByteArray afterStop;
        const auto start = [&] { bench.program->Execute(Command::Start); };
        const auto receiveAndStop = [&] {
            lineA.Write("late");
            bench.InOptions([&](const OptionsDesk &) { runningMeanwhile = bench.Running(); });
            afterStop = bench.Shown();
        };
        bench.Run({{start, bench.Started().goal},
                   {receiveAndStop},
                   {start, [&] { return bench.Shown() == "late"; }}});
        QVERIFY(!bench.stuck);
        QVERIFY(!runningMeanwhile);
        QCOMPARE(afterStop, "late"); // the device's last words are seen
    }

    void BrokenSettingsEndTheStart()
    {
        ProgramBench bench;
        bench.store.texts["Communication/CommSpeed"] = "fast";
        const auto before = bench.store.texts;
        QCOMPARE(bench.Run({}), 1);
        QCOMPARE(bench.prompts.shown.size(), 1);
        for (const char *part : {"\"CommSpeed\"", "\"Communication\"", "\"fast\""})
            QVERIFY(bench.prompts.shown.first().text.contains(part));
        QCOMPARE(bench.store.texts, before);
        QVERIFY(!bench.program->Window());
    }

    void AModifiedProjectAsksBeforeClosing()
    {
        // Yes stays too, as the save dialog is cancelled.
        for (const auto &[answer, stays] : {std::pair(PromptAnswer::No, false),
                                            {PromptAnswer::Cancel, true},
                                            {PromptAnswer::Yes, true}}) {
            ProgramBench bench;
            bench.store.texts["Settings/ProjectPath"] = "/kept/";
            bench.prompts.answers = {answer};
            bool stayed = false;
            const auto close = [&] {
                bench.program->Window()->SetProjectModified(true);
                bench.program->Execute(Command::Exit);
                stayed = bench.program->Window()->isVisible();
            };
            bench.Run({{close}});
            QCOMPARE(stayed, stays);
            QCOMPARE(bench.prompts.shown.first(),
                     (MessagePrompt{"Save changes for this project?", PromptIcon::Question,
                                    PromptButtons::YesNoCancel, PromptAnswer::No, "Serimonde"}));
            if (answer == PromptAnswer::Yes)
                QCOMPARE(bench.prompts.asked.first().folder, "/kept/");
            QCOMPARE(bench.store.texts["Settings/ProjectPath"], "/kept/");
            QCOMPARE(bench.store.flushes, 1);
        }
    }

    void UnsavedChangesAreKeptForAnEnd()
    {
        ProgramBench bench;
        QList<int> files;
        const auto recovery = [&]() -> ProjectRecovery & { return bench.program->Recovery(); };
        const auto modify = [&](bool is) { bench.program->Window()->SetProjectModified(is); };
        const QList<std::function<void()>> events = {[&] { recovery().Keep(); }, // there is nothing to save
                                                     [&] { modify(true); },
                                                     [&] { recovery().Keep(); },
                                                     [&] { recovery().Keep(); },
                                                     [&] { bench.program->Sequences().AddSend({"late", "late"}); },
                                                     [&] { recovery().Keep(); },
                                                     [&] { recovery().GoOn(); },
                                                     [&] { recovery().Keep(); },
                                                     [&] { modify(false); }, // saved
                                                     [&] { modify(true); }};
        bench.Run({{[&] {
            for (const auto &event : events) {
                event();
                files << int(bench.recovery.files.size());
            }
        }}}); // and ends unasked
        QCOMPARE(files, (QList{0, 0, 1, 1, 1, 1, 0, 1, 0, 0}));
        QCOMPARE(bench.recovery.files.size(), 1);
        QVERIFY(bench.recovery.files.first().contains("6c617465"));

        // The same once more takes the place of what was left; what the user gives up is not kept.
        const auto fillAgain = [&] {
            bench.program->Sequences().AddSend({"late", "late"});
            modify(true);
        };
        bench.Run({{fillAgain}});
        QCOMPARE(bench.recovery.files.size(), 1);
        bench.recovery.files.clear();
        bench.prompts.answers = {PromptAnswer::No};
        bench.Run({{[&] {
            fillAgain();
            recovery().Keep();
            bench.program->Execute(Command::Exit);
        }}});
        QCOMPARE(bench.recovery.files.size(), 0);

        bench.recovery.fault = "full";
        bench.Run({{fillAgain}});
        QVERIFY(bench.prompts.notices.last().text.contains("full"));
    }

    void TheNextStartOffersWhatWasLeft_data()
    {
        using Answers = QList<PromptAnswer>;
        const Cases<Answers, QString, bool, int, bool, QStringList> row(
            "answers", "held", "unattended", "asked", "restored", "left");
        row("not answered", {}, "", false, 1, false, {"a", "b", "damaged"});
        row("yes", {PromptAnswer::Yes}, "", false, 1, true, {"a", "b", "damaged"});
        row("no, the other one", {PromptAnswer::No, PromptAnswer::Yes}, "", false, 2, true,
            {"b", "damaged"});
        row("neither", {PromptAnswer::No, PromptAnswer::No}, "", false, 2, false, {"damaged"});
        row("not now", {PromptAnswer::Cancel}, "", false, 1, false, {"a", "b", "damaged"});
        row("another program has one", {PromptAnswer::No}, "a", false, 1, false, {"a", "damaged"});
        row("nobody is there", {PromptAnswer::Yes}, "", true, 0, false, {"a", "b", "damaged"});
    }

    void TheNextStartOffersWhatWasLeft()
    {
        QFETCH(QString, held);
        QFETCH(bool, unattended);
        QFETCH(bool, restored);
        QFETCH(QStringList, left);
        MdSequenceEdition tables;
        tables.AddSend({"a,b", "c"});
        const QByteArray text = UnsavedProject::Of(tables, {{}, "/f/", "name", {}}).ToText();
        ProgramBench bench;
        bench.recovery.files = {{"a", text}, {"b", text}, {"damaged", "{"}};
        bench.recovery.held = {held};
        QFETCH(QList<PromptAnswer>, answers);
        bench.prompts.laterAnswers = answers;
        if (unattended)
            bench.line.quitAfterSeconds = 100;
        bench.Run({{}, {[&] {
                       QTEST(int(bench.prompts.questions.size()), "asked");
                       QTEST(bench.recovery.files.keys(), "left");
                       frmMain &window = *bench.program->Window();
                       QCOMPARE(window.ProjectModified(), restored);
                       QCOMPARE(window.windowTitle(), restored ? "Serimonde - name" : "Serimonde");
                       QCOMPARE(bench.program->Sequences().SendAt(0).Name, restored ? "a,b" : "");
                       bench.program->Recovery().GoOn();
                       QTEST(bench.recovery.files.keys(), "left");
                       window.SetProjectModified(false);
                       QCOMPARE(bench.recovery.files.size() + (restored ? 1 : 0), left.size());
                   }}});
    }

    void TheLogHasItsButtonsAndItsEnd()
    {
        const QTemporaryDir folder;
        PtyPair lineA;
        ProgramBench bench;
        bench.AssignPort(1, lineA.DeviceName());
        bench.line.start = true;
        bench.prompts.chosen = {folder.filePath("a.txt"), folder.filePath("b.txt")};
        QString enabled;
        const auto press = [&](int button) {
            bench.ToolbarButton(button)->trigger();
            for (const int each : {19, 20})
                enabled += bench.ToolbarButton(each)->isEnabled() ? 'e' : '-';
        };
        const auto logAndWrite = [&] {
            press(19);
            lineA.Write("logged");
        };
        const auto loseTheFile = [&] {
            press(19);
            QFile::remove(folder.filePath("b_asc.txt"));
            bench.program->Execute(Command::Stop);
        };
        const int status =
            bench.Run({bench.Started(),
                       {logAndWrite, [&] { return bench.Shown().contains("logged"); }},
                       {[&] { press(20); }},
                       {loseTheFile, [&] { return !bench.prompts.notices.isEmpty(); }}});
        QCOMPARE(status, 1);
        QCOMPARE(enabled, "-ee--e");
        QVERIFY(bench.prompts.shown.isEmpty());
        QVERIFY(bench.prompts.notices[0].text.startsWith("Error while closing a log file - "));
        QFile log(folder.filePath("a_asc.txt"));
        QVERIFY(log.open(QIODevice::ReadOnly) && log.readAll() == "logged");
    }

    void TheRunsOwnSettingsAreNotStored()
    {
        PtyPair lineA;
        ProgramBench bench;
        bench.store.texts["Communication/CommPortA"] = "9";
        bench.AssignPort(9, lineA.DeviceName());
        bench.line.mode = CommMode::SendReceive;
        bench.line.line = ParseLineSettings(u"921600,N,8,2");
        bench.line.start = true;
        bench.Run({bench.Started()});
        QVERIFY(!bench.stuck);
        QCOMPARE(bench.store.texts["Communication/CommSpeed"], "5");
        QCOMPARE(bench.store.texts["Communication/CommStopBits"], "0");
        QCOMPARE(bench.store.texts["Communication/CommPortA"], "9");
        QVERIFY(!bench.store.texts.contains("Ports/COM9"));
    }

    void TheTickForControlCharactersIsKept()
    {
        ProgramBench bench;
        QList<bool> shown;
        bench.Run({{.act = [&] {
            const auto *tick = bench.program->Window()->findChild<QAction *>("mnuViewControls");
            const auto *view = bench.program->Window()->findChild<RichTextBox *>("txtASCII");
            shown << view->ShowsControls() << tick->isChecked();
            bench.program->Execute(Command::ControlCharacters);
            shown << view->ShowsControls() << tick->isChecked();
        }}});
        QCOMPARE(shown, QList({true, true, false, false}));
        QCOMPARE(bench.store.texts["View/ControlCharacters"], "False");
    }

    void AnUnattendedRunLeavesItsPicture()
    {
        const QTemporaryDir folder;
        ProgramBench bench;
        bench.line.quitAfterSeconds = 0.05;
        bench.line.screenshot = folder.filePath("a.png");
        bool hidden = false;
        bench.store.whileFlushing = [&] { hidden = !bench.program->Window()->isVisible(); };
        QCOMPARE(bench.Run({{.goal = [] { return false; }}}), 0);
        QVERIFY(hidden); // nobody looks at a window that waits for the disk
        const QImage picture(bench.line.screenshot);
        QVERIFY(picture.width() >= 200 && picture.height() > 100);
        for (const char *path : {"/no-such-folder/a.png", "/"}) {
            bench.prompts.shown.clear();
            bench.line.screenshot = path;
            QCOMPARE(bench.Run({}), 1);
            QVERIFY(bench.prompts.shown.first().text.contains(path));
        }
    }

    void NamesOfTheCommandLineAreTakenAsTheyAre()
    {
        const QTemporaryDir folder;
        const auto named = [&](const QByteArray &name) {
            return FileName::Decode(folder.path().toUtf8() + '/' + name);
        };
        PtyPair lineA;
        ProgramBench bench;
        bench.AssignPort(1, lineA.DeviceName());
        bench.line.start = true;
        bench.line.project = named("caf\xE9.sqx");
        bench.line.log = named("caf\xE9_hex.txt");
        bench.line.screenshot = named("caf\xE9.png");
        SystemFiles().Create(bench.line.project).device->Write("VERSION\r\n3\r\n");
        QCOMPARE(
            bench.Run({bench.Started(), {.goal = [&] { return !bench.prompts.shown.isEmpty(); }}}),
            0);
        QVERIFY(!bench.stuck);
        QCOMPARE(NamesIn(folder.path()),
                 QByteArrayList({"caf\xE9.png", "caf\xE9.sqx", "caf\xE9_asc.txt"}));
        QCOMPARE(bench.store.texts["Settings/ProjectPath"], folder.path() + '/');
    }

    void TheDemoIsLive()
    {
        for (const int mode : {0, 1, 2}) {
            ProgramBench bench;
            bench.store.texts = {{"Communication/CommPortA", "77"},
                                 {"Communication/CommSpeed", "14"}};
            bench.line.demo = true;
            bench.line.mode = CommMode(mode);
            const auto allStylesAreThere = [&] {
                const auto &styles = bench.program->Display().styles;
                QSet<qsizetype> seen;
                for (const auto &run : bench.View(Representation::Hex).Runs())
                    seen << std::find(styles.begin(), styles.end(), run.style) - styles.begin();
                return seen.size() == 3;
            };
            bench.Run({{.goal = allStylesAreThere}});
            QVERIFY(!bench.stuck);
            QVERIFY(bench.prompts.shown.isEmpty());
            QCOMPARE(bench.store.texts["Communication/CommPortA"], "77");
        }
    }

    void TheListsOfTheDemoAreUsed()
    {
        ProgramBench bench;
        bench.line.demo = true;
        const auto pressIn = [](SequenceList &list, int row, QKeyCombination keys) {
            list.setCurrentIndex(list.model()->index(row, 0));
            QTest::keyClick(&list, keys.key(), keys.keyboardModifiers());
        };
        bool modified = false;
        const auto send = [&] {
            pressIn(bench.program->Window()->SendList(), 0, Qt::CTRL | Qt::Key_Return);
        };
        const auto tick = [&] {
            pressIn(bench.program->Window()->ReceiveList(), 3, Qt::Key_Space);
            modified = bench.program->Window()->ProjectModified();
        };
        const auto shows = [&bench](const char *text) {
            return [&bench, text] { return bench.Shown().contains(text); };
        };
        bench.Run({bench.Started(),
                   {send, shows("[the instrument has named itself]")},
                   {tick, shows("[a reading]")}});
        QVERIFY(!bench.stuck);
        QVERIFY(bench.Shown().contains("*IDN?\r\n"));
        QVERIFY(modified);
        QCOMPARE(bench.store.texts["Lists/SendNameWidth"], "140");
    }
};

QTEST_MAIN(tst_program)
#include "tst_program.moc"
