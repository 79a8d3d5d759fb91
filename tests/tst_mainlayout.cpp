// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "app/MainLayout.h"

#include <QTest>

using namespace MainLayout;

class tst_mainlayout : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void TheVerticalSplitterIsBounded_data();
    void TheVerticalSplitterIsBounded();
    void WidthsAddUp();
    void TheHorizontalSplitterIsBounded_data();
    void TheHorizontalSplitterIsBounded();
    void HeightsAddUp();
    void NoLengthIsNegative();
    void ADragStopsAtItsLimits_data();
    void ADragStopsAtItsLimits();
};

void tst_mainlayout::TheVerticalSplitterIsBounded_data()
{
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("splitter");
    QTest::newRow("where it is wanted") << 6000 << 15000 << 6000;
    QTest::newRow("let go at 600") << 600 << 15000 << 1500;
    QTest::newRow("too far right") << 14000 << 15000 << 13500;
    QTest::newRow("in a narrow window the upper bound wins") << 6000 << 2000 << 500;
}

void tst_mainlayout::TheVerticalSplitterIsBounded()
{
    QFETCH(int, x);
    QFETCH(int, width);
    QTEST(VSizeControls(x, width).splitter, "splitter");
}

void tst_mainlayout::WidthsAddUp()
{
    const Horizontal sums = VSizeControls(6000, 15000);
    QCOMPARE(sums.lists, (Span{50, 5950}));
    QCOMPARE(sums.tabs, (Span{6100, 8700}));
    QCOMPARE(sums.title, (Span{6120, 8660}));
    QCOMPARE(sums.views, (Span{6180, 8540}));
    QCOMPARE(VSizeControls(600, 15000).lists, (Span{50, 1450}));
}

void tst_mainlayout::TheHorizontalSplitterIsBounded_data()
{
    QTest::addColumn<int>("y");
    QTest::addColumn<int>("height");
    QTest::addColumn<int>("splitter");
    QTest::newRow("where it is wanted") << 6000 << 10000 << 6000;
    QTest::newRow("too high") << 0 << 10000 << 2000;
    QTest::newRow("too low") << 9000 << 10000 << 8000;
    QTest::newRow("in a low window the upper bound wins") << 6000 << 3000 << 1000;
}

void tst_mainlayout::TheHorizontalSplitterIsBounded()
{
    QFETCH(int, y);
    QFETCH(int, height);
    QTEST(HSizeControls(y, {height, 500, 300}).splitter, "splitter");
}

void tst_mainlayout::HeightsAddUp()
{
    const Vertical sums = HSizeControls(5000, {10000, 500, 300});
    QCOMPARE(sums.titleRow, 620);
    QCOMPARE(sums.sendList, (Span{890, 4110}));
    QCOMPARE(sums.receiveTitle, 5140);
    QCOMPARE(sums.receiveList, (Span{5410, 4240}));
    QCOMPARE(sums.tabs, (Span{620, 8580}));
    QCOMPARE(sums.views, (Span{990, 8110}));
}

void tst_mainlayout::NoLengthIsNegative()
{
    for (int size = 0; size < 4000; size += 15) {
        const Vertical down = HSizeControls(6000, {size, 600, 300});
        const Horizontal across = VSizeControls(6000, size);
        for (const Span &span : {down.sendList, down.receiveList, down.tabs, down.views,
                                 across.lists, across.tabs, across.title, across.views})
            QVERIFY(span.length >= 0);
    }
}

void tst_mainlayout::ADragStopsAtItsLimits_data()
{
    QTest::addColumn<int>("wanted");
    QTest::addColumn<int>("place");
    QTest::newRow("left of the limit") << -300 << 500;
    QTest::newRow("at the limit") << 500 << 500;
    QTest::newRow("between") << 600 << 600;
    QTest::newRow("right of the limit") << 14600 << 14500;
}

void tst_mainlayout::ADragStopsAtItsLimits()
{
    QFETCH(int, wanted);
    QTEST(DragPosition(wanted, VerticalDragLimit, 15000), "place");
}

QTEST_GUILESS_MAIN(tst_mainlayout)
#include "tst_mainlayout.moc"
