// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "support/SequenceDesk.h"

#include <QAccessible>
#include <QComboBox>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTimer>

namespace
{

struct TypingCase {
    const char *name;
    Mode mode;
    const char *before;
    const char *keys;
    const char *after;          ///< in HEX
    const char *tip = "";       ///< of a last key that was refused
    const char *line = nullptr; ///< length and place below the text
};

const TypingCase TypingCases[] = {
    {"HEX, typed blanks do no harm", Hex, "", "0d0A, D 41 |424", "0D 0A 0D 41 42 04"},
    {"Backspace takes digits and items back", Hex, "",
     "4142<Backspace>3<Backspace><Backspace><Backspace>", "04"},
    {"Ctrl+Backspace takes an item", Hex, "ABC", "<End><Ctrl+Backspace>", "41 42"},
    {"Delete inside takes a digit", Hex, "ABC", "<Right><Del>5", "45 42 43"},
    {"Delete behind an unfinished item takes the next", Hex, "ABC", "5<Del>", "05 42 43"},
    {"Delete before an unfinished item takes it", Hex, "ABC", "5<Left><Del>", "41 42 43"},
    {"Backspace before an unfinished item takes the one before", Hex, "AB",
     "<Ctrl+Right>5<Left><Backspace>", "04 05 42"},
    {"between items a digit begins one", Hex, "AC", "<Ctrl+Right>42", "41 42 43"},
    {"inside an item a digit replaces one", Hex, "AC", "<Right>F", "4F 43"},
    {"a digit goes where the caret is in an unfinished item", Hex, "", "4<Left>1", "14"},
    {"Insert overtypes", Hex, "ABC", "<Ins>5F6", "5F 62 43"},
    {"a digit replaces what is selected", Hex, "ABC", "<Shift+Right><Shift+Right>5A", "5A 43"},
    {"going back with Shift takes the whole item", Hex, "ABC",
     "<Right><Right><Right><Shift+Left><Del>", "41 43"},
    {"Decimal", Decimal, "", "7 13,255010013", "07 0D FF 0A 0D"},
    {"Decimal, 2 over 099 begins 200", Decimal, "c", "<Ins>255", "FF"},
    {"Binary", Binary, "", "1101 000010101", "0D 0A 01"},
    {"ASCII control keys", Ascii, "", "a<Return><Ctrl+Enter><Ctrl+Tab><Num+Enter>",
     "61 0D 0A 09 0D"},
    {"ASCII, the code page", Ascii, "AC", "<Right>| ,\u20AC\u00FC", "41 7C 20 2C 80 FC 43"},
    {"ASCII, overtyping", Ascii, "AC", "<Ins>xyz<Return>", "78 79 7A 0D"},
    {"ASCII, erasing", Ascii, "ABC", "<Del><End><Backspace>", "42"},
    {"ASCII, erasing words", Ascii, "one two three", "<Ctrl+Del><End><Ctrl+Backspace>",
     "74 77 6F 20"},
    {"G in HEX", Hex, "", "4G", "04", "HEX takes the digits 0 to 9 and A to F."},
    {"256", Decimal, "", "256", "19", "256 is above 255, the highest value of a byte."},
    {"300 by overtyping", Decimal, "", "100<Ins><Home>3", "64",
     "300 is above 255, the highest value of a byte."},
    {"a letter of another script", Ascii, "", "a\u0416", "61",
     "The character \u0416 (U+0416) is not in code page 1252."},
    {"no bytes", Hex, "", "", "", "", "0 bytes"},
    {"one byte", Ascii, "A", "<Right>", "41", "", "1 byte, at the end"},
    {"an unfinished byte", Hex, "AB", "<Ctrl+End>4", "41 42 04", "", "3 bytes, at byte 3"},
    {"a byte selected", Binary, "AB", "<Shift+Right>", "41 42", "", "2 bytes, byte 1 selected"},
    {"bytes selected", Decimal, "ABC", "<Right><Right><Right><Shift+Right><Shift+Right>",
     "41 42 43", "", "3 bytes, bytes 2 to 3 selected"},
    {"overtyping", Decimal, "AB", "<Ins>", "41 42", "", "2 bytes, at byte 1, overtyping"},
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
    void Types()
    {
        for (const TypingCase &one : TypingCases) {
            SequenceDesk desk(one.mode, one.before);
            desk.Type(one.keys);
            QVERIFY2(desk.Bytes() == one.after, one.name + (": " + desk.Bytes()));
            QVERIFY2(desk.Tip() == one.tip, one.name);
            QVERIFY2(!one.line || desk.Line() == one.line, one.name);
            desk.Type("0"); // what is right takes the tip away
            QTRY_COMPARE(desk.Tip(), QString());
        }
    }

    void SwitchingTheModeKeepsBytesAndCaret()
    {
        const QByteArray bytes = AllBytes();
        SequenceDesk desk(Ascii, bytes);
        const QSignalSpy changed(&desk.editor, &SQEditSequence::Changed);
        for (const int mode : {Hex, Decimal, Binary, Ascii}) {
            desk.editor.MoveCaret({77, 0});
            desk.editor.setProperty("editmode", mode);
            QCOMPARE(desk.editor.property("editmode").toInt(), mode);
            QCOMPARE(desk.editor.Sequence(), bytes);
            QCOMPARE(desk.Line(), "256 bytes, at byte 78");
            desk.Type("<Right>");
        }
        desk.editor.SelectBytes(3, 9);
        desk.editor.SetEditMode(Decimal);
        QCOMPARE(desk.Selected(), bytes.mid(3, 6));
        desk.editor.SetEditMode(7);
        QCOMPARE(desk.editor.EditMode(), 0);
        QCOMPARE(changed.count(), 0);
    }

    void UndoesAcrossModesAndTellsOfEachChange()
    {
        SequenceDesk desk(Hex, "x");
        const QSignalSpy changed(&desk.editor, &SQEditSequence::Changed);
        desk.editor.SetSequence({});
        desk.Type("4142");
        desk.editor.SetEditMode(Ascii);
        desk.Type("C<Return><Right><Left><Ctrl+A><Ctrl+C><End>");
        desk.editor.SetEditMode(Binary);
        desk.Type("1");
        QCOMPARE(desk.Bytes(), "41 42 43 0D 01");
        QCOMPARE(changed.count(), 7); // each key that changed bytes
        for (const char *left : {"41 42 43 0D", "41 42 43", "41 42", "41", "", ""}) {
            desk.Type("<Ctrl+Z>");
            QCOMPARE(desk.Bytes(), left);
        }
        QCOMPARE(changed.count(), 12);
        desk.editor.SetEditMode(Decimal);
        desk.Type("<Ctrl+Y><Ctrl+Shift+Z><Ctrl+Y>");
        QCOMPARE(desk.Bytes(), "41 42 43");
        desk.Type("7<Ctrl+Y>"); // a new step ends what could be redone
        QCOMPARE(desk.Bytes(), "41 42 43 07");
        QCOMPARE(changed.count(), 16);
        desk.editor.SetSequence("x");
        desk.Type("<Ctrl+Z>");
        QCOMPARE(desk.Bytes(), "78");
    }

    void TabMovesOnAndFinishesTheItem()
    {
        for (const Mode mode : {Ascii, Hex}) {
            SequenceDesk desk(mode, "A");
            desk.Type("<End>1<Tab>");
            QVERIFY(desk.behind.hasFocus());
            desk.editor.setFocus();
            desk.Type("1");
            QCOMPARE(desk.Bytes(), mode == Ascii ? "41 31 31" : "41 01 01");
            desk.Type("<Shift+Tab>");
            QVERIFY(desk.before.hasFocus());
        }
    }

    void EnterInDigitModesIsTheDialogs()
    {
        SequenceDesk desk(Hex, "A");
        QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, "\r");
        QApplication::sendEvent(&desk.editor, &enter);
        QVERIFY(!enter.isAccepted());
        desk.editor.SetEditMode(Ascii);
        QApplication::sendEvent(&desk.editor, &enter);
        QVERIFY(enter.isAccepted());
    }

    void ClipboardRoundTripsInEachMode()
    {
        const QByteArray bytes = AllBytes();
        const std::pair<Mode, QString> modes[] = {{Ascii, QString::fromLatin1("\0\x01", 2)},
                                                  {Decimal, "000 001 "},
                                                  {Hex, "00 01 "},
                                                  {Binary, "00000000 00000001 "}};
        for (const auto &[mode, begin] : modes) {
            SequenceDesk desk(mode, bytes);
            desk.Type("<Ctrl+A><Ctrl+X>");
            QCOMPARE(desk.Bytes(), "");
            const QString text = QApplication::clipboard()->text();
            QVERIFY2(text.startsWith(begin), qPrintable(text));
            desk.editor.SetEditMode((mode + 1) % 4);
            desk.Type("<Ctrl+V>"); // what was copied here fits any mode
            QCOMPARE(desk.editor.Sequence(), bytes);
            desk.editor.SetEditMode(mode);
            desk.Type("<Ctrl+A>");
            desk.PasteText(text); // as it would come back from another program
            QCOMPARE(desk.editor.Sequence(), bytes);
        }
    }

    void PastesOrRefusesWhole()
    {
        SequenceDesk desk(Hex, "AB");
        desk.Type("<Shift+Right>");
        desk.PasteText("0x0D,0x0A,<b>");
        QCOMPARE(desk.Tip(), "Item 3, &quot;&lt;b&gt;&quot;, is not a HEX byte: one or two of the "
                             "digits 0 to 9 and A to F.");
        QCOMPARE(desk.Bytes(), "41 42");
        QCOMPARE(desk.Selected(), "A");
        desk.PasteText("0x0D,0x0A");
        QCOMPARE(desk.Bytes(), "0D 0A 42");
        desk.Type("5"); // in the middle of an item it goes behind
        desk.PasteText("FF");
        QCOMPARE(desk.Bytes(), "0D 0A 05 FF 42");
        desk.Type("<Ctrl+Z><Ctrl+Z><Ctrl+Z>");
        QCOMPARE(desk.Bytes(), "41 42");
    }

    void SelectsWithTheMouse()
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
        desk.editor.SetEditMode(Ascii);
        desk.editor.SetSequence("one two\r\n");
        QTest::mouseDClick(view, Qt::LeftButton, {}, desk.Point(5));
        QCOMPARE(desk.Selected(), "two");
        QTest::mouseClick(view, Qt::LeftButton, {}, desk.Point(5));
        QCOMPARE(desk.Selected(), "one two\r\n");
        QTest::mouseClick(view, Qt::LeftButton, {}, QPoint(view->width() - 1, view->height() - 1));
        QCOMPARE(desk.Line(), "9 bytes, at the end");
    }

    void ControlCharactersHavePictures()
    {
        QList<QImage> pictures; // no two alike
        for (const char code : QByteArray("\x7F"
                                          "A\x81") +
                                   AllBytes().first(32)) {
            const SequenceDesk desk(Ascii, QByteArray(1, code));
            const QRect cell = desk.editor.ItemRect(0).toAlignedRect().adjusted(2, 0, 0, 0);
            const QImage picture = desk.editor.viewport()->grab(cell).toImage();
            QVERIFY2(!pictures.contains(picture), QByteArray::number(code));
            pictures.append(picture);
        }
    }

    void ReadOnlyAndDisabledKeepTheSequence()
    {
        SequenceDesk desk(Ascii, "ABC");
        desk.editor.SetReadOnly(true);
        desk.Type("x<Backspace><Del><Return><Ctrl+A><Ctrl+X>");
        desk.PasteText("y");
        QCOMPARE(desk.Bytes(), "41 42 43");
        desk.Type("<Ctrl+A><Ctrl+C>");
        QCOMPARE(QApplication::clipboard()->text(), "ABC");
        desk.editor.SetReadOnly(false);
        desk.Type("x");
        desk.editor.setEnabled(false);
        desk.editor.Undo();
        desk.editor.Paste();
        QCOMPARE(desk.Bytes(), "78");
    }

    void OffersWhatTheMenuCanDo()
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
        QCOMPARE(offered(), "&Insert Checksum... Select &All");
        desk.Type("<Shift+Right><Ctrl+X>");
        QCOMPARE(offered(), "&Undo &Insert Checksum... &Paste Select &All");
        desk.Type("<Ctrl+Z><Ctrl+A>");
        QCOMPARE(offered(), "&Redo &Insert Checksum... Cu&t &Copy &Paste &Delete Select &All");
        desk.editor.SetReadOnly(true);
        QCOMPARE(offered(), "&Copy Select &All");
    }

    void InsertsAChecksum()
    {
        SequenceDesk desk(Hex, QByteArray::fromHex("FF010300000002"));
        ChecksumRule kept = Checksum::UsualRule(ChecksumKind::Crc8);
        desk.editor.KeepChecksumRule(kept);
        const auto insert = [&](int kind, int last) {
            QTimer::singleShot(0, &desk.editor, [=] {
                auto &dialog = *QApplication::activeModalWidget();
                dialog.findChild<QComboBox *>("cboChecksum")->setCurrentIndex(kind);
                dialog.findChild<QSpinBox *>("spnLast")->setValue(last);
                dialog.findChild<QPushButton *>("cmdOK")->click();
                dialog.close(); // if there was nothing to be inserted
            });
            desk.editor.InsertChecksum();
            return desk.Bytes();
        };
        desk.editor.SelectBytes(1, 7);
        QCOMPARE(insert(int(ChecksumKind::Crc16Modbus), 7), "FF 01 03 00 00 00 02 C4 0B");
        QVERIFY((kept == ChecksumRule{ChecksumKind::Crc16Modbus, 2, false}));
        desk.Type("<Ctrl+Z>");
        QCOMPARE(insert(int(ChecksumKind::Sum), 3), "FF 01 03 04 00 00 00 02");
        QCOMPARE(insert(int(ChecksumKind::Nmea), 3), "FF 01 03 04 00 00 00 02");
    }

    void MovesByRows()
    {
        SequenceDesk desk(Hex, QByteArray(100, 'A'));
        const qsizetype inRow = desk.editor.Layout().RowEnd(0);
        QCOMPARE(inRow % 4, 0);
        const std::pair<const char *, SequencePlace> moves[] = {
            {"<End><End>", {inRow, 0}},
            {"<Down>", {2 * inRow, 0}},
            {"<Home>", {inRow, 0}},
            {"<Left><Right><Right>", {inRow, 1}}, // by digits, over the row's end
            {"<Up>", {0, 1}},
        };
        for (const auto &[keys, place] : moves) {
            desk.Type(keys);
            QCOMPARE(desk.editor.Editing().Caret(), place);
        }
        desk.Type("<End>"); // the caret stands at the row's end, not on the next row
        QCOMPARE(desk.editor.CaretRect().top(), desk.editor.ItemRect(0).top());
    }

    void ScrollsToTheCaret()
    {
        SequenceDesk desk(Hex, QByteArray(65536, '\x07'));
        const QScrollBar *bar = desk.editor.verticalScrollBar();
        desk.Type("<Ctrl+End>");
        QCOMPARE(bar->value(), bar->maximum());
        desk.Type("1");
        QVERIFY(desk.editor.viewport()->rect().contains(desk.editor.CaretRect().toAlignedRect()));
        desk.Type("<Ctrl+Home>");
        QCOMPARE(bar->value(), 0);
    }

    void TellsScreenReaders()
    {
        SequenceDesk desk(Ascii, "A\r");
        QAccessibleInterface *told = QAccessible::queryAccessibleInterface(&desk.editor);
        QVERIFY(told && told->textInterface() && told->state().editable);
        QAccessibleTextInterface &text = *told->textInterface();
        QCOMPARE(text.text(0, text.characterCount()), QStringLiteral("A\u240D"));
        desk.editor.SetEditMode(Hex);
        QCOMPARE(text.text(0, text.characterCount()), "41 0D");
        text.setCursorPosition(4);
        QCOMPARE(text.cursorPosition(), 4);
        text.setSelection(0, 3, 5);
        QCOMPARE(desk.Selected(), "\r");
        QCOMPARE(text.offsetAtPoint(text.characterRect(3).center()), 3);
    }
};

QTEST_MAIN(tst_EditSequence)
#include "tst_editsequence.moc"
