// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "PortNumber.h"
#include "QtPrompts.h"
#include "SQSendSequenceList.h"
#include "SystemPortName.h"
#include "frmOptions.h"
#include "support/Cases.h"
#include "support/ProgramBench.h"
#include "support/PtyPair.h"
#include "support/ScriptedFinder.h"

#include <QColorDialog>
#include <QLabel>
#include <QTreeWidget>

namespace
{

const MessagePrompt Illegal = ExclamationMessage("Illegal value. Please correct.");
const MessagePrompt SamePort = ExclamationMessage(
    "You cannot use the same COM port for channel 1 and channel 2. Please correct");
const std::function<bool()> AtOnce = [] { return true; };

/// A control, a value that is not its first one, and what the store then holds.
struct Change {
    const char *control;
    QVariant value;
    const char *key;
    const char *stored;
};

const QList<Change> Changes = {
    {"PicOp0OptionType_1", true, "Communication/CommType", "1"},
    {"PicOp0PortANumber", "7", "Communication/CommPortA", "7"},
    {"PicOp0PortBNumber", "255", "Communication/CommPortB", "255"},
    {"PicOp0SpeedCombo", "256000", "Communication/CommSpeed", "14"},
    {"PicOp0ParityCombo", "Space", "Communication/CommParity", "4"},
    {"PicOp0DataBitsCombo", "7", "Communication/CommDataBits", "3"},
    {"PicOp0StopBitsCombo", "2", "Communication/CommStopBits", "2"},
    {"PicOp1PicDispBackColor", 0x102030, "Colors/DispBack", "1056816"},
    {"PicOp1PicDir1Color", 0, "Colors/Dir1TextColor", "0"},
    {"PicOp1PicDir2Color", 1, "Colors/Dir2TextColor", "1"},
    {"PicOp1PicCmtColor", 2, "Colors/CmtTextColor", "2"},
    {"CheckBldDir1", true, "TextSetup/BldDir1", "1"},
    {"CheckBldDir2", true, "TextSetup/BldDir2", "1"},
    {"CheckBldCmt", true, "TextSetup/BldCmt", "1"},
    {"CheckItlDir1", true, "TextSetup/ItlDir1", "1"},
    {"CheckItlDir2", true, "TextSetup/ItlDir2", "1"},
    {"CheckItlCmt", true, "TextSetup/ItlCmt", "1"},
    {"CheckUndrlnDir1", true, "TextSetup/UndrlnDir1", "1"},
    {"CheckUndrlnDir2", true, "TextSetup/UndrlnDir2", "1"},
    {"CheckUndrlnCmt", true, "TextSetup/UndrlnCmt", "1"},
    {"PicOp1CheckDateStamp", true, "Stamp/Date", "True"},
    {"PicOp1CheckTimeStamp", true, "Stamp/Time", "True"},
    {"PicOp1CheckStampReturnToLine", false, "Stamp/NewLine", "False"},
    {"PicOp2ComboDisplaySequences", "Binary", "SendReceive/Display", "3"},
    {"CheckLogInAscii", false, "LogFile/ASCII", "False"},
    {"CheckLogInHexadecimal", true, "LogFile/HEX", "True"},
    {"CheckLogInDecimal", true, "LogFile/Decimal", "True"},
    {"CheckLogInBinary", true, "LogFile/Binary", "True"},
    {"LogFileOption_0", true, "LogFile/Format", "1"},
};

bool IsKeptOnCancel(const Change &change)
{
    return QByteArray(change.key).startsWith("Colors/") ||
           QByteArray(change.key).startsWith("TextSetup/");
}

/// The dialog alone, and what it gave back.
class OptionsBench
{
  public:
    MemoryStore store;
    PortDevices devices{store, SystemPortName};
    ScriptedPrompts prompts;
    std::shared_ptr<ScriptedFinder> finder = std::make_shared<ScriptedFinder>();
    OptionsValues values;
    QList<OptionsValues> confirmed;
    std::unique_ptr<frmOptions> form;

    OptionsDesk Open()
    {
        form = std::make_unique<frmOptions>(
            OptionsParts{values,
                         {},
                         prompts,
                         devices,
                         finder,
                         [this](const OptionsValues &given) { confirmed << given; },
                         [](const DisplaySettings &) {}});
        form->show();
        if (!QTest::qWaitForWindowActive(form.get()))
            qFatal("no active window");
        return {*form};
    }

    /// Presses a box's button and acts in the dialog of devices, once that has found its ports.
    void InDevices(const char *button, const std::function<void(QDialog &)> &act) const
    {
        const OptionsDesk desk{*form};
        QTimer poll;
        QObject::connect(&poll, &QTimer::timeout, form.get(), [&] {
            auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
            if (!dialog || dialog->findChild<QLabel *>("lblState")->text().startsWith("Looking"))
                return;
            poll.stop();
            act(*dialog);
        });
        poll.start(1);
        desk.Press(button);
    }
};

} // namespace

class tst_options : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void EveryControlIsKeptOrNot_data();
    void EveryControlIsKeptOrNot();
    void PortNumbersAreRead_data();
    void PortNumbersAreRead();
    void AWrongPortNumberIsToldOnce_data();
    void AWrongPortNumberIsToldOnce();
    void AStoredNumberIsJudgedWhenItIsUsed();
    void ABoxThatIsHiddenIsNotJudged();
    void MonitoringNeedsTwoPorts_data();
    void MonitoringNeedsTwoPorts();
    void TheModeStaysUntilItIsChosen_data();
    void TheModeStaysUntilItIsChosen();
    void WhatHasNoPlaceInTheDialogStays();
    void AColourIsChosenByKeyboardToo();
    void TheChooserHasTheColour();
    void TheTabKeyFollowsThePage();
    void OKEndsWhatTheCommandLineHadPut();
    void WhatHasNoEffectSaysSo_data();
    void WhatHasNoEffectSaysSo();
    void CommunicationIsStartedAgain_data();
    void CommunicationIsStartedAgain();
    void ADeviceIsAssigned_data();
    void ADeviceIsAssigned();
};

void tst_options::EveryControlIsKeptOrNot_data()
{
    const Cases<QStringList, bool> row("buttons", "all");
    row("OK keeps all", {"cmdOK"}, true);
    row("Apply keeps all, whatever comes after", {"cmdApply", "cmdCancel"}, true);
    row("Cancel keeps colours and attributes", {"cmdCancel"}, false);
}

void tst_options::EveryControlIsKeptOrNot()
{
    QFETCH(QStringList, buttons);
    QFETCH(bool, all);
    ProgramBench bench;
    bench.Run({});
    auto expected = bench.store.texts;
    QString sequence;
    DisplaySettings inForce;
    const auto changeAll = [&](const OptionsDesk &desk) {
        for (const Change &change : Changes) {
            bench.prompts.colours = {change.value.toInt()};
            desk.Set(change.control, change.value);
            if (all || IsKeptOnCancel(change))
                expected[change.key] = change.stored;
        }
        for (const QString &button : buttons)
            desk.Press(qPrintable(button));
    };
    const auto change = [&] {
        bench.program->Sequences().AddSend({"name", "A", {}});
        bench.InOptions(changeAll);
        sequence = bench.program->Window()->SendList().model()->index(0, 2).data().toString();
        inForce = bench.program->Display();
    };
    bench.Run({{change, AtOnce}});
    QCOMPARE(bench.store.texts, expected);
    QCOMPARE(sequence, all ? QStringLiteral("01000001") : QString());
    QVERIFY(inForce == DisplaySettings{}); // the colours wait for the next start
    QVERIFY(bench.prompts.shown.isEmpty());

    const auto compareAll = [&](const OptionsDesk &desk) {
        for (const Change &each : Changes)
            QCOMPARE(desk.Value(each.control) == each.value, all || IsKeptOnCancel(each));
        inForce = bench.program->Display();
    };
    bench.Run({{[&] { bench.InOptions(compareAll); }, AtOnce}});
    QCOMPARE(bench.store.texts, expected);
    QCOMPARE(inForce.DispBack, 0x102030);
    QVERIFY(inForce.styles[2] == (TextStyle{2, true, true, true, true}));
}

void tst_options::PortNumbersAreRead_data()
{
    const Cases<QString, bool, int> row("text", "legal", "value");
    for (const char *text : {"7", " 7 ", "+7", "007"})
        row(text, text, true, 7);
    row("the least", "1", true, 1);
    row("the most", "255", true, 255);
    row("halves become even, downwards", "12.5", true, 12);
    row("halves become even, upwards", "13.50", true, 14);
    row("a fraction", "254.6", true, 255);
    row("an exponent", "1.2e1", true, 12);
    for (const char *text : {"", " ", "abc", "7a", "7,5", ".", "1e", "inf", "0x10", "1 2", "--1"})
        row(qPrintable(QStringLiteral("no number: '%1'").arg(text)), text, false, 1);
    for (const char *text : {"0", "-1", "-0", "0.9", "1e-999", "-99999999999"})
        row(text, text, false, 1);
    for (const char *text : {"256", "255.2", "300.5", "65537", "99999999999999999999999", "1e999"})
        row(text, text, false, 255);
    row("digits of another script", QString::fromUtf8("\xD9\xA7"), false, 1);
}

void tst_options::PortNumbersAreRead()
{
    QFETCH(QString, text);
    QTEST(ReadPortNumber(text).legal, "legal");
    QTEST(int(ReadPortNumber(text).value), "value");
}

void tst_options::AWrongPortNumberIsToldOnce_data()
{
    const Cases<QString, QString, int, QString, bool> row("typed", "leave", "told", "then", "open");
    row("to the next control", "0", "Tab", 1, "1", true);
    row("too large", "300", "Tab", 1, "255", true);
    row("by OK", "abc", "cmdOK", 1, "1", true);
    row("by Enter", "300", "Return", 1, "255", true);
    row("by Apply", "", "cmdApply", 1, "1", true);
    row("to another page", "0", "page", 1, "1", true);
    row("to the devices", "0", "PicOp0DevicesB", 1, "1", true);
    row("to the other devices by their key", "0", "Alt+D", 1, "1", true);
    row("by Cancel", "abc", "cmdCancel", 0, "abc", false);
    row("by Escape", "abc", "Escape", 0, "abc", false);
    row("to the other mode", "abc", "PicOp0OptionType_0", 1, "1", true);
    row("to a list that drops down at once", "0", "PicOp0SpeedCombo", 1, "1", true);
    row("to another control with a right one", "8", "Tab", 0, "8", true);
}

void tst_options::AWrongPortNumberIsToldOnce()
{
    QFETCH(QString, leave);
    QFETCH(int, told);
    const QMap<QString, Qt::Key> keys = {
        {"Tab", Qt::Key_Tab}, {"Return", Qt::Key_Return}, {"Escape", Qt::Key_Escape}};
    OptionsBench bench;
    bench.values.comm.stored.CommType = 1;
    const OptionsDesk desk = bench.Open();
    QFETCH(QString, typed);
    desk.Type("PicOp0PortBNumber", typed);
    if (keys.contains(leave))
        QTest::keyClick(QApplication::focusWidget(), keys[leave]);
    else if (leave == "Alt+D")
        QTest::keyClick(bench.form.get(), Qt::Key_D, Qt::AltModifier);
    else if (leave == "page")
        desk.ShowPage(3);
    else
        QTest::mousePress(desk.Find(leave), Qt::LeftButton);
    QCoreApplication::sendPostedEvents();
    if (leave.startsWith("cmd") || leave.startsWith("Pic"))
        QTest::mouseRelease(desk.Find(leave), Qt::LeftButton);
    QTRY_COMPARE(bench.prompts.shown, QList<MessagePrompt>(told, Illegal));
    QTEST(desk.Value("PicOp0PortBNumber").toString(), "then");
    QTEST(bench.form->isVisible(), "open");
    QVERIFY(bench.confirmed.isEmpty());
    if (told == 0)
        return;
    QCOMPARE(QApplication::focusWidget(), desk.Find("PicOp0PortBNumber"));
    desk.Type("PicOp0PortANumber", "9");
    desk.Press("cmdOK");
    QCOMPARE(QString::number(bench.confirmed.value(0).comm.stored.CommPortB),
             desk.Value("PicOp0PortBNumber").toString());
}

void tst_options::AStoredNumberIsJudgedWhenItIsUsed()
{
    OptionsBench bench;
    bench.values.comm.stored.CommPortA = 300;
    const OptionsDesk desk = bench.Open();
    desk.Find("PicOp0DevicesA")->setFocus();
    QTest::keyClick(desk.Find("PicOp0DevicesA"), Qt::Key_Space);
    QCOMPARE(bench.prompts.shown, QList{Illegal});
    QCOMPARE(desk.Value("PicOp0PortANumber"), "255");
}

void tst_options::ABoxThatIsHiddenIsNotJudged()
{
    OptionsBench bench;
    bench.values.comm.stored.CommType = 1;
    const OptionsDesk desk = bench.Open();
    desk.Type("PicOp0PortBNumber", "abc");
    desk.Press("PicOp0OptionType_0");
    QCoreApplication::sendPostedEvents();
    desk.Press("cmdOK");
    QVERIFY(bench.prompts.shown.isEmpty());
    QCOMPARE(bench.confirmed.value(0).comm.stored.CommPortB, qint16(2));
}

void tst_options::MonitoringNeedsTwoPorts_data()
{
    const Cases<int, QString, bool> row("mode", "portB", "refused");
    row("one channel is enough to talk", 0, "", false);
    row("two equal numbers", 1, "5", true);
    row("the same, written otherwise", 1, "+05", true);
    row("two numbers", 1, "6", false);
    row("the mode that the options do not offer", 2, "5", true);
}

void tst_options::MonitoringNeedsTwoPorts()
{
    QFETCH(int, mode);
    QFETCH(bool, refused);
    QFETCH(QString, portB);
    OptionsBench bench;
    bench.values.comm.stored.CommType = mode;
    bench.values.comm.stored.CommPortA = bench.values.comm.stored.CommPortB = 5;
    const OptionsDesk desk = bench.Open();
    QCOMPARE(desk.Find("PicOp0PortBNumber")->isVisible(), mode != 0);
    QCOMPARE(desk.Find("PicOp0lblSelectPortB")->isVisible(), mode != 0);
    QCOMPARE(desk.Find("PicOp0lblSelectPortA_Intercept")->isVisible(), mode != 0);
    QCOMPARE(desk.Find("PicOp0lblSelectPortA")->isVisible(), mode == 0);
    if (mode != 0)
        desk.Type("PicOp0PortBNumber", portB);
    desk.ShowPage(2);
    desk.Press("cmdOK");
    QCOMPARE(bench.prompts.shown, QList<MessagePrompt>(refused ? 1 : 0, SamePort));
    QCOMPARE(bench.form->isVisible(), refused);
    QCOMPARE(bench.confirmed.size(), refused ? 0 : 1);
    if (refused) {
        QVERIFY(desk.Find("picOptions_0")->isVisible());
        QCOMPARE(QApplication::focusWidget(), desk.Find("PicOp0PortBNumber"));
    }
}

void tst_options::TheModeStaysUntilItIsChosen_data()
{
    const Cases<int, QList<int>, int> row("stored", "clicks", "kept");
    row("untouched", 2, {}, 2);
    row("the shown option clicked", 2, {1}, 2);
    row("there and back", 2, {0, 1}, 1);
    row("the other option", 2, {0}, 0);
    row("a number without a meaning", 7, {}, 7);
}

void tst_options::TheModeStaysUntilItIsChosen()
{
    QFETCH(QList<int>, clicks);
    OptionsBench bench;
    QFETCH(int, stored);
    bench.values.comm.stored.CommType = stored;
    const OptionsDesk desk = bench.Open();
    QCOMPARE(desk.Value("PicOp0OptionType_1").toBool(), stored == 2);
    for (const int click : clicks)
        desk.Find<QRadioButton>(QStringLiteral("PicOp0OptionType_%1").arg(click))->click();
    desk.Press("cmdOK");
    QTEST(int(bench.confirmed.value(0).comm.stored.CommType), "kept");
}

void tst_options::WhatHasNoPlaceInTheDialogStays()
{
    OptionsBench bench;
    bench.values.comm.stored = {2, 300, -5, 99, 5, -1, 3};
    bench.values.sequences.Display = 7;
    bench.values.log.Format = -1;
    const OptionsDesk desk = bench.Open();
    for (const char *list : {"PicOp0SpeedCombo", "PicOp0ParityCombo", "PicOp0DataBitsCombo",
                             "PicOp0StopBitsCombo", "PicOp2ComboDisplaySequences"})
        QCOMPARE(desk.Value(list).toString(), QString());
    desk.ShowPage(1); // away from the page with the numbers
    QCoreApplication::sendPostedEvents();
    desk.Press("cmdOK");
    QVERIFY(bench.prompts.shown.isEmpty());
    const OptionsValues kept = bench.confirmed.value(0);
    QCOMPARE(kept.comm.stored, bench.values.comm.stored);
    QCOMPARE(kept.sequences.Display, qint16(7));
    QCOMPARE(kept.log.Format, qint16(-1));
}

void tst_options::AColourIsChosenByKeyboardToo()
{
    OptionsBench bench;
    const OptionsDesk desk = bench.Open();
    desk.ShowPage(1);
    desk.Find("PicOp1PicCmtColor")->setFocus();
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Space}) // the chooser is cancelled
        QTest::keyClick(desk.Find("PicOp1PicCmtColor"), key);
    const std::pair<QString, qint32> asked = {"Comments Text Color", 0x008000};
    QCOMPARE(bench.prompts.coloursAsked, (QList{asked, asked}));
    QCOMPARE(desk.Value("PicOp1PicCmtColor").toInt(), 0x008000);
    QVERIFY(bench.form->isVisible());
}

void tst_options::TheChooserHasTheColour()
{
    QString lines;
    QTextStream errors(&lines);
    QtPrompts prompts(errors);
    QColor first;
    QTimer::singleShot(0, qApp, [&] {
        if (auto *chooser = qobject_cast<QColorDialog *>(QApplication::activeModalWidget())) {
            first = chooser->currentColor();
            chooser->accept();
        }
    });
    QCOMPARE(prompts.ChooseColour(0x0180FF, "title"), std::optional(0x0180FF));
    QCOMPARE(first.name(), "#ff8001");
}

void tst_options::TheTabKeyFollowsThePage()
{
    OptionsBench bench;
    bench.values.comm.stored.CommType = 1;
    bench.Open().Find("tbsOptions")->setFocus();
    QStringList names;
    while (names.size() < 14) {
        names << QApplication::focusWidget()->objectName();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    QCOMPARE(names.join(' ').remove("PicOp0"),
             QStringLiteral("tbsOptions OptionType_1 PortANumber DevicesA PortBNumber DevicesB "
                            "SpeedCombo ParityCombo DataBitsCombo StopBitsCombo cmdOK cmdCancel "
                            "cmdApply tbsOptions"));
}

void tst_options::OKEndsWhatTheCommandLineHadPut()
{
    ProgramBench bench;
    bench.line.mode = CommMode::MonitorReceiveOnly;
    bench.line.reconnect = true;
    bench.line.line = ParseLineSettings(u"921600,E,7,2");
    QString note;
    QStringList settings;
    const auto notePortSettings = [&] { settings << bench.program->Comm().PortSettings(); };
    const auto noteAndPress = [&](const char *button) {
        bench.InOptions([&](const OptionsDesk &desk) {
            note = desk.Find<QLabel>("lblRun")->text();
            QCOMPARE(desk.Value("PicOp0OptionType_0").toBool(), true);
            desk.Press(button);
        });
        notePortSettings();
    };
    bench.Run(
        {{[&] { noteAndPress("cmdCancel"); }, AtOnce}, {[&] { noteAndPress("cmdOK"); }, AtOnce}});
    QVERIFY2(note.contains("Monitoring (Receive Only), 921600,E,7,2, devices that come back are "
                           "reopened"),
             qPrintable(note));
    QVERIFY(!bench.program->Comm().Reopens());
    QCOMPARE(settings, (QStringList{"921600,E,7,2", "9600,N,8,1"}));
    QVERIFY(bench.program->Comm().Mode() == CommMode::SendReceive);
}

void tst_options::WhatHasNoEffectSaysSo_data()
{
    const Cases<QString, QStringList, bool> row("control", "clicks", "idle");
    const QString lineBreak = "PicOp1CheckStampReturnToLine";
    row("a line break without a stamp", lineBreak, {}, true);
    row("with a date", lineBreak, {"PicOp1CheckDateStamp"}, false);
    row("with a time", lineBreak, {"PicOp1CheckTimeStamp"}, false);
    row("and without again", lineBreak, {"PicOp1CheckDateStamp", "PicOp1CheckDateStamp"}, true);
    row("formatted logs", "LogFileOption_0", {"LogFileOption_0"}, true);
    row("plain logs", "LogFileOption_1", {}, false);
}

void tst_options::WhatHasNoEffectSaysSo()
{
    QFETCH(QString, control);
    QFETCH(QStringList, clicks);
    QFETCH(bool, idle);
    OptionsBench bench;
    const OptionsDesk desk = bench.Open();
    for (const QString &click : clicks)
        desk.Press(qPrintable(click));
    const QWidget *widget = desk.Find(control);
    QCOMPARE(!widget->toolTip().isEmpty(), idle);
    QCOMPARE(widget->accessibleDescription(), widget->toolTip());
    const QPalette dialog = bench.form->palette();
    const QPalette::ColorGroup look = idle ? QPalette::Disabled : QPalette::Active;
    QCOMPARE(widget->palette().color(QPalette::Active, QPalette::WindowText),
             dialog.color(look, QPalette::WindowText));
    QVERIFY(widget->isEnabled()); // its value can be changed
}

void tst_options::CommunicationIsStartedAgain_data()
{
    const Cases<bool, bool, QString, QList<bool>> row("running", "tick", "leave", "told and runs");
    row("not before it ran", false, false, "cmdOK", {false, false});
    row("only if it is wanted", true, false, "cmdOK", {true, false});
    row("by OK", true, true, "cmdOK", {true, true});
    row("by Cancel too", true, true, "cmdCancel", {true, true});
    row("by the frame", true, true, "", {true, true});
    row("not when the program ends", true, true, "end", {true, false});
}

void tst_options::CommunicationIsStartedAgain()
{
    QFETCH(bool, running);
    QFETCH(bool, tick);
    QFETCH(QString, leave);
    const PtyPair port;
    ProgramBench bench;
    bench.AssignPort(1, port.DeviceName());
    bench.line.start = running;
    QList<bool> toldAndRuns;
    const auto inOptions = [&](const OptionsDesk &desk) {
        const auto *told = desk.Find<QLabel>("lblStopped");
        toldAndRuns = {told->isVisible()};
        QCOMPARE(desk.Find("chkStartAgain")->isVisible(), told->isVisible());
        if (tick)
            QTest::keyClick(desk.Find("chkStartAgain"), Qt::Key_Space);
        if (leave == "end")
            bench.program->CloseUnasked();
        else if (!leave.isEmpty())
            desk.Press(qPrintable(leave));
    };
    const auto open = [&] {
        bench.InOptions(inOptions);
        toldAndRuns << bench.Running();
    };
    bench.Run({{[] {}, [&] { return bench.Running() == running; }}, {open, AtOnce}});
    QTEST(toldAndRuns, "told and runs");
    QVERIFY(bench.prompts.shown.isEmpty());
}

void tst_options::ADeviceIsAssigned_data()
{
    const Cases<int, int, QString, QString> row("number", "choose", "type", "meaning");
    row("a port with a stable name", 200, 1, "",
        "COM200 is /dev/serial/by-id/usb-adapter (your own assignment)");
    row("a port without one", 200, 0, "", "COM200 is /dev/ttyS0 (your own assignment)");
    row("a typed path", 200, -1, " /dev/x ", "COM200 is /dev/x (your own assignment)");
    row("an assignment of this run ends", 3, 0, "", "COM3 is /dev/ttyS0 (your own assignment)");
    row("an own one is taken back", 40, -1, " ", "COM40 is /dev/ttyUSB7 (system name)");
    row("a look changes nothing", 3, -1, "", "COM3 is /dev/run (this run)");
}

void tst_options::ADeviceIsAssigned()
{
    QFETCH(int, number);
    QFETCH(int, choose);
    QFETCH(QString, type);
    QFETCH(QString, meaning);
    const bool chosen = choose >= 0 || !type.isEmpty();
    OptionsBench bench;
    bench.store.texts["Ports/COM40"] = "/dev/ttyUSB1";
    bench.devices.AssignForRun(3, "/dev/run");
    const OptionsDesk desk = bench.Open();
    const auto toolTip = [&] { return desk.Find("PicOp0PortANumber")->toolTip(); };
    desk.Type("PicOp0PortANumber", "3");
    QCOMPARE(toolTip(), QStringLiteral("COM3 is /dev/run (this run)"));
    desk.Type("PicOp0PortANumber", QString::number(number));
    const QString before = toolTip();
    QStringList rows;
    bench.InDevices("PicOp0DevicesA", [&](QDialog &devices) {
        rows = RowsOf(devices);
        auto *list = devices.findChild<QTreeWidget *>("lstDevices");
        if (choose >= 0) {
            list->setCurrentItem(list->topLevelItem(choose));
            OptionsDesk{devices}.Type("txtDevice", "/dev/other"); // on second thoughts the row
            QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                              list->visualItemRect(list->topLevelItem(choose)).center());
        } else if (!type.isEmpty())
            OptionsDesk{devices}.Type("txtDevice", type);
        OptionsDesk{devices}.Press("chkReopen"); // a choice that needs no device
        QTest::keyClick(list, Qt::Key_Return);
    });
    QCOMPARE(rows, (QStringList{"COM1|/dev/ttyS0|Built-in serial port|",
                                "COM34, COM40|/dev/ttyUSB1|Maker of USB Serial|"
                                "/dev/serial/by-id/usb-adapter",
                                "COM3|/dev/run|Is not there|"}));
    QCOMPARE(toolTip(), meaning);
    desk.Type("PicOp0PortANumber", "201");
    QCOMPARE(toolTip(), QStringLiteral("COM201 has no device; assign one with the button beside "
                                       "this box"));
    desk.Type("PicOp0PortANumber", QString::number(number));
    desk.Press("cmdApply");
    const QMap<int, QString> assigned = bench.confirmed.value(0).devices;
    QCOMPARE(assigned.keys(), chosen ? QList{number} : QList<int>());
    QVERIFY(bench.confirmed.value(0).comm.stored.CommReopen);
    QCOMPARE(bench.confirmed.value(0).comm.stored.CommDeadSeconds, 10);
    bench.store.flushed = Failure{"no room"};
    OptionsValues taken;
    const OptionsSubjects subjects = {taken.comm, taken.stamp, taken.sequences, taken.log,
                                      bench.devices};
    QCOMPARE(ApplyTo(subjects, bench.confirmed.value(0)).Cause(), chosen ? "no room" : "");
    QCOMPARE(bench.store.flushes, int(chosen)); // and not at the end of the program
    desk.Type("PicOp0PortANumber", QString::number(number));
    QCOMPARE(toolTip(), meaning);
    QCOMPARE(before != meaning, chosen);
    bench.InDevices("PicOp0DevicesA", [](QDialog &devices) { devices.reject(); });
    QTest::keyClick(bench.form->focusWidget(), Qt::Key_Return); // OK, not the devices again
    QCOMPARE(bench.confirmed.size(), 2);
    QVERIFY(bench.confirmed[1].devices.isEmpty()); // it was assigned once
}

QTEST_MAIN(tst_options)
#include "tst_options.moc"
