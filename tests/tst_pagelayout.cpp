// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ClMyPrinter.h"
#include "support/Cases.h"
#include "support/RecordingPrinter.h"
#include "support/ScriptedPrompts.h"

namespace
{

/// A started printout on a page with room for 20 letters and, between the margins, 5 lines; the
/// bottom of the printable area is at 2152.
struct LayoutBench {
    ScriptedPrompts prompts;
    RecordingOutput output;
    ClMyPrinter printer{prompts, output};

    LayoutBench() { printer.startPrint(); }
    QString Cursor() const
    {
        return QStringLiteral("%1,%2").arg(printer.currentX()).arg(printer.currentY());
    }
};

} // namespace

class tst_pagelayout : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void TextWraps_data();
    void TextWraps();
    void RulesStandApartByWholeTwips_data();
    void RulesStandApartByWholeTwips();
    void GridsRepeatTheirHeader();
    void PicturesFillTheRestOfThePage_data();
    void PicturesFillTheRestOfThePage();
    void PagesBreakAtTheMargin();
    void StartingSetsThePageUp();
};

void tst_pagelayout::TextWraps_data()
{
    const Cases<QString, float, float, QStringList, QString> add("text", "x", "y", "drawn", "end");
    add("a line that fits", "to be", 0, 0, {"1: 0,0 to", "1: 200,0  be"}, "0,200");
    add("further lines keep the left edge", "eight888 again888 more", 500, 0,
        {"1: 500,0 eight888", "1: 500,200 again888", "1: 1300,200  more"}, "0,400");
    add("the blank in front is not measured", "exactly_10 fits_so_ok", 0, 0,
        {"1: 0,0 exactly_10", "1: 1000,0  fits_so_ok"}, "0,200");
    add("one letter more wraps", "exactly_10 fits_not_ok", 0, 0,
        {"1: 0,0 exactly_10", "1: 0,200 fits_not_ok"}, "0,400");
    add("two blanks stay two", "a  b", 0, 0, {"1: 0,0 a", "1: 100,0  ", "1: 200,0  b"}, "0,200");
    add("a first word too wide is whole, below an empty line", "wider_than_all_columns", 0, 0,
        {"1: 0,200 wider_than_all_columns"}, "0,400");
    add("a later word too wide is whole", "a wider_than_all_columns b", 0, 0,
        {"1: 0,0 a", "1: 0,200 wider_than_all_columns", "1: 0,400 b"}, "0,600");
    add("no text is an empty line", "", 300, 0, {}, "0,200");
    add("wholly above the bottom", "end", 700, 1952, {"1: 700,1952 end"}, "0,2152");
    add("a twip too low goes to the next page", "end", 700, 1953, {"2: 700,0 end"}, "0,200");
    add("the words of a line go there together", "eight888 again888 as", 700, 1900,
        {"1: 700,1900 eight888", "2: 700,0 again888", "2: 1500,0  as"}, "0,200");
    add("an empty line begins no page", "", 700, 2000, {}, "0,200");
}

void tst_pagelayout::TextWraps()
{
    QFETCH(QString, text);
    QFETCH(float, x);
    QFETCH(float, y);
    LayoutBench bench;
    bench.printer.printText("before", -1, 500);
    QCOMPARE(bench.output.drawn.takeFirst(), QStringLiteral("1: 0,500 before"));
    bench.printer.printText(text, x, y);
    QTEST(bench.output.drawn, "drawn");
    QTEST(bench.Cursor(), "end");
}

void tst_pagelayout::RulesStandApartByWholeTwips_data()
{
    const Cases<float, float, QString, QString> add("lineHeight", "spacing", "rule", "cursor");
    add("no room", 200, 0, "1: 0,300 line to 2000,300", "0,300");
    add("a half goes down to the even number", 225, 0.5F, "1: 0,412 line to 2000,412", "0,524");
    add("a half goes up to the even number", 227, 0.5F, "1: 0,414 line to 2000,414", "0,528");
    add("more than a half goes up", 233, 0.2F, "1: 0,347 line to 2000,347", "0,394");
}

void tst_pagelayout::RulesStandApartByWholeTwips()
{
    QFETCH(float, lineHeight);
    QFETCH(float, spacing);
    QFETCH(QString, rule);
    LayoutBench bench;
    bench.output.lineHeight = lineHeight;
    bench.printer.SetCurrentY(300);
    bench.printer.printVertLine(spacing);
    QCOMPARE(bench.output.drawn, QStringList{rule});
    QTEST(bench.Cursor(), "cursor");
}

/// Its first header is wider than any cell below, and its header has two rows.
void tst_pagelayout::GridsRepeatTheirHeader()
{
    LayoutBench bench;
    bench.printer.printGrid({{{"Number", "A"}, {"-", "-"}, {"1", "one"}, {"2", "two"}}, 2});
    QCOMPARE(
        bench.output.drawn.join(u'|'),
        QStringLiteral(
            "1: 0,100 line to 2000,100|1: 0,200 Number|1: 800,200 A|1: 0,400 -|1: 800,400 -|"
            "1: 0,700 line to 2000,700|1: 0,800 1|1: 800,800 one|1: 0,1040 line to 2000,1040|"
            "2: 0,100 line to 2000,100|2: 0,200 Number|2: 800,200 A|2: 0,400 -|2: 800,400 -|"
            "2: 0,700 line to 2000,700|2: 0,800 2|2: 800,800 two|2: 0,1040 line to 2000,1040"));
    QCOMPARE(bench.Cursor(), QStringLiteral("0,1080"));
}

void tst_pagelayout::PicturesFillTheRestOfThePage_data()
{
    const Cases<float, float, float, QString> add("width", "x", "y", "drawn");
    add("twice as wide as high", 200, 0, 0, "1: 0,0 picture png 2000x1000");
    add("twice as high as wide", 50, 0, 0, "1: 0,0 picture png 1500x3000");
    add("in what is left of the page", 100, 500, 1000, "1: 500,1000 picture png 1500x1500");
    add("as high as what is left", 75, 500, 1000, "1: 500,1000 picture png 1500x2000");
}

void tst_pagelayout::PicturesFillTheRestOfThePage()
{
    QFETCH(float, width);
    QFETCH(float, x);
    QFETCH(float, y);
    QFETCH(QString, drawn);
    LayoutBench bench;
    bench.output.scaleHeight = 1152 + 3000 + 1152;
    bench.printer.SetCurrentX(x);
    bench.printer.SetCurrentY(y);
    bench.printer.printPicture({"png", width, 100});
    QCOMPARE(bench.output.drawn, QStringList{drawn});
    QCOMPARE(bench.Cursor(), QStringLiteral("%1,%2").arg(x).arg(y));
}

void tst_pagelayout::PagesBreakAtTheMargin()
{
    LayoutBench bench;
    bench.printer.printText("first");
    bench.printer.SetCurrentX(70);
    bench.printer.SetCurrentY(999);
    QVERIFY(!bench.printer.checkForNewPage());
    bench.printer.SetCurrentY(1000);
    QVERIFY(bench.printer.checkForNewPage());
    QCOMPARE(bench.Cursor(), QStringLiteral("70,0"));
    bench.printer.beginNewPage();
    bench.printer.printText("third");
    QCOMPARE(bench.output.drawn.last(), QStringLiteral("3: 70,0 third"));
    bench.printer.printText({}, 0, 2100); // goes on to page 4, which is as good as a new one
    bench.printer.beginNewPage();
    bench.printer.printText("fourth");
    QCOMPARE(bench.output.drawn.last(), QStringLiteral("4: 0,0 fourth"));
    bench.printer.beginNewPage();
    bench.printer.endPrint();
    QCOMPARE(bench.output.pages, 4); // none is empty
    QCOMPARE(bench.output.ends, QStringList{"finished"});
}

void tst_pagelayout::StartingSetsThePageUp()
{
    LayoutBench bench;
    QCOMPARE(bench.output.setUp, QStringLiteral("1 2"));
    QCOMPARE(bench.printer.availableWidth(), 2000.0F);
    QCOMPARE(bench.printer.availableHeight(), 1000.0F);
    bench.printer.SetCurrentX(-1);
    bench.printer.SetCurrentY(-5);
    QCOMPARE(bench.Cursor(), QStringLiteral("0,0"));
    bench.printer.printText("of the first job", -3, 7);
    QCOMPARE(bench.output.drawn.first(), QStringLiteral("1: 0,7 of"));

    QVERIFY(!bench.printer.setup({.document = "cancelled"}));
    bench.printer.orientation = PageOrientation::Landscape;
    bench.printer.startPrint();
    QCOMPARE(bench.output.ends, QStringList{"finished"});
    QCOMPARE(bench.output.setUp, QStringLiteral("2 2"));
    QCOMPARE(bench.Cursor(), QStringLiteral("0,0"));

    bench.prompts.printer = {.colour = PrintColour::Monochrome, .copies = 3};
    QVERIFY(bench.printer.setup({.document = "paper"}));
    QCOMPARE(bench.prompts.printsAsked.last().document, QStringLiteral("paper"));
    QCOMPARE(bench.prompts.printsAsked.last().flags, 12);
    bench.printer.startPrint();
    QCOMPARE(bench.output.setUp, QStringLiteral("1 1"));
    QCOMPARE(bench.printer.Copies(), 3);
}

QTEST_GUILESS_MAIN(tst_pagelayout)
#include "tst_pagelayout.moc"
