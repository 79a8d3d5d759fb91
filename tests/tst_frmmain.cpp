// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "app/frmMain.h"
#include "comm/CommunicationViews.h"
#include "controls/ClickLabel.h"
#include "controls/RichTextBox.h"
#include "controls/SQReceiveSequenceList.h"
#include "controls/SQSendSequenceList.h"
#include "platform/QtPrompts.h"
#include "project/SettingsRecord.h"

#include <QAction>
#include <QDialog>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QScreen>
#include <QSignalSpy>
#include <QTabBar>
#include <QTest>
#include <QToolBar>

namespace
{

constexpr std::array<const char *, 4> BoxNames = {"txtASCII", "txtHexa", "txtDeci", "txtBin"};

/// The real window, off-screen, and what it asked for.
class WindowBench
{
  public:
    SettingsRecord settings;
    CommunicationViews views;
    std::unique_ptr<frmMain> window;
    QList<Command> commands;

    explicit WindowBench(const std::function<void(SettingsRecord &)> &prepare = {})
    {
        settings.window.MainWidth = 15000;
        settings.window.MainHeight = 10500;
        if (prepare)
            prepare(settings);
        window = std::make_unique<frmMain>(settings, views);
        QObject::connect(window.get(), &frmMain::CommandChosen, window.get(),
                         [this](Command command) { commands << command; });
        window->show();
    }

    template <typename Widget = QWidget> Widget *Find(const char *name) const
    {
        return window->findChild<Widget *>(QString::fromLatin1(name));
    }
    QString Panel(int number) const
    {
        return Find<QLabel>(qPrintable(QStringLiteral("sbStatusBar_%1").arg(number)))->text();
    }
    void Click(const char *name) const { QTest::mouseClick(Find<QWidget>(name), Qt::LeftButton); }
    void Drag(const char *handle, QPoint by) const
    {
        auto *widget = Find<QWidget>(handle);
        const QPoint start(2, 2);
        QTest::mousePress(widget, Qt::LeftButton, {}, start);
        QTest::mouseMove(widget, start + by / 2);
        QTest::mouseMove(widget, start + by);
        QTest::mouseRelease(widget, Qt::LeftButton, {}, start + by);
    }
};

} // namespace

class tst_frmmain : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void TheToolbarHasItsButtonsInTheirPlaces();
    void TheMenusHaveTheirEntries();
    void RecentProjectsComeUnderTheirSeparator();
    void ToolbarStates();
    void StatusPanels_data();
    void StatusPanels();
    void ClicksThatOpenTheOptions_data();
    void ClicksThatOpenTheOptions();
    void ATabShowsItsViewAlone_data();
    void ATabShowsItsViewAlone();
    void SplittersAreDraggedAndBounded();
    void ASmallWindowBoundsTheSplittersForGood();
    void TheWindowComesBackWhereItWas();
    void TheColumnsOfTheListsComeBack();
    void TheCoveredListTakesNoKeys();
    void AWindowOffEveryScreenIsBroughtBack();
    void ClosingAsks_data();
    void ClosingAsks();
    void TheSystemTakesTheQuestionBack();
    void ClosingEndsOtherForms();
    void ANoticeBlocksNothing();
    void TypingWhileStoppedIsAComment();
    void TheCaretIsNoted();
};

void tst_frmmain::TheToolbarHasItsButtonsInTheirPlaces()
{
    const WindowBench bench;
    const QStringList expected = {"New: New Project",
                                  "Open: Open Project",
                                  "Save: Save Project",
                                  "",
                                  "Properties: Options",
                                  "",
                                  "Cut: Cut",
                                  "Copy: Copy",
                                  "Paste: Paste",
                                  "Find: Find a Sequence Within The Communication Window",
                                  "",
                                  "Start: Start Communication",
                                  "Stop: Stop Communication",
                                  "",
                                  "Clean: Clear Communication Window",
                                  "",
                                  "Print: Print Communication...",
                                  "",
                                  "Start Log-In: Start Communication Logging",
                                  "Stop Log-In: Stop Communication Logging"};
    QCOMPARE(bench.Find<QToolBar>("tbToolBar")->actions().size(), expected.size());
    for (int i = 1; i <= expected.size(); ++i) {
        const QAction *button = bench.window->ToolbarButton(i);
        const QString text = button->text() + ": " + button->toolTip();
        QCOMPARE(button->isSeparator() ? QString() : text, expected[i - 1]);
        QVERIFY(button->isSeparator() || !button->icon().pixmap(24).isNull());
    }
}

void tst_frmmain::TheMenusHaveTheirEntries()
{
    const WindowBench bench;
    const auto entries = [&](const char *menu) {
        QStringList texts;
        for (const QAction *action : bench.Find<QMenu>(menu)->actions())
            texts << action->objectName() + '=' + action->text();
        return texts;
    };
    QCOMPARE(entries("mnuFile"),
             (QStringList{"mnuFileNew=&New Project", "mnuFileOpen=&Open Project...", "mnuFileBar0=",
                          "mnuFileSave=&Save Project", "mnuFileSaveAs=Save Project &As...",
                          "mnuFileBar3=", "mnuPrintProject=Print Project...",
                          "mnuPrintCommunication=Print Communication...", "mnuFileBar2=",
                          "mnuRecentProject_0=", "mnuRecentProject_1=", "mnuRecentProject_2=",
                          "mnuRecentProject_3=", "mnuFileBar1=", "mnuFileClose=E&xit"}));
    QCOMPARE(entries("mnuTools"), QStringList{"mnuToolsOptions=&Options..."});
    QCOMPARE(
        entries("mnuHelp"),
        (QStringList{"mnuHelpContents=&Contents", "mnuHelpSearchForHelpOn=&Search For Help On...",
                     "mnuHelpBar0=", "mnuHelpBar1=", "mnuHelpAbout=&About..."}));
}

void tst_frmmain::RecentProjectsComeUnderTheirSeparator()
{
    const WindowBench bench;
    const auto visible = [&] {
        QStringList texts;
        for (const QAction *action : bench.Find<QMenu>("mnuFile")->actions()) {
            if (action->objectName().startsWith("mnuRecent") && action->isVisible())
                texts << action->text();
        }
        return texts;
    };
    QCOMPARE(visible(), QStringList());
    QVERIFY(!bench.Find<QAction>("mnuFileBar2")->isVisible());
    bench.window->ShowRecentProjects({"/a/R&D", "/b/two"});
    QCOMPARE(visible(), (QStringList{"/a/R&&D", "/b/two"}));
    QVERIFY(bench.Find<QAction>("mnuFileBar2")->isVisible());
    const QSignalSpy chosen(bench.window.get(), &frmMain::RecentProjectChosen);
    bench.Find<QAction>("mnuRecentProject_0")->trigger();
    QCOMPARE(chosen.first().first().toString(), QStringLiteral("/a/R&D"));
    bench.window->ShowRecentProjects({"1", "2", "3", "4", "5"});
    QCOMPARE(visible(), (QStringList{"1", "2", "3", "4"}));
}

void tst_frmmain::ToolbarStates()
{
    const WindowBench bench;
    const auto enabled = [&] {
        QList<int> buttons;
        for (const int i : {3, 7, 8, 9, 12, 13, 15, 19, 20}) {
            if (bench.window->ToolbarButton(i)->isEnabled())
                buttons << i;
        }
        return buttons;
    };
    QCOMPARE(enabled(), (QList{7, 8, 9, 12, 15}));
    bench.window->SetProjectModified();
    bench.window->SetToolbarState(MdCommunication::ToolbarState::Open);
    QCOMPARE(enabled(), (QList{3, 13}));
    QVERIFY(bench.Find<QAction>("mnuFileSave")->isEnabled());
    bench.window->SetToolbarState(MdCommunication::ToolbarState::Closed);
    bench.window->SetProjectUnmodified();
    QCOMPARE(enabled(), (QList{7, 8, 9, 12, 15}));
    QVERIFY(!bench.Find<QAction>("mnuFileSave")->isEnabled());
    bench.window->EnableLogCommands(false, true);
    QCOMPARE(enabled().last(), 20);
}

void tst_frmmain::StatusPanels_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("covered");
    QTest::addColumn<QString>("ports");
    QTest::newRow("mode 0") << 0 << false << "COM3";
    QTest::newRow("mode 1 covers the send list") << 1 << true << "COM3 / COM255";
    QTest::newRow("mode 2") << 2 << false << "COM3 / COM255";
    QTest::newRow("a mode without a meaning is mode 0") << 7 << false << "COM3";
}

void tst_frmmain::StatusPanels()
{
    QFETCH(int, mode);
    const WindowBench bench(
        [&](SettingsRecord &settings) { settings.comm.stored = {mode, 3, 255, 12, 0, 3, 1}; });
    QTEST(bench.Panel(2), "ports");
    QCOMPARE((QStringList{bench.Panel(1), bench.Panel(3), bench.Panel(4), bench.Panel(5),
                          bench.Panel(6)}),
             (QStringList{"Communication port is closed", "115200", "Even", "7", "1.5"}));
    QTEST(bench.Find<QWidget>("picSendSequenceDeactivated")->isVisible(), "covered");
    const QStringList tips = {"Communication Status", "COM Port(s) Active", "Baud Rate", "Parity",
                              "Start Bits",           "Stop Bits"};
    for (int i = 1; i <= 6; ++i)
        QCOMPARE(bench.Find<QLabel>(qPrintable(QStringLiteral("sbStatusBar_%1").arg(i)))->toolTip(),
                 tips[i - 1]);
}

void tst_frmmain::ClicksThatOpenTheOptions_data()
{
    QTest::addColumn<QByteArray>("target");
    QTest::addColumn<bool>("opens");
    QTest::newRow("panel 1 does nothing") << QByteArray("sbStatusBar_1") << false;
    for (int panel = 2; panel <= 6; ++panel)
        QTest::addRow("panel %d", panel) << "sbStatusBar_" + QByteArray::number(panel) << true;
    QTest::newRow("the link on the cover") << QByteArray("lblClickChangeComm") << true;
    QTest::newRow("the image on the cover") << QByteArray("imgClickOptions") << true;
}

void tst_frmmain::ClicksThatOpenTheOptions()
{
    QFETCH(QByteArray, target);
    QFETCH(bool, opens);
    const WindowBench bench([](SettingsRecord &settings) { settings.comm.stored.CommType = 1; });
    bench.Click(target);
    QCOMPARE(bench.commands, opens ? QList{Command::Options} : QList<Command>());
}

void tst_frmmain::ATabShowsItsViewAlone_data()
{
    QTest::addColumn<int>("tab");
    for (int tab = 0; tab < 4; ++tab)
        QTest::newRow(BoxNames[size_t(tab)]) << tab;
}

void tst_frmmain::ATabShowsItsViewAlone()
{
    QFETCH(int, tab);
    WindowBench bench;
    auto *tabs = bench.Find<QTabBar>("tsTabStrip1");
    QCOMPARE((QStringList{tabs->tabText(0), tabs->tabText(1), tabs->tabText(2), tabs->tabText(3)}),
             (QStringList{" ASCII", " HEX", " Decimal", " Binary"}));
    tabs->setCurrentIndex((tab + 1) % 4);
    bench.settings.CaretPosition = 17;
    QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(tab).center());
    for (size_t i = 0; i < 4; ++i)
        QCOMPARE(bench.Find<QWidget>(BoxNames[i])->isVisible(), int(i) == tab);
    QCOMPARE(bench.settings.DisplayedRepresentation, Representation(tab));
    QCOMPARE(bench.settings.CaretPosition, 0);
}

void tst_frmmain::SplittersAreDraggedAndBounded()
{
    WindowBench bench;
    auto *lists = bench.Find<QWidget>("ActionList");
    auto *vertical = bench.Find<QWidget>("VimgSplitter");
    QCOMPARE(vertical->x(), 400);

    QTest::mousePress(vertical, Qt::LeftButton, {}, {2, 2});
    QVERIFY(bench.Find<QWidget>("VpicSplitter")->isVisible());
    QCOMPARE(vertical->x(), 400); // nothing moves before it is let go
    QTest::mouseMove(vertical, {-360, 2});
    QCOMPARE(bench.Find<QWidget>("VpicSplitter")->x(), 40);
    QTest::mouseMove(vertical, {-390, 2});
    QCOMPARE(bench.Find<QWidget>("VpicSplitter")->x(), 33); // 500 twips
    QTest::mouseRelease(vertical, Qt::LeftButton, {}, {-360, 2});
    QVERIFY(!bench.Find<QWidget>("VpicSplitter")->isVisible());
    QCOMPARE(vertical->x(), 100);
    QCOMPARE(lists->geometry().x(), 3);
    QCOMPARE(lists->geometry().right() + 1, 100);

    bench.Drag("HimgSplitter", {0, -2000});
    QCOMPARE(bench.Find<QWidget>("HimgSplitter")->y(), 133); // 2,000 twips
    QTest::keyClick(bench.Find<QWidget>("HimgSplitter"), Qt::Key_Down);
    QCOMPARE(bench.Find<QWidget>("HimgSplitter")->y(), 143);
    bench.window->StorePlace();
    QCOMPARE(bench.settings.window.vSplitt, 1500.0F);
}

void tst_frmmain::ASmallWindowBoundsTheSplittersForGood()
{
    WindowBench bench;
    bench.window->resize(300, 500);
    QCOMPARE(bench.Find<QWidget>("VimgSplitter")->x(), 200); // inner width - 1,500
    bench.window->resize(133, 500);
    QCOMPARE(bench.window->width(), 200); // 3,000 twips
    bench.window->resize(1000, 700);
    QCOMPARE(bench.Find<QWidget>("VimgSplitter")->x(), 100);
}

void tst_frmmain::TheWindowComesBackWhereItWas()
{
    WindowBench bench(
        [](SettingsRecord &settings) { settings.window = {750, 600, 9000, 7500, 4500, 3000}; });
    QCOMPARE(bench.window->pos(), QPoint(50, 40));
    QCOMPARE(bench.window->size(), QSize(600, 500));
    bench.window->StorePlace();
    const WindowSettings &place = bench.settings.window;
    QCOMPARE((QList<float>{place.MainLeft, place.MainTop, place.MainWidth, place.MainHeight,
                           place.vSplitt, place.hSplitt}),
             (QList<float>{750, 600, 9000, 7500, 4500, 3000}));
}

void tst_frmmain::TheColumnsOfTheListsComeBack()
{
    WindowBench bench([](SettingsRecord &settings) {
        settings.lists = {{40, 90, 300}, {41, 91, 301, 61}};
    });
    QCOMPARE(bench.window->SendList().columnWidth(2), 300);
    QCOMPARE(bench.window->ReceiveList().columnWidth(3), 61);
    bench.window->SendList().setColumnWidth(1, 123);
    bench.window->StorePlace();
    QCOMPARE(bench.settings.lists.sendWidths, (std::array<qint32, 3>{40, 123, 300}));
    QCOMPARE(bench.settings.lists.receiveWidths, (std::array<qint32, 4>{41, 91, 301, 61}));
}

void tst_frmmain::TheCoveredListTakesNoKeys()
{
    WindowBench bench;
    QVERIFY(bench.Find("ActionList")->isEnabled());
    bench.settings.comm.stored.CommType = 1;
    bench.window->UpdateStatusPanels();
    QVERIFY(!bench.Find("ActionList")->isEnabled());
    QVERIFY(bench.Find("EventList")->isEnabled());
    bench.settings.comm.stored.CommType = 2;
    bench.window->UpdateStatusPanels();
    QVERIFY(bench.Find("ActionList")->isEnabled());
}

void tst_frmmain::AWindowOffEveryScreenIsBroughtBack()
{
    for (const float far : {-90000.0F, 90000.0F, 3e38F, -3e38F}) {
        const WindowBench bench(
            [&](SettingsRecord &settings) { settings.window = {far, far, 0, far, far, far}; });
        const QRect screen = bench.window->screen()->availableGeometry();
        QVERIFY(screen.contains(bench.window->geometry().topLeft()));
        QCOMPARE(bench.window->width(), screen.width() * 3 / 4);
        QVERIFY(bench.window->height() <= screen.height());
    }
}

void tst_frmmain::ClosingAsks_data()
{
    QTest::addColumn<bool>("unasked");
    QTest::addColumn<bool>("mayGo");
    QTest::addColumn<int>("asked");
    QTest::addColumn<bool>("gone");
    QTest::newRow("the user agrees") << false << true << 1 << true;
    QTest::newRow("the user wants to stay") << false << false << 1 << false;
    QTest::newRow("the system does not ask") << true << false << 0 << true;
}

void tst_frmmain::ClosingAsks()
{
    QFETCH(bool, unasked);
    QFETCH(bool, mayGo);
    WindowBench bench;
    int asked = 0;
    int unloaded = 0;
    bench.window->AskSaveChanges = [&] { return ++asked, mayGo; };
    bench.window->Unload = [&] { ++unloaded; };
    if (unasked)
        bench.window->CloseUnasked();
    else
        bench.window->close();
    QTEST(asked, "asked");
    QTEST(bench.settings.QuitRequested, "gone");
    QTEST(!bench.window->isVisible(), "gone");
    QCOMPARE(unloaded, bench.settings.QuitRequested ? 1 : 0);
}

void tst_frmmain::TheSystemTakesTheQuestionBack()
{
    WindowBench bench;
    int asked = 0;
    bench.window->AskSaveChanges = [&] {
        ++asked;
        QDialog question;
        QTimer::singleShot(0, bench.window.get(), [&] { bench.window->CloseUnasked(); });
        return question.exec() == QDialog::Accepted;
    };
    bench.window->close();
    QCOMPARE(asked, 1);
    QVERIFY(bench.settings.QuitRequested);
    QVERIFY(!bench.window->isVisible());
}

void tst_frmmain::ClosingEndsOtherForms()
{
    WindowBench bench;
    QDialog dialog;
    bool seenByUnload = true;
    bench.window->Unload = [&] { seenByUnload = dialog.isVisible(); };
    QTimer::singleShot(0, bench.window.get(), [&] { bench.window->CloseUnasked(); });
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    QVERIFY(!seenByUnload);
    QVERIFY(bench.settings.QuitRequested);
}

void tst_frmmain::ANoticeBlocksNothing()
{
    const WindowBench bench;
    QString lines;
    QTextStream errors(&lines);
    QtPrompts prompts(errors);
    const auto boxes = [&] {
        QMap<QString, QMessageBox *> byText;
        for (QWidget *form : QApplication::topLevelWidgets()) {
            auto *box = qobject_cast<QMessageBox *>(form);
            if (box && box->isVisible())
                byText[box->text()] = box;
        }
        return byText;
    };
    const auto tell = [&](const char *about, const char *text) {
        prompts.ShowNotice(about, CriticalMessage(text));
    };
    tell("one file", "1");
    tell("one file", "2");
    tell("another", "3");
    QCOMPARE(boxes().keys(), QStringList({"1", "3"}));
    QVERIFY(!QApplication::activeModalWidget() && prompts.CriticalShown());
    QTest::keyClick(boxes()["1"], Qt::Key_Escape);
    {
        QDialog over(bench.window.get());
        over.setModal(true);
        over.show();
        tell("one file", "4");
    }
    QTRY_COMPARE(boxes().keys(), QStringList({"3", "4"})); // it outlives what it stood over
    frmMain::UnloadForms(bench.window.get());
    QCOMPARE(boxes().keys(), QStringList());
    prompts.EndUnasked();
    for (const char *text : {"5", "5", "6"})
        tell("one file", text);
    QCOMPARE(boxes().keys(), QStringList());
    QCOMPARE(lines, "critical: 5\ncritical: 6\n");
}

void tst_frmmain::TypingWhileStoppedIsAComment()
{
    WindowBench bench([](SettingsRecord &settings) {
        settings.display.styles[StyleIndex::Comment] = {0x123456, true, false, true};
    });
    RichTextModel &model = bench.views.View(Representation::Ascii);
    auto *box = bench.Find<RichTextBox>("txtASCII");
    QTest::keyClicks(box, "note");
    QCOMPARE(model.Bytes().toByteArray(), QByteArray("note"));
    QCOMPARE(model.RunAt(model.Begin()).style, (TextStyle{0x123456, true, false, true}));
    bench.views.SetCommunicating(true);
    QTest::keyClicks(box, "more");
    QCOMPARE(model.Bytes().toByteArray(), QByteArray("note"));
}

void tst_frmmain::TheCaretIsNoted()
{
    WindowBench bench;
    auto *box = bench.Find<RichTextBox>("txtASCII");
    QTest::keyClicks(box, "abc");
    QCOMPARE(bench.settings.CaretPosition, 3);
    QTest::keyClick(box, Qt::Key_Home);
    QCOMPARE(bench.settings.CaretPosition, 0);
    QTest::keyClick(box, Qt::Key_Right);
    QCOMPARE(bench.settings.CaretPosition, 1);
    QTest::mouseClick(box->viewport(), Qt::LeftButton, {}, {box->viewport()->width() - 5, 5});
    QCOMPARE(bench.settings.CaretPosition, 3);
}

QTEST_MAIN(tst_frmmain)
#include "tst_frmmain.moc"
