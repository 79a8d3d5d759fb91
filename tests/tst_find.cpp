// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "RichTextBox.h"
#include "SQEditSequence.h"
#include "SQSendSequenceList.h"
#include "SequenceText.h"
#include "frmFind.h"
#include "support/Cases.h"
#include "support/ProgramBench.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTabBar>
#include <QTest>

namespace
{

/// The box that ends a search; below its text stands whether there is a hit above.
MessagePrompt Finished(const char *text, bool above, const char *view = "ASCII")
{
    const QString note = above ? QString("No more from here to the end of the %1 view; the next "
                                         "search begins at its top.")
                               : QString("Not found anywhere in the %1 view.");
    return {.text = text,
            .icon = PromptIcon::Exclamation,
            .caption = "Find Senquence",
            .note = note.arg(view)};
}

/// Two send sequences and a receive sequence, the views, and the dialog on them.
class FindBench
{
  public:
    MdSequenceEdition tables;
    CommunicationViews views;
    ScriptedPrompts prompts;
    MdFind find{tables, views, prompts};
    std::unique_ptr<frmFind> dialog;
    int hitsShown = 0;

    FindBench()
    {
        tables.AddSend({"R&D \x80", "one", {}});
        tables.AddSend({"no bytes", {}, {}});
        tables.AddReceive({.Name = "ask", .Sequence = "?"});
    }

    RichTextModel &View() { return views.View(views.DisplayedRepresentation); }
    void Open()
    {
        dialog = std::make_unique<frmFind>(FindParts{find, tables, [this] {
                                                         ++hitsShown;
                                                         return DialogPlace::Sight();
                                                     }});
        dialog->show();
    }
    template <typename Widget = QPushButton> Widget *Control(const char *name) const
    {
        return dialog->findChild<Widget *>(QString::fromLatin1(name));
    }
    /// Presses the button; where the hit begins in the view, -1 without one.
    qint64 Press(const char *button)
    {
        const int before = hitsShown;
        Control(button)->click();
        return hitsShown > before ? View().SelectionStart() - View().Begin() : -1;
    }
    qint64 FindDefined(const QByteArray &sequence)
    {
        return find.FindNext(FindKind::Defined, sequence) ? View().SelectionStart() : -1;
    }
};

} // namespace

class tst_find : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void ASearchWalksThroughTheView_data()
    {
        const Cases<Representation, QByteArray, QByteArray, QList<qint64>> row("view", "content",
                                                                               "sequence", "hits");
        constexpr auto Ascii = Representation::Ascii;
        constexpr auto Hex = Representation::Hex;
        row("hits overlap", Hex, "0D 0D 0D ", "\r\r", {0, 3, -1, 0});
        row("never across two items", Hex, "10 D1 0D ", "\r", {6, -1});
        row("decimal", Representation::Decimal, "013 010 013 010 ", "\r\n", {0, 8, -1, 0});
        row("binary", Representation::Binary, "00001101 00001010 ", "\n", {9, -1});
        row("letter case is ignored", Ascii, "ABCxabc", "aBc", {0, 4, -1});
        row("also of the code page's letters", Ascii, "\xC4\x8A \xE4\x9A", "\xE4\x8A", {0, 3, -1});
        row("across a line break", Ascii, "ab\r\ncd", "B\r\nC", {1, -1, 1});
        row("half a line break", Ascii, "ab\r\ncd", "\n", {3, -1});
        row("byte 0 is not what stands for it", Ascii, "a\x81", QByteArray(1, '\0'), {-1, -1});
    }

    void ASearchWalksThroughTheView()
    {
        QFETCH(QByteArray, sequence);
        FindBench bench;
        QFETCH(Representation, view);
        bench.views.DisplayedRepresentation = view;
        QFETCH(QByteArray, content);
        bench.View().AppendStyled(content, {});
        bench.find.FindTab = FindKind::Defined;
        bench.find.FindDefinedSequence = sequence;
        bench.Open();
        QFETCH(QList<qint64>, hits);
        const char *const name = std::array{"ASCII", "HEX", "Decimal", "Binary"}[size_t(view)];
        for (const qint64 hit : hits) {
            bench.prompts.shown.clear();
            QCOMPARE(bench.Press("cmdFindDefinedSequence"), hit);
            QCOMPARE(bench.views.CaretPosition, hit + 1);
            if (hit < 0)
                QCOMPARE(bench.prompts.shown,
                         QList{Finished("Finished searching for user defined sequence",
                                        hits.first() >= 0, name)});
        }
    }

    void OnlyWhatIsChosenIsSearchedFor()
    {
        FindBench bench;
        bench.View().AppendStyled("one?", {});
        bench.Open();
        QVERIFY(!bench.Control("cmdFindSendSequence")->isEnabled());
        QVERIFY(!bench.Control("cmdFindReceiveSequence")->isEnabled());
        QVERIFY(!bench.Control("cmdFindDefinedSequence")->isEnabled());
        auto *sends = bench.Control<QComboBox>("ComboSend");
        QCOMPARE(sends->itemText(0), QStringLiteral("---"));
        QCOMPARE(sends->itemText(1), QStringLiteral("R&D €"));
        sends->setCurrentIndex(1);
        QCOMPARE(bench.Press("cmdFindSendSequence"), 0);
        sends->setCurrentIndex(2);
        QCOMPARE(bench.Press("cmdFindSendSequence"), -1);
        QCOMPARE(bench.prompts.shown,
                 QList{Finished("Finished searching for send sequence", false)});
        sends->setCurrentIndex(0);
        QVERIFY(!bench.Control("cmdFindSendSequence")->isEnabled());

        bench.Control<QTabBar>("tbsFind")->setCurrentIndex(1);
        bench.Control<QComboBox>("ComboReceive")->setCurrentIndex(1);
        QCOMPARE(bench.Press("cmdFindReceiveSequence"), 3);
        bench.Press("cmdFindReceiveSequence");
        QCOMPARE(bench.prompts.shown.last(),
                 Finished("Finished searching for receive sequence", true));

        bench.Control<QTabBar>("tbsFind")->setCurrentIndex(2);
        QTest::keyClicks(bench.Control<SQEditSequence>("AXEditFind"), "?");
        QCOMPARE(bench.Press("cmdFindDefinedSequence"), 3);
        QTest::keyClick(bench.Control<SQEditSequence>("AXEditFind"), Qt::Key_Backspace);
        QVERIFY(!bench.Control("cmdFindDefinedSequence")->isEnabled());
    }

    void ATabBringsItsPanel()
    {
        FindBench bench;
        bench.Open();
        auto *tabs = bench.Control<QTabBar>("tbsFind");
        const QStringList tips = {"Find a send sequence", "Find a receive sequence",
                                  "Find a defined sequence"};
        for (const int tab : {1, 2, 0}) {
            QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(tab).center());
            QCOMPARE(bench.find.FindTab, FindKind(tab));
            QCOMPARE(tabs->tabToolTip(tab), tips[tab]);
            for (int i = 0; i < 3; ++i) {
                const QByteArray name = "picOptions_" + QByteArray::number(i);
                auto *panel = bench.Control<QWidget>(name);
                QVERIFY(panel->isVisible());
                QCOMPARE(panel->isEnabled(), i == tab);
                QCOMPARE(panel->x(), i == tab ? 14 : -1333);
                QCOMPARE(panel->isAncestorOf(bench.dialog->focusWidget()), i == tab);
                const auto *spoken = QAccessible::queryAccessibleInterface(panel);
                QCOMPARE(spoken->state().invisible, i != tab);
                QCOMPARE(spoken->childCount() > 0, i == tab);
            }
        }
    }

    void ItOpensAsItWasLeft_data()
    {
        const Cases<std::function<void(FindBench &)>> row("leave");
        row("Cancel", [](FindBench &bench) { bench.Control("CmdCancel_2")->click(); });
        row("the frame", [](FindBench &bench) { bench.dialog->close(); });
        row("Escape", [](FindBench &bench) {
            QTest::keyClick(bench.Control<QWidget>("AXEditFind"), Qt::Key_Escape);
        });
    }

    void ItOpensAsItWasLeft()
    {
        FindBench bench;
        bench.Open();
        bench.Control<QComboBox>("ComboSend")->setCurrentIndex(2);
        bench.Control<QComboBox>("ComboReceive")->setCurrentIndex(1);
        bench.Control<QTabBar>("tbsFind")->setCurrentIndex(2);
        bench.Control<QRadioButton>("OptionDecimal")->click();
        QTest::keyClicks(bench.Control<SQEditSequence>("AXEditFind"), "013");
        QFETCH(std::function<void(FindBench &)>, leave);
        leave(bench);
        QVERIFY(!bench.dialog->isVisible());
        QCOMPARE(bench.find.FindSendIndex, qint16(2));

        bench.tables.CurrentSendIndex = 1;
        bench.tables.DeleteSendSequence();
        bench.views.DisplayedRepresentation = Representation::Hex;
        bench.Open();
        QCOMPARE(bench.Control<QTabBar>("tbsFind")->currentIndex(), 2);
        QCOMPARE(bench.Control<QComboBox>("ComboSend")->currentText(), QStringLiteral("---"));
        QCOMPARE(bench.Control<QComboBox>("ComboReceive")->currentText(), QStringLiteral("ask"));
        auto *field = bench.Control<SQEditSequence>("AXEditFind");
        QCOMPARE(field->EditMode(), 2); // that of the view, whatever was chosen before
        QCOMPARE(field->Sequence(), QByteArray("\r"));
        QVERIFY(bench.Control("cmdFindDefinedSequence")->isEnabled());
        QTest::keyClicks(field, "4142");
        QCOMPARE(field->Sequence(), QByteArray("AB")); // what was there is replaced
    }

    void TheKeyThatSearchesIsNamedWhereEnterTypes()
    {
        FindBench bench;
        bench.find.FindTab = FindKind::Defined;
        for (const Representation view : AllRepresentations) {
            bench.views.DisplayedRepresentation = view;
            bench.views.CaretPosition = 0;
            bench.View().AppendStyled(SequenceText::Of("A", view), {});
            bench.find.FindDefinedSequence = "A";
            bench.Open();
            QVERIFY(QTest::qWaitForWindowActive(bench.dialog.get()));
            auto *field = bench.Control<SQEditSequence>("AXEditFind");
            const bool named = bench.Control<QLabel>("lblKeyNote")->isVisible();
            QCOMPARE(named, view == Representation::Ascii);
            QCOMPARE(field->accessibleDescription().startsWith("Alt+N searches"), named);
            bench.hitsShown = 0;
            QTest::keyClick(field, Qt::Key_N, Qt::AltModifier);
            QTRY_COMPARE(bench.hitsShown, 1);
            bench.views.CaretPosition = 0;
            QTest::keyClick(field, Qt::Key_Return);
            QCOMPARE(bench.hitsShown, named ? 1 : 2);
            QCOMPARE(field->Sequence(), named ? "\r" : "A");
        }
    }

    void TheNextSearchStaysWithTheText()
    {
        FindBench bench;
        RichTextModel &view = bench.View();
        const QByteArray block(16777216, '.');
        for (int i = 0; i < 129; ++i) // the model counts beyond 32 bits
            view.SetText(block, {});
        view.SetText("x" + QByteArray(127997, '.') + "xx", {});
        const qint64 begin = view.Begin();
        QCOMPARE(bench.FindDefined("x"), begin);
        QCOMPARE(bench.FindDefined("x"), begin + 127998);
        view.AppendStyled("..", {});
        QCOMPARE(view.Begin(), begin + 2048);
        QCOMPARE(bench.FindDefined("x"), begin + 127999);
        QCOMPARE(bench.FindDefined("x"), -1);
        bench.views.ClearViews();
        view.AppendStyled("x", {});
        bench.views.CaretPosition = begin + 5; // has gone with its text
        QCOMPARE(bench.FindDefined("x"), view.Begin() + 1);
    }

    void KeysOfTheMainWindow()
    {
        ProgramBench bench;
        const auto window = [&] { return bench.program->Window(); };
        const auto form = [] { return qobject_cast<frmFind *>(QApplication::activeModalWidget()); };
        const auto press = [](QWidget *at, QKeyCombination key) { // a dialog may come of it
            QTimer::singleShot(0, at,
                               [=] { QTest::keyClick(at, key.key(), key.keyboardModifiers()); });
        };
        const auto inView = [&](QKeyCombination key) {
            return [=] { press(window()->findChild<RichTextBox *>(), key); };
        };
        const auto inForm = [&](QKeyCombination key) {
            return [=] { press(form()->focusWidget(), key); };
        };
        const auto caretIs = [&](qint64 position) {
            return [&bench, position] { return bench.program->Views().CaretPosition == position; };
        };
        const auto formIsOpen = [&] { return form() != nullptr; };
        const auto formIsGone = [&] {
            if (!form())
                window()->activateWindow();
            return window()->isActiveWindow();
        };
        const auto prepare = [&] {
            bench.View(Representation::Ascii).AppendStyled("one two one two", {});
            bench.Watch("?", {}, "one");
        };
        const auto choose = [&] {
            form()->findChild<QComboBox *>(QStringLiteral("ComboSend"))->setCurrentIndex(1);
        };
        const auto clear = [&] { bench.program->Sequences().ClearProject(); };
        const auto atOnce = [] { return true; };
        const auto copied = [] { return QApplication::clipboard()->text() == "one"; };
        bench.Run({{prepare, atOnce},
                   {inView(Qt::CTRL | Qt::Key_F), formIsOpen},
                   {choose, atOnce},
                   {inForm(Qt::Key_Return), caretIs(1)},
                   {inForm(Qt::Key_Escape), formIsGone},
                   {inView(Qt::Key_F3), caretIs(9)},
                   {inView(Qt::CTRL | Qt::Key_C), copied},
                   {[&] { press(&window()->SendList(), Qt::Key_F3); }, caretIs(0)},
                   {clear, atOnce},
                   {inView(Qt::Key_F3), formIsOpen},
                   {inForm(Qt::Key_Escape), formIsGone}});
        QVERIFY(!bench.stuck);
        QCOMPARE(bench.prompts.shown,
                 QList{Finished("Finished searching for send sequence", true)});
    }

    void TheDialogLeavesTheHit_data()
    {
        const Cases<QRect, QRect, QPoint> row("hit", "view", "place");
        const QRect view(500, 100, 300, 400);
        row("it may stay", {500, 90, 50, 15}, view, {400, 200});
        row("to the side of the view", {510, 300, 50, 15}, view, {242, 200});
        row("else beside the hit", {450, 390, 50, 15}, {0, 0, 1000, 800}, {400, 182});
        row("never off the screen", {0, 205, 1000, 500}, {0, 0, 1000, 800}, {400, 0});
    }

    void TheDialogLeavesTheHit()
    {
        QFETCH(QRect, hit);
        QFETCH(QRect, view);
        QTEST(DialogPlace::Beside({400, 200, 250, 200}, {hit, view}, {0, 0, 1000, 800}), "place");
    }
};

QTEST_MAIN(tst_find)
#include "tst_find.moc"
