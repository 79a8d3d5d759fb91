// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "app/DemoProject.h"

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

    void AsksForIdentificationAndMeasurement()
    {
        MdSequenceEdition sequences;
        FillDemoProject(sequences);
        QCOMPARE(sequences.SendAt(0).Sequence, QByteArray("*IDN?\r\n"));
        QCOMPARE(sequences.SendAt(1).Sequence, QByteArray("MEAS?\r\n"));
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
        QVERIFY(!sequences.ReceiveAt(3).Sequence.isEmpty());
    }
};

QTEST_APPLESS_MAIN(tst_demoproject)
#include "tst_demoproject.moc"
