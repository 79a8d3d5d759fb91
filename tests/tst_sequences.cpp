// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "sequences/MdSequenceEdition.h"

#include <QTest>

namespace
{

void AddSend(MdSequenceEdition &tables, const QByteArray &name)
{
    SendSequence &record = tables.EditSend(tables.SendCount());
    record.Name = name;
    record.Sequence = name.toLower();
    tables.SetSendCount(tables.SendCount() + 1);
}

void AddReceive(MdSequenceEdition &tables, const QByteArray &name, qint16 answer = 0,
                qint16 active = 1)
{
    ReceiveSequence &record = tables.EditReceive(tables.ReceiveCount());
    record.Name = name;
    record.Sequence = name.toLower();
    record.Comment = "about " + name;
    record.Answer = answer;
    record.Active = active;
    tables.SetReceiveCount(tables.ReceiveCount() + 1);
}

} // namespace

class tst_sequences : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void DeletingASendSequenceMovesTheOthersUnderTheAnswers();
    void DeletingAReceiveSequenceLeavesActiveInItsPlace();
    void DeletingOutsideDoesNothing();
    void FullTablesAreDeletedFromWithinTheTable();
    void ClearingLeavesComments();
    void AnswersOutsideTheTableNameNothing_data();
    void AnswersOutsideTheTableNameNothing();
};

void tst_sequences::DeletingASendSequenceMovesTheOthersUnderTheAnswers()
{
    MdSequenceEdition tables;
    for (const char *name : {"ONE", "TWO", "THREE"})
        AddSend(tables, name);
    AddReceive(tables, "ASK", 2);
    tables.CurrentSendIndex = 0;
    tables.DeleteSendSequence();

    QCOMPARE(tables.SendCount(), 2);
    QCOMPARE(tables.SendAt(0).Name, QByteArray("TWO"));
    QCOMPARE(tables.SendAt(2).Name, QByteArray());
    QCOMPARE(tables.SendAt(2).Sequence, QByteArray());
    QCOMPARE(tables.ReceiveAt(0).Answer, qint16(2));
    tables.RefreshAnswerName(0);
    QCOMPARE(tables.ReceiveAt(0).AnswerName, QByteArray("THREE"));
}

void tst_sequences::DeletingAReceiveSequenceLeavesActiveInItsPlace()
{
    MdSequenceEdition tables;
    AddReceive(tables, "A", 0, 1);
    AddReceive(tables, "B", 3, 0);
    tables.EditReceive(1).CommentToLog = 1;
    tables.DeleteReceiveSequence();

    QCOMPARE(tables.ReceiveCount(), 1);
    QCOMPARE(tables.ReceiveAt(0).Name, QByteArray("B"));
    QCOMPARE(tables.ReceiveAt(0).Comment, QByteArray("about B"));
    QCOMPARE(tables.ReceiveAt(0).Answer, qint16(3));
    QCOMPARE(tables.ReceiveAt(0).CommentToLog, qint16(1));
    QCOMPARE(tables.ReceiveAt(0).Active, qint16(1));
    QCOMPARE(tables.ReceiveAt(1).Name, QByteArray());
    QCOMPARE(tables.ReceiveAt(1).Comment, QByteArray());
    QCOMPARE(tables.ReceiveAt(1).Active, qint16(1));
}

void tst_sequences::DeletingOutsideDoesNothing()
{
    MdSequenceEdition tables;
    AddSend(tables, "ONE");
    for (const int index : {-1, 1, MdSequenceEdition::Capacity}) {
        tables.CurrentSendIndex = index;
        tables.DeleteSendSequence();
        tables.CurrentReceiveIndex = index;
        tables.DeleteReceiveSequence();
    }
    QCOMPARE(tables.SendCount(), 1);
    QCOMPARE(tables.SendAt(0).Name, QByteArray("ONE"));
    QCOMPARE(tables.ReceiveCount(), 0);
}

void tst_sequences::FullTablesAreDeletedFromWithinTheTable()
{
    MdSequenceEdition tables;
    for (int i = 0; i < MdSequenceEdition::Capacity; ++i) {
        AddSend(tables, 'S' + QByteArray::number(i));
        AddReceive(tables, 'R' + QByteArray::number(i), 0, 0);
    }
    tables.CurrentSendIndex = 1024;
    tables.DeleteSendSequence();
    tables.DeleteReceiveSequence();

    QCOMPARE(tables.SendCount(), 1024);
    QCOMPARE(tables.SendAt(1024).Name, QByteArray());
    QCOMPARE(tables.ReceiveCount(), 1024);
    QCOMPARE(tables.ReceiveAt(1023).Name, QByteArray("R1024"));
    QCOMPARE(tables.ReceiveAt(1024).Name, QByteArray());
    QCOMPARE(tables.ReceiveAt(1024).Active, qint16(1));
    tables.ClearProject();
    QCOMPARE(tables.ReceiveAt(1023).Name, QByteArray());
}

void tst_sequences::ClearingLeavesComments()
{
    MdSequenceEdition tables;
    AddSend(tables, "ONE");
    AddReceive(tables, "ASK", 1, 0);
    tables.EditReceive(0).CommentToLog = 1;
    tables.RefreshAnswerName(0);
    tables.CurrentReceiveIndex = 1;
    tables.ClearProject();

    const ReceiveSequence &record = tables.ReceiveAt(0);
    QCOMPARE(record.Name + record.Sequence + record.AnswerName, QByteArray());
    QCOMPARE(record.Answer, qint16(0));
    QCOMPARE(record.Active, qint16(1));
    QCOMPARE(record.Comment, QByteArray("about ASK"));
    QCOMPARE(record.CommentToLog, qint16(1));
    QCOMPARE(tables.SendCount() + tables.ReceiveCount() + tables.CurrentReceiveIndex, 0);
}

void tst_sequences::AnswersOutsideTheTableNameNothing_data()
{
    QTest::addColumn<int>("answer");
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("none") << 0 << QByteArray();
    QTest::newRow("minus one") << -1 << QByteArray();
    QTest::newRow("the first") << 1 << QByteArray("ONE");
    QTest::newRow("behind the last in use") << 2 << QByteArray();
    QTest::newRow("behind the table") << 1026 << QByteArray();
    QTest::newRow("the largest number") << 32767 << QByteArray();
}

void tst_sequences::AnswersOutsideTheTableNameNothing()
{
    QFETCH(int, answer);
    MdSequenceEdition tables;
    AddSend(tables, "ONE");
    AddReceive(tables, "ASK", qint16(answer));
    tables.EditReceive(0).AnswerName = "left over";
    tables.RefreshAnswerName(0);
    QTEST(tables.ReceiveAt(0).AnswerName, "name");
}

QTEST_GUILESS_MAIN(tst_sequences)
#include "tst_sequences.moc"
