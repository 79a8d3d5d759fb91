// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "controls/SQReceiveSequenceList.h"
#include "controls/SQSendSequenceList.h"
#include "platform/QtSerialPort.h"
#include "platform/SerialPortHub.h"
#include "repr/Common_Function.h"
#include "support/ProgramBench.h"
#include "support/PtyPair.h"
#include "support/RecordingLog.h"

#include <QAction>
#include <QFile>
#include <QImage>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <ctime>

namespace
{

const std::function<bool()> AtOnce = [] { return true; };

double CpuSeconds()
{
    return double(std::clock()) / CLOCKS_PER_SEC;
}

} // namespace

/// The whole program over real pseudo-terminals.
class tst_program : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void EachModeTalksToItsLines_data();
    void EachModeTalksToItsLines();
    void ABurstIsShownToItsLastByte();
    void TwoLinesKeepTheirOrderWhileTheWindowStalls();
    void AHundredUnplugs();
    void StagedTextAppearsAfterTheNextStart();
    void AMissingDeviceIsReportedAndTheProgramGoesOn();
    void BrokenSettingsEndTheStart();
    void OptionsStopCommunicationFirst();
    void AModifiedProjectAsksBeforeClosing_data();
    void AModifiedProjectAsksBeforeClosing();
    void TheRunsOwnSettingsAreNotStored();
    void AnUnattendedRunLeavesItsPicture();
    void APictureThatCannotBeWrittenIsReported();
    void TheDemoIsLive_data();
    void TheDemoIsLive();
    void TheListsOfTheDemoAreUsed();
};

void tst_program::EachModeTalksToItsLines_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QByteArray>("shown");
    QTest::addColumn<QByteArray>("farEndA");
    QTest::newRow("mode 0 answers and hears one line")
        << 0 << QByteArray("who? asked I AM") << QByteArray("I AM");
    QTest::newRow("mode 1 listens to both and never answers")
        << 1 << QByteArray("who? asked there") << QByteArray();
    QTest::newRow("mode 2 answers on channel 1")
        << 2 << QByteArray("who? asked I AMthere") << QByteArray("I AM");
}

void tst_program::EachModeTalksToItsLines()
{
    QFETCH(int, mode);
    QFETCH(QByteArray, shown);
    QFETCH(QByteArray, farEndA);
    PtyPair lineA;
    PtyPair lineB;
    ProgramBench bench;
    bench.AssignPort(1, lineA.DeviceName());
    bench.AssignPort(2, lineB.DeviceName());
    bench.line.mode = CommMode(mode);
    bench.line.start = true;
    const int status = bench.Run(
        {{[&] { bench.Watch("who?", "asked", "I AM"); }, [&] { return bench.Running(); }},
         {[&] { lineA.Write("who?"); }, [&] { return bench.Shown().contains("asked"); }},
         {[&] { lineB.Write("there"); }, [&] { return bench.Shown().size() >= shown.size(); }}});
    QVERIFY(!bench.stuck);
    QCOMPARE(bench.Shown(), shown);
    QCOMPARE(lineA.Read(farEndA.size()), farEndA);
    QCOMPARE(lineA.Read(1, 0) + lineB.Read(1, 0), QByteArray());
    QCOMPARE(status, 0);
    QVERIFY(bench.prompts.shown.isEmpty());
}

void tst_program::ABurstIsShownToItsLastByte()
{
    constexpr int Size = 1024 * 1024;
    QByteArray bytes(Size, Qt::Uninitialized);
    QRandomGenerator random(20261105);
    random.generate(reinterpret_cast<quint8 *>(bytes.data()),
                    reinterpret_cast<quint8 *>(bytes.data()) + Size);
    PtyPair lineA;
    ProgramBench bench;
    bench.AssignPort(1, lineA.DeviceName());
    bench.line.start = true;
    std::unique_ptr<QThread> sender(QThread::create([&] { lineA.Write(bytes); }));
    // A staging box counts every character it was ever given, whatever has been trimmed since.
    const auto received = [&](Representation r) {
        return bench.program->Views().StagingBox(r).End();
    };
    const auto allShown = [&] {
        return received(Representation::Ascii) >= Size &&
               bench.program->Views().StagingBox(Representation::Binary).Length() == 0;
    };
    bench.Run({{[] {}, [&] { return bench.Running(); }},
               {[&] {
                    sender->start();
                    sender->wait(300); // the window's thread stands still meanwhile
                },
                allShown}});
    sender->wait();
    QVERIFY(!bench.stuck);
    constexpr std::array<int, 4> Widths = {1, 3, 4, 9};
    for (const Representation r : AllRepresentations) {
        const int width = Widths[size_t(r)];
        QCOMPARE(received(r), qint64(width) * Size);
        const QByteArray shown = bench.Shown(r);
        // What is older may have gaps where a staging box was trimmed before the loop came by.
        const QByteArray lastBytes = bytes.right(qMin(shown.size(), 120000) / width);
        QVERIFY(lastBytes.size() > 10000);
        QVERIFY(shown.endsWith(Common_Function::SeqToViewText(r, lastBytes)));
    }
}

void tst_program::TwoLinesKeepTheirOrderWhileTheWindowStalls()
{
    PtyPair lineA;
    PtyPair lineB;
    MemoryStore store;
    PortDevices devices(store);
    devices.AssignForRun(1, lineA.DeviceName());
    devices.AssignForRun(2, lineB.DeviceName());
    SerialPortHub hub;
    QtSerialPort portA(hub, devices);
    QtSerialPort portB(hub, devices);
    SettingsRecord settings;
    settings.comm.run.mode = CommMode::MonitorReceiveOnly;
    const MdSequenceEdition tables;
    CommunicationViews views;
    RecordingLog log;
    ScriptedPrompts prompts;
    const FixedClock clock;
    MdCommunication communication({settings, tables, views, log, prompts, clock, portA, portB});
    MainLoop loop(settings, communication, views);
    communication.OpenPorts();

    // The window's thread handles no event for a second, while the telegrams come one by one.
    QByteArray expected;
    const QDeadlineTimer stall(1000);
    for (int i = 0; i < 100 || !stall.hasExpired(); ++i) {
        for (PtyPair *line : {&lineA, &lineB}) {
            const QByteArray telegram = (line == &lineA ? 'A' : 'B') + QByteArray::number(i) + ' ';
            expected += telegram;
            line->Write(telegram);
            const QDeadlineTimer arrival(20000);
            while (hub.Arrivals().WaitingOnAllPorts() < expected.size() && !arrival.hasExpired())
                QThread::yieldCurrentThread();
        }
    }
    expected = expected.right(RichTextModel::MaxViewLength / 2);
    const auto shown = [&] {
        loop.Pass();
        return views.View(Representation::Ascii).Bytes().toByteArray().right(expected.size());
    };
    QTRY_COMPARE(shown(), expected);
}

void tst_program::AHundredUnplugs()
{
    constexpr int Rounds = 100;
    QList<std::shared_ptr<PtyPair>> lines;
    ProgramBench bench;
    QList<ProgramBench::Step> steps;
    int round = 0;
    const auto plugAndStart = [&] {
        lines << std::make_shared<PtyPair>();
        bench.store.texts[QStringLiteral("Ports/COM1")] = lines.last()->DeviceName();
        bench.program->Execute(Command::Start);
        ++round;
    };
    const auto unplug = [&] { lines.last()->Unplug(); };
    for (int i = 0; i < Rounds; ++i) {
        steps << ProgramBench::Step{plugAndStart, [&] { return bench.Running(); }};
        steps << ProgramBench::Step{
            [&] { lines.last()->Write("reading"); },
            [&] { return bench.View(Representation::Ascii).End() >= 7 * round; }};
        steps << ProgramBench::Step{
            unplug, [&] { return !bench.Running() && bench.prompts.shown.size() == round; }};
    }
    QElapsedTimer idle;
    double idleCpu = 0;
    steps << ProgramBench::Step{[&] {
                                    idle.start();
                                    idleCpu = CpuSeconds();
                                },
                                [&] { return idle.hasExpired(500); }};
    steps << ProgramBench::Step{[&] { idleCpu = CpuSeconds() - idleCpu; }, AtOnce};
    const int status = bench.Run(steps);
    QVERIFY(!bench.stuck);
    QCOMPARE(bench.prompts.shown.size(), Rounds);
    for (const MessagePrompt &prompt : bench.prompts.shown) {
        QCOMPARE(prompt.icon, PromptIcon::Critical);
        QVERIFY2(prompt.text.startsWith("The port COM1 was disconnected. "),
                 qPrintable(prompt.text));
    }
    QVERIFY2(idleCpu < 0.25, qPrintable(QString::number(idleCpu)));
    QCOMPARE(status, 1);
}

void tst_program::StagedTextAppearsAfterTheNextStart()
{
    PtyPair lineA;
    ProgramBench bench;
    bench.AssignPort(1, lineA.DeviceName());
    QByteArray afterStop;
    const auto receiveAndStop = [&] {
        lineA.Write("late");
        bench.program->Execute(Command::Stop);
        afterStop = bench.Shown();
    };
    bench.Run({{[&] { bench.program->Execute(Command::Start); }, [&] { return bench.Running(); }},
               {receiveAndStop, AtOnce},
               {[&] { bench.program->Execute(Command::Start); },
                [&] { return bench.Shown() == "late"; }}});
    QVERIFY(!bench.stuck);
    QCOMPARE(afterStop, QByteArray());
}

void tst_program::AMissingDeviceIsReportedAndTheProgramGoesOn()
{
    ProgramBench bench;
    bench.AssignPort(1, "/dev/no-such-device");
    bench.line.start = true;
    const int status = bench.Run({{[] {}, [&] { return bench.prompts.shown.size() == 1; }}});
    QVERIFY(!bench.stuck);
    const QString text = bench.prompts.shown.first().text;
    QVERIFY2(text.startsWith("The port COM1 could not be opened. The system's original error "
                             "message is: \""),
             qPrintable(text));
    QVERIFY2(text.contains("/dev/no-such-device"), qPrintable(text));
    QCOMPARE(status, 1);
}

void tst_program::BrokenSettingsEndTheStart()
{
    ProgramBench bench;
    bench.store.texts[QStringLiteral("Communication/CommSpeed")] = QStringLiteral("fast");
    const auto before = bench.store.texts;
    QCOMPARE(bench.Run({}), 1);
    QCOMPARE(bench.prompts.shown.size(), 1);
    for (const char *part : {"\"CommSpeed\"", "\"Communication\"", "\"fast\""})
        QVERIFY(bench.prompts.shown.first().text.contains(part));
    QCOMPARE(bench.store.texts, before);
    QVERIFY(!bench.program->Window());
}

void tst_program::OptionsStopCommunicationFirst()
{
    PtyPair lineA;
    ProgramBench bench;
    bench.AssignPort(1, lineA.DeviceName());
    bool runningMeanwhile = true;
    bench.Run({{[&] { bench.program->Execute(Command::Start); }, [&] { return bench.Running(); }},
               {[&] {
                    bench.InOptions(
                        [&](const OptionsDesk &) { runningMeanwhile = bench.Running(); });
                },
                AtOnce}});
    QVERIFY(!bench.stuck);
    QVERIFY(!runningMeanwhile);
}

void tst_program::AModifiedProjectAsksBeforeClosing_data()
{
    QTest::addColumn<PromptAnswer>("answer");
    QTest::addColumn<bool>("stays");
    QTest::newRow("No leaves") << PromptAnswer::No << false;
    QTest::newRow("Cancel stays") << PromptAnswer::Cancel << true;
    QTest::newRow("Yes stays if the save dialog is cancelled") << PromptAnswer::Yes << true;
}

void tst_program::AModifiedProjectAsksBeforeClosing()
{
    QFETCH(PromptAnswer, answer);
    QFETCH(bool, stays);
    ProgramBench bench;
    bench.prompts.answers = {answer};
    bool stayed = false;
    const auto close = [&] {
        bench.program->Window()->SetProjectModified();
        bench.program->Execute(Command::Exit);
        stayed = bench.program->Window()->isVisible();
    };
    bench.Run({{close, AtOnce}});
    QCOMPARE(stayed, stays);
    QCOMPARE(bench.prompts.shown.first(),
             (MessagePrompt{"Save changes for this project?", PromptIcon::Question,
                            PromptButtons::YesNoCancel, PromptAnswer::No, "Serimonde"}));
    QCOMPARE(bench.store.flushes, 1);
}

void tst_program::TheRunsOwnSettingsAreNotStored()
{
    PtyPair lineA;
    ProgramBench bench;
    bench.store.texts[QStringLiteral("Communication/CommPortA")] = QStringLiteral("9");
    bench.AssignPort(9, lineA.DeviceName());
    bench.line.mode = CommMode::SendReceive;
    bench.line.line = ParseLineSettings(u"921600,N,8,2");
    bench.line.start = true;
    bench.Run({{[] {}, [&] { return bench.Running(); }}});
    QVERIFY(!bench.stuck);
    QCOMPARE(bench.store.texts["Communication/CommSpeed"], QStringLiteral("5"));
    QCOMPARE(bench.store.texts["Communication/CommStopBits"], QStringLiteral("0"));
    QCOMPARE(bench.store.texts["Communication/CommPortA"], QStringLiteral("9"));
    QVERIFY(!bench.store.texts.contains("Ports/COM9"));
}

void tst_program::AnUnattendedRunLeavesItsPicture()
{
    const QTemporaryDir folder;
    ProgramBench bench;
    bench.line.quitAfterSeconds = 0.05;
    bench.line.screenshot = folder.filePath("a.png");
    const int status = bench.Run({{[] {}, [] { return false; }}});
    QCOMPARE(status, 0);
    const QImage picture(bench.line.screenshot);
    QVERIFY(picture.width() >= 200 && picture.height() > 100);
}

void tst_program::APictureThatCannotBeWrittenIsReported()
{
    ProgramBench bench;
    for (const char *path : {"/no-such-folder/a.png", "/dev/null", "/"}) {
        bench.prompts.shown.clear();
        bench.line.screenshot = path;
        QCOMPARE(bench.Run({}), 1);
        QVERIFY(bench.prompts.shown.first().text.contains(path));
    }
}

void tst_program::TheDemoIsLive_data()
{
    QTest::addColumn<int>("mode");
    QTest::newRow("talking to the instrument") << 0;
    QTest::newRow("listening to two instruments") << 1;
    QTest::newRow("listening and answering") << 2;
}

void tst_program::TheDemoIsLive()
{
    QFETCH(int, mode);
    ProgramBench bench;
    bench.store.texts = {{"Communication/CommPortA", "77"}, {"Communication/CommSpeed", "14"}};
    bench.line.demo = true;
    bench.line.mode = CommMode(mode);
    const auto styleIsThere = [&](int index) {
        for (const RichTextModel::StyleRun &run : bench.View(Representation::Hex).Runs()) {
            if (run.style == bench.program->Settings().display.styles[size_t(index)])
                return true;
        }
        return false;
    };
    bench.Run({{[] {}, [&] { return styleIsThere(0) && styleIsThere(1) && styleIsThere(2); }}});
    QVERIFY(!bench.stuck);
    QVERIFY(bench.prompts.shown.isEmpty());
    QCOMPARE(bench.store.texts["Communication/CommPortA"], QStringLiteral("77"));
}

void tst_program::TheListsOfTheDemoAreUsed()
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
    bench.Run({{[] {}, [&] { return bench.Running(); }},
               {send, [&] { return bench.Shown().contains("[the instrument has named itself]"); }},
               {tick, [&] { return bench.Shown().contains("[a reading]"); }}});
    QVERIFY(!bench.stuck);
    QVERIFY(bench.Shown().contains("*IDN?\r\n"));
    QVERIFY(modified);
    QCOMPARE(bench.store.texts["Lists/SendNameWidth"], QStringLiteral("140"));
}

QTEST_MAIN(tst_program)
#include "tst_program.moc"
