// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ByteInk.h"
#include "FixedPitchFont.h"
#include "RichTextAccessible.h"
#include "RichTextBox.h"
#include "RichTextModel.h"
#include "support/Cases.h"
#include "support/MouseLosses.h"

#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QInputMethodEvent>
#include <QPainter>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QToolTip>

namespace
{

constexpr TextStyle Plain{};
constexpr TextStyle Comment{0x008000, false, true, false};

/// A shown box of about 60 columns and 20 rows, with the verbs of a user.
struct Desk {
    RichTextModel model;
    RichTextBox box{model};
    QWidget &page{*box.viewport()};

    explicit Desk(QByteArrayView text = {}, bool readOnly = false)
    {
        Append(text);
        model.SetReadOnly(readOnly);
        box.resize(520, 340);
        box.show();
        box.activateWindow();
        box.setFocus();
        if (!QTest::qWaitForWindowActive(&box))
            qFatal("the box was not shown");
    }

    void Append(QByteArrayView text) { model.AppendStyled(text, Plain); }
    /// A point in the left third of a character.
    QPoint Point(qint64 position)
    {
        const QRectF rect = box.CharacterRect(model.Begin() + position);
        return QPointF(rect.left() + rect.width() / 3, rect.center().y()).toPoint();
    }
    void Click(qint64 position, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::mouseClick(&page, Qt::LeftButton, modifiers, Point(position));
    }
    void Drag(const QPoint &from, const QPoint &to)
    {
        QTest::mousePress(&page, Qt::LeftButton, {}, from);
        DragOn(to);
    }
    void DragOn(const QPoint &to)
    {
        QMouseEvent move(QEvent::MouseMove, to, page.mapToGlobal(to), Qt::NoButton, Qt::LeftButton,
                         {});
        QApplication::sendEvent(&page, &move);
    }
    void Drop(const QPoint &at) { QTest::mouseRelease(&page, Qt::LeftButton, {}, at); }
    void Keys(const QList<QKeyCombination> &keys)
    {
        for (const QKeyCombination key : keys)
            QTest::keyClick(&box, key.key(), key.keyboardModifiers());
    }
    /// As an input method does it.
    void Compose(const QString &text)
    {
        QInputMethodEvent composed;
        composed.setCommitString(text);
        QApplication::sendEvent(&box, &composed);
    }
    QByteArray Selected() const { return model.SelectedText().toByteArray(); }
    QByteArray Text() const { return model.Bytes().toByteArray(); }
    QScrollBar &Bar() const { return *box.verticalScrollBar(); }
    bool AtEnd() const { return Bar().value() == Bar().maximum(); }
    /// The text of the first row in sight.
    QByteArray FirstRow()
    {
        const qint64 from = box.Layout().RowStart(Bar().value()) - model.Begin();
        return Text().mid(from, Text().indexOf('\r', from) - from);
    }
};

/// Lines "0000000" to "9999999" as far as asked for, nine characters each.
QByteArray Lines(int from, int to)
{
    QByteArray lines;
    for (int i = from; i < to; ++i)
        lines += QByteArray::number(i).rightJustified(7, '0') + "\r\n";
    return lines;
}

/// The pixels that are filled with it.
QRect Pixels(const QRectF &rect)
{
    return {QPoint(qRound(rect.left()), qRound(rect.top())),
            QPoint(qRound(rect.right()) - 1, qRound(rect.bottom()) - 1)};
}

/// Which of a row's cells look different in two pictures: "=" or "*" for each.
QByteArray Changes(const QImage &before, const QImage &after, const QRectF &first, int cells)
{
    QByteArray changes;
    for (int i = 0; i < cells; ++i) {
        const QRect cell = Pixels(first.translated(i * first.width(), 0));
        changes += before.copy(cell) == after.copy(cell) ? '=' : '*';
    }
    return changes;
}

/// How many pixels of the box have the colour exactly.
int Count(RichTextBox &box, const QRect &area, QRgb colour)
{
    const QImage picture = box.viewport()->grab(area).toImage();
    int count = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            count += picture.pixel(x, y) == colour;
    return count;
}

} // namespace

class tst_RichTextBox : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase() { QAccessible::installFactory(RichTextAccessible::Create); }

    void FollowsItsEnd()
    {
        Desk desk(Lines(0, 100));
        QVERIFY(desk.Bar().maximum() > 50);
        QVERIFY(desk.AtEnd());
        desk.Append(Lines(100, 14300));
        QVERIFY(desk.AtEnd());
        desk.box.resize(300, 200);
        QVERIFY(desk.AtEnd());
        desk.box.hide();
        const int before = desk.Bar().maximum();
        desk.Append(Lines(14300, 14400));
        QCOMPARE(desk.Bar().maximum(), before); // hidden, it does nothing
        desk.box.show();
        QVERIFY(desk.AtEnd());
        QCOMPARE(desk.box.Layout().RowEnd(desk.box.Layout().RowCount() - 1), desk.model.End());
    }

    void StaysOnTheSameText()
    {
        Desk desk(Lines(0, 14000));
        desk.Bar().setValue(300);
        QCOMPARE(desk.FirstRow(), "0000300");
        desk.Append(Lines(14000, 14300)); // 128,700 characters: 2,048 are cut
        QCOMPARE(desk.FirstRow(), "0000300");
        QCOMPARE(desk.Bar().value(), 300 - 227);
        desk.box.hide();
        desk.Append(Lines(14300, 14500));
        desk.box.show();
        QCOMPARE(desk.FirstRow(), "000455"); // its own text was cut
        desk.Bar().setValue(desk.Bar().maximum());
        desk.Append(Lines(0, 10));
        QVERIFY(desk.AtEnd());
    }

    void MouseSelects()
    {
        Desk desk("one two three\r\nfour five");
        desk.Drag(desk.Point(4), desk.Point(17));
        desk.Drop(desk.Point(17));
        QCOMPARE(desk.Selected(), "two three\r\nfo");
        desk.Click(8);
        QVERIFY(!desk.model.HasSelection());
        QCOMPARE(desk.model.Caret(), 8);
        desk.Click(4, Qt::ShiftModifier);
        QCOMPARE(desk.Selected(), "two ");
        QTest::mouseDClick(&desk.page, Qt::LeftButton, {}, desk.Point(16));
        QCOMPARE(desk.Selected(), "four");
        desk.Click(16);
        QCOMPARE(desk.Selected(), "four five");
    }

    void DraggingPastTheEdgeScrolls()
    {
        Desk desk(Lines(0, 200));
        desk.Bar().setValue(100);
        desk.Drag({20, desk.page.height() / 2}, {20, -60});
        QTRY_COMPARE(desk.Bar().value(), 0);
        QTRY_COMPARE(desk.model.SelectionStart(), 2);
        desk.Drop({20, -60});
    }

    void LosingTheMouseEndsADrag()
    {
        for (const MouseLoss &loss : MouseLosses) {
            Desk desk(Lines(0, 2000));
            desk.Bar().setValue(1900);
            desk.Drag({20, desk.page.height() / 2}, {20, -60});
            loss.happen(desk.page);
            const int row = desk.Bar().value();
            const qint64 caret = desk.model.Caret();
            QTimer beat; // of the pace at which a drag scrolls on
            QSignalSpy beats(&beat, &QTimer::timeout);
            beat.start(40);
            QTRY_VERIFY(beats.count() >= 2);
            desk.DragOn({20, 20});
            desk.Drop({20, 20});
            QVERIFY2(desk.Bar().value() == row && desk.model.Caret() == caret, loss.name);
        }
    }

    void KeysSelect()
    {
        constexpr auto Both = Qt::CTRL | Qt::SHIFT;
        const std::pair<QKeyCombination, const char *> strokes[] = {
            {Qt::SHIFT | Qt::Key_Right, "t"},
            {Qt::SHIFT | Qt::Key_Left, " "},
            {Both | Qt::Key_Right, "three"},
            {Both | Qt::Key_Left, "two "},
            {Qt::SHIFT | Qt::Key_Down, "three\r\nfour fiv"},
            {Qt::SHIFT | Qt::Key_Up, ""},
            {Qt::SHIFT | Qt::Key_Home, "one two "},
            {Qt::SHIFT | Qt::Key_End, "three"},
            {Both | Qt::Key_Home, "one two "},
            {Both | Qt::Key_End, "three\r\nfour five"},
            {Qt::SHIFT | Qt::Key_PageDown, "three\r\nfour fiv"},
            {Qt::CTRL | Qt::Key_A, "one two three\r\nfour five"}};
        Desk desk("one two three\r\nfour five", true);
        for (const auto &[key, selected] : strokes) {
            desk.model.Select(8, 8); // before "three"
            desk.Keys({key});
            QCOMPARE(desk.Selected(), selected);
        }
    }

    void ReadOnlyOnlyCopies()
    {
        Desk desk("a\x80\x81\r\nb", true);
        QApplication::clipboard()->setText("xyz");
        desk.model.Select(0, 2);
        desk.Keys({Qt::Key_Q, Qt::Key_Return, Qt::Key_Backspace, Qt::Key_Delete,
                   Qt::CTRL | Qt::Key_X, Qt::CTRL | Qt::Key_V, Qt::SHIFT | Qt::Key_Insert});
        desk.Compose("e");
        QCOMPARE(QApplication::clipboard()->text(), "xyz");
        QVERIFY(!desk.box.testAttribute(Qt::WA_InputMethodEnabled));
        desk.Keys({Qt::CTRL | Qt::Key_A, Qt::CTRL | Qt::Key_C});
        QCOMPARE(QApplication::clipboard()->text(), "a\u20AC\u0081\r\nb");
    }

    void TypesInTheTypingStyle()
    {
        Desk desk("abc");
        desk.box.SetTypingStyle(Comment);
        desk.model.Select(1, 2);
        QTest::keyClicks(&desk.box, "Xy");
        desk.Keys({Qt::Key_Return});
        desk.Compose("\u00EA");
        QCOMPARE(desk.Text(), QByteArray("aXy\r\n\xEA") + 'c');
        QCOMPARE(desk.model.RunAt(0).style, Plain);
        QCOMPARE(desk.model.RunAt(1).style, Comment);
        QCOMPARE(desk.model.RunAt(1).end, 6);
    }

    void ErasesAndCutsAndPastes()
    {
        Desk desk("one two\r\nthree");
        desk.model.Select(9, 9);
        const std::pair<QList<QKeyCombination>, QByteArray> strokes[] = {
            {{Qt::Key_Backspace}, "one twothree"},
            {{Qt::Key_Delete}, "one twohree"},
            {{Qt::CTRL | Qt::Key_Backspace}, "one hree"},
            {{Qt::CTRL | Qt::SHIFT | Qt::Key_Home, Qt::SHIFT | Qt::Key_Delete}, "hree"},
            {{Qt::Key_End, Qt::CTRL | Qt::Key_V}, "hreeone "}};
        for (const auto &[keys, left] : strokes) {
            desk.Keys(keys);
            QCOMPARE(desk.Text(), left);
        }
    }

    void RefusesForeignCharactersWhole()
    {
        Desk desk("abc");
        desk.model.Select(1, 2);
        const std::pair<QString, QString> texts[] = {{"good \u0416 \u0417", "\u0416 (U+0416)"},
                                                     {"\U0001F600", "\U0001F600 (U+1F600)"}};
        for (const auto &[text, named] : texts) {
            const QString told = "The character " + named + " is not in code page 1252.";
            QApplication::clipboard()->setText(text);
            desk.Keys({Qt::CTRL | Qt::Key_V});
            QCOMPARE(QToolTip::text(), told);
            QToolTip::hideText();
            QTest::sendKeyEvent(QTest::Click, &desk.box, Qt::Key_unknown, text, {});
            QCOMPARE(QToolTip::text(), told);
        }
        QCOMPARE(desk.Text(), "abc");
        QCOMPARE(desk.Selected(), "b");
    }

    void CaretNeverStandsInsideCrLf()
    {
        Desk desk("ab\r");
        desk.model.Select(3, 3);
        desk.Append("\ncd");
        QCOMPARE(desk.model.Caret(), 4);
    }

    void ReleasesOfWhatWasPressedHereAreTold()
    {
        Desk desk(QByteArray("x").repeated(128001) + "tail");
        QCOMPARE(desk.model.Begin(), 2048);
        QSignalSpy released(&desk.box, &RichTextBox::CaretReleased);
        desk.model.Select(128000, 128000);
        desk.Keys({Qt::SHIFT | Qt::Key_Right}); // where the selection starts, not the caret
        QCOMPARE(released.takeFirst().first().toLongLong(), 128000);
        released.clear();
        desk.Click(125955);
        QCOMPARE(released.takeFirst().first().toLongLong(), 128003);
        QTest::keyPress(&desk.box, Qt::Key_Home);
        desk.box.clearFocus();
        desk.box.setFocus();
        QTest::keyRelease(&desk.box, Qt::Key_Home);
        QTest::keyRelease(&desk.box, Qt::Key_Escape);
        desk.Drop({});
        QVERIFY(released.isEmpty());
    }

    void KeysOfTheWindowAndCopyingLeaveTheCaret()
    {
        Desk desk("one two");
        QAction command(&desk.box);
        command.setShortcuts({Qt::Key_F3, Qt::CTRL | Qt::Key_F});
        command.setEnabled(false); // so the keys come here
        QSignalSpy released(&desk.box, &RichTextBox::CaretReleased);
        desk.Keys({Qt::Key_F3, Qt::CTRL | Qt::Key_F, Qt::CTRL | Qt::Key_C,
                   Qt::CTRL | Qt::Key_Insert, Qt::Key_Shift, Qt::Key_Control, Qt::Key_Meta});
        QCOMPARE(released.count(), 0);
        desk.Keys({Qt::Key_F4, Qt::CTRL | Qt::Key_A, Qt::SHIFT | Qt::Key_Left, Qt::Key_Insert});
        QCOMPARE(released.count(), 4); // their modifiers add none
    }

    void ShowsTheSelectionAwayFromTheEdges()
    {
        Desk desk(Lines(0, 200));
        const qint64 place = desk.model.Find("0000050", 0);
        desk.model.Select(place, place + 7);
        for (int from : {199, 50, 0}) { // from below, from its edge, from above
            desk.Bar().setValue(from);
            desk.box.ScrollToSelection();
            QVERIFY(desk.Bar().value() <= 48);
            QVERIFY(desk.Bar().value() >= 38);
            from = desk.Bar().value();
            desk.box.ScrollToSelection(); // it is in sight already
            QCOMPARE(desk.Bar().value(), from);
        }
    }

    void PaintsColoursAndBoxes()
    {
        Desk desk;
        desk.box.clearFocus(); // no caret
        desk.box.SetColours({.DispBack = 0x00102030});
        desk.model.AppendStyled("\x08\x08 \x7F AB", {0x000000FF, false, false, false});
        desk.model.AppendStyled("\r\n  __", {0x00FF0000, true, false, true});
        const auto cell = [&desk](qint64 at) { return desk.box.CharacterRect(at).toAlignedRect(); };
        const QRgb ground = qRgb(0x30, 0x20, 0x10);
        QCOMPARE(Count(desk.box, cell(2), ground), cell(2).width() * cell(2).height());
        // A box: its four sides and nothing inside.
        QVERIFY(Count(desk.box, cell(3), qRgb(255, 0, 0)) >= 16);
        QCOMPARE(desk.page.grab().toImage().pixel(cell(3).center()), ground);
        QVERIFY(Count(desk.box, desk.page.rect(), qRgb(0, 0, 255)) >= 20);

        desk.model.Select(2, 3);
        const QColor selection = desk.box.palette().color(QPalette::Inactive, QPalette::Highlight);
        QVERIFY(Count(desk.box, cell(2), selection.rgb()) >= 50);
    }

    void ControlCharactersArePaintedOnly_data()
    {
        const Cases<QByteArray, QByteArray, bool, QByteArray> row("text", "bytes", "aside",
                                                                  "changes");
        row("pictures for boxes",
            "A\x01"
            "B\x7F",
            "", false, "=*=*");
        row("CR LF behind its line", "AB\r\nC", "", false, "==**==");
        row("CR alone", "AB\rC", "", false, "==*===");
        row("an empty line", "\n", "", false, "*===");
        row("TAB in its room", "A\tB", "", false, "=*=========");
        row("no traffic", "A\tB\r\n", "", true, "=========");
        row("a byte 0, and a byte that looks like it", "\x81\x81", {"\0\x81", 2}, false, "*==");
    }

    void ControlCharactersArePaintedOnly()
    {
        QFETCH(QByteArray, text);
        QFETCH(QByteArray, bytes);
        QFETCH(bool, aside);
        QFETCH(QByteArray, changes);
        Desk desk;
        desk.box.clearFocus();
        desk.model.AppendStyled(text, {.aside = aside});
        desk.model.NoteZeros(bytes);
        const QRectF first = desk.box.CharacterRect(0);
        const QImage boxes = desk.page.grab().toImage();
        desk.box.SetShowsControls(true);
        QCOMPARE(Changes(boxes, desk.page.grab().toImage(), first, int(changes.size())), changes);
        QCOMPARE(desk.Text(), text);
        QCOMPARE(desk.box.PositionAt(QPointF(400, first.center().y())),
                 desk.box.Layout().RowTextEnd(0)); // a click on what stands behind the line
        desk.box.SetShowsControls(false);
        QCOMPARE(desk.page.grab().toImage(), boxes);
    }

    void LineBreaksOfAFullLineStandInTheMargin()
    {
        Desk desk("x\r\n");
        desk.box.clearFocus();
        const int columns = desk.box.Layout().Columns();
        desk.model.SetText(QByteArray(columns, 'x') + "\r\ny", Plain);
        const QRectF first = desk.box.CharacterRect(desk.model.Begin());
        const QImage boxes = desk.page.grab().toImage();
        desk.box.SetShowsControls(true);
        const QImage pictures = desk.page.grab().toImage();
        QCOMPARE(Changes(boxes, pictures, first, columns), QByteArray(columns, '='));
        QVERIFY(boxes != pictures);
        QCOMPARE(desk.box.Layout().RowCount(), 2);
    }

    void ASelectedLineBreakIsThePictureOfIt()
    {
        Desk desk("AB\r\n");
        desk.box.clearFocus();
        desk.box.SetShowsControls(true);
        const QImage before = desk.page.grab().toImage();
        desk.model.Select(3, 4); // as a search for LF does
        QCOMPARE(Changes(before, desk.page.grab().toImage(), desk.box.CharacterRect(0), 5),
                 "===*=");
        QVERIFY(desk.box.SelectionRect().contains(Pixels(desk.box.CharacterRect(3))));
    }

    void DefaultColoursFollowADarkPalette()
    {
        QCOMPARE(qRound(ViewColours::Contrast(Qt::black, Qt::white) * 100), 2100);
        QCOMPARE(qRound(ViewColours::Contrast(QColor(0x76, 0x76, 0x76), Qt::white) * 100), 454);
        DisplaySettings stored;
        for (const QRgb base : {0xFF000000, 0xFF1E1E1E, 0xFF31363B, 0xFF4D4D4D, 0xFF707070}) {
            QPalette dark;
            dark.setColor(QPalette::Base, QColor(base));
            const ViewColours colours(stored, dark);
            QCOMPARE(colours.Ground().rgb(), base);
            for (const TextStyle &style : stored.styles) {
                const QColor text = colours.TextOf(style.colour);
                QVERIFY(ViewColours::Contrast(text, QColor(base)) >= 4.5);
                const int most = std::max({text.red(), text.green(), text.blue()});
                QCOMPARE(style.colour, text.blue() == most    ? 0xFF0000
                                       : text.green() == most ? 0x008000
                                                              : 0x0000FF);
            }
        }
        Desk desk;
        desk.box.clearFocus();
        desk.model.AppendStyled("  ", {0x0000FF, false, false, true});
        desk.box.SetColours(stored);
        const auto red = [&] { return Count(desk.box, desk.page.rect(), qRgb(255, 0, 0)); };
        const auto white = [&] { return Count(desk.box, desk.page.rect(), qRgb(255, 255, 255)); };
        QVERIFY(red() > 0 && white() > 0);
        const QPalette light = QApplication::palette();
        QPalette dark = light;
        dark.setColor(QPalette::Base, Qt::black);
        QApplication::setPalette(dark);
        QTRY_VERIFY(red() == 0 && white() == 0);
        QApplication::setPalette(light);
        QTRY_VERIFY(red() > 0 && white() > 0);
        QApplication::setPalette(dark);
        QTRY_COMPARE(white(), 0);
        stored.styles[StyleIndex::Comment].colour = 0x008001; // the user has chosen
        desk.box.SetColours(stored);
        QVERIFY(red() > 0 && white() > 0);
        QApplication::setPalette(light);
    }

    void PicturesOfControlCharactersFitAColumn()
    {
        const ByteFace face(FixedPitchFont::ViewFont(), 1, ByteFace::Controls::Pictures);
        const QRectF cell(16, 16, face.Advance(), std::ceil(face.Font().ascent()) + 4);
        QImage ground(48, 48, QImage::Format_RGB32);
        ground.fill(Qt::white);
        QList<QImage> pictures; // no two alike
        for (uchar byte = 0; byte < 128; byte = byte == 31 ? 127 : uchar(byte + 1)) {
            QImage picture(ground);
            QPainter painter(&picture);
            ByteInk ink;
            ink.Add(face, byte, cell, face.Font().ascent());
            ink.Draw(painter, face, Qt::black);
            QVERIFY2(!pictures.contains(picture), QByteArray::number(byte));
            pictures.append(picture);
            painter.fillRect(cell.toAlignedRect(), Qt::white);
            QVERIFY2(picture == ground, QByteArray::number(byte)); // nothing beside the cell
        }
        QCOMPARE(pictures.size(), 33);
    }

    void SpeaksToScreenReaders()
    {
        Desk desk("one two\r\nthree");
        QAccessibleInterface *spoken = QAccessible::queryAccessibleInterface(&desk.box);
        QVERIFY(spoken && spoken->textInterface());
        QAccessibleTextInterface &text = *spoken->textInterface();
        int from = 0;
        int to = 0;
        QCOMPARE(text.textAtOffset(5, QAccessible::WordBoundary, &from, &to), "two");
        QCOMPARE(std::pair(from, to), std::pair(4, 7));
        QCOMPARE(text.textAtOffset(5, QAccessible::LineBoundary, &from, &to), "one two\r\n");
        desk.model.Select(9, 4);
        QCOMPARE(text.cursorPosition(), 4);
        text.selection(0, &from, &to);
        QCOMPARE(std::pair(from, to), std::pair(4, 9));
        text.setCursorPosition(2);
        QCOMPARE(desk.model.Caret(), 2);
    }
};

QTEST_MAIN(tst_RichTextBox)
#include "tst_richtextbox.moc"
