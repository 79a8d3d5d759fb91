// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "RichTextCaret.h"
#include "RichTextLayout.h"
#include "RichTextModel.h"
#include "support/Cases.h"

#include <QRandomGenerator>

#include <algorithm>
#include <vector>

namespace
{

using Movement = RichTextCaret::Movement;

/// A text, laid out in rows of some columns, with the caret in it.
struct Page {
    RichTextModel model;
    RichTextLayout layout{model};
    RichTextCaret caret{model, layout};

    explicit Page(const QByteArray &text = {}, int columns = 8) { Append(text, columns); }

    void Append(const QByteArray &text, int columns = 8)
    {
        model.AppendStyled(text, {});
        layout.Update(columns);
    }
    /// The rows, separated by bars.
    QByteArray Rows() const
    {
        QByteArrayList rows;
        for (qsizetype row = 0; row < layout.RowCount(); ++row) {
            const qint64 from = layout.RowStart(row);
            rows << model.Bytes()
                        .sliced(from - model.Begin(), layout.RowEnd(row) - from)
                        .toByteArray();
        }
        return rows.join('|');
    }
    QByteArray Selected() const { return model.SelectedText().toByteArray(); }
};

/// Starts of all rows of the text from a place on: the plain rules, one row at a time.
std::vector<qint64> ReferenceStarts(const QByteArray &text, qint64 origin, int columns)
{
    std::vector<qint64> starts = {origin};
    qint64 behindBlank = -1;
    int column = 0;
    const auto startRow = [&](qint64 at) {
        starts.push_back(at);
        behindBlank = -1;
        column = 0;
    };
    for (qint64 at = origin; at < text.size(); ++at) {
        const char byte = text[at];
        const bool breaks = byte == '\n' || (byte == '\r' && text.mid(at + 1, 1) != "\n");
        if (breaks) {
            startRow(at + 1);
        } else if (byte == '\t' || byte == ' ') {
            column += byte == ' ' ? 1 : 8 - column % 8;
            behindBlank = at + 1;
        } else if (byte != '\r' && column++ >= columns) {
            startRow(behindBlank >= 0 ? behindBlank : at);
            at = starts.back() - 1;
        }
    }
    return starts;
}

/// Text of words, long and short, blanks, tabs and line breaks.
QByteArray RandomText(QRandomGenerator &random, int length)
{
    const QByteArray letters = "abcdefghijklm  \t\r\n\r";
    QByteArray text;
    for (int i = 0; i < length; ++i)
        text += random.bounded(40) == 0 ? QByteArray("\r\n")
                                        : letters.mid(random.bounded(int(letters.size())), 1);
    return text;
}

} // namespace

class tst_RichTextLayout : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void Wraps_data()
    {
        const Cases<QByteArrayList, QByteArray> row("appends", "rows");
        row("an empty text has one row", {""}, "");
        row("a long word behind a short one", {"ab cdefghijklm"}, "ab |cdefghij|klm");
        row("blanks hang over the end", {"abcdefgh   ij"}, "abcdefgh   |ij");
        row("a tab goes to column 8", {"a\tb"}, "a\t|b");
        row("CR, LF and CR LF are one break each", {"a\rb\nc\r\nd"}, "a\r|b\n|c\r\n|d");
        row("a break at the end begins a row", {"a\r\n"}, "a\r\n|");
        row("CR, then nothing, then LF", {"a\r", "", "\n\nb"}, "a\r\n|\n|b");
        row("a word grows until it must wrap", {"abc de", "f", "gh", "i"}, "abc |defghi");
    }

    void Wraps()
    {
        QFETCH(const QByteArrayList, appends);
        Page page;
        for (const QByteArray &append : appends)
            page.Append(append);
        QTEST(page.Rows(), "rows");
    }

    void MapsColumns()
    {
        const Page page("ab\tc\r\nxyz uvw", 12);
        QCOMPARE(page.layout.ColumnOf(0, 3), 8);
        QCOMPARE(page.layout.ColumnOf(0, 6), 9);
        QCOMPARE(page.layout.RowOf(5), 0);
        QCOMPARE(page.layout.RowOf(6), 1);
        const std::pair<double, qint64> places[] = {{-3, 0},  {1.4, 1}, {1.6, 2},
                                                    {4.9, 2}, {5.1, 3}, {99, 4}};
        for (const auto &[column, position] : places)
            QCOMPARE(page.layout.PositionAt(0, column), position);
        QCOMPARE(page.layout.PositionAt(1, 99), 13);
    }

    void LaysOutAnewWhatIsNotJustLonger()
    {
        Page page("short", 100);
        page.Append(QByteArray(RichTextModel::HardLimit, 'x'), 100); // cuts all that was there
        QCOMPARE(page.layout.RowCount(), 1280);
        QCOMPARE(page.layout.RowStart(0), page.model.Begin());
        page.model.SetText("abcdefghij", {});
        page.layout.Update(8);
        page.model.Replace(page.model.Begin() + 2, page.model.Begin() + 2, " ", {});
        page.layout.Update(8);
        QCOMPARE(page.Rows(), "ab |cdefghij");
        page.model.SetText("abcdefghij klmnop qrs", {});
        page.layout.LayOutPart(page.model.Begin() + 2, page.model.Begin() + 13, 5);
        QCOMPARE(page.Rows(), "cdefg|hij |kl");
    }

    void EqualsTheReference()
    {
        QRandomGenerator random(4711);
        Page page({}, 20);
        const RichTextModel &model = page.model;
        const RichTextLayout &layout = page.layout;
        QByteArray all; // everything ever appended
        qint64 origin = 0;
        int columns = 20;
        for (int step = 0; step < 150; ++step) {
            const qint64 lastStart = layout.RowStart(layout.RowCount() - 1);
            const int kind = random.bounded(20);
            // Filling up to the limit makes the next append cut.
            const int room = int(RichTextModel::MaxViewLength - model.Length());
            const QByteArray text =
                RandomText(random, kind < 8 && room > 0 ? room : random.bounded(200));
            page.model.AppendStyled(text, {});
            all += text;
            if (kind == 19) {
                columns = 1 + random.bounded(120);
                origin = model.Begin();
            } else if (model.Begin() >= lastStart) {
                origin = model.Begin();
            }
            page.layout.Update(columns);

            std::vector<qint64> expected = ReferenceStarts(all, origin, columns);
            const auto cut = std::upper_bound(expected.begin(), expected.end(), model.Begin()) - 1;
            expected.erase(expected.begin(), cut);
            expected.front() = qMax(expected.front(), model.Begin());
            std::vector<qint64> starts;
            for (qsizetype row = 0; row < layout.RowCount(); ++row)
                starts.push_back(layout.RowStart(row));
            QVERIFY2(starts == expected, qPrintable(QStringLiteral("step %1").arg(step)));
            QCOMPARE(layout.RowEnd(layout.RowCount() - 1), model.End());
        }
        QVERIFY(model.Begin() > 50000);
    }

    void CaretMoves_data()
    {
        const Cases<int, QList<Movement>, int> row("from", "movements", "to");
        // Rows of eight columns: "abcdefgh" "ijk lm" CR LF, "n" CR LF, "opq"; starts 0 8 16 19.
        row("down through a short row keeps the column", 11, {Movement::NextRow, Movement::NextRow},
            22);
        row("up stops in the first row", 3, {Movement::PreviousRow}, 3);
        row("End of a wrapped row, then down, stays at the ends", 2,
            {Movement::RowEnd, Movement::NextRow}, 14);
        row("End of a wrapped row, then Home, stays in the row", 2,
            {Movement::RowEnd, Movement::RowStart}, 0);
        row("a page down", 1, {Movement::NextPage}, 17);
        row("a page up", 20, {Movement::PreviousPage}, 9);
    }

    void CaretMoves()
    {
        QFETCH(const int, from);
        QFETCH(const QList<Movement>, movements);
        Page page("abcdefghijk lm\r\nn\r\nopq");
        page.caret.SetPageRows(2);
        for (const bool selecting : {false, true}) {
            page.model.Select(from, from);
            for (const Movement movement : movements)
                page.caret.Move(movement, selecting);
            QTEST(int(page.model.Caret()), "to");
        }
        QCOMPARE(page.model.Anchor(), from);
    }

    void CaretLeavesASelectionAtItsEnds()
    {
        Page page("abcdef");
        for (const auto &[movement, to] :
             {std::pair(Movement::PreviousCharacter, 1), {Movement::NextCharacter, 4}}) {
            page.model.Select(to, 5 - to); // the caret is at the other end
            page.caret.Move(movement, false);
            QCOMPARE(page.model.Caret(), to);
        }
    }

    void DragsSelectWords()
    {
        Page page("one two three\nfour", 40);
        page.caret.Press(0, 5.2, RichTextCaret::Unit::Word, false);
        QCOMPARE(page.Selected(), "two");
        page.caret.DragTo(0, 9);
        QCOMPARE(page.Selected(), "two three");
        page.caret.DragTo(0, 1);
        QCOMPARE(page.Selected(), "one two");
        QCOMPARE(page.model.Caret(), 0);
    }
};

QTEST_APPLESS_MAIN(tst_RichTextLayout)
#include "tst_richtextlayout.moc"
