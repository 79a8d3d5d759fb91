// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "support/SequenceDesk.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QElapsedTimer>
#include <QMenu>
#include <QMimeData>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>

namespace
{

struct TypingCase {
    const char *name;
    Mode mode;
    const char *before;
    QStringView keys;
    const char *after; ///< in HEX
};

const TypingCase TypingCases[] = {
    {"HEX, blanks come by themselves", Hex, "", u"0d0A", "0D 0A"},
    {"HEX, typed blanks do no harm", Hex, "", u"0D 0A, 41 |42 ", "0D 0A 41 42"},
    {"HEX, a blank ends a short item", Hex, "", u"D A 41", "0D 0A 41"},
    {"HEX, an unfinished item counts", Hex, "", u"414", "41 04"},
    {"Backspace takes digits back", Hex, "", u"4142<BS>3", "41 43"},
    {"Backspace takes items back", Hex, "", u"4142<BS><BS><BS>", "04"},
    {"Backspace on nothing", Hex, "", u"<BS>41", "41"},
    {"Ctrl+Backspace takes an item", Hex, "ABC", u"<End><Ctrl+BS>", "41 42"},
    {"Delete takes the item behind", Hex, "ABC", u"<Del>", "42 43"},
    {"Delete inside takes a digit", Hex, "ABC", u"<Right><Del>5", "45 42 43"},
    {"Delete behind an unfinished item takes the next", Hex, "ABC", u"5<Del>", "05 42 43"},
    {"Delete before an unfinished item takes it", Hex, "ABC", u"5<Left><Del>", "41 42 43"},
    {"Backspace before an unfinished item takes the one before", Hex, "AB",
     u"<Ctrl+Right>5<Left><BS>", "04 05 42"},
    {"between items a digit begins one", Hex, "AC", u"<Ctrl+Right>42", "41 42 43"},
    {"inside an item a digit replaces one", Hex, "AC", u"<Right>F", "4F 43"},
    {"a digit goes where the caret is in an unfinished item", Hex, "", u"4<Left>1", "14"},
    {"Insert overtypes", Hex, "ABC", u"<Ins>5F6", "5F 62 43"},
    {"overtyping goes on at the end", Hex, "A", u"<Ins>4243", "42 43"},
    {"Insert twice inserts", Hex, "A", u"<Ins><Ins>42", "42 41"},
    {"a digit replaces what is selected", Hex, "ABC", u"<Shift+Right><Shift+Right>5A", "5A 43"},
    {"going back with Shift takes the whole item", Hex, "ABC",
     u"<Right><Right><Right><Shift+Left><Del>", "41 43"},
    {"Decimal", Decimal, "", u"013010255", "0D 0A FF"},
    {"Decimal, short items", Decimal, "", u"7 13,255", "07 0D FF"},
    {"Decimal, 2 over 099 begins 200", Decimal, "c", u"<Ins>255", "FF"},
    {"Decimal, Backspace", Decimal, "\xFF", u"<End><BS><BS>", "02"},
    {"Binary", Binary, "", u"0000110100001010", "0D 0A"},
    {"Binary, short items", Binary, "", u"1101 1", "0D 01"},
    {"Binary, one bit changed", Binary, "A", u"<Right><Right>1", "61"},
    {"ASCII", Ascii, "", u"AT |,", "41 54 20 7C 2C"},
    {"ASCII control keys", Ascii, "", u"a<Enter><Ctrl+Enter><Ctrl+Tab><Keypad>", "61 0D 0A 09 0D"},
    {"ASCII, the code page", Ascii, "", u"\u20AC\u00FC", "80 FC"},
    {"ASCII, in the middle", Ascii, "AC", u"<Right>B", "41 42 43"},
    {"ASCII, overtyping", Ascii, "AC", u"<Ins>xyz<Enter>", "78 79 7A 0D"},
    {"ASCII, erasing", Ascii, "ABC", u"<Del><End><BS>", "42"},
    {"ASCII, erasing words", Ascii, "one two three", u"<Ctrl+Del><End><Ctrl+BS>", "74 77 6F 20"},
    {"ASCII, Enter over a selection", Ascii, "ABC", u"<Right><Shift+End><Enter>", "41 0D"},
    {"all of it goes", Binary, "ABC", u"<All><BS>", ""},
};

QByteArray AllBytes()
{
    QByteArray bytes;
    for (int i = 0; i < 256; ++i)
        bytes.append(char(i));
    return bytes;
}

} // namespace

class tst_EditSequence : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void Types_data();
    void Types();
    void RefusesWrongKeysWithAToolTip_data();
    void RefusesWrongKeysWithAToolTip();
    void TellsLengthAndPlace_data();
    void TellsLengthAndPlace();
    void AnUnfinishedItemCountsAndIsFinishedOnLeaving();
    void SwitchingTheModeKeepsBytesAndCaret();
    void UndoesAcrossModes();
    void TabMovesOnInEveryMode();
    void EnterInDigitModesIsTheDialogs();
    void RaisesChangedForTheUsersHandOnly();
    void GivesFourTexts();
    void ClipboardRoundTripsInEachMode();
    void CopiedBytesFitAnyMode();
    void PastesOrRefusesWhole();
    void SelectsWithTheMouse();
    void ControlCharactersHavePictures();
    void ReadOnlyAndDisabledKeepTheSequence();
    void OffersWhatTheMenuCanDo();
    void ShowsTheRowEnd();
    void ScrollsLongSequencesFluently();
    void TellsScreenReaders();
};

void tst_EditSequence::Types_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QByteArray>("after");
    for (const TypingCase &row : TypingCases)
        QTest::newRow(row.name) << int(row.mode) << QByteArray(row.before) << row.keys.toString()
                                << QByteArray(row.after);
}

void tst_EditSequence::Types()
{
    QFETCH(const int, mode);
    QFETCH(const QByteArray, before);
    QFETCH(const QString, keys);
    SequenceDesk desk(Mode(mode), before);
    desk.Type(keys);
    QTEST(desk.Bytes(), "after");
    QCOMPARE(desk.Tip(), QString());
}

void tst_EditSequence::RefusesWrongKeysWithAToolTip_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QByteArray>("after");
    QTest::addColumn<QString>("tip");

    QTest::newRow("G in HEX") << int(Hex) << "4G" << QByteArray("04")
                              << "HEX takes the digits 0 to 9 and A to F.";
    QTest::newRow("A in Decimal") << int(Decimal) << "1A" << QByteArray("01")
                                  << "Decimal takes the digits 0 to 9, in values up to 255.";
    QTest::newRow("256") << int(Decimal) << "256" << QByteArray("19")
                         << "256 is above 255, the highest value of a byte.";
    QTest::newRow("300 by overtyping") << int(Decimal) << "100<Ins><Home>3" << QByteArray("64")
                                       << "300 is above 255, the highest value of a byte.";
    QTest::newRow("2 in Binary") << int(Binary) << "12" << QByteArray("01")
                                 << "Binary takes the digits 0 and 1.";
    QTest::newRow("a letter of another script")
        << int(Ascii) << QStringLiteral("a\u0416") << QByteArray("61")
        << QStringLiteral("The character \u0416 (U+0416) is not in code page 1252.");
}

void tst_EditSequence::RefusesWrongKeysWithAToolTip()
{
    QFETCH(const int, mode);
    QFETCH(const QString, keys);
    SequenceDesk desk{Mode(mode)};
    desk.Type(keys);
    QTEST(desk.Bytes(), "after");
    QTEST(desk.Tip(), "tip");
    desk.Type("0"); // what is right takes the tip away
    QTRY_COMPARE(desk.Tip(), QString());
}

void tst_EditSequence::TellsLengthAndPlace_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QByteArray>("sequence");
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QString>("line");

    const QByteArray twelve("Hello world!");
    QTest::newRow("nothing") << int(Hex) << QByteArray() << ""
                             << "0 bytes";
    QTest::newRow("one byte") << int(Hex) << QByteArray("A") << ""
                              << "1 byte, at byte 1";
    QTest::newRow("behind the only byte") << int(Ascii) << QByteArray("A") << "<Right>"
                                          << "1 byte, at the end";
    QTest::newRow("before the third") << int(Ascii) << twelve << "<Right><Right>"
                                      << "12 bytes, at byte 3";
    QTest::newRow("inside the third") << int(Hex) << twelve << "<Ctrl+Right><Ctrl+Right><Right>"
                                      << "12 bytes, at byte 3";
    QTest::newRow("in an unfinished item") << int(Hex) << twelve << "<Ctrl+End>4"
                                           << "13 bytes, at byte 13";
    QTest::newRow("one selected") << int(Binary) << twelve << "<Shift+Right>"
                                  << "12 bytes, byte 1 selected";
    QTest::newRow("some selected")
        << int(Decimal) << twelve << "<Ctrl+Right><Shift+Right><Shift+Right>"
        << "12 bytes, bytes 2 to 3 selected";
    QTest::newRow("overtyping") << int(Decimal) << twelve << "<Ins>"
                                << "12 bytes, at byte 1, overtyping";
}

void tst_EditSequence::TellsLengthAndPlace()
{
    QFETCH(const int, mode);
    QFETCH(const QByteArray, sequence);
    QFETCH(const QString, keys);
    SequenceDesk desk(Mode(mode), sequence);
    desk.Type(keys);
    QTEST(desk.Line(), "line");
}

void tst_EditSequence::AnUnfinishedItemCountsAndIsFinishedOnLeaving()
{
    SequenceDesk desk(Hex);
    desk.Type("0D4");
    QCOMPARE(desk.editor.Sequence(), QByteArray("\r\x04"));
    QCOMPARE(desk.editor.Editing().DigitsOf(1), 1);
    desk.behind.setFocus();
    QCOMPARE(desk.editor.Editing().DigitsOf(1), 2);
    desk.editor.setFocus();
    desk.Type("1");
    QCOMPARE(desk.Bytes(), "0D 04 01");
}

void tst_EditSequence::SwitchingTheModeKeepsBytesAndCaret()
{
    const QByteArray bytes = AllBytes();
    SequenceDesk desk(Ascii, bytes);
    const QSignalSpy changed(&desk.editor, &SQEditSequence::Changed);
    desk.editor.MoveCaret({77, 0});
    for (const int mode : {2, 1, 3, 0, 3, 2}) {
        desk.editor.setProperty("editmode", mode);
        QCOMPARE(desk.editor.property("editmode").toInt(), mode);
        QCOMPARE(desk.editor.Sequence(), bytes);
        QCOMPARE(desk.Line(), "256 bytes, at byte 78");
        desk.Type("<Right>");
        desk.editor.MoveCaret({77, 0});
    }
    desk.editor.SelectBytes(3, 9);
    desk.editor.SetEditMode(Decimal);
    QCOMPARE(desk.Selected(), bytes.mid(3, 6));
    desk.editor.SetEditMode(7);
    QCOMPARE(desk.editor.EditMode(), 0);
    QCOMPARE(changed.count(), 0);
}

void tst_EditSequence::UndoesAcrossModes()
{
    SequenceDesk desk(Hex);
    desk.Type("4142");
    desk.editor.SetEditMode(Ascii);
    desk.Type("C<Enter>");
    desk.editor.SetEditMode(Binary);
    desk.Type("1");
    QCOMPARE(desk.Bytes(), "41 42 43 0D 01");
    for (const char *left : {"41 42 43 0D", "41 42 43", "41 42", "41", "", ""}) {
        desk.Type("<Undo>");
        QCOMPARE(desk.Bytes(), left);
    }
    desk.editor.SetEditMode(Decimal);
    desk.Type("<Redo><Redo2><Redo>");
    QCOMPARE(desk.Bytes(), "41 42 43");
    desk.Type("7<Redo>"); // a new step ends what could be redone
    QCOMPARE(desk.Bytes(), "41 42 43 07");
    desk.editor.SetSequence("x");
    desk.Type("<Undo>");
    QCOMPARE(desk.Bytes(), "78");
}

void tst_EditSequence::TabMovesOnInEveryMode()
{
    for (const Mode mode : {Ascii, Decimal, Hex, Binary}) {
        SequenceDesk desk(mode, "A");
        QTest::keyClick(&desk.editor, Qt::Key_Tab);
        QVERIFY(desk.behind.hasFocus());
        desk.editor.setFocus();
        QTest::keyClick(&desk.editor, Qt::Key_Backtab, Qt::ShiftModifier);
        QVERIFY(desk.before.hasFocus());
        QCOMPARE(desk.Bytes(), "41");
    }
}

void tst_EditSequence::EnterInDigitModesIsTheDialogs()
{
    SequenceDesk desk(Hex, "A");
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, "\r");
    QApplication::sendEvent(&desk.editor, &enter);
    QVERIFY(!enter.isAccepted());
    desk.editor.SetEditMode(Ascii);
    QApplication::sendEvent(&desk.editor, &enter);
    QVERIFY(enter.isAccepted());
    QCOMPARE(desk.Bytes(), "0D 41");
}

void tst_EditSequence::RaisesChangedForTheUsersHandOnly()
{
    SequenceDesk desk(Hex);
    const QSignalSpy changed(&desk.editor, &SQEditSequence::Changed);
    desk.editor.SetSequence("ABC");
    desk.editor.SetEditMode(Ascii);
    desk.Type("<Right><Left><All><Copy><End>");
    QCOMPARE(changed.count(), 0);
    desk.Type("x");
    QCOMPARE(changed.count(), 1);
    desk.Type("<Undo>");
    QCOMPARE(changed.count(), 2);
    desk.Type("<Undo>");
    QCOMPARE(changed.count(), 2);
    desk.Type("<Redo><BS>");
    QCOMPARE(changed.count(), 4);
}

void tst_EditSequence::GivesFourTexts()
{
    const SequenceDesk desk(Binary, QByteArray("A\0\xFF", 3));
    QCOMPARE(desk.editor.Text(Representation::Ascii), QByteArray("A\0\xFF", 3));
    QCOMPARE(desk.editor.Text(Representation::Hex), "41 00 FF");
    QCOMPARE(desk.editor.Text(Representation::Decimal), "065 000 255");
    QCOMPARE(desk.editor.Text(Representation::Binary), "01000001 00000000 11111111");
}

void tst_EditSequence::ClipboardRoundTripsInEachMode()
{
    const QByteArray bytes = AllBytes();
    for (const Mode mode : {Ascii, Decimal, Hex, Binary}) {
        SequenceDesk desk(mode, bytes);
        desk.Type("<All><Cut>");
        QCOMPARE(desk.editor.Sequence(), QByteArray());
        desk.Type("<Paste>");
        QCOMPARE(desk.editor.Sequence(), bytes);
        const QString text = QApplication::clipboard()->text();
        desk.Type("<All>");
        desk.PasteText(text); // as it would come back from another program
        QCOMPARE(desk.editor.Sequence(), bytes);
    }
    QVERIFY(QApplication::clipboard()->text().startsWith("00000000 00000001 "));
}

void tst_EditSequence::CopiedBytesFitAnyMode()
{
    SequenceDesk desk(Hex, "AB");
    desk.Type("<All><Copy>");
    QCOMPARE(QApplication::clipboard()->text(), "41 42");
    desk.editor.SetEditMode(Ascii);
    desk.Type("<Ctrl+End><Paste>");
    QCOMPARE(desk.editor.Sequence(), "ABAB");
}

void tst_EditSequence::PastesOrRefusesWhole()
{
    SequenceDesk desk(Hex, "AB");
    const QSignalSpy changed(&desk.editor, &SQEditSequence::Changed);
    desk.Type("<Shift+Right>");
    desk.PasteText("0x0D,0x0A,0xG1");
    QCOMPARE(desk.Tip(),
             "Item 3, \"0xG1\", is not a HEX byte: one or two of the digits 0 to 9 and A "
             "to F.");
    QCOMPARE(desk.Bytes(), "41 42");
    QCOMPARE(desk.Selected(), "A");
    QCOMPARE(changed.count(), 0);
    desk.PasteText("<b>1</b>");
    QCOMPARE(desk.Tip(),
             QString("Item 1, \"<b>1</b>\", is not a HEX byte: one or two of the digits "
                     "0 to 9 and A to F.")
                 .toHtmlEscaped());
    desk.PasteText("0x0D,0x0A");
    QCOMPARE(desk.Bytes(), "0D 0A 42");
    QCOMPARE(changed.count(), 1);
    desk.Type("5"); // in the middle of an item it goes behind
    desk.PasteText("FF");
    QCOMPARE(desk.Bytes(), "0D 0A 05 FF 42");
    desk.Type("<Undo><Undo><Undo>");
    QCOMPARE(desk.Bytes(), "41 42");
}

void tst_EditSequence::SelectsWithTheMouse()
{
    SequenceDesk desk(Hex, "ABCDEFGH");
    QWidget *view = desk.editor.viewport();
    QTest::mouseClick(view, Qt::LeftButton, {}, desk.Point(2, 0.6));
    QCOMPARE(desk.editor.Editing().Caret(), (SequencePlace{2, 1}));
    QTest::mouseClick(view, Qt::LeftButton, Qt::ShiftModifier, desk.Point(5, 0.9));
    QCOMPARE(desk.Selected(), "CDEF");
    QTest::mousePress(view, Qt::LeftButton, {}, desk.Point(6, 0.9));
    QMouseEvent move(QEvent::MouseMove, desk.Point(3), view->mapToGlobal(desk.Point(3)),
                     Qt::NoButton, Qt::LeftButton, {});
    QApplication::sendEvent(view, &move);
    QTest::mouseRelease(view, Qt::LeftButton, {}, desk.Point(3));
    QCOMPARE(desk.Selected(), "DEFG");
    QTest::mouseDClick(view, Qt::LeftButton, {}, desk.Point(4));
    QCOMPARE(desk.Selected(), "E");
    QTest::mouseClick(view, Qt::LeftButton, {}, desk.Point(4));
    QCOMPARE(desk.Selected(), "ABCDEFGH");

    desk.editor.SetEditMode(Ascii);
    desk.editor.SetSequence("one two\r\n");
    QTest::mouseDClick(view, Qt::LeftButton, {}, desk.Point(5));
    QCOMPARE(desk.Selected(), "two");
    QTest::mouseClick(view, Qt::LeftButton, {}, QPoint(view->width() - 1, view->height() - 1));
    QCOMPARE(desk.Line(), "9 bytes, at the end");
}

void tst_EditSequence::ControlCharactersHavePictures()
{
    // Each of them is drawn, and no two alike.
    QList<QImage> pictures;
    for (int code = 0; code <= 32; ++code) {
        const char byte = char(code < 32 ? code : 127);
        const SequenceDesk desk(Ascii, QByteArray(1, byte));
        const QRect cell = desk.editor.ItemRect(0).toAlignedRect().adjusted(2, 0, 0, 0);
        const QImage picture = desk.editor.viewport()->grab(cell).toImage();
        QVERIFY2(!pictures.contains(picture), QByteArray::number(code));
        pictures.append(picture);
    }
    // The empty codes are one and the same box of one column.
    const SequenceDesk first(Ascii, "\x81");
    const SequenceDesk other(Ascii, "\x9D");
    const SequenceDesk letter(Ascii, "A");
    const QRect cell = letter.editor.ItemRect(0).toAlignedRect();
    QCOMPARE(first.editor.viewport()->grab(cell).toImage(),
             other.editor.viewport()->grab(cell).toImage());
    QVERIFY(first.editor.viewport()->grab(cell).toImage() !=
            letter.editor.viewport()->grab(cell).toImage());
}

void tst_EditSequence::ReadOnlyAndDisabledKeepTheSequence()
{
    SequenceDesk desk(Ascii, "ABC");
    desk.editor.SetReadOnly(true);
    desk.Type("x<BS><Del><Enter><All><Cut>");
    desk.PasteText("y");
    QCOMPARE(desk.editor.Sequence(), "ABC");
    desk.Type("<All><Copy>");
    QCOMPARE(QApplication::clipboard()->text(), "ABC");
    QCOMPARE(desk.editor.viewport()->backgroundRole(), QPalette::Window);
    desk.editor.SetReadOnly(false);
    desk.Type("x");
    QCOMPARE(desk.editor.Sequence(), "x");
    desk.editor.setEnabled(false);
    desk.editor.Undo();
    desk.editor.Paste();
    QCOMPARE(desk.editor.Sequence(), "x");
    QCOMPARE(desk.editor.viewport()->backgroundRole(), QPalette::Window);
}

void tst_EditSequence::OffersWhatTheMenuCanDo()
{
    SequenceDesk desk(Hex, "AB");
    QApplication::clipboard()->clear();
    const auto offered = [&] {
        QStringList names;
        const std::unique_ptr<QMenu> menu = desk.editor.MakeContextMenu();
        for (const QAction *action : menu->actions())
            if (action->isEnabled() && !action->isSeparator())
                names += action->text();
        return names.join(' ');
    };
    QCOMPARE(offered(), "Select &All");
    desk.Type("<Shift+Right><Cut>");
    QCOMPARE(offered(), "&Undo &Paste Select &All");
    desk.Type("<Undo><All>");
    QCOMPARE(offered(), "&Redo Cu&t &Copy &Paste &Delete Select &All");
    desk.editor.SetReadOnly(true);
    QCOMPARE(offered(), "&Copy Select &All");
}

void tst_EditSequence::ShowsTheRowEnd()
{
    SequenceDesk desk(Hex, QByteArray(100, 'A'));
    const qsizetype inRow = desk.editor.Layout().RowEnd(0);
    QCOMPARE(inRow % 4, 0);
    desk.Type("<End><End>");
    QCOMPARE(desk.editor.Editing().Caret().byte, inRow);
    QCOMPARE(desk.editor.CaretRect().top(), desk.editor.ItemRect(0).top());
    desk.Type("<Down>");
    QCOMPARE(desk.editor.Editing().Caret().byte, 2 * inRow);
    desk.Type("<Home>");
    QCOMPARE(desk.editor.Editing().Caret().byte, inRow);
    desk.Type("<Left><Right><Right>"); // by digits, over the row's end
    QCOMPARE(desk.editor.Editing().Caret(), (SequencePlace{inRow, 1}));
    desk.Type("<Up>");
    QCOMPARE(desk.editor.Editing().Caret(), (SequencePlace{0, 1}));
    desk.Type("<Ctrl+End>");
    QVERIFY(desk.editor.viewport()->rect().contains(desk.editor.CaretRect().toAlignedRect()));
}

void tst_EditSequence::ScrollsLongSequencesFluently()
{
    constexpr qint64 Pause = 50; // milliseconds that a user would not see
    for (const Mode mode : {Ascii, Decimal, Hex, Binary}) {
        SequenceDesk desk(mode, QByteArray(65536, '\x07'));
        desk.Type("<Ctrl+End>");
        QCOMPARE(desk.editor.verticalScrollBar()->value(),
                 desk.editor.verticalScrollBar()->maximum());
        QElapsedTimer timer;
        timer.start();
        for (int i = 0; i < 10; ++i) {
            desk.Type("1");
            desk.editor.viewport()->repaint();
        }
        QVERIFY2(timer.elapsed() < 10 * Pause, QByteArray::number(timer.elapsed()));
        QVERIFY(desk.editor.viewport()->rect().contains(desk.editor.CaretRect().toAlignedRect()));
        desk.Type("<Ctrl+Home>");
        QCOMPARE(desk.editor.verticalScrollBar()->value(), 0);
        QWidget *view = desk.editor.viewport();
        QWheelEvent wheel(QPointF(9, 9), view->mapToGlobal(QPointF(9, 9)), {}, {0, -120}, {}, {},
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(view, &wheel);
        QCOMPARE(desk.editor.verticalScrollBar()->value(), QApplication::wheelScrollLines());
    }
}

void tst_EditSequence::TellsScreenReaders()
{
    SequenceDesk desk(Ascii, "A\r");
    QAccessibleInterface *told = QAccessible::queryAccessibleInterface(&desk.editor);
    QVERIFY(told && told->textInterface());
    QAccessibleTextInterface &text = *told->textInterface();
    QCOMPARE(told->text(QAccessible::Name), "Sequence");
    QCOMPARE(text.text(0, text.characterCount()), QStringLiteral("A\u240D"));
    desk.editor.SetEditMode(Hex);
    QCOMPARE(text.text(0, text.characterCount()), "41 0D");
    text.setCursorPosition(4);
    QCOMPARE(desk.editor.Editing().Caret(), (SequencePlace{1, 1}));
    QCOMPARE(text.cursorPosition(), 4);
    text.setSelection(0, 3, 5);
    QCOMPARE(desk.Selected(), "\r");
    QCOMPARE(text.offsetAtPoint(text.characterRect(3).center()), 3);
    QVERIFY(told->state().editable);
}

QTEST_MAIN(tst_EditSequence)
#include "tst_editsequence.moc"
