// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SQReceiveSequenceList.h"
#include "SQSendSequenceList.h"
#include "SequenceToolTip.h"
#include "support/MouseLosses.h"

#include <QAccessible>
#include <QAction>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QMenu>
#include <QScrollBar>
#include <QTest>

#include <cmath>

namespace
{

enum Column { MarkColumn, NameColumn, SequenceColumn, AnswerColumn };

const QList<SequenceListRow> ThreeRows = {{"one", "01 | 02", "first", "a comment", true},
                                          {"two", "A | \x81", "", "", false},
                                          {"three", "", "", "", true}};

using Widths = std::array<qint32, 3>;
constexpr Widths Preset = {50, 100, 150};

/// A list with three rows, and everything that it asks for, as "Send 0", "Edit 1" and so on.
template <typename List> class ListBench
{
  public:
    List list;
    QStringList asked;

    ListBench()
    {
        list.resize(400, 300);
        list.SetRows(ThreeRows);
        const auto note = [this](const char *what) {
            return [this, what](int index) { asked << QString("%1 %2").arg(what).arg(index); };
        };
        QObject::connect(&list, &List::EditRequested, &list, note("Edit"));
        QObject::connect(&list, &List::EmptyRowRequested, &list, note("Empty"));
        if constexpr (std::is_same_v<List, SQSendSequenceList>) {
            QObject::connect(&list, &List::SendRequested, &list, note("Send"));
            QObject::connect(&list, &List::RepeatRequested, &list, note("Repeat"));
            QObject::connect(&list, &List::StopRequested, &list, note("Stop"));
        } else {
            QObject::connect(&list, &List::ActivationRequested, &list, [this](int i, bool active) {
                asked << QString("Active %1 %2").arg(i).arg(active ? "on" : "off");
            });
        }
        list.show();
    }

    QVariant Data(int row, int column, int role = Qt::DisplayRole) const
    {
        return list.model()->index(row, column).data(role);
    }
    QString Text(int row, int column, int role = Qt::DisplayRole) const
    {
        return Data(row, column, role).toString();
    }
    /// What was asked for since the last look.
    QString Asked() { return std::exchange(asked, {}).join(", "); }
    Widths Stored() const
    {
        Widths widths{};
        list.StoreColumnWidths(widths);
        return widths;
    }
    QPoint Place(int row, int column) const
    {
        return list.visualRect(list.model()->index(row, column)).center();
    }
    void Click(int row, int column)
    {
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, Place(row, column));
    }
    void DoubleClick(int row, int column)
    {
        Click(row, column);
        QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, Place(row, column));
    }
    void Press(std::initializer_list<Qt::Key> keys, Qt::KeyboardModifiers modifiers = {})
    {
        for (const Qt::Key key : keys)
            QTest::keyClick(&list, key, modifiers);
    }
    /// The captions of the context menu, in order; the entry named is chosen.
    QStringList UseMenu(QPoint place, const char *entry,
                        QContextMenuEvent::Reason reason = QContextMenuEvent::Mouse)
    {
        QContextMenuEvent event(reason, place, list.viewport()->mapToGlobal(place));
        QCoreApplication::sendEvent(list.viewport(), &event);
        auto *menu = list.template findChild<QMenu *>();
        QStringList captions;
        for (QAction *action : menu->actions()) {
            captions << action->text().section('\t', 0, 0);
            if (action->objectName() == entry)
                action->trigger();
        }
        delete menu;
        return captions;
    }
};

using SendBench = ListBench<SQSendSequenceList>;
using ReceiveBench = ListBench<SQReceiveSequenceList>;

} // namespace

class tst_sequencelists : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void RowsStandUnderTheirHeadings()
    {
        const ReceiveBench bench;
        QStringList cells;
        for (int i = 0; i < bench.list.model()->columnCount(); ++i)
            cells << bench.list.model()->headerData(i, Qt::Horizontal).toString()
                  << bench.Text(0, i);
        QCOMPARE(cells.join('/'), "Active/one/Name/one/Sequence/01 | 02/Answer/first");
        const SendBench send;
        QCOMPARE(send.list.model()->columnCount(), 3);
        QCOMPARE(send.list.model()->headerData(0, Qt::Horizontal), "Send");
    }

    void RowsAreAddedChangedAndDeletedBeforeTheEmptyOne()
    {
        SendBench bench;
        const auto names = [&] {
            QStringList texts;
            for (int i = 0; i < bench.list.model()->rowCount(); ++i)
                texts << bench.Text(i, NameColumn);
            return texts.join(',');
        };
        bench.list.AddRow({"four", "", ""});
        QCOMPARE(bench.list.Count(), 4);
        QCOMPARE(names(), "one,two,three,four,New...");
        bench.list.ModifyRow(1, {"new", "", ""});
        bench.list.DeleteRow(0);
        for (const int outside : {-1, 3}) {
            bench.list.ModifyRow(outside, {"lost", "", ""});
            bench.list.DeleteRow(outside);
        }
        QCOMPARE(names(), "new,three,four,New...");
        bench.list.Clear();
        QCOMPARE(names(), "New...");
        bench.Click(0, NameColumn);
        QCOMPARE(bench.Asked(), "Empty 0");
    }

    void ARefreshKeepsThePlace()
    {
        SendBench bench;
        QList<SequenceListRow> rows(1025, {"name", "41 | 42", ""});
        bench.list.SetRows(rows);
        bench.list.setCurrentIndex(bench.list.model()->index(700, NameColumn));
        const int scrolled = bench.list.verticalScrollBar()->value();
        QVERIFY(scrolled > 0);
        rows[700].name = "renamed";
        bench.list.SetRows(rows);
        QCOMPARE(bench.list.currentIndex().row(), 700);
        QCOMPARE(bench.list.verticalScrollBar()->value(), scrolled);
        QCOMPARE(bench.Text(700, NameColumn), "renamed");
        bench.list.SetRows(ThreeRows);
        QVERIFY(bench.list.currentIndex().row() < 4);
    }

    void TheMouseSendsAndEdits()
    {
        SendBench bench;
        bench.Click(1, MarkColumn);
        bench.Click(1, NameColumn);
        QCOMPARE(bench.Asked(), "Send 1");
        bench.Click(3, MarkColumn); // the empty row has no button, it is one
        bench.Click(3, SequenceColumn);
        QCOMPARE(bench.Asked(), "Empty 3, Empty 3");
        bench.DoubleClick(2, SequenceColumn);
        QCOMPARE(bench.Asked(), "Edit 2");
        const QPoint empty = bench.Place(3, NameColumn);
        QMouseEvent again(QEvent::MouseButtonDblClick, empty,
                          bench.list.viewport()->mapToGlobal(empty), Qt::LeftButton, Qt::LeftButton,
                          {});
        QCoreApplication::sendEvent(bench.list.viewport(), &again);
        QTest::mouseRelease(bench.list.viewport(), Qt::LeftButton, {}, empty);
        QCOMPARE(bench.Asked(), ""); // the first click of the two has done it
        QTest::mouseDClick(bench.list.viewport(), Qt::LeftButton, {}, {100, 290}); // below all rows
        QTest::mouseClick(bench.list.viewport(), Qt::RightButton, {}, bench.Place(0, MarkColumn));
        QCOMPARE(bench.Asked(), "Empty 3");
        bench.DoubleClick(0, MarkColumn);
        QTest::mouseRelease(bench.list.viewport(), Qt::LeftButton, {}, bench.Place(0, MarkColumn));
        QCOMPARE(bench.Asked(), "Send 0, Send 0"); // two quick clicks send twice
        QWidget *viewport = bench.list.viewport(); // a button left while held down does nothing
        QTest::mousePress(viewport, Qt::LeftButton, {}, bench.Place(1, MarkColumn));
        QTest::mouseMove(viewport, bench.Place(2, MarkColumn));
        QTest::mouseRelease(viewport, Qt::LeftButton, {}, bench.Place(2, MarkColumn));
        QTest::mousePress(viewport, Qt::LeftButton, {}, empty);
        QTest::mouseRelease(viewport, Qt::LeftButton, {}, {100, 290});
        QCOMPARE(bench.Asked(), "");
    }

    void AMarkThatLosesTheMouseComesUp()
    {
        for (const MouseLoss &loss : MouseLosses) {
            SendBench bench;
            QWidget *viewport = bench.list.viewport();
            const QPoint mark = bench.Place(1, MarkColumn);
            const auto picture = [&] {
                bench.list.activateWindow();
                return QTest::qWaitForWindowActive(&bench.list) ? viewport->grab().toImage()
                                                                : QImage();
            };
            QTest::mousePress(viewport, Qt::LeftButton, {}, mark);
            const QImage down = picture();
            QTest::mouseMove(viewport, bench.Place(2, MarkColumn));
            const QImage up = picture();
            QTest::mouseMove(viewport, mark);
            QVERIFY2(up != down && picture() == down, loss.name);
            loss.happen(*viewport);
            QVERIFY2(picture() == up, loss.name);
            QTest::mouseRelease(viewport, Qt::LeftButton, {}, mark);
            QCOMPARE(bench.Asked(), "");
        }
    }

    void TheKeysSendAndEdit()
    {
        SendBench bench;
        bench.list.activateWindow();
        bench.list.setFocus(Qt::TabFocusReason);
        QTRY_COMPARE(bench.list.currentIndex().row(), 0);
        bench.Press({Qt::Key_Down, Qt::Key_Return, Qt::Key_Enter});
        QCOMPARE(bench.Asked(), "Edit 1, Edit 1");
        bench.Press({Qt::Key_Return, Qt::Key_Enter}, Qt::ControlModifier);
        bench.Press({Qt::Key_Space});
        QCOMPARE(bench.Asked(), "Send 1, Send 1");
        bench.Press({Qt::Key_End});
        bench.Press({Qt::Key_Return}, Qt::ControlModifier);
        QCOMPARE(bench.Asked(), "");
        bench.Press({Qt::Key_Return});
        QCOMPARE(bench.Asked(), "Empty 3");
        QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, {}, {}, true);
        QCoreApplication::sendEvent(&bench.list, &held);
        QCOMPARE(bench.Asked(), "");
    }

    void ATickAsksAndDoesNotChangeByItself()
    {
        ReceiveBench bench;
        const auto ticks = [&] {
            QString all;
            for (int row = 0; row < 4; ++row)
                all += bench.Text(row, MarkColumn, Qt::CheckStateRole) + ' ';
            return all;
        };
        for (const int row : {0, 1})
            bench.Click(row, MarkColumn);
        QCOMPARE(bench.Asked(), "Active 0 off, Active 1 on");
        QCOMPARE(ticks(), "2 0 2  "); // the empty row has no box
        bench.list.SetActive(0, false);
        bench.list.SetActive(1, true);
        bench.list.SetActive(3, true);
        QCOMPARE(ticks(), "0 2 2  ");
        bench.Click(0, MarkColumn);
        bench.Press({Qt::Key_Down, Qt::Key_Space, Qt::Key_End, Qt::Key_Space});
        QCOMPARE(bench.Asked(), "Active 0 on, Active 1 off");
    }

    void TheMenusFollowTheRow()
    {
        SendBench send;
        QCOMPARE(send.UseMenu(send.Place(1, NameColumn), "mnuMark"),
                 (QStringList{"&Send", "&Repeat...", "&Edit...", "&Copy Sequence"}));
        send.UseMenu(send.Place(2, NameColumn), "mnuEdit");
        QCOMPARE(send.UseMenu(send.Place(3, NameColumn), "mnuNew"), QStringList{"&New..."});
        send.UseMenu({100, 290}, "mnuNew"); // below all rows
        QCOMPARE(send.Asked(), "Send 1, Edit 2, Empty 3, Empty 3");

        ReceiveBench receive;
        QCOMPARE(receive.UseMenu(receive.Place(0, NameColumn), "mnuMark").first(), "De&activate");
        receive.Click(1, NameColumn);
        QCOMPARE(receive.UseMenu({5, 5}, "mnuMark", QContextMenuEvent::Keyboard).first(),
                 "&Activate");
        QCOMPARE(receive.Asked(), "Active 0 off, Active 1 on");
    }

    void WhatIsRepeatedIsMarkedAndStopped()
    {
        SendBench bench;
        bench.UseMenu(bench.Place(1, NameColumn), "mnuRepeat");
        const auto mark = [&] {
            return bench.list.viewport()
                ->grab(bench.list.visualRect(bench.list.model()->index(1, 0)))
                .toImage();
        };
        const QImage before = mark();
        bench.list.SetRepeating({{1, "every 10 ms"}});
        QVERIFY(mark() != before);
        QCOMPARE(bench.Text(1, MarkColumn, Qt::AccessibleTextRole),
                 "Stop repeating two, every 10 ms");
        bench.Click(1, MarkColumn);
        QCOMPARE(bench.UseMenu(bench.Place(1, NameColumn), "mnuMark"),
                 (QStringList{"&Stop Repeating", "&Edit...", "&Copy Sequence"}));
        bench.Click(0, MarkColumn);
        bench.list.SetRepeating({});
        bench.Click(1, MarkColumn);
        QCOMPARE(bench.Asked(), "Repeat 1, Stop 1, Stop 1, Send 0, Send 1");
    }

    void TheSequenceIsCopiedAsItIs()
    {
        SendBench bench;
        bench.Click(0, NameColumn);
        QTest::keyClicks(&bench.list, "tw"); // finds a row by its name
        bench.Press({Qt::Key_C}, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("A | \u0081"));
        bench.UseMenu(bench.Place(0, NameColumn), "mnuCopy");
        QCOMPARE(QGuiApplication::clipboard()->text(), "01 | 02");
    }

    void BytesWithoutAShapeAreBoxes()
    {
        SendBench bench;
        bench.list.ModifyRow(0, {{"a\0\x1F\x7F\x80\x81\x9D\xA0\xAD\xFF", 10}, "\x81", ""});
        QCOMPARE(bench.Text(0, NameColumn),
                 QStringLiteral("a\u25A1\u25A1\u25A1\u20AC\u25A1\u25A1\u00A0-\u00FF"));
        const QFontMetrics metrics(bench.Data(0, SequenceColumn, Qt::FontRole).value<QFont>());
        QVERIFY(metrics.inFont(QChar(0x25A1)));
        QCOMPARE(metrics.horizontalAdvance(QChar(0x25A1)), metrics.horizontalAdvance(u'i'));
    }

    void ControlCharactersArePicturesInPlaceOfTheirBoxes()
    {
        SendBench bench;
        const auto show = [&](const QByteArray &bytes) {
            bench.list.ModifyRow(0, {"n", "A | \x81 | \x81", "", {}, true, bytes});
            QCOMPARE(bench.Text(0, SequenceColumn), QStringLiteral("A | \u25A1 | \u25A1"));
        };
        const auto grab = [&] { return bench.list.viewport()->grab().toImage(); };
        show({});
        const QImage boxes = grab();
        show("A\x81\x81");
        QCOMPARE(grab(), boxes);
        show("A\r\x81");
        const QImage picture = grab();
        QRect changed;
        for (int y = 0; y < boxes.height(); ++y)
            for (int x = 0; x < boxes.width(); ++x)
                changed |= boxes.pixel(x, y) != picture.pixel(x, y) ? QRect(x, y, 1, 1) : QRect();
        const QFont font = bench.Data(0, SequenceColumn, Qt::FontRole).value<QFont>();
        QVERIFY(changed.width() >= 3 &&
                changed.width() <= std::ceil(QFontMetricsF(font).horizontalAdvance(u'A')));
        show("A\n\x81");
        QVERIFY(grab() != picture);
    }

    void ToolTipsTellEverything()
    {
        ReceiveBench bench;
        bench.list.ModifyRow(0, {"<one>", "3C | 26", "an answer", "5 < 6 & more", true});
        const QString tip = bench.Text(0, AnswerColumn, Qt::ToolTipRole);
        for (const char *part :
             {"&lt;one&gt;", "3C | 26", "Answer: an answer", "Comment: 5 &lt; 6 &amp; more"})
            QVERIFY2(tip.contains(part), qPrintable(tip));
        const QString bare = bench.Text(1, NameColumn, Qt::ToolTipRole);
        QVERIFY(!bare.contains("Answer") && !bare.contains("Comment"));
        QVERIFY(bench.Text(0, MarkColumn, Qt::ToolTipRole).contains("Space"));
        QVERIFY(bench.Text(3, MarkColumn, Qt::ToolTipRole).contains("Click to add"));
    }

    void ALongSequenceIsWrappedInItsToolTip()
    {
        const struct {
            QByteArray text;
            qsizetype lines;
            bool whole;
        } tips[] = {{QByteArray("41 | ").repeated(63) + "41", 4, true},
                    {QByteArray(97, 'x'), 2, true},
                    {QByteArray(4096, 'x'), 43, true},
                    {QByteArray(4097, 'x'), 43, false}};
        for (const auto &[text, lines, whole] : tips) {
            const QString tip = SequenceToolTip::Text({"", text, ""}, "Mono");
            const QStringList shown = tip.section("'\">", 1).section("</span>", 0, 0).split('\n');
            QCOMPARE(shown.size(), lines);
            QCOMPARE(shown.join(""), QString(text.first(qMin<qsizetype>(text.size(), 4096))) +
                                         (whole ? "" : "\u2026"));
            for (const QString &line : shown)
                QVERIFY(line.size() <= 96 + 1); // and the ellipsis
        }
    }

    void WidthsAreBounded()
    {
        SendBench bench;
        bench.list.SetColumnWidths(Widths{50, -7, 2000000000}, Preset);
        QCOMPARE(bench.Stored(), (Widths{50, 24, 8192}));
        QFont large = bench.list.font();
        large.setPointSizeF(large.pointSizeF() * 2);
        bench.list.header()->setFont(large);
        bench.list.SetColumnWidths(Widths{40, 100, 150}, Preset); // as the user wants it
        QCOMPARE(bench.Stored(), (Widths{40, 100, 150}));
        bench.list.SetColumnWidths(Preset, Preset);
        QVERIFY(bench.list.columnWidth(MarkColumn) >
                QFontMetrics(large).horizontalAdvance(QStringLiteral("Send")));
    }

    void SequencesTakeTheFreeWidthUntilTheyAreDragged()
    {
        SendBench bench;
        const auto room = [&] {
            return bench.list.viewport()->width() - bench.list.header()->length();
        };
        bench.list.SetColumnWidths(Widths{50, 100, 150}, Preset);
        QCOMPARE(room(), 0);
        bench.list.resize(600, 300);
        bench.list.setColumnWidth(NameColumn, 120);
        QCOMPARE(room(), 0);
        QCOMPARE(bench.Stored(), (Widths{50, 120, 150}));
        bench.list.resize(200, 300);
        QVERIFY(room() < 0); // the rest is scrolled to
        bench.list.resize(600, 300);

        bench.list.setColumnWidth(SequenceColumn, 170);
        bench.list.resize(700, 300);
        QCOMPARE(bench.Stored(), (Widths{50, 120, 170}));
        bench.list.SetColumnWidths(bench.Stored(), Preset);
        QCOMPARE(bench.list.columnWidth(SequenceColumn), 170);
        Q_EMIT bench.list.header()->sectionHandleDoubleClicked(SequenceColumn);
        QCOMPARE(room(), 0);
        QCOMPARE(bench.Stored(), (Widths{50, 120, 150}));
    }

    void AssistiveProgramsReadAndPress()
    {
        SendBench send;
        ReceiveBench receive;
        send.list.ModifyRow(2, {"", "0D 0A", "", {}, true});
        const struct {
            QTreeView &list;
            int row;
            int column;
            const char *told;
            const char *pressed;
            QString keys;
        } cells[] = {
            {send.list, 0, MarkColumn, "Send one", "Send 0", "Ctrl+Enter"},
            {send.list, 0, NameColumn, "one", "Edit 0", "Return"},
            {send.list, 2, MarkColumn, "Send 0D 0A", "Send 2", "Ctrl+Enter"},
            {send.list, 3, MarkColumn, "New send sequence", "Empty 3", "Return"},
            {receive.list, 0, MarkColumn, "one, active", "Active 0 off", "Space"},
            {receive.list, 1, MarkColumn, "two, not active", "Active 1 on", "Space"},
            {receive.list, 0, AnswerColumn, "first", "Edit 0", "Return"},
            {receive.list, 3, NameColumn, "New receive sequence", "Empty 3", "Return"},
        };
        for (const auto &[list, row, column, told, pressed, keys] : cells) {
            QAccessibleInterface *table = QAccessible::queryAccessibleInterface(&list);
            QAccessibleInterface *cell = table->tableInterface()->cellAt(row, column);
            QCOMPARE(cell->text(QAccessible::Name), told);
            QCOMPARE(table->child(table->indexOfChild(cell)), cell);
            const QPoint place = cell->rect().center();
            QCOMPARE(table->childAt(place.x(), place.y()), cell);
            list.activateWindow();
            QVERIFY(QTest::qWaitForWindowActive(&list));
            list.setFocus();
            list.setCurrentIndex(list.model()->index(row, column));
            QCOMPARE(table->focusChild(), cell);
            const QString state = QString(pressed).section(' ', 2);
            QCOMPARE(cell->state().checkable, !state.isEmpty());
            QCOMPARE(cell->state().checked, state == "off");

            QAccessibleActionInterface &actions = *cell->actionInterface();
            const QString action = actions.actionNames().first();
            QCOMPARE(action, state.isEmpty() ? actions.pressAction() : actions.toggleAction());
            QCOMPARE(actions.keyBindingsForAction(action), QStringList(keys));
            actions.doAction(action);
            QCoreApplication::sendPostedEvents(&list);
            QCOMPARE(send.Asked() + receive.Asked(), pressed);
        }
        QAccessibleInterface *table = QAccessible::queryAccessibleInterface(&receive.list);
        QAccessibleInterface *last = table->tableInterface()->cellAt(3, NameColumn);
        receive.list.DeleteRow(0);
        QVERIFY(!last->isValid());
        QCOMPARE(table->childCount(), 4 * 4); // headings and three rows
        QCOMPARE(table->child(NameColumn)->text(QAccessible::Name), "Name");
    }
};

QTEST_MAIN(tst_sequencelists)
#include "tst_sequencelists.moc"
