// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "app/DemoProject.h"

#include "platform/DemoProtocol.h"
#include "sequences/MdSequenceEdition.h"

#include <QTest>

class tst_demoproject : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void ReplacesWhatWasThere()
    {
        MdSequenceEdition sequences;
        for (int i = 0; i < 9; ++i)
            sequences.EditSend(i).Name = "old";
        sequences.SetSendCount(9);
        FillDemoProject(sequences);
        QCOMPARE(sequences.SendCount(), 4);
        QCOMPARE(sequences.SendAt(4).Name, QByteArray());
        QCOMPARE(sequences.ReceiveCount(), 4);
    }

    void AsksWhatTheInstrumentKnows()
    {
        MdSequenceEdition sequences;
        FillDemoProject(sequences);
        QCOMPARE(sequences.SendAt(0).Sequence, QByteArray("*IDN?\r\n"));
        QCOMPARE(sequences.SendAt(1).Sequence, QByteArray("MEAS?\r\n"));
        QCOMPARE(sequences.SendAt(2).Sequence, QByteArray("STAT?\r\n"));
        for (int i = 0; i < sequences.SendCount(); ++i) {
            QVERIFY(!sequences.SendAt(i).Name.isEmpty());
            QVERIFY(DemoProtocol::AnswerTo(sequences.SendAt(i).Sequence.trimmed()) !=
                    DemoProtocol::Text::Refusal);
        }
    }

    void KnowsWhatTheInstrumentSays()
    {
        MdSequenceEdition sequences;
        FillDemoProject(sequences);
        QCOMPARE(sequences.ReceiveAt(1).Sequence, QByteArray("OK\r\n"));
        QCOMPARE(sequences.ReceiveAt(2).Sequence, QByteArray("SIMULATED INSTRUMENT 1.0\r\n"));
        for (int i : {1, 2}) {
            QVERIFY(sequences.ReceiveAt(i).IsWatched());
            QVERIFY(sequences.ReceiveAt(i).Comment.startsWith('['));
            QCOMPARE(sequences.ReceiveAt(i).AnswerName, QByteArray());
        }
    }

    void AnswersTheQuestionByItself()
    {
        MdSequenceEdition sequences;
        FillDemoProject(sequences);
        const ReceiveSequence &question = sequences.ReceiveAt(0);
        QCOMPARE(question.Sequence, QByteArray("READY?\r\n"));
        QVERIFY(question.IsWatched());
        QVERIFY(!question.Comment.isEmpty());
        QCOMPARE(question.AnswerName, sequences.SendAt(3).Name);
        QVERIFY(sequences.AnswerOf(question) != nullptr);
        QCOMPARE(sequences.AnswerOf(question)->Sequence, QByteArray("YES\r\n"));
    }

    void LeavesOneSequenceInactive()
    {
        MdSequenceEdition sequences;
        FillDemoProject(sequences);
        QVERIFY(!sequences.ReceiveAt(3).IsWatched());
        QVERIFY(DemoProtocol::BytesOf(DemoProtocol::Text::Reading)
                    .startsWith(sequences.ReceiveAt(3).Sequence));
        QCOMPARE(sequences.ReceiveAt(3).Sequence, QByteArray("T="));
    }
};

QTEST_APPLESS_MAIN(tst_demoproject)
#include "tst_demoproject.moc"
