// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "controls/SQEditSequence.h"
#include "project/SettingsRecord.h"
#include "sequences/MdSequenceEdition.h"
#include "sequences/frmEditAction.h"
#include "sequences/frmEditEvent.h"
#include "support/ScriptedPrompts.h"

#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabBar>
#include <QTest>

namespace
{

const QString AskText = QStringLiteral(
    "The current sequence has been modified. Do you want to apply the new sequence? (Choose 'No' "
    "to discard the changes.)");
const QString DeleteText =
    QStringLiteral("Deleting a sequence cannot be undone. Are you sure to delete this sequence?");

/// Three send sequences, two receive sequences and the editors on them.
class EditorBench
{
  public:
    SettingsRecord settings;
    MdSequenceEdition tables;
    ScriptedPrompts prompts;
    Representation mode = Representation::Ascii;
    QStringList changes; ///< "applied i" and "deleted i"
    std::unique_ptr<frmEditSequence> editor;

    EditorBench()
    {
        int index = 0;
        for (const char *name : {"one", "two", "three"}) {
            tables.EditSend(index) = {name, QByteArray(name).toUpper(), {}};
            tables.SetSendCount(++index);
        }
        tables.EditReceive(0).Name = "ask";
        tables.EditReceive(0).Sequence = "?";
        tables.EditReceive(0).Answer = 2;
        tables.EditReceive(0).Comment = "asked";
        tables.EditReceive(0).CommentToLog = 1;
        tables.EditReceive(1).Name = "bye";
        tables.EditReceive(1).Sequence = "!";
        tables.EditReceive(1).Active = 0;
        tables.SetReceiveCount(2);
    }

    template <typename Editor> void Open(int index)
    {
        tables.CurrentSendIndex = tables.CurrentReceiveIndex = index;
        const SequenceEditorParts parts = {
            settings,
            tables,
            prompts,
            mode,
            [this](int i) { changes << QStringLiteral("applied %1").arg(i); },
            [this](int i) { changes << QStringLiteral("deleted %1").arg(i); }};
        editor = std::make_unique<Editor>(parts);
        editor->show();
    }

    template <typename Widget> Widget *Find(const char *name) const
    {
        return editor->findChild<Widget *>(QString::fromLatin1(name));
    }
    void Type(const char *field, const char *text) const
    {
        Find<QLineEdit>(field)->clear();
        QTest::keyClicks(Find<QLineEdit>(field), text);
    }
    void Press(const char *button) const { Find<QPushButton>(button)->click(); }
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
};

} // namespace

class tst_editors : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void ButtonsFollowThePlace_data();
    void ButtonsFollowThePlace();
    void ANewSequenceIsAdded();
    void NothingIsAddedWithoutNameAndSequence();
    void LeavingAChangedRecordAsks_data();
    void LeavingAChangedRecordAsks();
    void CancelLosesTheChangeWithoutAsking();
    void EnterPressesTheFocusedButton_data();
    void EnterPressesTheFocusedButton();
    void DeletingShowsWhatMovedIn();
    void ADeletionMayBeCalledOff();
    void AFullTableTakesNoMore();
    void TheModeIsRememberedAndKeepsTheBytes();
    void TheReceiveRecordIsShownAndStored();
    void AnAnswerBeyondTheListSurvives_data();
    void AnAnswerBeyondTheListSurvives();
    void ReceiveOnlyHidesTheAnswer();
    void DeletingAReceiveSequenceLeavesTheTick();
    void NamesStayInTheCodePageAndOnOneLine();
    void WhatTheFileCutsIsTold_data();
    void WhatTheFileCutsIsTold();
};

void tst_editors::ButtonsFollowThePlace_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("enabled");
    QTest::newRow("the first") << 0 << "one"
                               << "FD";
    QTest::newRow("in the middle") << 1 << "two"
                                   << "BFD";
    QTest::newRow("behind the last") << 3 << ""
                                     << "B";
}

void tst_editors::ButtonsFollowThePlace()
{
    QFETCH(int, index);
    EditorBench bench;
    bench.Open<frmEditAction>(index);
    QCOMPARE(bench.editor->windowTitle(), QStringLiteral("Edit Send Sequence"));
    QCOMPARE(bench.Find<QLabel>("lblActionID")->text(), QString::number(index));
    QTEST(bench.Find<QLineEdit>("txtActionName")->text(), "name");
    QTEST(bench.Enabled(), "enabled");
}

void tst_editors::ANewSequenceIsAdded()
{
    EditorBench bench;
    bench.Open<frmEditAction>(3);
    bench.Type("txtActionName", "four");
    bench.Find<QRadioButton>("OptionHexa")->click();
    QTest::keyClicks(bench.Find<SQEditSequence>("AXEditAction"), "0D0A");
    QCOMPARE(bench.Enabled(), QStringLiteral("BA"));
    bench.Press("cmdApply");
    QCOMPARE(bench.Enabled(), QStringLiteral("BFD"));
    QCOMPARE(bench.tables.SendCount(), 4);
    QCOMPARE(bench.tables.SendAt(3).Name, QByteArray("four"));
    QCOMPARE(bench.tables.SendAt(3).Sequence, QByteArray("\r\n"));
    QCOMPARE(bench.tables.SendAt(3).EditorTexts[1], QByteArray("0D 0A"));
    bench.Press("cmdOK"); // nothing more to apply
    QCOMPARE(bench.changes, QStringList{"applied 3"});
    QVERIFY(!bench.editor->isVisible());
}

void tst_editors::NothingIsAddedWithoutNameAndSequence()
{
    EditorBench bench;
    bench.Open<frmEditAction>(3);
    bench.Type("txtActionName", "x");
    bench.Find<QLineEdit>("txtActionName")->clear();
    bench.Press("cmdOK");
    QCOMPARE(bench.tables.SendCount(), 3);
    QVERIFY(bench.changes.isEmpty());
}

void tst_editors::LeavingAChangedRecordAsks_data()
{
    QTest::addColumn<QByteArray>("button");
    QTest::addColumn<PromptAnswer>("answer");
    QTest::addColumn<QByteArray>("stored");
    QTest::addColumn<int>("index");
    QTest::newRow("back, applied")
        << QByteArray("cmdBack") << PromptAnswer::Yes << QByteArray("new") << 0;
    QTest::newRow("forward, discarded")
        << QByteArray("cmdForward") << PromptAnswer::No << QByteArray("two") << 2;
}

void tst_editors::LeavingAChangedRecordAsks()
{
    QFETCH(QByteArray, button);
    QFETCH(PromptAnswer, answer);
    QFETCH(int, index);
    EditorBench bench;
    bench.Open<frmEditAction>(1);
    bench.Type("txtActionName", "new");
    bench.prompts.answers = {answer};
    bench.Press(button);
    QCOMPARE(bench.prompts.shown,
             QList{(MessagePrompt{AskText, PromptIcon::Exclamation, PromptButtons::YesNo,
                                  PromptAnswer::Yes, "Edit Send Sequence"})});
    QTEST(bench.tables.SendAt(1).Name, "stored");
    QCOMPARE(bench.tables.CurrentSendIndex, index);
    QCOMPARE(bench.Find<QLabel>("lblActionID")->text(), QString::number(index));
    QVERIFY(!bench.Enabled().contains('A'));
}

void tst_editors::CancelLosesTheChangeWithoutAsking()
{
    EditorBench bench;
    bench.Open<frmEditAction>(1);
    bench.Type("txtActionName", "new");
    bench.Press("CmdCancel");
    QVERIFY(bench.prompts.shown.isEmpty() && bench.changes.isEmpty());
    QCOMPARE(bench.tables.SendAt(1).Name, QByteArray("two"));
}

void tst_editors::EnterPressesTheFocusedButton_data()
{
    QTest::addColumn<QByteArray>("focus");
    QTest::addColumn<QByteArray>("stored");
    QTest::addColumn<bool>("open");
    QTest::newRow("a field: OK") << QByteArray("txtActionName") << QByteArray("new") << false;
    QTest::newRow("Cancel") << QByteArray("CmdCancel") << QByteArray("two") << false;
    QTest::newRow("Apply") << QByteArray("cmdApply") << QByteArray("new") << true;
}

void tst_editors::EnterPressesTheFocusedButton()
{
    QFETCH(QByteArray, focus);
    EditorBench bench;
    bench.Open<frmEditAction>(1);
    QVERIFY(QTest::qWaitForWindowActive(bench.editor.get()));
    bench.Type("txtActionName", "new");
    bench.Find<QWidget>(focus)->setFocus();
    QTest::keyClick(bench.Find<QWidget>(focus), Qt::Key_Return);
    QTEST(bench.tables.SendAt(1).Name, "stored");
    QTEST(bench.editor->isVisible(), "open");
}

void tst_editors::DeletingShowsWhatMovedIn()
{
    EditorBench bench;
    bench.Open<frmEditAction>(1);
    bench.Press("cmdDelete");
    QCOMPARE(bench.prompts.shown,
             QList{(MessagePrompt{DeleteText, PromptIcon::Exclamation, PromptButtons::OkCancel,
                                  PromptAnswer::Ok, "Edit Send Sequence"})});
    QCOMPARE(bench.Find<QLineEdit>("txtActionName")->text(), QStringLiteral("three"));
    QCOMPARE(bench.Enabled(), QStringLiteral("BFD"));
    bench.Press("cmdDelete");
    QCOMPARE(bench.Find<QLineEdit>("txtActionName")->text(), QString());
    QCOMPARE(bench.Enabled(), QStringLiteral("B"));
    QCOMPARE(bench.changes, (QStringList{"deleted 1", "deleted 1"}));
    QCOMPARE(bench.tables.SendCount(), 1);
}

void tst_editors::ADeletionMayBeCalledOff()
{
    EditorBench bench;
    bench.Open<frmEditAction>(1);
    bench.prompts.answers = {PromptAnswer::Cancel};
    bench.Press("cmdDelete");
    QCOMPARE(bench.tables.SendCount(), 3);
    QVERIFY(bench.changes.isEmpty());
}

void tst_editors::AFullTableTakesNoMore()
{
    EditorBench bench;
    bench.tables.EditSend(1024).Name = "last";
    bench.tables.SetSendCount(1025);
    bench.Open<frmEditAction>(1024);
    bench.Press("cmdForward");
    QCOMPARE(bench.prompts.shown.size(), 1);
    QCOMPARE(bench.prompts.shown.first().icon, PromptIcon::Exclamation);
    QVERIFY(bench.prompts.shown.first().text.contains("1025"));
    QCOMPARE(bench.tables.CurrentSendIndex, 1024);
    bench.Type("txtActionName", "still the last");
    bench.Press("cmdOK");
    QCOMPARE(bench.tables.SendCount(), 1025);
    QCOMPARE(bench.tables.SendAt(1024).Name, QByteArray("still the last"));
}

void tst_editors::TheModeIsRememberedAndKeepsTheBytes()
{
    EditorBench bench;
    bench.Open<frmEditAction>(0);
    const std::array<std::pair<const char *, int>, 4> options = {
        {{"OptionDecimal", 1}, {"OptionHexa", 2}, {"OptionBinary", 3}, {"OptionAscii", 0}}};
    for (const auto &option : options) {
        bench.Find<QRadioButton>(option.first)->click();
        QCOMPARE(bench.Find<SQEditSequence>("AXEditAction")->property("editmode").toInt(),
                 option.second);
        QCOMPARE(bench.Find<SQEditSequence>("AXEditAction")->Sequence(), QByteArray("ONE"));
    }
    bench.Find<QRadioButton>("OptionDecimal")->click();
    QCOMPARE(bench.mode, Representation::Decimal);
    QVERIFY(!bench.Enabled().contains('A'));
    bench.Open<frmEditAction>(1);
    QVERIFY(bench.Find<QRadioButton>("OptionDecimal")->isChecked());
}

void tst_editors::TheReceiveRecordIsShownAndStored()
{
    EditorBench bench;
    bench.Open<frmEditEvent>(0);
    auto *answers = bench.Find<QComboBox>("ComboAnswer");
    QCOMPARE(answers->count(), 4);
    QCOMPARE(answers->itemText(0), QStringLiteral("No Answer"));
    QCOMPARE(answers->itemText(1), QStringLiteral("( 0 ) - one"));
    QCOMPARE(answers->currentText(), QStringLiteral("( 1 ) - two"));
    QCOMPARE(bench.Find<QLineEdit>("TxtComment")->text(), QStringLiteral("asked"));
    QVERIFY(bench.Find<QCheckBox>("ChkInsertCminEM")->isChecked());
    QCOMPARE(bench.Enabled(), QStringLiteral("FD"));

    bench.Find<QCheckBox>("ChkInsertCminEM")->setChecked(false);
    QCOMPARE(bench.Enabled(), QStringLiteral("FD")); // it only shows
    answers->setCurrentIndex(3);
    QCOMPARE(bench.Enabled(), QStringLiteral("FDA"));
    bench.Type("TxtComment", "again");
    bench.Press("cmdApply");
    const ReceiveSequence &record = bench.tables.ReceiveAt(0);
    QCOMPARE(record.Answer, qint16(3));
    QCOMPARE(record.AnswerName, QByteArray("three"));
    QCOMPARE(record.Comment, QByteArray("again"));
    QCOMPARE(record.CommentToLog, qint16(1));
    answers->setCurrentIndex(0);
    bench.Press("cmdOK");
    QCOMPARE(record.Answer, qint16(0));
    QCOMPARE(record.AnswerName, QByteArray());
}

void tst_editors::AnAnswerBeyondTheListSurvives_data()
{
    QTest::addColumn<int>("answer");
    QTest::newRow("behind the last") << 4;
    QTest::newRow("behind the table") << 32767;
    QTest::newRow("minus one") << -1;
}

void tst_editors::AnAnswerBeyondTheListSurvives()
{
    QFETCH(int, answer);
    EditorBench bench;
    bench.tables.EditReceive(0).Answer = qint16(answer);
    bench.Open<frmEditEvent>(0);
    QCOMPARE(bench.Find<QComboBox>("ComboAnswer")->currentIndex(), -1);
    bench.Type("txtEventName", "renamed");
    bench.Press("cmdOK");
    QCOMPARE(bench.tables.ReceiveAt(0).Name, QByteArray("renamed"));
    QCOMPARE(bench.tables.ReceiveAt(0).Answer, qint16(answer));
}

void tst_editors::ReceiveOnlyHidesTheAnswer()
{
    EditorBench bench;
    bench.settings.comm.run.mode = CommMode::MonitorReceiveOnly;
    bench.Open<frmEditEvent>(0);
    QVERIFY(!bench.Find<QComboBox>("ComboAnswer")->isVisible());
    QVERIFY(!bench.Find<QLabel>("labAnswerWithSequence")->isVisible());
    QVERIFY(bench.Find<QLabel>("labSendAnswerNotPossible")->isVisible());
    QCOMPARE(bench.Find<QTabBar>("tbsEvent")->count(), 2);
    bench.Find<QTabBar>("tbsEvent")->setCurrentIndex(1);
    QVERIFY(bench.Find<QLineEdit>("TxtComment")->isVisible());
    QVERIFY(!bench.Find<QLineEdit>("TxtMsgBox")->isVisible());
    bench.Type("TxtComment", "other");
    bench.Press("cmdOK");
    QCOMPARE(bench.tables.ReceiveAt(0).Answer, qint16(2));
    QCOMPARE(bench.tables.ReceiveAt(0).AnswerName, QByteArray("two"));
}

void tst_editors::DeletingAReceiveSequenceLeavesTheTick()
{
    EditorBench bench;
    bench.Open<frmEditEvent>(0);
    bench.Press("cmdDelete");
    QCOMPARE(bench.Find<QLineEdit>("txtEventName")->text(), QStringLiteral("bye"));
    QCOMPARE(bench.tables.ReceiveAt(0).Active, qint16(1));
    QCOMPARE(bench.tables.ReceiveCount(), 1);
}

void tst_editors::NamesStayInTheCodePageAndOnOneLine()
{
    EditorBench bench;
    bench.Open<frmEditAction>(0);
    auto *name = bench.Find<QLineEdit>("txtActionName");
    name->clear();
    for (const char16_t character : u"5 €Ω!") {
        QKeyEvent press(QEvent::KeyPress, 0, {}, QString(QChar(character)));
        QCoreApplication::sendEvent(name, &press);
    }
    QCOMPARE(name->text(), QStringLiteral("5 €!"));
    QGuiApplication::clipboard()->setText(QStringLiteral("two\nlines"));
    name->selectAll();
    name->paste();
    QCOMPARE(name->text(), QStringLiteral("two lines"));
    QGuiApplication::clipboard()->setText(QStringLiteral("2 kΩ"));
    name->paste();
    QCOMPARE(name->text(), QStringLiteral("two lines"));
    bench.Press("cmdApply");
    QCOMPARE(bench.tables.SendAt(0).Name, QByteArray("two lines"));
}

void tst_editors::WhatTheFileCutsIsTold_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("nameTold");
    QTest::addColumn<bool>("commentTold");
    QTest::newRow("an ordinary text") << QByteArray("all well") << false << false;
    QTest::newRow("a comma") << QByteArray("a, b") << true << true;
    QTest::newRow("a leading quote; a comment has a word in front")
        << QByteArray("\"a\"") << true << false;
    QTest::newRow("leading blanks, likewise") << QByteArray("  a") << true << false;
    QTest::newRow("a quote further on") << QByteArray("a \"b\"") << false << false;
}

void tst_editors::WhatTheFileCutsIsTold()
{
    QFETCH(QByteArray, text);
    EditorBench bench;
    bench.Open<frmEditEvent>(0);
    bench.Find<QTabBar>("tbsEvent")->setCurrentIndex(1);
    bench.Type("txtEventName", text);
    bench.Type("TxtComment", text);
    QTEST(bench.Find<QLabel>("txtEventNameNote")->isVisible(), "nameTold");
    QTEST(bench.Find<QLabel>("TxtCommentNote")->isVisible(), "commentTold");
    bench.Press("cmdOK");
    QCOMPARE(bench.tables.ReceiveAt(0).Name, text); // kept as typed
}

QTEST_MAIN(tst_editors)
#include "tst_editors.moc"
