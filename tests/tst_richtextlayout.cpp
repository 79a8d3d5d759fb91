// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "controls/RichTextCaret.h"
#include "controls/RichTextLayout.h"
#include "controls/RichTextModel.h"

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <vector>

namespace
{

using Movement = RichTextCaret::Movement;

/// The rows, separated by bars.
QByteArray Rows(const RichTextLayout &layout)
{
    QByteArray rows;
    for (qsizetype row = 0; row < layout.RowCount(); ++row) {
        const qint64 from = layout.RowStart(row);
        rows += row > 0 ? "|" : "";
        rows +=
            layout.Model().Bytes().sliced(from - layout.Model().Begin(), layout.RowEnd(row) - from);
    }
    return rows;
}

/// Where a row that begins at from ends: the plain rules, one row at a time.
qsizetype ReferenceRowEnd(const QByteArray &text, qsizetype from, int columns)
{
    qsizetype behindBlank = -1;
    int column = 0;
    for (qsizetype at = from; at < text.size(); ++at) {
        const char byte = text[at];
        if (byte == '\n')
            return at + 1;
        if (byte == '\r')
            return text.mid(at + 1, 1) == "\n" ? at + 2 : at + 1;
        if (byte == '\t') {
            column += 8 - column % 8;
            behindBlank = at + 1;
        } else if (byte == ' ') {
            ++column;
            behindBlank = at + 1;
        } else if (column >= columns) {
            return behindBlank >= 0 ? behindBlank : at;
        } else {
            ++column;
        }
    }
    return -1;
}

/// Starts of all rows of the text from a place on.
std::vector<qint64> ReferenceStarts(const QByteArray &text, qint64 origin, int columns)
{
    std::vector<qint64> starts;
    for (qsizetype at = qsizetype(origin); at >= 0; at = ReferenceRowEnd(text, at, columns))
        starts.push_back(at);
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
        QTest::addColumn<QByteArrayList>("appends");
        QTest::addColumn<QByteArray>("rows");
        const auto row = [](const char *name, const QByteArrayList &appends, const char *rows) {
            QTest::newRow(name) << appends << QByteArray(rows);
        };
        row("an empty text has one row", {""}, "");
        row("a word goes to the next row whole", {"abc def ghij"}, "abc def |ghij");
        row("a row may be full to its end", {"abcdefgh"}, "abcdefgh");
        row("a long word breaks at the row's end", {"abcdefghijklmnopqr"}, "abcdefgh|ijklmnop|qr");
        row("a long word behind a short one", {"ab cdefghijklm"}, "ab |cdefghij|klm");
        row("blanks hang over the end", {"abcdefgh   ij"}, "abcdefgh   |ij");
        row("a tab goes to column 8", {"a\tb"}, "a\t|b");
        row("CR, LF and CR LF are one break each", {"a\rb\nc\r\nd"}, "a\r|b\n|c\r\n|d");
        row("LF CR are two", {"a\n\rb"}, "a\n|\r|b");
        row("a break at the end begins a row", {"a\r\n"}, "a\r\n|");
        row("CR and LF in two appends are one break", {"a\r", "\nb"}, "a\r\n|b");
        row("CR, then a letter", {"a\r", "b"}, "a\r|b");
        row("CR, then nothing, then LF", {"a\r", "", "\n\nb"}, "a\r\n|\n|b");
        row("a word grows until it must wrap", {"abc de", "f", "gh", "i"}, "abc |defghi");
        row("a word grows behind a wrap", {"abcdefgh", "i", "j"}, "abcdefgh|ij");
        row("a blank hangs from a later append", {"abcdefgh", " ", "i"}, "abcdefgh |i");
    }

    void Wraps()
    {
        QFETCH(QByteArrayList, appends);
        RichTextModel model;
        RichTextLayout layout(model);
        for (const QByteArray &append : appends) {
            model.AppendStyled(append, {});
            layout.Update(8);
        }
        QTEST(Rows(layout), "rows");
    }

    void MapsColumns()
    {
        RichTextModel model;
        RichTextLayout layout(model);
        model.AppendStyled("ab\tc\r\nxyz uvw", {});
        layout.Update(12);
        QCOMPARE(layout.RowTextEnd(0), 4);
        QCOMPARE(layout.RowEnd(0), 6);
        QCOMPARE(layout.ColumnOf(0, 3), 8);
        QCOMPARE(layout.ColumnOf(0, 6), 9);
        QCOMPARE(layout.RowOf(5), 0);
        QCOMPARE(layout.RowOf(6), 1);
        QCOMPARE(layout.RowOf(13), 1);
        QCOMPARE(layout.PositionAt(0, -3), 0);
        QCOMPARE(layout.PositionAt(0, 1.4), 1);
        QCOMPARE(layout.PositionAt(0, 1.6), 2);
        QCOMPARE(layout.PositionAt(0, 4.9), 2);
        QCOMPARE(layout.PositionAt(0, 5.1), 3);
        QCOMPARE(layout.PositionAt(0, 99), 4);
        QCOMPARE(layout.PositionAt(1, 99), 13);
    }

    void ACutKeepsTheRows()
    {
        RichTextModel model;
        RichTextLayout layout(model);
        model.AppendStyled(QByteArray(128000, 'x'), {});
        layout.Update(100);
        QCOMPARE(layout.RowCount(), 1280);
        model.AppendStyled("y", {});
        layout.Update(100);
        QCOMPARE(layout.RowStart(0), 2048);
        QCOMPARE(layout.RowStart(1), 2100);
        QCOMPARE(layout.RowCount(), 1261);
        QCOMPARE(layout.RowEnd(1260), 128001);
        layout.Update(64);
        QCOMPARE(layout.RowStart(1), 2048 + 64);
    }

    void ACutBeyondAllRowsBeginsAnew()
    {
        RichTextModel model;
        RichTextLayout layout(model);
        model.AppendStyled("short", {});
        layout.Update(100);
        model.AppendStyled(QByteArray(RichTextModel::HardLimit, 'x'), {});
        layout.Update(100);
        QCOMPARE(layout.RowCount(), 1280);
        QCOMPARE(layout.RowStart(0), model.Begin());
    }

    void AnEditLaysOutAnew()
    {
        RichTextModel model;
        RichTextLayout layout(model);
        model.AppendStyled("abcdefghij", {});
        layout.Update(8);
        model.Replace(2, 2, " ", {});
        layout.Update(8);
        QCOMPARE(Rows(layout), QByteArray("ab |cdefghij"));
        model.SetText("new", {});
        layout.Update(8);
        QCOMPARE(Rows(layout), QByteArray("new"));
    }

    void LaysOutAPart()
    {
        RichTextModel model;
        RichTextLayout layout(model);
        model.AppendStyled("abcdefghij klmnop qrs", {});
        layout.LayOutPart(2, 13, 5);
        QCOMPARE(Rows(layout), QByteArray("cdefg|hij |kl"));
    }

    void EqualsTheReference()
    {
        QRandomGenerator random(4711);
        RichTextModel model;
        RichTextLayout layout(model);
        QByteArray all; // everything ever appended
        qint64 origin = 0;
        int columns = 20;
        layout.Update(columns);
        for (int step = 0; step < 150; ++step) {
            const qint64 lastStart = layout.RowStart(layout.RowCount() - 1);
            const int kind = random.bounded(20);
            // Filling up to the limit makes the next append cut.
            const int room = int(RichTextModel::MaxViewLength - model.Length());
            const QByteArray text =
                RandomText(random, kind < 8 && room > 0 ? room : random.bounded(200));
            model.AppendStyled(text, {});
            all += text;
            if (kind == 19) {
                columns = 1 + random.bounded(120);
                origin = model.Begin();
            } else if (model.Begin() >= lastStart) {
                origin = model.Begin();
            }
            layout.Update(columns);

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
        QTest::addColumn<int>("from");
        QTest::addColumn<QList<int>>("movements");
        QTest::addColumn<int>("to");
        const auto row = [](const char *name, int from, QList<Movement> movements, int to) {
            QList<int> numbers;
            for (const Movement movement : movements)
                numbers << int(movement);
            QTest::newRow(name) << from << numbers << to;
        };
        // Rows of eight columns: "abcdefgh" "ijk lm" CR LF, "n" CR LF, "opq"; starts 0 8 16 19.
        row("right over CR LF", 14, {Movement::NextCharacter}, 16);
        row("left over CR LF", 16, {Movement::PreviousCharacter}, 14);
        row("left stops at the begin", 0, {Movement::PreviousCharacter}, 0);
        row("down", 2, {Movement::NextRow}, 10);
        row("down through a short row keeps the column", 11, {Movement::NextRow, Movement::NextRow},
            22);
        row("up stops in the first row", 3, {Movement::PreviousRow}, 3);
        row("Home", 12, {Movement::RowStart}, 8);
        row("End", 9, {Movement::RowEnd}, 14);
        row("End of a wrapped row, then down, stays at the ends", 2,
            {Movement::RowEnd, Movement::NextRow}, 14);
        row("End of a wrapped row, then Home, stays in the row", 2,
            {Movement::RowEnd, Movement::RowStart}, 0);
        row("a page down", 1, {Movement::NextPage}, 17);
        row("a page up", 20, {Movement::PreviousPage}, 9);
        row("to the end", 1, {Movement::End}, 22);
        row("to the begin", 20, {Movement::Begin}, 0);
        row("a word on", 8, {Movement::NextWord}, 12);
        row("a word back", 12, {Movement::PreviousWord}, 0);
    }

    void CaretMoves()
    {
        QFETCH(int, from);
        QFETCH(QList<int>, movements);
        RichTextModel model;
        RichTextLayout layout(model);
        RichTextCaret caret(model, layout);
        model.AppendStyled("abcdefghijk lm\r\nn\r\nopq", {});
        layout.Update(8);
        caret.SetPageRows(2);
        model.Select(from, from);
        for (const int movement : movements)
            caret.Move(Movement(movement), false);
        QTEST(int(model.Caret()), "to");
        model.Select(from, from);
        for (const int movement : movements)
            caret.Move(Movement(movement), true);
        QTEST(int(model.Caret()), "to");
        QCOMPARE(model.Anchor(), from);
    }

    void CaretLeavesASelectionAtItsEnds()
    {
        RichTextModel model;
        RichTextLayout layout(model);
        RichTextCaret caret(model, layout);
        model.AppendStyled("abcdef", {});
        layout.Update(8);
        model.Select(1, 4);
        caret.Move(Movement::PreviousCharacter, false);
        QCOMPARE(model.Caret(), 1);
        model.Select(4, 1);
        caret.Move(Movement::NextCharacter, false);
        QCOMPARE(model.Caret(), 4);
    }

    void DragsSelectWordsAndLines()
    {
        RichTextModel model;
        RichTextLayout layout(model);
        RichTextCaret caret(model, layout);
        model.AppendStyled("one two three\nfour", {});
        layout.Update(40);
        caret.Press(0, 5.2, RichTextCaret::Unit::Word, false);
        QCOMPARE(model.SelectedText().toByteArray(), QByteArray("two"));
        caret.DragTo(0, 9);
        QCOMPARE(model.SelectedText().toByteArray(), QByteArray("two three"));
        caret.DragTo(0, 1);
        QCOMPARE(model.SelectedText().toByteArray(), QByteArray("one two"));
        QCOMPARE(model.Caret(), 0);
        caret.Press(0, 5, RichTextCaret::Unit::Line, false);
        QCOMPARE(model.SelectedText().toByteArray(), QByteArray("one two three\n"));
    }
};

QTEST_APPLESS_MAIN(tst_RichTextLayout)
#include "tst_richtextlayout.moc"
