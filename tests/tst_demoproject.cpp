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
    void SpeaksAsTheInstrumentDoes()
    {
        MdSequenceEdition sequences;
        for (int i = 0; i < 9; ++i)
            sequences.EditSend(i).Name = "old";
        sequences.SetSendCount(9);
        FillDemoProject(sequences);
        QCOMPARE(sequences.SendCount(), 4);
        QCOMPARE(sequences.SendAt(4).Name, QByteArray());
        const char *const requests[] = {"*IDN?\r\n", "MEAS?\r\n", "STAT?\r\n", "YES\r\n"};
        for (int i = 0; i < 4; ++i) {
            QCOMPARE(sequences.SendAt(i).Sequence, requests[i]);
            QVERIFY(!sequences.SendAt(i).Name.isEmpty());
            QVERIFY(DemoProtocol::AnswerTo(sequences.SendAt(i).Sequence.trimmed()) !=
                    DemoProtocol::Text::Refusal);
        }
        QCOMPARE(sequences.ReceiveCount(), 4);
        const char *const heard[] = {"READY?\r\n", "OK\r\n", "SIMULATED INSTRUMENT 1.0\r\n", "T="};
        for (int i = 0; i < 4; ++i) {
            const ReceiveSequence &record = sequences.ReceiveAt(i);
            QCOMPARE(record.Sequence, heard[i]);
            QCOMPARE(record.IsWatched(), i < 3);
            QVERIFY(i == 3 || record.Comment.startsWith('['));
        }
        // The question is answered by itself.
        QCOMPARE(sequences.ReceiveAt(0).AnswerName, sequences.SendAt(3).Name);
        QCOMPARE(sequences.AnswerOf(sequences.ReceiveAt(0)), &sequences.SendAt(3));
        QCOMPARE(sequences.AnswerOf(sequences.ReceiveAt(1)), nullptr);
        QVERIFY(DemoProtocol::BytesOf(DemoProtocol::Text::Reading).startsWith(heard[3]));
    }
};

QTEST_APPLESS_MAIN(tst_demoproject)
#include "tst_demoproject.moc"
