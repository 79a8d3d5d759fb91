// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ReceiveDetection.h"
#include "WatchSnapshot.h"
#include "support/Cases.h"
#include "support/WatchSequence.h"

#include <QRandomGenerator>

namespace
{

/// Detection as it is defined: one byte, one search for every sequence in the whole buffer.
struct PlainDetection {
    const MdSequenceEdition &tables;
    std::array<QByteArray, 2> buffers = {};

    ReceiveDetection::Result Feed(int direction, QByteArrayView bytes)
    {
        ReceiveDetection::Result result;
        while (!result.detected && result.consumed < bytes.size()) {
            buffers[size_t(direction)] += bytes[result.consumed++];
            Check(buffers[size_t(direction)], result);
        }
        return result;
    }

    void Check(QByteArray &buffer, ReceiveDetection::Result &result) const
    {
        qsizetype longest = 0;
        for (int i = 0; i < tables.ReceiveCount(); ++i) {
            const ReceiveSequence &record = tables.ReceiveAt(i);
            if (record.Sequence.isEmpty() || record.Active != 1)
                continue;
            longest = qMax(longest, record.Sequence.size());
            if (!buffer.contains(record.Sequence))
                continue;
            result.comment += (result.detected ? " " : "") + record.Comment;
            result.detected = true;
        }
        buffer = result.detected ? QByteArray() : buffer.right(longest);
    }
};

} // namespace

class tst_detection : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void Streams_data()
    {
        const Cases<QByteArrayList, QByteArray, QByteArrayList> row("sequences", "stream", "found");
        row("nothing to look for", {}, "abc", {});
        row("twice, not overlapping, because a detection forgets", {"aa"}, "aaa aa",
            {"2:aa", "4:aa"});
        row("several end on the same byte", {"xabc", "bc", "abd", "c"}, "xab-bc", {"6:bc c"});
        row("a short one inside keeps the long one from firing", {"abcd", "bc"}, "abcdabcd",
            {"3:bc", "4:bc"});
        row("an empty one never fires", {"", "b"}, "ab", {"2:b"});
        const QByteArray binary("\0\xFF\0", 3);
        row("zeros and high bytes count", {binary}, '\0' + binary + '\xFF', {"4:" + binary});
    }

    void Streams()
    {
        QFETCH(QByteArrayList, sequences);
        QFETCH(QByteArray, stream);
        MdSequenceEdition tables;
        for (const QByteArray &sequence : sequences)
            WatchSequence(tables, sequence, sequence);
        ReceiveDetection detection;
        const WatchSnapshot watch(tables);
        QByteArrayList found; // "consumed:comment"
        while (!stream.isEmpty()) {
            const auto result = detection.Feed(0, stream, watch);
            if (result.detected)
                found << QByteArray::number(result.consumed) + ':' + result.comment;
            stream.remove(0, result.consumed);
        }
        QTEST(found, "found");
    }

    void AnswersThatMustNotBeSent()
    {
        MdSequenceEdition tables;
        WatchSequence(tables, "?", "seen", "FIRST ");
        WatchSequence(tables, "who?", "too", "LATER");
        ReceiveDetection detection;
        const auto answer = [&] {
            const auto result = detection.Feed(0, "who?", WatchSnapshot(tables));
            return result.comment == "seen too" ? result.answer : "nothing is detected";
        };
        QCOMPARE(answer(), "FIRST LATER");
        for (const int outside : {-1, 0, 1026, 32767}) {
            tables.ChangeReceive(0,
                                 [&](ReceiveSequence &record) { record.Answer = qint16(outside); });
            QCOMPARE(answer(), "LATER");
        }
        tables.ChangeReceive(1, [](ReceiveSequence &record) { record.AnswerName.clear(); });
        QCOMPARE(answer(), "");
    }

    void AgreesWithThePlainDefinition_data()
    {
        const Cases<int, int, int, int> row("alphabet", "shortest", "longest", "records");
        row("two letters, short sequences", 2, 0, 5, 6);
        row("two letters, long sequences", 2, 0, 14, 40);
        row("two letters, no short sequences", 2, 4, 9, 10);
        row("three letters, many sequences", 3, 0, 8, 200);
        row("all bytes, one and two long", 256, 0, 2, 60);
    }

    void AgreesWithThePlainDefinition()
    {
        QFETCH(int, alphabet);
        QFETCH(int, shortest);
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
        ReceiveDetection detection;
        PlainDetection plain{tables};
        auto watch = std::make_unique<WatchSnapshot>(tables);
        int detections = 0;
        for (int round = 0; round < 3000; ++round) {
            if (random.bounded(10) == 0) { // the tables change while traffic runs
                const int index = int(random.bounded(records));
                const QByteArray sequence = bytes(int(random.bounded(shortest, longest + 1)));
                tables.StoreReceive(index, {.Sequence = sequence,
                                            .Comment = QByteArray::number(index),
                                            .Active = qint16(random.bounded(3))});
                tables.CurrentReceiveIndex = int(random.bounded(records));
                if (random.bounded(4) == 0)
                    tables.DeleteReceiveSequence();
                watch = std::make_unique<WatchSnapshot>(tables);
            }
            if (random.bounded(200) == 0) {
                detection.Clear();
                plain.buffers = {};
            }
            const int direction = int(random.bounded(2));
            const QByteArray read = bytes(int(random.bounded(60)));
            QByteArrayView rest = read;
            while (!rest.isEmpty()) {
                const auto found = detection.Feed(direction, rest, *watch);
                const auto expected = plain.Feed(direction, rest);
                QCOMPARE(found.consumed, expected.consumed);
                QCOMPARE(found.comment, expected.comment);
                QCOMPARE(found.detected, expected.detected);
                detections += found.detected ? 1 : 0;
                rest = rest.sliced(found.consumed);
            }
        }
        QVERIFY(detections > 100);
    }
};

QTEST_GUILESS_MAIN(tst_detection)
#include "tst_detection.moc"
