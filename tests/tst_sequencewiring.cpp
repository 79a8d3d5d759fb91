// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SQReceiveSequenceList.h"
#include "SQSendSequenceList.h"
#include "SendRepeats.h"
#include "SequenceLists.h"
#include "SequenceSettings.h"
#include "support/CommunicationBench.h"
#include "support/FullTables.h"

#include <QApplication>
#include <QPushButton>
#include <QTest>
#include <QTimer>

namespace
{

/// Both lists over tables of three send and two receive sequences, with scripted ports.
class WiringBench
{
  public:
    CommunicationBench comm;
    SequenceSettings form;
    SQSendSequenceList sendList;
    SQReceiveSequenceList receiveList;
    SequenceLists lists{
        {form, comm.tables, comm.communication, comm.prompts, sendList, receiveList}};
    int changes = 0;
    QStringList edits; ///< such as "send 2"

    WiringBench()
    {
        comm.tables.AddSend({"ask", "Hi\r", {}});
        comm.tables.AddSend({"binary", QByteArray("\0\xFF", 2), {}});
        comm.tables.AddSend({"last", "x", {}});
        comm.tables.AddReceive({"question", "?", {}, {}, 2, "[asked]"});
        comm.tables.AddReceive({"plain", "p", {}, {}, 0, {}});
        QObject::connect(&lists, &SequenceLists::ProjectChanged, &lists, [this] { ++changes; });
        lists.EditSend = [this] { Note("send ", comm.tables.CurrentSendIndex); };
        lists.EditReceive = [this] { Note("receive ", comm.tables.CurrentReceiveIndex); };
        lists.Refresh();
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

  private:
    void Note(const QString &list, int index) { edits << list + QString::number(index); }
};

} // namespace

class tst_sequencewiring : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void TheListsShowEveryRepresentation()
    {
        const struct {
            qint16 display;
            QString ask, question;
        } displays[] = {
            {1, "ask/48 | 69 | 0D/", "question/3F/binary"},
            {2, "ask/072 | 105 | 013/", "question/063/binary"},
            {RepresentationCount, "ask/H | i | \u0081/", "question/?/binary"}, // without a meaning
            {3, "ask/01001000 | 01101001 | 00001101/", "question/00111111/binary"},
            {-1, "ask/H | i | \u0081/", "question/?/binary"},
        };
        WiringBench bench;
        for (const auto &[display, ask, question] : displays) {
            bench.form.Display = display;
            bench.lists.Refresh();
            QCOMPARE(bench.Rows(bench.sendList).size(), 3);
            QCOMPARE(bench.Rows(bench.sendList).first(), ask);
            QCOMPARE(bench.Rows(bench.receiveList).size(), 2);
            QCOMPARE(bench.Rows(bench.receiveList).first(), question);
            QCOMPARE(bench.sendList.RowAt(0).bytes, ask.contains("i |") ? "Hi\r" : "");
        }
        QCOMPARE(bench.receiveList.RowAt(0).comment, "[asked]");
    }

    void AnswerNamesFollowTheirSequences()
    {
        WiringBench bench;
        bench.comm.tables.ChangeSend(1, [](SendSequence &record) { record.Name = "renamed"; });
        bench.comm.tables.AddReceive({"outside", "o", {}, "left over", 32767, {}});
        bench.lists.RefreshEventList();
        QCOMPARE(bench.Rows(bench.receiveList),
                 QStringList({"question/?/renamed", "plain/p/", "outside/o/"}));
        QCOMPARE(bench.comm.tables.ReceiveAt(0).AnswerName, "renamed");
    }

    void SendingInEachMode()
    {
        const QByteArray bytes("\0\xFFHi\r", 5);
        for (const int mode : {0, 1}) { // the second receives only
            WiringBench bench;
            bench.comm.settings.comm.stored.CommType = mode;
            Q_EMIT bench.sendList.SendRequested(1); // starts the communication first
            QVERIFY(bench.comm.communication.Running());
            Q_EMIT bench.sendList.SendRequested(0);
            QCOMPARE(bench.comm.portA.line.sent, mode == 1 ? QByteArray() : bytes);
            QCOMPARE(bench.comm.StagedAscii(), mode == 1 ? "" : "0:\x81\xFFHi\r");
            QCOMPARE(bench.comm.portB.line.sent, QByteArray());
        }
    }

    void ARepeatBelongsToItsSequence()
    {
        WiringBench bench;
        bool canStop = true;
        SendRepeats repeats({bench.comm.communication, bench.comm.tables, bench.sendList,
                             [&](bool can) { canStop = can; }});
        const auto repeat = [&](int index) {
            QTimer::singleShot(0, &bench.sendList, [] {
                QApplication::activeModalWidget()->findChild<QPushButton *>("cmdOK")->click();
            });
            Q_EMIT bench.sendList.RepeatRequested(index);
            bench.comm.lines.Pass(bench.comm.portA.line.now.monotonic);
            return bench.comm.communication.Repeats().size();
        };
        const auto captions = [&] { // what the marks of the rows do
            QStringList texts;
            for (int i = 0; i < 3; ++i)
                texts << bench.sendList.model()
                             ->index(i, 0)
                             .data(Qt::AccessibleTextRole)
                             .toString()
                             .section(u' ', 0, 0);
            return texts.join(u' ');
        };
        QVERIFY(!canStop);
        QCOMPARE(repeat(1), 1); // starts communication first
        QCOMPARE(repeat(2), 2);
        QCOMPARE(bench.comm.portA.line.sent, QByteArray("\0\xFFx", 3));
        QVERIFY(canStop);
        bench.comm.tables.CurrentSendIndex = 0; // the rows behind move up
        bench.comm.tables.DeleteSendSequence();
        bench.lists.Refresh();
        QCOMPARE(captions(), "Stop Stop New");
        Q_EMIT bench.sendList.StopRequested(0);
        QCOMPARE(captions(), "Send Stop New");
        bench.comm.tables.ChangeSend(1, [](SendSequence &record) { record.Sequence = "y"; });
        QCOMPARE(bench.comm.communication.Repeats().size(), 0);
        QVERIFY(!canStop);
        repeat(0);
        QTest::keyClick(&bench.receiveList, Qt::Key_F8); // in any window
        QCOMPARE(captions(), "Send Send New");
    }

    void NothingIsSentWhenThePortsStayClosed()
    {
        WiringBench bench;
        bench.comm.portA.failOpen = Failure{"in use", 8005};
        Q_EMIT bench.sendList.SendRequested(0);
        QCOMPARE(bench.comm.portA.line.sent, "");
        QCOMPARE(bench.comm.prompts.shown.size(), 1);
    }

    void ChangingATickMarksTheProjectModified()
    {
        WiringBench bench;
        const std::pair<bool, int> ticks[] = {
            {true, 0}, {false, 1}, {true, 2}}; // the first is as it is
        for (const auto &[active, changes] : ticks) {
            Q_EMIT bench.receiveList.ActivationRequested(1, active);
            QCOMPARE(bench.changes, changes);
            QCOMPARE(int(bench.comm.tables.ReceiveAt(1).Active), active ? 1 : 0);
            QCOMPARE(bench.receiveList.RowAt(1).active, active);
            QVERIFY(bench.receiveList.RowAt(0).active);
        }
        bench.comm.tables.ChangeReceive( // 1 alone is active
            0, [](ReceiveSequence &record) { record.Active = -1; });
        bench.lists.RefreshEventList();
        QVERIFY(!bench.receiveList.RowAt(0).active);
    }

    void EditingTellsWhichRecord()
    {
        WiringBench bench;
        Q_EMIT bench.sendList.EditRequested(2);
        Q_EMIT bench.receiveList.EditRequested(1);
        Q_EMIT bench.sendList.EmptyRowRequested(3);
        Q_EMIT bench.receiveList.EmptyRowRequested(2);
        QCOMPARE(bench.edits, (QStringList{"send 2", "receive 1", "send 3", "receive 2"}));
        QCOMPARE(bench.changes, 0);
        bench.edits.clear();
        // Only an empty record is an empty row.
        bench.comm.tables.ChangeSend(3, [](SendSequence &record) { record.Name = "held"; });
        bench.comm.tables.ChangeReceive(2,
                                        [](ReceiveSequence &record) { record.Sequence = "held"; });
        Q_EMIT bench.sendList.EmptyRowRequested(3);
        Q_EMIT bench.sendList.EmptyRowRequested(0);
        Q_EMIT bench.receiveList.EmptyRowRequested(2);
        QCOMPARE(bench.edits, QStringList());
    }

    void AFullTableTakesNoMore()
    {
        WiringBench bench;
        FillSendTable(bench.comm.tables);
        FillReceiveTable(bench.comm.tables);
        bench.lists.Refresh();
        Q_EMIT bench.sendList.EmptyRowRequested(1025);
        Q_EMIT bench.receiveList.EmptyRowRequested(1025);
        QCOMPARE(bench.edits, QStringList());
        const MessagePrompt full = {
            .text = "A project cannot hold more than 1025 send and 1025 receive sequences.",
            .icon = PromptIcon::Exclamation};
        QCOMPARE(bench.comm.prompts.shown, (QList<MessagePrompt>{full, full}));
    }
};

QTEST_MAIN(tst_sequencewiring)
#include "tst_sequencewiring.moc"
