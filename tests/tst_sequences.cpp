// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "DeletionEffects.h"
#include "MdSequenceEdition.h"
#include "NamedSequences.h"
#include "support/Cases.h"

namespace
{

/// The tables as the delete rules concern them.
struct Tables : MdSequenceEdition {
    void AddSend(const QByteArray &name) { MdSequenceEdition::AddSend({name, name.toLower(), {}}); }
    void AddReceive(const QByteArray &name, qint16 answer = 0, qint16 active = 1)
    {
        MdSequenceEdition::AddReceive(
            {name, name.toLower(), {}, {}, answer, "about " + name, answer, active});
    }
    /// All that is stored of a receive sequence.
    QByteArray Receive(int index) const
    {
        const ReceiveSequence &r = ReceiveAt(index);
        QByteArrayList texts = {r.Name, r.Sequence, r.AnswerName, r.Comment};
        for (const qint16 number : {r.Answer, r.Active, r.CommentToLog})
            texts << QByteArray::number(number);
        return texts.join('/');
    }
    QByteArray Send(int index) const { return SendAt(index).Name + '/' + SendAt(index).Sequence; }
};

} // namespace

class tst_sequences : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void DeletingASendSequenceMovesTheOthersUnderTheAnswers()
    {
        Tables tables;
        for (const char *name : {"ONE", "TWO", "THREE"})
            tables.AddSend(name);
        tables.AddReceive("ASK", 2);
        tables.DeleteSendSequence();
        QCOMPARE(tables.SendCount(), 2);
        QCOMPARE(tables.Send(0), "TWO/two");
        QCOMPARE(tables.Send(2), "/");
        tables.RefreshAnswerName(0);
        QCOMPARE(tables.Receive(0), "ASK/ask/THREE/about ASK/2/1/2");
    }

    void DeletingAReceiveSequenceLeavesActiveInItsPlace()
    {
        Tables tables;
        tables.AddReceive("A", 0, 1);
        tables.AddReceive("B", 3, 0);
        tables.DeleteReceiveSequence();
        QCOMPARE(tables.ReceiveCount(), 1);
        QCOMPARE(tables.Receive(0), "B/b//about B/3/1/3");
        QCOMPARE(tables.Receive(1), "////0/1/0");
    }

    void DeletingOutsideDoesNothing()
    {
        Tables tables;
        tables.AddSend("ONE");
        tables.AddReceive("ASK");
        for (const int index : {-1, 1, MdSequenceEdition::Capacity}) {
            tables.CurrentSendIndex = tables.CurrentReceiveIndex = index;
            tables.DeleteSendSequence();
            tables.DeleteReceiveSequence();
        }
        QCOMPARE(tables.SendCount() + tables.ReceiveCount(), 2);
        QCOMPARE(tables.Send(0), "ONE/one");
    }

    void DeletingTellsWhichAnswersAreOthers_data()
    {
        const Cases<int, QString> row("deleted", "told");
        row("the first", 0,
            "0, \"A\": \"ONE\" before, \"TWO\" now\n1, \"B\": \"TWO\" before, \"THREE\" now\n"
            "3, \"D\": \"FOUR\" before, no answer now");
        row("an equal one moves up", 2, "3, \"D\": \"FOUR\" before, no answer now");
        row("the last", 4, "3, \"D\": \"FOUR\" before, no answer now");
        row("one that does not exist", 5, "");
    }
    void DeletingTellsWhichAnswersAreOthers()
    {
        Tables tables;
        for (const char *name : {"ONE", "TWO", "THREE", "THREE", "FOUR"})
            tables.AddSend(name);
        for (const auto &[name, answer] :
             {std::pair{"A", 1}, {"B", 2}, {"C", 3}, {"D", 5}, {"E", 0}})
            tables.AddReceive(name, qint16(answer));
        QFETCH(const int, deleted);
        tables.CurrentSendIndex = deleted;
        const DeletionEffects effects(tables);
        tables.DeleteSendSequence();
        QTEST(effects.OnAnswers().section('\n', 1), "told");
    }

    void DeletingTellsWhichTicksAreOthers()
    {
        const std::pair<int, const char *> cases[] = {
            {0, "0, \"B\": inactive before, active now\n2, \"D\": active before, inactive now"},
            {1, "2, \"D\": active before, inactive now"},
            {3, ""}};
        for (const auto &[deleted, told] : cases) {
            Tables tables;
            for (const auto &[name, active] : {std::pair{"A", 1}, {"B", 0}, {"C", 0}, {"D", 1}})
                tables.AddReceive(name, 0, qint16(active));
            tables.CurrentReceiveIndex = deleted;
            const DeletionEffects effects(tables);
            tables.DeleteReceiveSequence();
            QCOMPARE(effects.OnActive().section('\n', 1), told);
        }
    }

    void LongListsAreCutShort()
    {
        const QStringList lines(14, "x");
        QCOMPARE(NamedSequences::Listed(lines.first(12)), lines.first(12).join('\n'));
        QCOMPARE(NamedSequences::Listed(lines), lines.first(11).join('\n') + "\nand 3 more");
    }

    void FullTablesAreDeletedFromWithinTheTable()
    {
        Tables tables;
        for (int i = 0; i < MdSequenceEdition::Capacity; ++i) {
            tables.AddSend('S' + QByteArray::number(i));
            tables.AddReceive('R' + QByteArray::number(i), 0, 0);
        }
        tables.CurrentSendIndex = 1024;
        tables.DeleteSendSequence();
        tables.DeleteReceiveSequence();
        QCOMPARE(tables.SendCount(), 1024);
        QCOMPARE(tables.Send(1024), "/");
        QCOMPARE(tables.ReceiveCount(), 1024);
        QCOMPARE(tables.ReceiveAt(1023).Name, "R1024");
        QCOMPARE(tables.Receive(1024), "////0/1/0");
        tables.ClearProject();
        QCOMPARE(tables.ReceiveAt(1023).Name, "");
    }

    void ClearingLeavesComments()
    {
        Tables tables;
        tables.AddSend("ONE");
        tables.AddReceive("ASK", 1, 0);
        tables.RefreshAnswerName(0);
        tables.CurrentReceiveIndex = 1;
        tables.ClearProject();
        QCOMPARE(tables.Receive(0), "///about ASK/0/1/1");
        QCOMPARE(tables.SendCount() + tables.ReceiveCount() + tables.CurrentReceiveIndex, 0);
    }

    void AnswersOutsideTheTableNameNothing()
    {
        Tables tables;
        tables.AddSend("ONE");
        const std::pair<qint16, const char *> answers[] = {{0, ""}, {-1, ""},   {1, "ONE"},
                                                           {2, ""}, {1026, ""}, {32767, ""}};
        for (const auto &[answer, name] : answers) {
            tables.ChangeReceive(0, [a = answer](ReceiveSequence &record) {
                record.Answer = a;
                record.AnswerName = "left over";
            });
            tables.RefreshAnswerName(0);
            QCOMPARE(tables.ReceiveAt(0).AnswerName, name);
        }
    }
};

QTEST_GUILESS_MAIN(tst_sequences)
#include "tst_sequences.moc"
