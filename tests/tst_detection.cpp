// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "comm/ReceiveDetection.h"
#include "sequences/MdSequenceEdition.h"

#include <QRandomGenerator>
#include <QTest>

namespace
{

/// Detection as it is defined: one byte, one search for every sequence in the whole buffer.
class PlainDetection
{
  public:
    explicit PlainDetection(const MdSequenceEdition &tables) : m_tables(tables) {}

    ReceiveDetection::Result Feed(int direction, QByteArrayView bytes, CommMode mode)
    {
        ReceiveDetection::Result result;
        for (const char byte : bytes) {
            ++result.consumed;
            m_buffers[direction] += byte;
            Check(m_buffers[direction], mode, result);
            if (result.detected)
                break;
        }
        return result;
    }

    void Clear() { m_buffers[0] = m_buffers[1] = QByteArray(); }

  private:
    void Check(QByteArray &buffer, CommMode mode, ReceiveDetection::Result &result) const
    {
        qsizetype longest = 0;
        for (int i = 0; i < m_tables.ReceiveCount(); ++i) {
            const ReceiveSequence &record = m_tables.ReceiveAt(i);
            if (record.Sequence.isEmpty() || record.Active != 1)
                continue;
            longest = qMax(longest, record.Sequence.size());
            if (!buffer.contains(record.Sequence))
                continue;
            result.detected = true;
            if (!record.AnswerName.isEmpty() && mode != CommMode::MonitorReceiveOnly &&
                record.Answer > 0)
                result.answer += m_tables.SendAt(record.Answer - 1).Sequence;
            if (!record.Comment.isEmpty())
                result.comment += (result.comment.isEmpty() ? "" : " ") + record.Comment;
        }
        buffer = result.detected ? QByteArray() : buffer.right(longest);
    }

    const MdSequenceEdition &m_tables;
    QByteArray m_buffers[2];
};

void AddReceive(MdSequenceEdition &tables, const QByteArray &sequence, const QByteArray &comment)
{
    ReceiveSequence &record = tables.EditReceive(tables.ReceiveCount());
    record.Sequence = sequence;
    record.Comment = comment;
    tables.SetReceiveCount(tables.ReceiveCount() + 1);
}

void GiveAnswer(MdSequenceEdition &tables, int receiveIndex, const QByteArray &bytes)
{
    SendSequence &answer = tables.EditSend(tables.SendCount());
    answer.Name = "answer";
    answer.Sequence = bytes;
    tables.SetSendCount(tables.SendCount() + 1);
    tables.EditReceive(receiveIndex).Answer = qint16(tables.SendCount());
    tables.RefreshAnswerName(receiveIndex);
}

/// Feeds everything and tells what was detected: "consumed:comment" for each detection.
QByteArrayList FeedAll(ReceiveDetection &detection, QByteArrayView bytes)
{
    QByteArrayList found;
    while (!bytes.isEmpty()) {
        const auto result = detection.Feed(0, bytes, CommMode::SendReceive);
        if (result.detected)
            found << QByteArray::number(result.consumed) + ':' + result.comment;
        bytes = bytes.sliced(result.consumed);
    }
    return found;
}

} // namespace

class tst_detection : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void Streams_data();
    void Streams();
    void ASequenceMayArriveInPieces();
    void DirectionsAreApart();
    void SeveralAnswersGoOutInListOrder();
    void AnswersThatMustNotBeSent();
    void SwitchedOnLaterFindsWhatIsRemembered();
    void AgreesWithThePlainDefinition_data();
    void AgreesWithThePlainDefinition();
};

void tst_detection::Streams_data()
{
    QTest::addColumn<QByteArrayList>("sequences");
    QTest::addColumn<QByteArray>("stream");
    QTest::addColumn<QByteArrayList>("found");

    QTest::newRow("nothing to look for")
        << QByteArrayList{} << QByteArray("abc") << QByteArrayList{};
    QTest::newRow("in the middle")
        << QByteArrayList{"bc"} << QByteArray("abcd") << QByteArrayList{"3:bc"};
    QTest::newRow("twice, not overlapping, because a detection forgets")
        << QByteArrayList{"aa"} << QByteArray("aaa aa") << QByteArrayList{"2:aa", "4:aa"};
    QTest::newRow("several end on the same byte")
        << QByteArrayList{"xabc", "bc", "abd", "c"} << QByteArray("xab-bc")
        << QByteArrayList{"6:bc c"};
    QTest::newRow("a short one inside keeps the long one from firing")
        << QByteArrayList{"abcd", "bc"} << QByteArray("abcdabcd") << QByteArrayList{"3:bc", "4:bc"};
    QTest::newRow("an empty one never fires")
        << QByteArrayList{"", "b"} << QByteArray("ab") << QByteArrayList{"2:b"};
    QTest::newRow("zeros and high bytes count")
        << QByteArrayList{QByteArray("\0\xFF\0", 3)} << QByteArray("\0\0\xFF\0\xFF", 5)
        << QByteArrayList{"4:" + QByteArray("\0\xFF\0", 3)};
}

void tst_detection::Streams()
{
    QFETCH(QByteArrayList, sequences);
    QFETCH(QByteArray, stream);
    MdSequenceEdition tables;
    for (const QByteArray &sequence : sequences)
        AddReceive(tables, sequence, sequence);
    ReceiveDetection detection(tables);
    QTEST(FeedAll(detection, stream), "found");
}

void tst_detection::ASequenceMayArriveInPieces()
{
    MdSequenceEdition tables;
    AddReceive(tables, "hello", "seen");
    ReceiveDetection detection(tables);
    QCOMPARE(FeedAll(detection, "..he"), QByteArrayList());
    QCOMPARE(FeedAll(detection, "ll"), QByteArrayList());
    QCOMPARE(FeedAll(detection, "o.."), QByteArrayList{"1:seen"});
    FeedAll(detection, "hel");
    detection.Clear();
    QCOMPARE(FeedAll(detection, "lo"), QByteArrayList());
}

void tst_detection::DirectionsAreApart()
{
    MdSequenceEdition tables;
    AddReceive(tables, "ab", "seen");
    ReceiveDetection detection(tables);
    QVERIFY(!detection.Feed(0, "a", CommMode::MonitorReceiveOnly).detected);
    QVERIFY(!detection.Feed(1, "b", CommMode::MonitorReceiveOnly).detected);
    QVERIFY(detection.Feed(0, "b", CommMode::MonitorReceiveOnly).detected);
}

void tst_detection::SeveralAnswersGoOutInListOrder()
{
    MdSequenceEdition tables;
    AddReceive(tables, "?", "first");
    AddReceive(tables, "who?", "second");
    GiveAnswer(tables, 1, "LATER");
    GiveAnswer(tables, 0, "FIRST ");
    ReceiveDetection detection(tables);
    const auto result = detection.Feed(0, "who?", CommMode::MonitorReceiveAndModify);
    QCOMPARE(result.answer, QByteArray("FIRST LATER"));
    QCOMPARE(result.comment, QByteArray("first second"));
}

void tst_detection::AnswersThatMustNotBeSent()
{
    MdSequenceEdition tables;
    AddReceive(tables, "?", "seen");
    GiveAnswer(tables, 0, "ANSWER");
    ReceiveDetection detection(tables);
    QCOMPARE(detection.Feed(0, "?", CommMode::SendReceive).answer, QByteArray("ANSWER"));
    QCOMPARE(detection.Feed(0, "?", CommMode::MonitorReceiveOnly).answer, QByteArray());
    for (const int outside : {-1, 0, 1026, 32767}) {
        tables.EditReceive(0).Answer = qint16(outside);
        const auto result = detection.Feed(0, "?", CommMode::SendReceive);
        QVERIFY(result.detected);
        QCOMPARE(result.answer, QByteArray());
    }
    tables.EditReceive(0).Answer = 1;
    tables.EditReceive(0).AnswerName.clear();
    QCOMPARE(detection.Feed(0, "?", CommMode::SendReceive).answer, QByteArray());
}

void tst_detection::SwitchedOnLaterFindsWhatIsRemembered()
{
    MdSequenceEdition tables;
    AddReceive(tables, "remember", "long");
    AddReceive(tables, "em", "short");
    tables.EditReceive(1).Active = 0;
    ReceiveDetection detection(tables);
    QCOMPARE(FeedAll(detection, "member"), QByteArrayList());
    tables.EditReceive(1).Active = 1;
    QCOMPARE(FeedAll(detection, "s"), QByteArrayList{"1:short"});
    tables.EditReceive(1).Active = 2; // anything but 1 is off
    QCOMPARE(FeedAll(detection, "em"), QByteArrayList());
}

void tst_detection::AgreesWithThePlainDefinition_data()
{
    QTest::addColumn<int>("alphabet");
    QTest::addColumn<int>("longest");
    QTest::addColumn<int>("records");
    QTest::newRow("two letters, short sequences") << 2 << 5 << 6;
    QTest::newRow("two letters, long sequences") << 2 << 14 << 40;
    QTest::newRow("three letters, many sequences") << 3 << 8 << 200;
    QTest::newRow("all bytes, one and two long") << 256 << 2 << 60;
}

void tst_detection::AgreesWithThePlainDefinition()
{
    QFETCH(int, alphabet);
    QFETCH(int, longest);
    QFETCH(int, records);
    QRandomGenerator random(quint32(alphabet * 1000 + records));
    const auto bytes = [&](int count) {
        QByteArray text;
        while (text.size() < count)
            text += char(int(random.bounded(256)) % alphabet + (alphabet < 256 ? 'a' : 0));
        return text;
    };

    MdSequenceEdition tables;
    ReceiveDetection detection(tables);
    PlainDetection plain(tables);
    int detections = 0;
    for (int round = 0; round < 3000; ++round) {
        if (random.bounded(10) == 0) { // the tables change while traffic runs
            const int index = int(random.bounded(records));
            ReceiveSequence &record = tables.EditReceive(index);
            record.Sequence = bytes(int(random.bounded(longest + 1)));
            record.Comment = QByteArray::number(index);
            record.Active = qint16(random.bounded(3));
            tables.SetReceiveCount(int(random.bounded(records)) + 1);
        }
        if (random.bounded(200) == 0) {
            detection.Clear();
            plain.Clear();
        }
        const int direction = int(random.bounded(2));
        const QByteArray read = bytes(int(random.bounded(60)));
        QByteArrayView rest = read;
        while (!rest.isEmpty()) {
            const auto found = detection.Feed(direction, rest, CommMode::SendReceive);
            const auto expected = plain.Feed(direction, rest, CommMode::SendReceive);
            QCOMPARE(found.consumed, expected.consumed);
            QCOMPARE(found.comment, expected.comment);
            QCOMPARE(found.detected, expected.detected);
            detections += found.detected ? 1 : 0;
            rest = rest.sliced(found.consumed);
        }
    }
    QVERIFY(detections > 100);
}

QTEST_GUILESS_MAIN(tst_detection)
#include "tst_detection.moc"
