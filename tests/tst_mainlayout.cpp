// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "MainLayout.h"
#include "Twips.h"
#include "support/Cases.h"

using namespace MainLayout;

class tst_mainlayout : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void SplittersAreBounded_data()
    {
        const Cases<bool, int, int, int> row("vertical", "wanted", "length", "splitter");
        row("where it is wanted", true, 6000, 15000, 6000);
        row("let go at 600", true, 600, 15000, 1500);
        row("too far right", true, 14000, 15000, 13500);
        row("in a narrow window the upper bound wins", true, 6000, 2000, 500);
        row("too high", false, 0, 10000, 2000);
        row("too low", false, 9000, 10000, 8000);
        row("in a low window the upper bound wins", false, 6000, 3000, 1000);
    }

    void SplittersAreBounded()
    {
        QFETCH(bool, vertical);
        QFETCH(int, wanted);
        QFETCH(int, length);
        QTEST(vertical ? VSizeControls(wanted, length).splitter
                       : HSizeControls(wanted, {length, 500, 300}).splitter,
              "splitter");
    }

    void LengthsAddUp()
    {
        const Horizontal across = VSizeControls(6000, 15000);
        QCOMPARE(across.lists, (Span{50, 5950}));
        QCOMPARE(across.tabs, (Span{6100, 8700}));
        QCOMPARE(across.title, (Span{6120, 8660}));
        QCOMPARE(across.views, (Span{6180, 8540}));
        const Vertical down = HSizeControls(5000, {10000, 500, 300});
        QCOMPARE(down.titleRow, 620);
        QCOMPARE(down.sendList, (Span{890, 4110}));
        QCOMPARE(down.receiveTitle, 5140);
        QCOMPARE(down.receiveList, (Span{5410, 4240}));
        QCOMPARE(down.tabs, (Span{620, 8580}));
        QCOMPARE(down.views, (Span{990, 8110}));
        const Vertical large = HSizeControls(5000, {10000, 500, 300, 400});
        QCOMPARE(large.sendList, (Span{1020, 3980}));
        QCOMPARE(large.receiveList, (Span{5540, 4110}));
        QCOMPARE(large.views, (Span{1120, 7980}));
    }

    void NoLengthIsNegative()
    {
        for (int size = 0; size < 4000; size += 15) {
            const Vertical down = HSizeControls(6000, {size, 600, 300});
            const Horizontal across = VSizeControls(6000, size);
            for (const Span &span : {down.sendList, down.receiveList, down.tabs, down.views,
                                     across.lists, across.tabs, across.title, across.views})
                QVERIFY(span.length >= 0);
        }
    }

    void ADragStopsAtItsLimits()
    {
        QCOMPARE(DragPosition(499, VerticalDragLimit, 15000), 500);
        QCOMPARE(DragPosition(600, VerticalDragLimit, 15000), 600);
        QCOMPARE(DragPosition(14600, VerticalDragLimit, 15000), 14500);
    }
};

QTEST_GUILESS_MAIN(tst_mainlayout)
#include "tst_mainlayout.moc"
