// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "MdSequenceEdition.h"
#include "SQEditSequence.h"
#include "frmEditAction.h"
#include "frmEditEvent.h"
#include "support/Cases.h"
#include "support/FullTables.h"
#include "support/ScriptedPrompts.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabBar>

namespace
{

const QString AskText = QStringLiteral(
    "The current sequence has been modified. Do you want to apply the new sequence? (Choose 'No' "
    "to discard the changes.)");
const QString DeleteText =
    QStringLiteral("Deleting a sequence cannot be undone. Are you sure to delete this sequence?");

/// Three send sequences, two receive sequences and an editor on one of them.
template <typename Editor> class EditorBench
{
  public:
    bool answersPossible = true;
    MdSequenceEdition tables;
    ScriptedPrompts prompts;
    Representation mode = Representation::Ascii;
    QStringList changes; ///< "applied i" and "deleted i"
    std::unique_ptr<frmEditSequence> editor;

    explicit EditorBench(int index)
    {
        for (const char *name : {"one", "two", "three"})
            tables.AddSend({name, QByteArray(name).toUpper(), {}});
        tables.AddReceive({"ask", "?", {}, {}, 2, "asked", 1});
        tables.AddReceive({"bye", "!", {}, {}, 0, {}, 0, 0});
        Open(index);
    }

    void Open(int index)
    {
        tables.CurrentSendIndex = tables.CurrentReceiveIndex = index;
        const auto note = [this](const char *what) {
            return [this, what](int i) { changes << QStringLiteral("%1 %2").arg(what).arg(i); };
        };
        const SequenceEditorParts parts = {tables,          prompts,         mode,
                                           note("applied"), note("deleted"), answersPossible};
        editor = std::make_unique<Editor>(parts);
        editor->show();
    }

    template <typename Widget> Widget *Find(const char *name) const
    {
        return editor->findChild<Widget *>(QString::fromLatin1(name));
    }
    bool Visible(const char *name) const { return Find<QWidget>(name)->isVisible(); }
    QString Text(const char *field) const { return Find<QLineEdit>(field)->text(); }
    void Type(const char *field, const char *text) const
    {
        Find<QLineEdit>(field)->clear();
        QTest::keyClicks(Find<QLineEdit>(field), text);
    }
    void Press(const char *button) const { Find<QAbstractButton>(button)->click(); }
    /// The enabled ones of Back, Forward, Delete and Apply by their first letters.
    QString Enabled() const
    {
        QString letters;
        for (const char *name : {"cmdBack", "cmdForward", "cmdDelete", "cmdApply"}) {
            if (Find<QPushButton>(name)->isEnabled())
                letters += QChar(name[3]);
        }
        return letters;
    }
    /// The boxes so far had this text and these buttons.
    bool Asked(const QString &text, PromptButtons buttons, PromptAnswer defaultAnswer) const
    {
        return prompts.shown == QList{MessagePrompt{text, PromptIcon::Exclamation, buttons,
                                                    defaultAnswer, "Edit Send Sequence"}};
    }
};

using SendBench = EditorBench<frmEditAction>;
using ReceiveBench = EditorBench<frmEditEvent>;

} // namespace

class tst_editors : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void ButtonsFollowThePlace()
    {
        const struct {
            int index;
            const char *name, *enabled;
        } places[] = {{0, "one", "FD"}, {1, "two", "BFD"}, {3, "", "B"}};
        for (const auto &[index, name, enabled] : places) {
            const SendBench bench(index);
            QCOMPARE(bench.Find<QLabel>("lblActionID")->text(), QString::number(index));
            QCOMPARE(bench.Text("txtActionName"), name);
            QCOMPARE(bench.Enabled(), enabled);
        }
    }

    void ANewSequenceIsAdded()
    {
        SendBench bench(3);
        bench.Type("txtActionName", "x");
        bench.Find<QLineEdit>("txtActionName")->clear();
        bench.Press("cmdApply"); // nothing, as both name and sequence are empty
        QCOMPARE(bench.tables.SendCount(), 3);
        bench.Type("txtActionName", "four");
        bench.Press("OptionHexa");
        QTest::keyClicks(bench.Find<SQEditSequence>("AXEditAction"), "0D0A");
        QCOMPARE(bench.Enabled(), "BA");
        bench.Press("cmdApply");
        QCOMPARE(bench.Enabled(), "BFD");
        QCOMPARE(bench.tables.SendCount(), 4);
        QCOMPARE(bench.tables.SendAt(3).Name, "four");
        QCOMPARE(bench.tables.SendAt(3).Sequence, "\r\n");
        QCOMPARE(bench.tables.SendAt(3).EditorTexts[1], "0D 0A");
        bench.Press("cmdOK"); // nothing more to apply
        QCOMPARE(bench.changes, QStringList{"applied 3"});
        QVERIFY(!bench.editor->isVisible());
    }

    void LeavingAChangedRecordAsks()
    {
        const struct {
            const char *button;
            PromptAnswer answer;
            const char *stored;
            int index;
        } cases[] = {{"cmdBack", PromptAnswer::Yes, "new", 0},
                     {"cmdForward", PromptAnswer::No, "two", 2}};
        for (const auto &[button, answer, stored, index] : cases) {
            SendBench bench(1);
            bench.Type("txtActionName", "new");
            bench.prompts.answers = {answer};
            bench.Press(button);
            QVERIFY(bench.Asked(AskText, PromptButtons::YesNo, PromptAnswer::Yes));
            QCOMPARE(bench.tables.SendAt(1).Name, stored);
            QCOMPARE(bench.tables.CurrentSendIndex, index);
            QCOMPARE(bench.Find<QLabel>("lblActionID")->text(), QString::number(index));
            QVERIFY(!bench.Enabled().contains('A'));
        }
    }

    void EnterPressesTheFocusedButton_data()
    {
        const Cases<QByteArray, QByteArray, bool> row("focus", "stored", "open");
        row("a field: OK", "txtActionName", "new", false);
        row("Cancel, which does not ask", "CmdCancel", "two", false);
        row("Apply", "cmdApply", "new", true);
    }
    void EnterPressesTheFocusedButton()
    {
        QFETCH(const QByteArray, focus);
        SendBench bench(1);
        QVERIFY(QTest::qWaitForWindowActive(bench.editor.get()));
        bench.Type("txtActionName", "new");
        bench.Find<QWidget>(focus)->setFocus();
        QTest::keyClick(bench.Find<QWidget>(focus), Qt::Key_Return);
        QTEST(bench.tables.SendAt(1).Name, "stored");
        QTEST(bench.editor->isVisible(), "open");
        QCOMPARE(bench.changes.size(), focus == "CmdCancel" ? 0 : 1);
        QVERIFY(bench.prompts.shown.isEmpty());
    }

    void DeletingShowsWhatMovedIn()
    {
        SendBench bench(1);
        bench.prompts.answers = {PromptAnswer::Cancel};
        bench.Press("cmdDelete");
        QVERIFY(bench.Asked(DeleteText, PromptButtons::OkCancel, PromptAnswer::Ok));
        QCOMPARE(bench.tables.SendCount(), 3);
        QVERIFY(bench.changes.isEmpty());
        bench.Press("cmdDelete");
        QCOMPARE(bench.prompts.shown.size(), 3);
        QCOMPARE(bench.prompts.shown.last().icon, PromptIcon::Information);
        QVERIFY(bench.prompts.shown.last().text.endsWith(
            "\n0, \"ask\": \"two\" before, \"three\" now"));
        QCOMPARE(bench.Text("txtActionName"), "three");
        QCOMPARE(bench.Enabled(), "BFD");
        bench.Press("cmdDelete");
        QCOMPARE(bench.Text("txtActionName"), "");
        QCOMPARE(bench.Enabled(), "B");
        QCOMPARE(bench.changes, QStringList({"deleted 1", "deleted 1"}));
        QCOMPARE(bench.tables.SendCount(), 1);
        QCOMPARE(bench.prompts.shown.size(), 5);
        bench.Press("cmdBack");
        bench.Press("cmdDelete"); // no answer leads there
        QCOMPARE(bench.prompts.shown.size(), 6);
    }

    void AFullTableTakesNoMore()
    {
        SendBench bench(0);
        FillSendTable(bench.tables);
        bench.Open(1024);
        bench.Press("cmdForward");
        QCOMPARE(bench.prompts.shown.size(), 1);
        QCOMPARE(bench.prompts.shown.first().icon, PromptIcon::Exclamation);
        QVERIFY(bench.prompts.shown.first().text.contains("1025"));
        QCOMPARE(bench.tables.CurrentSendIndex, 1024);
        bench.Type("txtActionName", "still the last");
        bench.Press("cmdOK");
        QCOMPARE(bench.tables.SendCount(), 1025);
        QCOMPARE(bench.tables.SendAt(1024).Name, "still the last");
    }

    void TheModeIsRememberedAndKeepsTheBytes()
    {
        SendBench bench(0);
        const std::pair<const char *, int> options[] = {
            {"OptionHexa", 2}, {"OptionBinary", 3}, {"OptionAscii", 0}, {"OptionDecimal", 1}};
        for (const auto &[option, mode] : options) {
            bench.Press(option);
            QCOMPARE(bench.Find<SQEditSequence>("AXEditAction")->EditMode(), mode);
            QCOMPARE(bench.Find<SQEditSequence>("AXEditAction")->Sequence(), "ONE");
        }
        QCOMPARE(bench.mode, Representation::Decimal);
        QVERIFY(!bench.Enabled().contains('A'));
        bench.Open(1);
        QVERIFY(bench.Find<QRadioButton>("OptionDecimal")->isChecked());
    }

    void TheReceiveRecordIsShownAndStored()
    {
        ReceiveBench bench(0);
        auto *answers = bench.Find<QComboBox>("ComboAnswer");
        QCOMPARE(answers->count(), 4);
        QCOMPARE(answers->itemText(0), "No Answer");
        QCOMPARE(answers->currentText(), "( 1 ) - two");
        QCOMPARE(bench.Text("TxtComment"), "asked");
        bench.Press("ChkInsertCminEM"); // it only shows
        QVERIFY(!bench.Find<QCheckBox>("ChkInsertCminEM")->isChecked());
        QCOMPARE(bench.Enabled(), "FD");
        answers->setCurrentIndex(3);
        QCOMPARE(bench.Enabled(), "FDA");
        bench.Type("TxtComment", "again");
        bench.Press("cmdApply");
        const ReceiveSequence &record = bench.tables.ReceiveAt(0);
        QCOMPARE(record.Answer, qint16(3));
        QCOMPARE(record.AnswerName, "three");
        QCOMPARE(record.Comment, "again");
        QCOMPARE(record.CommentToLog, qint16(1));
        answers->setCurrentIndex(0);
        bench.Press("cmdOK");
        QCOMPARE(record.Answer, qint16(0));
        QCOMPARE(record.AnswerName, "");
    }

    void AnAnswerBeyondTheListSurvives()
    {
        ReceiveBench bench(0);
        for (const qint16 answer : {qint16(4), qint16(32767), qint16(-1)}) {
            bench.tables.ChangeReceive(0, [answer](auto &record) { record.Answer = answer; });
            bench.Open(0);
            QCOMPARE(bench.Find<QComboBox>("ComboAnswer")->currentIndex(), -1);
            const QByteArray name = "renamed " + QByteArray::number(answer);
            bench.Type("txtEventName", name);
            bench.Press("cmdOK");
            QCOMPARE(bench.tables.ReceiveAt(0).Name, name);
            QCOMPARE(bench.tables.ReceiveAt(0).Answer, answer);
        }
    }

    void ReceiveOnlyHidesTheAnswer()
    {
        ReceiveBench bench(0);
        bench.answersPossible = false;
        bench.Open(0);
        QVERIFY(!bench.Visible("ComboAnswer") && !bench.Visible("labAnswerWithSequence"));
        QVERIFY(bench.Visible("labSendAnswerNotPossible"));
        QCOMPARE(bench.Find<QTabBar>("tbsEvent")->count(), 2);
        bench.Find<QTabBar>("tbsEvent")->setCurrentIndex(1);
        QVERIFY(bench.Visible("TxtComment") && !bench.Visible("TxtMsgBox"));
        bench.Type("TxtComment", "other");
        bench.Press("cmdOK");
        QCOMPARE(bench.tables.ReceiveAt(0).Answer, qint16(2));
        QCOMPARE(bench.tables.ReceiveAt(0).AnswerName, "two");
    }

    void DeletingAReceiveSequenceLeavesTheTick()
    {
        ReceiveBench bench(0);
        bench.Press("cmdDelete");
        QCOMPARE(bench.Text("txtEventName"), "bye");
        QCOMPARE(bench.tables.ReceiveAt(0).Active, qint16(1));
        QCOMPARE(bench.tables.ReceiveCount(), 1);
        QVERIFY(
            bench.prompts.shown.last().text.endsWith("\n0, \"bye\": inactive before, active now"));
    }

    void NamesStayInTheCodePageAndOnOneLine()
    {
        SendBench bench(0);
        auto *name = bench.Find<QLineEdit>("txtActionName");
        name->clear();
        for (const char16_t character : u"5 €Ω!") {
            QKeyEvent press(QEvent::KeyPress, 0, {}, QString(QChar(character)));
            QCoreApplication::sendEvent(name, &press);
        }
        QCOMPARE(name->text(), QStringLiteral("5 €!"));
        name->selectAll();
        for (const char *pasted : {"two\nlines", "2 kΩ"}) {
            QApplication::clipboard()->setText(QString::fromUtf8(pasted));
            name->paste();
            QCOMPARE(name->text(), "two lines");
        }
        bench.Press("cmdApply");
        QCOMPARE(bench.tables.SendAt(0).Name, "two lines");
    }

    void ANewIndexIsEmpty()
    {
        ReceiveBench bench(0);
        bench.tables.ClearProject(); // which leaves comments
        bench.Open(0);
        QCOMPARE(bench.Text("TxtComment"), "");
        QVERIFY(!bench.Find<QCheckBox>("ChkInsertCminEM")->isChecked());
        bench.Type("txtEventName", "new");
        bench.Press("cmdOK");
        QCOMPARE(bench.tables.ReceiveAt(0).Comment, "");
        QCOMPARE(bench.tables.ReceiveCount(), 1);
    }

    void QuietLinesTellAndMoveNothing()
    {
        ReceiveBench bench(0);
        bench.Find<QTabBar>("tbsEvent")->setCurrentIndex(1);
        const auto *sequence = bench.Find<SQEditSequence>("AXEditEvent");
        const auto places = [&bench, sequence] {
            const QWidget *comment = bench.Find<QWidget>("ChkInsertCminEM");
            return QList{sequence->geometry(), bench.editor->geometry(), comment->geometry()};
        };
        const QList<QRect> before = places();
        const struct {
            const char *name, *comment, *told;
        } cases[] = {{"all well", "all well", ""},
                     {"a \"b\"", "\"b\"", ""},
                     {" a", "a, b", "name comment"},
                     {"\"a", "", "name"}};
        for (const auto &[name, comment, told] : cases) {
            bench.Type("txtEventName", name);
            bench.Type("TxtComment", comment);
            QStringList lines;
            if (bench.Visible("txtEventNameNote"))
                lines << "name";
            if (bench.Visible("TxtCommentNote"))
                lines << "comment";
            QCOMPARE(lines.join(' '), told);
            QCOMPARE(places(), before);
        }
        bench.Press("cmdOK");
        QCOMPARE(bench.tables.ReceiveAt(0).Name, "\"a"); // kept as typed
    }

    void EmptyingARecordStoresNothing_data()
    {
        const Cases<int, QByteArray, int, int, QString> row("index", "button", "boxes", "shown",
                                                            "line");
        row("Apply", 1, "cmdApply", 0, 1, "Not stored");
        row("OK", 1, "cmdOK", 1, -1, "");
        row("stepping", 1, "cmdForward", 2, 2, "");
        row("OK at a new index", 3, "cmdOK", 0, -1, "");
        row("stepping from a new index", 3, "cmdBack", 1, 2, "");
        row("Apply at a new index", 3, "cmdApply", 0, 3, "");
    }
    void EmptyingARecordStoresNothing()
    {
        QFETCH(const int, index);
        QFETCH(const QByteArray, button);
        SendBench bench(index);
        auto *sequence = bench.Find<SQEditSequence>("AXEditAction");
        bench.Type("txtActionName", "x");
        bench.Find<QLineEdit>("txtActionName")->clear();
        sequence->SelectAll();
        sequence->Delete();
        bench.Press(button);
        QTEST(int(bench.prompts.shown.size()), "boxes");
        if (button == "cmdOK" && index == 1)
            QCOMPARE(bench.prompts.shown.last().text, "Not stored; use Delete Sequence");
        QCOMPARE(bench.tables.SendAt(1).Name, "two");
        QVERIFY(bench.changes.isEmpty());
        const int shown = bench.editor->isVisible() ? bench.tables.CurrentSendIndex : -1;
        QTEST(shown, "shown");
        QCOMPARE(bench.Text("txtActionName"), shown == 1 ? "two" : shown == 2 ? "three" : "");
        QTEST(bench.Find<QLabel>("AXEditActionNote")->text().section(',', 0, 0), "line");
    }

    void AnEmptySequenceIsToldOfOnceItIsStored()
    {
        ReceiveBench bench(2);
        auto *sequence = bench.Find<SQEditSequence>("AXEditEvent");
        bench.Type("txtEventName", "new");
        QVERIFY(!bench.Visible("AXEditEventNote"));
        bench.Press("cmdApply");
        QVERIFY(bench.Find<QLabel>("AXEditEventNote")->text().contains("one byte 0"));
        QCOMPARE(sequence->accessibleDescription(), bench.Find<QLabel>("AXEditEventNote")->text());
        QTest::keyClicks(sequence, "x");
        QVERIFY(!bench.Visible("AXEditEventNote"));
    }

    void ItemsTypedAsCharactersAreConverted()
    {
        SendBench bench(3);
        auto *sequence = bench.Find<SQEditSequence>("AXEditAction");
        QTest::keyClicks(sequence, "01 03 00 00 00 02 C4 0B");
        QCOMPARE(bench.Find<QLabel>("AXEditActionNote")->text(),
                 "23 characters; as HEX this would be 8 bytes");
        QCOMPARE(bench.Find<QPushButton>("cmdConvert")->text(), "&Convert to HEX");
        bench.Press("cmdConvert");
        QCOMPARE(sequence->Sequence().toHex(), "010300000002c40b");
        QVERIFY(bench.Find<QRadioButton>("OptionHexa")->isChecked());
        QVERIFY(!bench.Visible("AXEditActionNote") && !bench.Visible("cmdConvert"));
        sequence->Undo();
        QCOMPARE(sequence->Sequence(), "01 03 00 00 00 02 C4 0B");
        bench.Press("OptionAscii");
        QVERIFY(bench.Visible("cmdConvert"));
    }

    void TabLeadsThroughTheFieldsFromTopToBottom()
    {
        SendBench bench(0);
        QVERIFY(QTest::qWaitForWindowActive(bench.editor.get()));
        QStringList order;
        for (int i = 0; i < 4; ++i) {
            order << QApplication::focusWidget()->objectName();
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        }
        QCOMPARE(order,
                 QStringList({"txtActionName", "OptionAscii", "AXEditAction", "cmdForward"}));
        const QWidget *modes = bench.Find<QWidget>("OptionAscii")->parentWidget();
        QCOMPARE(modes->accessibleName(), "Edit Mode");
        QVERIFY(modes->y() < bench.Find<QWidget>("AXEditAction")->y());
        order.clear(); // in which assistive programs read
        for (const QPushButton *button :
             bench.editor->findChildren<QPushButton *>(QString(), Qt::FindDirectChildrenOnly))
            order << button->objectName();
        QCOMPARE(order, QStringList({"cmdBack", "cmdForward", "cmdDelete", "cmdOK", "CmdCancel",
                                     "cmdApply"}));
    }
};

QTEST_MAIN(tst_editors)
#include "tst_editors.moc"
