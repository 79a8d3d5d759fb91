// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "HistogramPlot.h"
#include "PlotScale.h"
#include "PointsPlot.h"
#include "WindowSettings.h"
#include "frmResponses.h"
#include "support/Cases.h"
#include "support/TelegramScript.h"

#include <QCheckBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTreeView>

namespace
{

using namespace TelegramScript;

constexpr qint64 Second = 1'000'000'000;

/// A capture that more may come to.
class Record final : public TelegramSource
{
  public:
    explicit Record(const QByteArrayList &events)
        : m_capture(SourceOf(CaptureOf(EventsOf(events), {{"COM1", "/dev/ttyS0", 9600}})))
    {
    }

    QList<Part> Parts() const override { return m_capture->Parts(); }
    FileSystem::Opened Open(qint64 number) const override { return m_capture->Open(number); }
    bool Grows() const override { return true; }

  private:
    std::shared_ptr<TelegramSource> m_capture;
};

/// The window on four questions; the third has no answer, and the last two a late one each.
struct Desk {
    Desk()
    {
        window.Count(std::make_shared<Record>(QByteArrayList{
                         "0 > a =Ask", "10 < x", "100 > a =Ask", "130 < x =Found", "200 > a =Ask",
                         "3000 > b =Be", "3500 < x =Found", "4000 > a =Ask", "5001 < x"}),
                     {});
        window.show();
    }
    template <typename Widget> Widget *Find(const char *name) const
    {
        return window.findChild<Widget *>(name);
    }
    QTreeView *List() const { return Find<QTreeView>("lstResponses"); }
    QString Row(int row) const
    {
        QStringList cells;
        for (int column = 0; column < List()->model()->columnCount(); ++column)
            cells << List()->model()->index(row, column).data().toString();
        return cells.join(u'|');
    }
    int Count() const { return List()->model()->rowCount(); }
    bool IsReady() const { return window.Book().Told().isWhole && window.Book().Told().picture; }
    /// The point of a plot, from left to right, at which something else is said.
    static QPoint Next(ResponsePlot &plot, QPoint from)
    {
        const QString before = plot.Readout();
        while (from.x() < plot.width() && (plot.Readout() == before || plot.Readout().isEmpty())) {
            from += QPoint(1, 0);
            QTest::mouseMove(&plot, from);
        }
        return from;
    }

    ResponseWindowSettings settings;
    frmResponses window{settings, nullptr};
};

} // namespace

class tst_responsewindow : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase() { qputenv("TZ", "UTC"); }

    void Scales_data()
    {
        const Cases<PlotScale, QString, QString> row("scale", "labels", "unit");
        constexpr qint64 Ms = 1'000'000;
        row("nothing", PlotScale::OfTimes(-1, -1, false), "0@0 0.2@20 0.4@40 0.6@60 0.8@80 1@100",
            "\u00B5s");
        row("milliseconds", PlotScale::OfTimes(3 * Ms, 9 * Ms, false), "0@0 2@22 4@44 6@67 8@89",
            "ms");
        row("less than one", PlotScale::OfTimes(3, 800'000, false),
            "0@0 200@25 400@50 600@75 800@100", "\u00B5s");
        row("decades", PlotScale::OfTimes(30'000, 7 * Second, true),
            "10 \u00B5s@0 1 ms@33 100 ms@67 10 s@100", "");
        row("few decades", PlotScale::OfTimes(300'000, 900'000, true),
            "100 \u00B5s@0 200 \u00B5s@30 500 \u00B5s@70 1 ms@100", "");
        row("counts are whole", PlotScale::OfCounts(1), "0@0 1@87", "");
        row("many", PlotScale::OfCounts(1'000'000), "0@0 500,000@43 1,000,000@87", "");
        row("a moment", PlotScale::OfMoments(Start, Start),
            "19.999600@10 19.999800@30 20.000000@50 20.000200@70 20.000400@90", "");
        row("seconds", PlotScale::OfMoments(Start, Start + 9 * Second),
            "22:13:20@2 22:13:22@23 22:13:24@45 22:13:26@66 22:13:28@87", "");
        row("hours", PlotScale::OfMoments(Start, Start + 9 * 3600 * Second),
            "00:00@21 02:00@42 04:00@64 06:00@85", "");
        row("weeks", PlotScale::OfMoments(Start, Start + 30 * 86400 * Second),
            "11-21@21 11-28@44 12-05@66 12-12@89", "");
    }
    void Scales()
    {
        QFETCH(PlotScale, scale);
        QStringList labels;
        for (const PlotScale::Tick &tick : scale.Ticks(5))
            labels << tick.label + u'@' + QString::number(qRound(tick.share * 100));
        QTEST(labels.join(u' '), "labels");
        QTEST(scale.Unit(), "unit");
    }

    void Table()
    {
        Desk desk;
        QTRY_VERIFY(desk.IsReady() && desk.Count() == 3);
        QCOMPARE(desk.Row(0), "Ask|sent by hand|4|2|2|30.000 ms|10.000 ms|10.000 ms|30.000 ms|"
                              "30.000 ms");
        QCOMPARE(desk.Row(1), "Be|sent by hand|1|1|0|500.000 ms|500.000 ms|500.000 ms|500.000 ms|"
                              "500.000 ms");
        QCOMPARE(desk.Row(2), "Found|received|2|||3.370000 s|3.370000 s|3.370000 s|3.370000 s|"
                              "3.370000 s");
        desk.List()->sortByColumn(9, Qt::DescendingOrder);
        QVERIFY(desk.Row(0).startsWith("Found") && desk.Row(2).startsWith("Ask"));
        QCOMPARE(desk.List()->currentIndex().row(), 2);

        desk.Find<QSpinBox>("spnLimit")->setValue(1001);
        QTRY_VERIFY(desk.IsReady() && desk.Row(1).startsWith("Ask|sent by hand|4|3|1|1.001000 s"));
        QCOMPARE(desk.settings.LimitMilliseconds, 1001);
    }

    void AMarkLeadsToItsRow_data()
    {
        const Cases<QByteArray, QList<qint64>> row("plot", "numbers");
        row("points", "pltPoints", {2, 4, 5, 8});
        row("bars, and what has no answer", "pltHistogram", {2, 4, 8});
    }
    void AMarkLeadsToItsRow()
    {
        QFETCH(QByteArray, plot);
        QFETCH(QList<qint64>, numbers);
        Desk desk;
        QTRY_VERIFY(desk.IsReady());
        auto &shown = *desk.window.findChild<ResponsePlot *>(QString::fromLatin1(plot));
        QList<qint64> gone;
        connect(&desk.window, &frmResponses::RowWanted, &desk.window,
                [&gone](qint64 number) { gone << number; });
        shown.setFocus();
        QTest::keyClick(&shown, Qt::Key_Home);
        for (qsizetype i = 0; i < numbers.size(); ++i) {
            QVERIFY(shown.accessibleDescription().startsWith(shown.Readout()));
            QTest::keyClick(&shown, Qt::Key_Return);
            QTest::keyClick(&shown, Qt::Key_Right);
        }
        QCOMPARE(gone, numbers);
        QTest::keyClick(&shown, Qt::Key_Return); // what follows has no place of its own
        if (plot == "pltHistogram")
            QCOMPARE(gone.last(), 8);

        gone.clear();
        QTest::keyClick(&shown, Qt::Key_Home);
        const QString first = shown.Readout();
        for (QPoint at(0, shown.height() / 2); at.y() < shown.height() && gone.isEmpty();
             at = QPoint(0, at.y() + 4)) {
            while (at.x() < shown.width() && shown.cursor().shape() != Qt::PointingHandCursor)
                QTest::mouseMove(&shown, at += QPoint(2, 0));
            if (shown.Readout() == first && at.x() < shown.width())
                QTest::mouseClick(&shown, Qt::LeftButton, {}, at);
        }
        QCOMPARE(gone, QList<qint64>{2});
    }

    void Reset()
    {
        Desk desk;
        QTRY_VERIFY(desk.IsReady());
        QVERIFY(!desk.Find<QPushButton>("cmdCountAll")->isEnabled());
        desk.Find<QPushButton>("cmdReset")->click();
        QTRY_COMPARE(desk.Count(), 0);
        QVERIFY(desk.Find<QLabel>("lblState")->text().startsWith("Since "));
        QVERIFY(!desk.Find<QPushButton>("cmdSaveTable")->isEnabled());
        desk.Find<QPushButton>("cmdCountAll")->click();
        QTRY_VERIFY(desk.IsReady() && desk.Count() == 3);

        desk.window.Count(SourceOf(CaptureOf(EventsOf({"0 < x =Found"}), {{"A", {}, 0}})), {});
        QTRY_COMPARE(desk.Row(0), "Found|received|1|||||||");
        QVERIFY(!desk.Find<QPushButton>("cmdReset")->isEnabled());
        QTRY_COMPARE(desk.window.findChild<PointsPlot *>()->accessibleDescription(),
                     "No time is known yet.");
    }
};

QTEST_MAIN(tst_responsewindow)
#include "tst_responsewindow.moc"
