// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "app/SequenceLists.h"
#include "controls/SQReceiveSequenceList.h"
#include "controls/SQSendSequenceList.h"
#include "support/CommunicationBench.h"

#include <QSignalSpy>
#include <QTest>

namespace
{

/// Both lists over tables of three send and two receive sequences, with scripted ports.
class WiringBench
{
  public:
    CommunicationBench comm;
    SQSendSequenceList sendList;
    SQReceiveSequenceList receiveList;
    SequenceLists lists{
        {comm.settings, comm.tables, comm.communication, comm.prompts, sendList, receiveList}};
    int changes = 0;
    QStringList edits; ///< such as "send 2"

    WiringBench()
    {
        comm.tables.EditSend(0) = {"ask", "Hi\r", {}};
        comm.tables.EditSend(1) = {"binary", QByteArray("\0\xFF", 2), {}};
        comm.tables.EditSend(2) = {"last", "x", {}};
        comm.tables.SetSendCount(3);
        AddReceive({"question", "?", {}, {}, 2, "[asked]"});
        AddReceive({"plain", "p", {}, {}, 0, {}});
        QObject::connect(&lists, &SequenceLists::ProjectChanged, &lists, [this] { ++changes; });
        lists.EditSend = [this] { edits << Edit("send", comm.tables.CurrentSendIndex); };
        lists.EditReceive = [this] { edits << Edit("receive", comm.tables.CurrentReceiveIndex); };
        lists.Refresh();
    }

    void AddReceive(const ReceiveSequence &record)
    {
        comm.tables.EditReceive(comm.tables.ReceiveCount()) = record;
        comm.tables.SetReceiveCount(comm.tables.ReceiveCount() + 1);
    }
    /// Rows as name, sequence and third value.
    static QStringList Rows(const SequenceList &list)
    {
        QStringList rows;
        for (int i = 0; i < list.Count(); ++i) {
            const SequenceListRow &row = list.RowAt(i);
            rows << QString::fromLatin1(row.name + '/' + row.sequence + '/' + row.answerName);
        }
        return rows;
    }
    void Show(qint16 display)
    {
        comm.settings.Display = display;
        lists.Refresh();
    }
    int Active(int index) const { return comm.tables.ReceiveAt(index).Active; }

  private:
    static QString Edit(const char *kind, int index)
    {
        return QStringLiteral("%1 %2").arg(QLatin1String(kind)).arg(index);
    }
};

} // namespace

class tst_sequencewiring : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void TheListsShowEveryRepresentation_data();
    void TheListsShowEveryRepresentation();
    void AnswerNamesFollowTheirSequences();
    void SendingStartsCommunicationFirst();
    void SendingInEachMode_data();
    void SendingInEachMode();
    void NothingIsSentWhenThePortsStayClosed();
    void ChangingATickMarksTheProjectModified();
    void OnlyOneIsActive();
    void EditingTellsWhichRecord();
    void OnlyAnEmptyRecordIsAnEmptyRow();
    void AFullTableTakesNoMore();
};

void tst_sequencewiring::TheListsShowEveryRepresentation_data()
{
    QTest::addColumn<int>("display");
    QTest::addColumn<QString>("ask");
    QTest::addColumn<QString>("question");
    QTest::newRow("ASCII") << 0 << "ask/H | i | \u0081/"
                           << "question/?/binary";
    QTest::newRow("HEX") << 1 << "ask/48 | 69 | 0D/"
                         << "question/3F/binary";
    QTest::newRow("Decimal") << 2 << "ask/072 | 105 | 013/"
                             << "question/063/binary";
    QTest::newRow("Binary") << 3 << "ask/01001000 | 01101001 | 00001101/"
                            << "question/00111111/binary";
    QTest::newRow("without a meaning") << 4 << "ask/H | i | \u0081/"
                                       << "question/?/binary";
    QTest::newRow("negative") << -1 << "ask/H | i | \u0081/"
                              << "question/?/binary";
}

void tst_sequencewiring::TheListsShowEveryRepresentation()
{
    QFETCH(int, display);
    WiringBench bench;
    bench.Show(1);
    bench.Show(qint16(display));
    QCOMPARE(bench.Rows(bench.sendList).size(), 3);
    QTEST(bench.Rows(bench.sendList).first(), "ask");
    QCOMPARE(bench.Rows(bench.receiveList).size(), 2);
    QTEST(bench.Rows(bench.receiveList).first(), "question");
    QCOMPARE(bench.receiveList.RowAt(0).comment, QByteArray("[asked]"));
}

void tst_sequencewiring::AnswerNamesFollowTheirSequences()
{
    WiringBench bench;
    bench.comm.tables.EditSend(1).Name = "renamed";
    bench.comm.tables.EditReceive(1).AnswerName = "left over";
    for (const int answer : {-1, 1026, 32767, -32768})
        bench.AddReceive({"outside", "o", {}, "left over", qint16(answer), {}});
    bench.lists.RefreshEventList();
    QCOMPARE(bench.Rows(bench.receiveList),
             (QStringList{"question/?/renamed", "plain/p/", "outside/o/", "outside/o/",
                          "outside/o/", "outside/o/"}));
    QCOMPARE(bench.comm.tables.ReceiveAt(0).AnswerName, QByteArray("renamed"));
    QCOMPARE(bench.comm.tables.ReceiveAt(3).AnswerName, QByteArray());
}

void tst_sequencewiring::SendingStartsCommunicationFirst()
{
    WiringBench bench;
    QVERIFY(!bench.comm.communication.Running());
    Q_EMIT bench.sendList.SendRequested(1);
    QVERIFY(bench.comm.communication.Running());
    QCOMPARE(bench.comm.portA.sent, QByteArray("\0\xFF", 2));
    Q_EMIT bench.sendList.SendRequested(0);
    QCOMPARE(bench.comm.portA.sent, QByteArray("\0\xFFHi\r", 5));
    QCOMPARE(bench.comm.StagedAscii(), QByteArray("0:\x81\xFFHi\r"));
}

void tst_sequencewiring::SendingInEachMode_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QByteArray>("sent");
    QTest::newRow("sending and receiving") << 0 << QByteArray("x");
    QTest::newRow("receiving only") << 1 << QByteArray();
    QTest::newRow("receiving and modifying") << 2 << QByteArray("x");
}

void tst_sequencewiring::SendingInEachMode()
{
    QFETCH(int, mode);
    WiringBench bench;
    bench.comm.settings.comm.stored.CommType = mode;
    Q_EMIT bench.sendList.SendRequested(2);
    QVERIFY(bench.comm.communication.Running());
    QTEST(bench.comm.portA.sent, "sent");
    QTEST(bench.comm.Staged(Representation::Ascii), "sent");
    QCOMPARE(bench.comm.portB.sent, QByteArray());
}

void tst_sequencewiring::NothingIsSentWhenThePortsStayClosed()
{
    WiringBench bench;
    bench.comm.portA.failOpen = PortFailure{8005, "in use"};
    Q_EMIT bench.sendList.SendRequested(0);
    QVERIFY(!bench.comm.communication.Running());
    QCOMPARE(bench.comm.portA.sent, QByteArray());
    QCOMPARE(bench.comm.prompts.shown.size(), 1);
}

void tst_sequencewiring::ChangingATickMarksTheProjectModified()
{
    WiringBench bench;
    Q_EMIT bench.receiveList.ActivationRequested(1, true); // as it is
    QCOMPARE(bench.changes, 0);
    Q_EMIT bench.receiveList.ActivationRequested(1, false);
    QCOMPARE(bench.changes, 1);
    QCOMPARE(bench.Active(1), 0);
    QVERIFY(!bench.receiveList.RowAt(1).active);
    QVERIFY(bench.receiveList.RowAt(0).active);
    Q_EMIT bench.receiveList.ActivationRequested(1, true);
    QCOMPARE(bench.changes, 2);
    QCOMPARE(bench.Active(1), 1);
    QVERIFY(bench.receiveList.RowAt(1).active);
}

void tst_sequencewiring::OnlyOneIsActive()
{
    WiringBench bench;
    for (const int value : {0, 2, -1}) {
        bench.comm.tables.EditReceive(0).Active = qint16(value);
        bench.lists.RefreshEventList();
        QVERIFY(!bench.receiveList.RowAt(0).active);
    }
}

void tst_sequencewiring::EditingTellsWhichRecord()
{
    WiringBench bench;
    Q_EMIT bench.sendList.EditRequested(2);
    Q_EMIT bench.receiveList.EditRequested(1);
    Q_EMIT bench.sendList.EmptyRowRequested(3);
    Q_EMIT bench.receiveList.EmptyRowRequested(2);
    QCOMPARE(bench.edits, (QStringList{"send 2", "receive 1", "send 3", "receive 2"}));
    QCOMPARE(bench.changes, 0);
}

void tst_sequencewiring::OnlyAnEmptyRecordIsAnEmptyRow()
{
    WiringBench bench;
    bench.comm.tables.EditSend(3).Name = "held";
    bench.comm.tables.EditReceive(2).Sequence = "held";
    Q_EMIT bench.sendList.EmptyRowRequested(3);
    Q_EMIT bench.sendList.EmptyRowRequested(0);
    Q_EMIT bench.receiveList.EmptyRowRequested(2);
    QCOMPARE(bench.edits, QStringList());
}

void tst_sequencewiring::AFullTableTakesNoMore()
{
    WiringBench bench;
    bench.comm.tables.SetSendCount(1025);
    bench.comm.tables.SetReceiveCount(1025);
    bench.lists.Refresh();
    Q_EMIT bench.sendList.EmptyRowRequested(1025);
    Q_EMIT bench.receiveList.EmptyRowRequested(1025);
    QCOMPARE(bench.edits, QStringList());
    const MessagePrompt full = {
        .text = "A project cannot hold more than 1025 send and 1025 receive sequences.",
        .icon = PromptIcon::Exclamation};
    QCOMPARE(bench.comm.prompts.shown, (QList<MessagePrompt>{full, full}));
}

QTEST_MAIN(tst_sequencewiring)
#include "tst_sequencewiring.moc"
