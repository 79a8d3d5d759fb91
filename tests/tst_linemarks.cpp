// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "LineDamage.h"
#include "LineMarks.h"
#include "support/Cases.h"

#include <array>

namespace
{

/// What a decoder makes of reads: "!" behind a damaged byte, "?" behind a 0 that may be a break,
/// and what is held at the end in brackets.
QByteArray Heard(LineMarks &marks, const QList<QByteArray> &reads)
{
    QByteArray heard;
    for (const QByteArray &read : reads) {
        marks.Feed(read);
        while (const auto piece = marks.Next()) {
            heard += piece->bytes;
            heard += std::array{"", "!", "?"}[size_t(piece->mark)];
        }
    }
    const QByteArray held = marks.TakeHeld();
    return heard + (held.isEmpty() ? held : '(' + held + ')');
}

} // namespace

/// The marks of a line, and what becomes of them beside the driver's counts.
class tst_linemarks : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void MarksAreTakenOut_data()
    {
        const Cases<bool, int, QByteArray, QByteArray> row("marked", "unmarked", "raw", "heard");
        row("none", true, 0, "abc", "abc");
        row("a byte FF", true, 0,
            "a\xFF\xFF"
            "b",
            "a\xFF"
            "b");
        row("damaged, also FF", true, 0,
            QByteArray("a\xFF\0b\xFF\0\xFF"
                       "c",
                       8),
            "ab!\xFF!c");
        row("breaks", true, 0, QByteArray("\xFF\0\0\xFF\0\0z", 7), QByteArray("\0?\0?z", 5));
        row("side by side", true, 0, QByteArray("\xFF\xFF\xFF\0\xFF\xFF\xFF\0", 8),
            QByteArray("\xFF\xFF!\xFF\0", 5));
        row("no mark at all", true, 0,
            "\xFF"
            "a",
            "\xFF"
            "a");
        row("half", true, 0, "a\xFF", "a(\xFF)");
        row("two thirds", true, 0, QByteArray("a\xFF\0", 3), QByteArray("a(\xFF\0)", 5));
        row("from before", true, 3, "\xFF\xFF\xFF\xFF\xFF", "\xFF\xFF\xFF\xFF");
        row("a line without marks", false, 2, QByteArray("\xFF\0x\xFF\xFF", 5),
            QByteArray("\xFF\0x\xFF\xFF", 5));
    }

    /// However the reads are cut; only what is held at a cut is not seen at once.
    void MarksAreTakenOut()
    {
        QFETCH(QByteArray, raw);
        QFETCH(QByteArray, heard);
        QFETCH(bool, marked);
        QFETCH(int, unmarked);
        LineMarks marks;
        for (qsizetype first = 0; first <= raw.size(); ++first) {
            for (qsizetype second = first; second <= raw.size(); ++second) {
                marks.Begin(marked, unmarked);
                QCOMPARE(Heard(marks,
                               {raw.first(first), raw.mid(first, second - first), raw.mid(second)}),
                         heard);
            }
        }
    }

    void WhatIsMarkedAndCountedIsToldOnce()
    {
        constexpr DriverCounters Start = {true, 7, 0xFFFFFFFF, 3, 0};
        DriverCounters now = Start;
        LineDamage damage;
        damage.Begin(true, Start);
        now.damaged += 1;
        now.breaks += 1; // runs over
        now.overruns += 2;
        QCOMPARE(damage.Untold(LineCondition::Overrun, now), 2u); // no mark will come
        QCOMPARE(damage.Untold(LineCondition::DamagedByte, now), 0u);
        QVERIFY(damage.IsBreak(now));
        damage.Told(LineCondition::Break, 1);
        QVERIFY(!damage.IsBreak(now));
        damage.Settle(now);
        QCOMPARE(damage.Untold(LineCondition::Break, now), 0u);
        QCOMPARE(damage.Untold(LineCondition::DamagedByte, now), 1u); // its mark did not come
        QCOMPARE(damage.Untold(LineCondition::DamagedByte, {}), 0u);

        damage.Begin(false, now);
        now.damaged += 5;
        QCOMPARE(damage.Untold(LineCondition::DamagedByte, now), 5u);
        QCOMPARE(damage.Untold(LineCondition::DamagedByte, Start), 0u); // the driver began anew
        QVERIFY(damage.IsBreak({}));
        damage.Begin(true, {}); // that the driver answers later means nothing
        QCOMPARE(damage.Untold(LineCondition::Overrun, now), 0u);
        QVERIFY(damage.IsBreak(Start));
    }
};

QTEST_APPLESS_MAIN(tst_linemarks)
#include "tst_linemarks.moc"
