// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "controls/FixedPitchFont.h"
#include "controls/RichTextAccessible.h"
#include "controls/RichTextBox.h"
#include "controls/RichTextModel.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QInputMethodEvent>
#include <QMenu>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QToolTip>

namespace
{

constexpr TextStyle Plain{};
constexpr TextStyle Comment{0x008000, false, true, false};

/// A shown box of about 60 columns and 20 rows, with the verbs of a user.
struct Desk {
    RichTextModel model;
    RichTextBox box{model};

    explicit Desk(QByteArrayView text = {})
    {
        model.AppendStyled(text, Plain);
        box.resize(520, 340);
        box.show();
        box.activateWindow();
        box.setFocus();
        if (!QTest::qWaitForWindowActive(&box))
            qFatal("the box was not shown");
    }

    /// A point in the left third of a character.
    QPoint Point(qint64 position)
    {
        const QRectF rect = box.CharacterRect(model.Begin() + position);
        return QPointF(rect.left() + rect.width() / 3, rect.center().y()).toPoint();
    }
    void Click(qint64 position, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::mouseClick(box.viewport(), Qt::LeftButton, modifiers, Point(position));
    }
    void Drag(const QPoint &to)
    {
        QMouseEvent move(QEvent::MouseMove, to, box.viewport()->mapToGlobal(to), Qt::NoButton,
                         Qt::LeftButton, {});
        QApplication::sendEvent(box.viewport(), &move);
    }
    void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(&box, key, modifiers);
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
    /// What the first row in sight begins with.
    QByteArray FirstRow()
    {
        const RichTextLayout &layout = box.Layout();
        const qint64 from = layout.RowStart(Bar().value());
        const qint64 length = layout.RowTextEnd(Bar().value()) - from;
        return model.Bytes().sliced(from - model.Begin(), length).toByteArray();
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

    void ChoosesTheFont()
    {
        const std::pair<QStringList, QString> choices[] = {
            {{"DejaVu Sans Mono", "Courier New", "Liberation Mono"}, "Courier New"},
            {{"DejaVu Sans Mono", "Liberation Mono"}, "Liberation Mono"},
            {{"Arial", "DejaVu Sans Mono"}, "DejaVu Sans Mono"},
            {{"Courier New [Monotype]"}, "Courier New [Monotype]"},
            {{"Courier", "Courier New Baltic"}, ""}};
        for (const auto &[families, chosen] : choices)
            QCOMPARE(FixedPitchFont::ChooseFamily(families), chosen);
    }

    void FollowsItsEnd()
    {
        Desk desk(Lines(0, 100));
        QVERIFY(desk.Bar().maximum() > 50);
        QVERIFY(desk.AtEnd());
        desk.model.AppendStyled(Lines(100, 14300), Plain);
        QVERIFY(desk.AtEnd());
        desk.box.resize(300, 200);
        QVERIFY(desk.AtEnd());
        desk.box.hide();
        const int before = desk.Bar().maximum();
        desk.model.AppendStyled(Lines(14300, 14400), Plain);
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
        desk.model.AppendStyled(Lines(14000, 14300), Plain); // 128,700 characters: 2,048 are cut
        QCOMPARE(desk.FirstRow(), "0000300");
        QCOMPARE(desk.Bar().value(), 300 - 227);
        desk.box.hide();
        desk.model.AppendStyled(Lines(14300, 14500), Plain);
        desk.box.show();
        QCOMPARE(desk.FirstRow(), "000455"); // its own text was cut
        QCOMPARE(desk.Bar().value(), 0);
        desk.Bar().setValue(desk.Bar().maximum());
        desk.model.AppendStyled(Lines(0, 10), Plain);
        QVERIFY(desk.AtEnd());
    }

    void MouseSelects()
    {
        Desk desk("one two three\r\nfour five");
        QTest::mousePress(desk.box.viewport(), Qt::LeftButton, {}, desk.Point(4));
        desk.Drag(desk.Point(17));
        QTest::mouseRelease(desk.box.viewport(), Qt::LeftButton, {}, desk.Point(17));
        QCOMPARE(desk.Selected(), "two three\r\nfo");
        desk.Click(8);
        QVERIFY(!desk.model.HasSelection());
        QCOMPARE(desk.model.Caret(), 8);
        desk.Click(4, Qt::ShiftModifier);
        QCOMPARE(desk.Selected(), "two ");
        QTest::mouseDClick(desk.box.viewport(), Qt::LeftButton, {}, desk.Point(16));
        QCOMPARE(desk.Selected(), "four");
        desk.Click(16);
        QCOMPARE(desk.Selected(), "four five");
    }

    void DraggingPastTheEdgeScrolls()
    {
        Desk desk(Lines(0, 200));
        desk.Bar().setValue(100);
        const QPoint inside(20, desk.box.viewport()->height() / 2);
        QTest::mousePress(desk.box.viewport(), Qt::LeftButton, {}, inside);
        desk.Drag({20, -60});
        QTRY_COMPARE(desk.Bar().value(), 0);
        QTRY_COMPARE(desk.model.SelectionStart(), 2);
        QTest::mouseRelease(desk.box.viewport(), Qt::LeftButton, {}, {20, -60});
    }

    void KeysSelect()
    {
        constexpr Qt::KeyboardModifiers Shift = Qt::ShiftModifier;
        constexpr Qt::KeyboardModifiers Both = Shift | Qt::ControlModifier;
        const struct {
            Qt::Key key;
            Qt::KeyboardModifiers modifiers;
            const char *selected; ///< of a caret before "three"
        } strokes[] = {{Qt::Key_Right, Shift, "t"},
                       {Qt::Key_Left, Shift, " "},
                       {Qt::Key_Right, Both, "three"},
                       {Qt::Key_Left, Both, "two "},
                       {Qt::Key_Down, Shift, "three\r\nfour fiv"},
                       {Qt::Key_Up, Shift, ""},
                       {Qt::Key_Home, Shift, "one two "},
                       {Qt::Key_End, Shift, "three"},
                       {Qt::Key_Home, Both, "one two "},
                       {Qt::Key_End, Both, "three\r\nfour five"},
                       {Qt::Key_PageDown, Shift, "three\r\nfour fiv"},
                       {Qt::Key_A, Qt::ControlModifier, "one two three\r\nfour five"}};
        Desk desk("one two three\r\nfour five");
        desk.model.SetReadOnly(true);
        for (const auto &[key, modifiers, selected] : strokes) {
            desk.model.Select(8, 8);
            desk.Key(key, modifiers);
            QCOMPARE(desk.Selected(), selected);
        }
    }

    void CopiesUnicode()
    {
        Desk desk("a\x80\x81\r\nb");
        desk.model.SetReadOnly(true);
        for (const Qt::Key key : {Qt::Key_C, Qt::Key_Insert}) {
            QApplication::clipboard()->clear();
            desk.Key(Qt::Key_A, Qt::ControlModifier);
            desk.Key(key, Qt::ControlModifier);
            QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("a\u20AC\u0081\r\nb"));
        }
    }

    void ReadOnlyChangesNothing()
    {
        Desk desk("abc");
        desk.model.SetReadOnly(true);
        QApplication::clipboard()->setText("xyz");
        desk.model.Select(0, 2);
        QTest::keyClicks(&desk.box, "q");
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Backspace, Qt::Key_Delete})
            desk.Key(key);
        for (const Qt::Key key : {Qt::Key_X, Qt::Key_V})
            desk.Key(key, Qt::ControlModifier);
        desk.Key(Qt::Key_Insert, Qt::ShiftModifier);
        desk.Compose("e");
        QCOMPARE(desk.Text(), "abc");
        QVERIFY(!desk.box.testAttribute(Qt::WA_InputMethodEnabled));
    }

    void TypesInTheTypingStyle()
    {
        Desk desk("abc");
        desk.box.SetTypingStyle(Comment);
        desk.model.Select(1, 2);
        QTest::keyClicks(&desk.box, "Xy");
        desk.Key(Qt::Key_Return);
        desk.Compose("\u00EA");
        QCOMPARE(desk.Text(), QByteArray("aXy\r\n\xEA"
                                         "c"));
        QCOMPARE(desk.model.RunAt(0).style, Plain);
        QCOMPARE(desk.model.RunAt(1).style, Comment);
        QCOMPARE(desk.model.RunAt(1).end, 6);
    }

    void ErasesAndCutsAndPastes()
    {
        Desk desk("one two\r\nthree");
        desk.model.Select(9, 9);
        const auto after = [&desk](Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
            desk.Key(key, modifiers);
            return desk.Text();
        };
        QCOMPARE(after(Qt::Key_Backspace), "one twothree");
        QCOMPARE(after(Qt::Key_Delete), "one twohree");
        QCOMPARE(after(Qt::Key_Backspace, Qt::ControlModifier), "one hree");
        desk.model.Select(0, 4);
        QCOMPARE(after(Qt::Key_Delete, Qt::ShiftModifier), "hree");
        desk.Key(Qt::Key_End);
        QCOMPARE(after(Qt::Key_V, Qt::ControlModifier), "hreeone ");
    }

    void RefusesForeignCharactersWhole()
    {
        Desk desk("abc");
        desk.model.Select(1, 2);
        const std::pair<QString, QString> texts[] = {{"\u03A9", "\u03A9 (U+03A9)"},
                                                     {"good \u0416 \u0417", "\u0416 (U+0416)"},
                                                     {"\U0001F600", "\U0001F600 (U+1F600)"}};
        for (const auto &[text, named] : texts) {
            const QString told = "The character " + named + " is not in code page 1252.";
            QApplication::clipboard()->setText(text);
            desk.Key(Qt::Key_V, Qt::ControlModifier);
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
        desk.model.AppendStyled("\ncd", Plain);
        QCOMPARE(desk.model.Caret(), 4);
    }

    void ReleasesOfWhatWasPressedHereAreTold()
    {
        Desk desk(QByteArray("x").repeated(128001) + "tail");
        QCOMPARE(desk.model.Begin(), 2048);
        QSignalSpy released(&desk.box, &RichTextBox::CaretReleased);
        desk.model.Select(128000, 128000);
        desk.Key(Qt::Key_Left, Qt::ShiftModifier);
        QCOMPARE(released.takeFirst().first().toLongLong(), 127999);
        released.clear();
        desk.Click(125955);
        QCOMPARE(released.takeFirst().first().toLongLong(), 128003);
        QTest::keyPress(&desk.box, Qt::Key_Home);
        desk.box.clearFocus();
        desk.box.setFocus();
        QTest::keyRelease(&desk.box, Qt::Key_Home);
        QTest::keyRelease(&desk.box, Qt::Key_Escape);
        QTest::mouseRelease(desk.box.viewport(), Qt::LeftButton);
        QVERIFY(released.isEmpty());
    }

    void ShowsTheSelectionAwayFromTheEdges()
    {
        Desk desk(Lines(0, 200));
        const qint64 place = desk.model.Find("0000050", 0);
        desk.model.Select(place, place + 7);
        desk.box.ScrollToSelection();
        QVERIFY(desk.Bar().value() <= 48);
        QVERIFY(desk.Bar().value() >= 38);
        desk.Bar().setValue(50);
        desk.box.ScrollToSelection();
        QVERIFY(desk.Bar().value() <= 48);
        const int value = desk.Bar().value();
        desk.box.ScrollToSelection();
        QCOMPARE(desk.Bar().value(), value);
    }

    void ContextMenuOffersWhatIsPossible()
    {
        Desk desk("abc");
        QApplication::clipboard()->setText("x");
        const auto offered = [&desk] {
            QStringList texts;
            const auto menu = desk.box.MakeContextMenu();
            for (const QAction *action : menu->actions())
                if (action->isEnabled() && !action->isSeparator())
                    texts << action->text();
            return texts.join(u' ');
        };
        QCOMPARE(offered(), "&Paste Select &All");
        desk.model.Select(0, 1);
        QCOMPARE(offered(), "Cu&t &Copy &Paste &Delete Select &All");
        desk.model.SetReadOnly(true);
        QCOMPARE(offered(), "&Copy Select &All");
    }

    void PaintsColoursAndBoxes()
    {
        Desk desk;
        desk.box.clearFocus(); // no caret
        desk.box.SetBackground(0x00102030);
        desk.model.AppendStyled("\x08\x08 \x7F AB", {0x000000FF, false, false, false});
        desk.model.AppendStyled("\r\n  __", {0x00FF0000, true, false, true});
        const auto cell = [&desk](qint64 at) { return desk.box.CharacterRect(at).toAlignedRect(); };
        QCOMPARE(Count(desk.box, cell(2), qRgb(0x30, 0x20, 0x10)),
                 cell(2).width() * cell(2).height());
        // A box: its four sides and nothing inside.
        QVERIFY(Count(desk.box, cell(3), qRgb(255, 0, 0)) >= 16);
        QCOMPARE(desk.box.viewport()->grab().toImage().pixel(cell(3).center()),
                 qRgb(0x30, 0x20, 0x10));
        QVERIFY(Count(desk.box, desk.box.viewport()->rect(), qRgb(0, 0, 255)) >= 20);

        desk.model.Select(2, 3);
        const QColor selection = desk.box.palette().color(QPalette::Inactive, QPalette::Highlight);
        QVERIFY(Count(desk.box, cell(2), selection.rgb()) >= 50);
    }

    void SpeaksToScreenReaders()
    {
        Desk desk("one two\r\nthree");
        QAccessibleInterface *spoken = QAccessible::queryAccessibleInterface(&desk.box);
        QVERIFY(spoken && spoken->textInterface());
        QCOMPARE(spoken->role(), QAccessible::EditableText);
        QVERIFY(!spoken->state().readOnly);
        desk.model.SetReadOnly(true);
        QVERIFY(spoken->state().readOnly);

        QAccessibleTextInterface &text = *spoken->textInterface();
        int from = 0;
        int to = 0;
        QCOMPARE(text.characterCount(), 14);
        QCOMPARE(text.text(4, 7), "two");
        QCOMPARE(text.textAtOffset(5, QAccessible::WordBoundary, &from, &to), "two");
        QCOMPARE(std::pair(from, to), std::pair(4, 7));
        QCOMPARE(text.textAtOffset(5, QAccessible::LineBoundary, &from, &to), "one two\r\n");
        QCOMPARE(text.textAfterOffset(5, QAccessible::LineBoundary, &from, &to), "three");
        QCOMPARE(text.textBeforeOffset(9, QAccessible::CharBoundary, &from, &to), "\r\n");
        desk.model.Select(9, 4);
        QCOMPARE(text.cursorPosition(), 4);
        QCOMPARE(text.selectionCount(), 1);
        text.selection(0, &from, &to);
        QCOMPARE(std::pair(from, to), std::pair(4, 9));
        QCOMPARE(text.offsetAtPoint(text.characterRect(10).center() - QPoint(2, 0)), 10);
        text.setCursorPosition(2);
        QCOMPARE(desk.model.Caret(), 2);
        QVERIFY(!desk.model.HasSelection());
    }
};

QTEST_MAIN(tst_RichTextBox)
#include "tst_richtextbox.moc"
