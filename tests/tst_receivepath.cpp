// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "app/MainLoop.h"
#include "platform/SystemClock.h"
#include "support/CommunicationBench.h"

#include <QTest>
#include <QTimer>

/// From a port's event to the staging boxes, the log and the answer.
class tst_receivepath : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void DirectionsOfTheModes_data();
    void DirectionsOfTheModes();
    void OtherEventsChangeNothing();
    void AFullBufferIsThrownAway_data();
    void AFullBufferIsThrownAway();
    void ADetectionEndsItsChunk_data();
    void ADetectionEndsItsChunk();
    void AllFormsReachBoxesAndLogs();
    void Stamps_data();
    void Stamps();
    void AStampKnowsItsDirectionAcrossARestart();
    void DateSeparators_data();
    void DateSeparators();
    void Transmitting_data();
    void Transmitting();
    void AFailedSendIsTold();
    void AFailedAnswerIsToldAfterTheEvent();
    void OnlyARunningLoopMovesText();
};

void tst_receivepath::DirectionsOfTheModes_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QByteArray>("staged");
    QTest::newRow("mode 0 hears channel 1 alone, as direction 2") << 0 << QByteArray("1:a");
    QTest::newRow("mode 1 hears both") << 1 << QByteArray("0:a|1:b");
    QTest::newRow("mode 2 hears both") << 2 << QByteArray("0:a|1:b");
}

void tst_receivepath::DirectionsOfTheModes()
{
    QFETCH(int, mode);
    CommunicationBench bench;
    bench.Open(CommMode(mode));
    bench.portA.Receive("a");
    bench.portB.Receive("b");
    QTEST(bench.StagedAscii(), "staged");
}

void tst_receivepath::OtherEventsChangeNothing()
{
    CommunicationBench bench;
    bench.Open(CommMode::SendReceive);
    bench.portA.waiting = "waits";
    for (const int event : {1001, 1004, 1006, 1008, 1009, 1010, 1011, 3, 4, 5, 6, 7, 1, 0, -1})
        bench.portA.Raise(event);
    QCOMPARE(bench.StagedAscii(), QByteArray());
    bench.portA.Raise(2);
    QCOMPARE(bench.StagedAscii(), QByteArray("1:waits"));
    bench.portA.Raise(2); // with nothing waiting
    QCOMPARE(bench.StagedAscii(), QByteArray("1:waits"));
}

void tst_receivepath::AFullBufferIsThrownAway_data()
{
    QTest::addColumn<int>("waiting");
    QTest::addColumn<int>("shown");
    QTest::newRow("511 are shown") << 511 << 511;
    QTest::newRow("512 are discarded") << 512 << 0;
    QTest::newRow("more are discarded") << 600 << 0;
}

void tst_receivepath::AFullBufferIsThrownAway()
{
    QFETCH(int, waiting);
    CommunicationBench bench;
    bench.Open(CommMode::SendReceive);
    bench.portA.Receive(QByteArray(waiting, 'x'));
    QTEST(int(bench.Staged(Representation::Ascii).size()), "shown");
    QCOMPARE(bench.portA.waiting, QByteArray());
    QVERIFY(bench.prompts.shown.isEmpty());
}

void tst_receivepath::ADetectionEndsItsChunk_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QByteArray>("staged");
    QTest::addColumn<QByteArray>("sent");
    QTest::newRow("mode 0 answers in the other colour")
        << 0 << QByteArray("1:1ask|c: asked |0:YES|1:567890") << QByteArray("YES");
    QTest::newRow("mode 1 comments but never answers")
        << 1 << QByteArray("0:1ask|c: asked |0:567890") << QByteArray();
    QTest::newRow("mode 2 answers on channel 1")
        << 2 << QByteArray("0:1ask|c: asked |0:YES567890") << QByteArray("YES");
}

void tst_receivepath::ADetectionEndsItsChunk()
{
    QFETCH(int, mode);
    CommunicationBench bench;
    bench.Watch("ask", "asked", "YES");
    bench.Open(CommMode(mode));
    bench.portA.Receive("1ask567890");
    QTEST(bench.StagedAscii(), "staged");
    QTEST(bench.portA.sent, "sent");
    QCOMPARE(bench.portB.sent, QByteArray());
}

void tst_receivepath::AllFormsReachBoxesAndLogs()
{
    CommunicationBench bench;
    bench.Watch(QByteArray("\0", 1), "nil");
    bench.Open(CommMode::SendReceive);
    bench.portA.Receive(QByteArray("A\0", 2));
    const QByteArrayList expected = {"A\x81 nil ", "41 00  nil ", "065 000  nil ",
                                     "01000001 00000000  nil "};
    for (const Representation r : AllRepresentations) {
        QCOMPARE(bench.Staged(r), expected[int(r)]);
        QCOMPARE(bench.log.texts[size_t(r)], expected[int(r)]);
    }
}

void tst_receivepath::Stamps_data()
{
    QTest::addColumn<bool>("newLine");
    QTest::addColumn<bool>("date");
    QTest::addColumn<bool>("time");
    QTest::addColumn<QByteArray>("stamp");
    QTest::newRow("a line break alone has no effect") << true << false << false << QByteArray();
    QTest::newRow("all three") << true << true << true << QByteArray("\r\n5/11/26 07:13:49  - ");
    QTest::newRow("the date") << false << true << false << QByteArray("5/11/26  - ");
    QTest::newRow("the time") << true << false << true << QByteArray("\r\n07:13:49  - ");
}

void tst_receivepath::Stamps()
{
    QFETCH(QByteArray, stamp);
    CommunicationBench bench;
    QFETCH(bool, newLine);
    QFETCH(bool, date);
    QFETCH(bool, time);
    bench.settings.stamp = {newLine, date, time};
    bench.Open(CommMode::SendReceive);
    bench.portA.Receive("a");
    bench.portA.Receive("b"); // the same direction again: no stamp
    bench.communication.Transmit("C");
    bench.communication.Transmit("D"); // each sent chunk has its own
    bench.portA.Receive("e");
    const QByteArray c = stamp.isEmpty() ? QByteArray() : "c:" + stamp + '|';
    const QByteArray between = stamp.isEmpty() ? QByteArray("0:CD|") : "0:C|" + c + "0:D|";
    QCOMPARE(bench.StagedAscii(), c + "1:ab|" + c + between + c + "1:e");
    QVERIFY(bench.log.texts[3].startsWith(stamp));
}

void tst_receivepath::AStampKnowsItsDirectionAcrossARestart()
{
    CommunicationBench bench;
    bench.settings.stamp = {false, false, true};
    bench.Open(CommMode::MonitorReceiveOnly);
    bench.portA.Receive("a");
    bench.communication.ClosePorts();
    bench.communication.OpenPorts();
    bench.portA.Receive("b");
    QCOMPARE(bench.StagedAscii(), QByteArray("0:b"));
    bench.portB.Receive("c");
    QCOMPARE(bench.StagedAscii(), QByteArray("0:b|c:07:13:49  - |1:c"));
}

void tst_receivepath::DateSeparators_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QString>("separator");
    QTest::newRow("strokes") << "d/M/yy"
                             << "/";
    QTest::newRow("full stops") << "dd.MM.yyyy"
                                << ".";
    QTest::newRow("hyphens") << "yyyy-MM-dd"
                             << "-";
    QTest::newRow("full stops with blanks") << "d. M. yyyy"
                                            << ".";
    QTest::newRow("nothing between") << "ddMMyy"
                                     << "/";
    QTest::newRow("what no view can show") << QStringLiteral("d\u200F/\u200FM/y") << "/";
    QTest::newRow("no format") << ""
                               << "/";
}

void tst_receivepath::DateSeparators()
{
    QFETCH(QString, format);
    QTEST(SystemClock::SeparatorOf(format), "separator");
}

void tst_receivepath::Transmitting_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("opens");
    QTest::addColumn<QByteArray>("sent");
    QTest::newRow("opens first, then sends") << 0 << true << QByteArray("hi");
    QTest::newRow("nothing goes out in mode 1, but communication starts")
        << 1 << true << QByteArray();
    QTest::newRow("mode 2 sends on channel 1") << 2 << true << QByteArray("hi");
    QTest::newRow("nothing goes out if the port does not open") << 0 << false << QByteArray();
}

void tst_receivepath::Transmitting()
{
    QFETCH(int, mode);
    QFETCH(bool, opens);
    QFETCH(QByteArray, sent);
    CommunicationBench bench;
    bench.settings.comm.stored.CommType = mode;
    if (!opens)
        bench.portA.failOpen = PortFailure{0, "no"};
    bench.communication.Transmit("hi");
    QCOMPARE(bench.communication.Running(), opens);
    QCOMPARE(bench.portA.sent, sent);
    QCOMPARE(bench.StagedAscii(), sent.isEmpty() ? QByteArray() : QByteArray("0:hi"));
    QCOMPARE(bench.prompts.shown.size(), opens ? 0 : 1);
}

void tst_receivepath::AFailedSendIsTold()
{
    CommunicationBench bench;
    bench.portA.failOutput = PortFailure{0, "COM1 takes no data"};
    bench.communication.Transmit("hi");
    QCOMPARE(bench.prompts.shown, QList{ExclamationMessage("COM1 takes no data")});
    QVERIFY(bench.communication.Running());
}

void tst_receivepath::AFailedAnswerIsToldAfterTheEvent()
{
    CommunicationBench bench;
    bench.Watch("?", "asked", "YES");
    bench.Open(CommMode::SendReceive);
    bench.portA.failOutput = PortFailure{0, "COM1 takes no data"};
    // While the box stands, more of the same comes in: it must neither nest nor pile up boxes.
    bench.prompts.whileStanding = [&] { bench.portA.Receive("again?"); };
    bench.portA.Receive("ready?");
    QVERIFY(bench.prompts.shown.isEmpty());
    QTRY_COMPARE(bench.prompts.shown.size(), 1);
    QCOMPARE(bench.prompts.shown.first(), ExclamationMessage("COM1 takes no data"));
    QCOMPARE(bench.StagedAscii(), QByteArray("1:ready?|c: asked |0:YES|1:again?|c: asked |0:YES"));

    bench.prompts.whileStanding = [] {};
    bench.portA.Receive("and again?"); // a new failure after the answered box is told again
    QTRY_COMPARE(bench.prompts.shown.size(), 2);
}

void tst_receivepath::OnlyARunningLoopMovesText()
{
    CommunicationBench bench;
    MainLoop loop(bench.settings, bench.communication, bench.views);
    RichTextModel &view = bench.views.View(Representation::Ascii);
    bench.views.StagingBox(Representation::Ascii).AppendStyled("staged", {});
    QCOMPARE(loop.Pass(), 100);
    QCOMPARE(view.Length(), 0);
    bench.Open(CommMode::SendReceive);
    bench.portA.Receive("live");
    QCOMPARE(loop.Pass(), 10);
    QCOMPARE(view.Bytes().toByteArray(), QByteArray("stagedlive"));

    // A view that is too long is cut by the next flush that brings something, and only then.
    view.SetText(QByteArray(130000, 'x'), {});
    loop.Pass();
    QCOMPARE(view.Length(), 130000);
    bench.portA.Receive("y");
    loop.Pass();
    QCOMPARE(view.Length(), 130001 - 2048);

    QTimer::singleShot(0, &bench.communication, [&] { bench.settings.QuitRequested = true; });
    loop.Run();
}

QTEST_GUILESS_MAIN(tst_receivepath)
#include "tst_receivepath.moc"
