// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ClickLabel.h"
#include "CommConfiguration.h"
#include "CommunicationViews.h"
#include "DisplaySettings.h"
#include "QtPrompts.h"
#include "RichTextBox.h"
#include "RunState.h"
#include "SQReceiveSequenceList.h"
#include "SQSendSequenceList.h"
#include "ScrollPage.h"
#include "SessionWatch.h"
#include "WindowSettings.h"
#include "frmMain.h"
#include "support/Cases.h"
#include "support/MouseLosses.h"

#include <QAccessible>
#include <QAction>
#include <QDialog>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTabBar>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>

namespace
{

/// The real window, off-screen, and what it asked for.
class WindowBench
{
  public:
    struct Settings {
        CommConfiguration comm;
        DisplaySettings display;
        WindowSettings window;
        ListSettings lists;
    } settings;
    RunState run;
    CommunicationViews views;
    std::unique_ptr<frmMain> window;
    QList<Command> commands;

    explicit WindowBench(const std::function<void(Settings &)> &prepare = {})
    {
        settings.window.MainWidth = 15000;
        settings.window.MainHeight = 10500;
        if (prepare)
            prepare(settings);
        window = std::make_unique<frmMain>(MainWindowParts{settings.comm, settings.display,
                                                           settings.window, settings.lists, views,
                                                           run, QStringLiteral("Serimonde")});
        QObject::connect(window.get(), &frmMain::CommandChosen, window.get(),
                         [this](Command command) { commands << command; });
        window->show();
    }

    template <typename Widget = QWidget> Widget *Find(const QString &name) const
    {
        return window->findChild<Widget *>(name);
    }
    /// What assistive programs learn of a widget, or of the window itself.
    QAccessibleInterface &Spoken(const QString &name) const
    {
        QWidget *widget = name == window->objectName() ? window.get() : Find(name);
        return *QAccessible::queryAccessibleInterface(widget);
    }
    /// As an assistive program does, if it is offered.
    void Press(const QString &name) const
    {
        QAccessibleActionInterface &actions = *Spoken(name).actionInterface();
        if (actions.actionNames().contains(QAccessibleActionInterface::pressAction()))
            actions.doAction(QAccessibleActionInterface::pressAction());
        QCoreApplication::sendPostedEvents(Find(name));
    }
    void Drag(const char *handle, const QPoint &by, bool letGo = true) const
    {
        QTest::mousePress(Find(handle), Qt::LeftButton, {}, {2, 2});
        QTest::mouseMove(Find(handle), QPoint(2, 2) + by);
        if (letGo)
            QTest::mouseRelease(Find(handle), Qt::LeftButton, {}, QPoint(2, 2) + by);
    }
    /// Texts of what is visible; separators are bars.
    QString Entries(const QString &widget) const
    {
        QStringList texts;
        for (const QAction *action : Find(widget)->actions())
            if (action->isVisible())
                texts << (action->isSeparator() ? "|" : action->text());
        return texts.join(u' ');
    }
};

} // namespace

class tst_frmmain : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void CommandsStandInTheirPlaces()
    {
        const WindowBench bench;
        QCOMPARE(bench.Entries("tbToolBar"),
                 "New Open Save | Properties | Cut Copy Paste Find | Start Stop | Clean | Print | "
                 "Start Log-In Stop Log-In");
        QCOMPARE(bench.Entries("mnuFile"),
                 "&New Project &Open Project... | &Save Project Save Project &As... | "
                 "Print Project... Print Communication... | E&xit");
        QCOMPARE(bench.Entries("mnuTools"),
                 "&Options... | &Line Status... &Traffic... | Save &Capture... &Record Capture... "
                 "Re&play Capture... &Judge Capture... Session Recor&d... "
                 "Stop Repeatin&g");
        QCOMPARE(bench.Entries("mnuHelp"), "&Contents &Search For Help On... | | &About...");
        for (const QAction *button : bench.Find("tbToolBar")->actions())
            QVERIFY(button->isSeparator() || !button->icon().pixmap(24).isNull());
    }

    void RecentProjectsComeUnderTheirSeparator()
    {
        const WindowBench bench;
        const QString entries = bench.Entries("mnuFile").section(u' ', 0, -3); // without the last
        bench.window->ShowRecentProjects({"/a/R&D\t", "/b/two"}); // a tab would set off a key
        QCOMPARE(bench.Entries("mnuFile"), entries + " | /a/R&&D\u2409 /b/two | E&xit");
        const QSignalSpy chosen(bench.window.get(), &frmMain::RecentProjectChosen);
        bench.Find<QAction>("mnuRecentProject_0")->trigger();
        QCOMPARE(chosen.first().first().toString(), "/a/R&D\t");
        bench.window->ShowRecentProjects({"1", "2", "3", "4", "5"});
        QCOMPARE(bench.Entries("mnuFile"), entries + " | 1 2 3 4 | E&xit");
    }

    void DigitsChooseRecentProjectsWhileTheMenuIsOpen()
    {
        const WindowBench bench;
        bench.window->ShowRecentProjects({"/a/R&D", "/b/two"});
        const QSignalSpy chosen(bench.window.get(), &frmMain::RecentProjectChosen);
        auto *menu = bench.Find<QMenu>("mnuFile");
        for (const Qt::Key key : {Qt::Key_3, Qt::Key_2, Qt::Key_1}) { // there are but two
            menu->popup({0, 0});
            QTest::keyClick(menu, key);
            QCOMPARE(menu->isVisible(), key == Qt::Key_3);
        }
        QCOMPARE(chosen.size(), 2);
        QCOMPARE(chosen[0].first().toString(), "/b/two");
        QTest::keyClick(bench.window.get(), Qt::Key_1);
        QCOMPARE(chosen.size(), 2);
    }

    void ToolbarStates()
    {
        const WindowBench bench;
        const auto enabled = [&] {
            QList<int> buttons;
            for (const int i : {3, 7, 8, 9, 12, 13, 15, 19, 20}) {
                if (bench.window->findChild<QToolBar *>("tbToolBar")->actions()[i - 1]->isEnabled())
                    buttons << i;
            }
            return buttons;
        };
        QCOMPARE(enabled(), (QList{7, 8, 9, 12, 15}));
        bench.window->SetProjectModified(true);
        bench.window->SetToolbarState(MdCommunication::ToolbarState::Open);
        QCOMPARE(enabled(), (QList{3, 13}));
        QVERIFY(bench.Find<QAction>("mnuFileSave")->isEnabled());
        bench.window->SetToolbarState(MdCommunication::ToolbarState::Closed);
        bench.window->SetProjectModified(false);
        bench.window->EnableLogCommands(false, true);
        QCOMPARE(enabled(), (QList{7, 8, 9, 12, 15, 20}));
        QVERIFY(!bench.Find<QAction>("mnuFileSave")->isEnabled());
    }

    void AViewsMenuOffersTheCommandsBelowItsOwn()
    {
        WindowBench bench;
        for (const bool open : {false, true}) {
            using State = MdCommunication::ToolbarState;
            bench.window->SetToolbarState(open ? State::Open : State::Closed);
            const auto menu = bench.Find<RichTextBox>("txtASCII")->MakeContextMenu();
            QStringList texts;
            for (QAction *entry : menu->actions())
                texts << (entry->isSeparator() ? "|" : entry->text()) +
                             (entry->isEnabled() ? "" : "-");
            QCOMPARE(texts.mid(4),
                     (QStringList{"|", "Select &All-", "|", open ? "&Start\tF5-" : "&Start\tF5",
                                  open ? "St&op\tShift+F5" : "St&op\tShift+F5-", "&Find...\tCtrl+F",
                                  open ? "C&lear-" : "C&lear", "Li&ne Status...", "Traffic...\tF6",
                                  "|", "Sa&ve Capture...", "R&ecord Capture...",
                                  open ? "Repla&y Capture...-" : "Repla&y Capture...",
                                  "&Judge Capture...", "Sess&ion Record...", "Stop Repeatin&g\tF8-",
                                  "|", "Cont&rol Characters"}));
            bench.Find<QAction>("mnuViewClean")->trigger();
            QCOMPARE(std::exchange(bench.commands, {}).size(), open ? 0 : 1);
        }
    }

    void StatusPanels_data()
    {
        const Cases<int, bool, QString> row("mode", "covered", "ports");
        row("mode 0", 0, false, "COM3");
        row("mode 1 covers the send list", 1, true, "COM3 / COM255");
        row("mode 2", 2, false, "COM3 / COM255");
        row("a mode without a meaning is mode 0", 7, false, "COM3");
    }

    void StatusPanels()
    {
        QFETCH(int, mode);
        QFETCH(QString, ports);
        const WindowBench bench([&](WindowBench::Settings &settings) {
            settings.comm.stored = {mode, 3, 255, 12, 0, 3, 1};
        });
        QStringList panels;
        for (int i = 1; i <= 6; ++i)
            panels << bench.Find<QLabel>(QStringLiteral("sbStatusBar_%1").arg(i))->text();
        QCOMPARE(panels, (QStringList{"Communication port is closed", ports, "115200", "Even", "7",
                                      "1.5"}));
        QTEST(bench.Find("picSendSequenceDeactivated")->isVisible(), "covered");
        const auto *why = bench.Find<QLabel>("lblSendSequence");
        QCOMPARE(why->toolTip(), why->text()); // to be read where a low list cuts it
        QTEST(!bench.Find("ActionList")->isEnabled(), "covered"); // what is covered takes no keys
        QVERIFY(bench.Find("EventList")->isEnabled());
    }

    void ClicksOpenTheOptions()
    {
        WindowBench bench;
        bench.settings.comm.stored.CommType = 1;
        bench.window->UpdateStatusPanels();
        for (const char *target :
             {"sbStatusBar_1", "sbStatusBar_2", "sbStatusBar_3", "sbStatusBar_4", "sbStatusBar_5",
              "sbStatusBar_6", "lblClickChangeComm", "imgClickOptions"}) {
            const bool opens = target != QLatin1String("sbStatusBar_1");
            QCOMPARE(bench.Find(target)->cursor().shape() == Qt::PointingHandCursor, opens);
            bench.commands.clear();
            QTest::mouseClick(bench.Find(target), Qt::LeftButton);
            bench.Press(target);
            QCOMPARE(bench.commands, QList<Command>(opens ? 2 : 0, Command::Options));
        }
        bench.commands.clear();
        QDialog dialog(bench.window.get());
        for (const bool open : {true, false}) { // under a modal dialog no click acts
            dialog.setModal(true);
            dialog.setVisible(open);
            QCOMPARE(bench.Find("sbStatusBar_2")->cursor().shape() == Qt::PointingHandCursor,
                     !open);
            bench.Press("sbStatusBar_2");
            QCOMPARE(bench.commands.size(), open ? 0 : 1);
        }
    }

    void IsReadAsTheEyeGoes()
    {
        WindowBench bench;
        QCOMPARE(bench.Spoken("frmMain").role(), QAccessible::Window);
        for (const int mode : {0, 1}) {
            bench.settings.comm.stored.CommType = mode;
            bench.window->UpdateStatusPanels();
            const QAccessibleInterface &page = *bench.Spoken("tbToolBar").parent();
            QStringList read;
            for (int i = 0; i < page.childCount(); ++i) {
                if (!page.child(i)->state().invisible)
                    read << page.child(i)->object()->objectName();
            }
            const QString list = mode == 0 ? "ActionList" : "picSendSequenceDeactivated";
            QCOMPARE(read, (QStringList{"tbToolBar", "lblTitle_0", list, "HimgSplitter",
                                        "lblTitle_2", "EventList", "VimgSplitter", "", "lblTitle_1",
                                        "txtASCII", "tsTabStrip1", "sbStatusBar"}));
        }
    }

    void ATabShowsItsViewAlone()
    {
        WindowBench bench;
        auto *tabs = bench.Find<QTabBar>("tsTabStrip1");
        const char *captions[] = {" ASCII", " HEX", " Decimal", " Binary"};
        const char *boxes[] = {"txtASCII", "txtHexa", "txtDeci", "txtBin"};
        for (const int tab : {3, 2, 2, 1, 0}) { // one of them is shown already
            bench.views.CaretPosition = 17;
            QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(tab).center());
            QCOMPARE(tabs->tabText(tab), captions[tab]);
            for (int i = 0; i < 4; ++i)
                QCOMPARE(bench.Find(boxes[i])->isVisible(), i == tab);
            QCOMPARE(bench.views.DisplayedRepresentation, Representation(tab));
            QCOMPARE(bench.views.CaretPosition, 0);
        }
    }

    void KeysChooseAViewAsItsTabDoes()
    {
        WindowBench bench;
        auto *tabs = bench.Find<QTabBar>("tsTabStrip1");
        bench.window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(bench.window.get()));
        const struct {
            Qt::Key key;
            int view;
        } strokes[] = {{Qt::Key_3, 2},        {Qt::Key_3, 2},      {Qt::Key_PageDown, 3},
                       {Qt::Key_PageDown, 0}, {Qt::Key_PageUp, 3}, {Qt::Key_1, 0}};
        for (const char *from : {"txtASCII", "ActionList", "EventList", "tsTabStrip1"}) {
            bench.Find(from)->setFocus();
            for (const auto &[key, view] : strokes) {
                bench.views.CaretPosition = 17;
                QTest::keyClick(bench.window->focusWidget(), key, Qt::ControlModifier);
                QCOMPARE(tabs->currentIndex(), view);
                QCOMPARE(bench.views.DisplayedRepresentation, Representation(view));
                QCOMPARE(bench.views.CaretPosition, 0);
                QVERIFY(bench.window->focusWidget()->isVisible());
            }
            QCOMPARE(bench.window->focusWidget(), bench.Find(from));
        }
        QDialog dialog(bench.window.get());
        dialog.setModal(true);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        QTest::keyClick(&dialog, Qt::Key_3, Qt::ControlModifier);
        QCOMPARE(tabs->currentIndex(), 0);
    }

    void SplittersAreDraggedAndBounded()
    {
        WindowBench bench;
        auto *vertical = bench.Find("VimgSplitter");
        auto *horizontal = bench.Find("HimgSplitter");
        auto *picture = bench.Find("VpicSplitter");
        bench.Drag("VimgSplitter", {-362, 0}, false);
        QVERIFY(picture->isVisible());
        QCOMPARE(picture->x(), 40);
        QCOMPARE(vertical->x(), 400); // nothing moves before it is let go
        QTest::mouseMove(vertical, {-390, 2});
        QCOMPARE(picture->x(), 33); // 500 twips
        QTest::mouseRelease(vertical, Qt::LeftButton, {}, {-360, 2});
        QVERIFY(!picture->isVisible());
        QCOMPARE(vertical->x(), 100);
        QCOMPARE(bench.Find("ActionList")->geometry().x(), 3);
        QCOMPARE(bench.Find("ActionList")->geometry().right() + 1, 100);

        bench.Drag("HimgSplitter", {0, -2000});
        QCOMPARE(horizontal->y(), 133); // 2,000 twips
        QTest::keyClick(horizontal, Qt::Key_Down);
        QCOMPARE(horizontal->y(), 143);
        bench.window->StorePlace();
        QCOMPARE(bench.settings.window.vSplitt, 1500.0F);
    }

    void ASplitterThatLosesTheMouseStays()
    {
        for (const MouseLoss &loss : MouseLosses) {
            WindowBench bench;
            auto *handle = bench.Find("VimgSplitter");
            bench.Drag("VimgSplitter", {-100, 0}, false);
            loss.happen(*handle);
            QVERIFY2(!bench.Find("VpicSplitter")->isVisible(), loss.name);
            QTest::mouseRelease(handle, Qt::LeftButton, {}, {-100, 2});
            QVERIFY2(handle->x() == 400, loss.name);
        }
    }

    void ASmallWindowBoundsTheSplittersForGood()
    {
        WindowBench bench;
        bench.window->resize(300, 500);
        QCOMPARE(bench.Find("VimgSplitter")->x(), 200); // inner width - 1,500
        bench.window->resize(133, 500);
        QCOMPARE(bench.window->width(), 200); // 3,000 twips
        bench.window->resize(1000, 700);
        QCOMPARE(bench.Find("VimgSplitter")->x(), 100);
    }

    void TheWindowComesBackAsItWas()
    {
        WindowBench bench([](WindowBench::Settings &settings) {
            settings.window = {750, 600, 9000, 7500, 4500, 3000};
            settings.lists = {{40, 90, 300}, {41, 91, 301, 61}};
        });
        QCOMPARE(QRect(bench.window->pos(), bench.window->size()), QRect(50, 40, 600, 500));
        QCOMPARE(bench.window->SendList().columnWidth(2), 300);
        QCOMPARE(bench.window->ReceiveList().columnWidth(3), 61);
        bench.window->SendList().setColumnWidth(1, 123);
        bench.window->ReceiveList().setColumnWidth(2, 124);
        for (const Qt::WindowState state : {Qt::WindowNoState, Qt::WindowMaximized}) {
            bench.window->setWindowState(state);
            bench.settings.window = {};
            bench.window->StorePlace();
            const WindowSettings &place = bench.settings.window;
            QCOMPARE((QList<float>{place.MainLeft, place.MainTop, place.MainWidth, place.MainHeight,
                                   place.vSplitt, place.hSplitt}),
                     (QList<float>{750, 600, 9000, 7500, 4500, 3000}));
        }
        QCOMPARE(bench.settings.lists.sendWidths, (std::array<qint32, 3>{40, 123, 300}));
        QCOMPARE(bench.settings.lists.receiveWidths, (std::array<qint32, 4>{41, 91, 124, 61}));
    }

    void AWindowOffEveryScreenIsBroughtBack()
    {
        for (const float far : {-90000.0F, 90000.0F, 3e38F, -3e38F}) {
            const WindowBench bench([&](WindowBench::Settings &settings) {
                settings.window = {far, far, 0, far, far, far};
            });
            const QRect screen = bench.window->screen()->availableGeometry();
            QVERIFY(screen.contains(bench.window->geometry().topLeft()));
            QCOMPARE(bench.window->width(), qMax(screen.width() * 3 / 4, 800)); // 12,000 twips
            QVERIFY(bench.window->height() <= screen.height());
        }
    }

    void ClosingAsks_data()
    {
        const Cases<bool, bool, int, bool> row("unasked", "mayGo", "asked", "gone");
        row("the user agrees", false, true, 1, true);
        row("the user wants to stay", false, false, 1, false);
        row("the system does not ask", true, false, 0, true);
    }

    void ClosingAsks()
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
        QTEST(bench.run.QuitRequested, "gone");
        QTEST(!bench.window->isVisible(), "gone");
        QTEST(unloaded == 1, "gone");
    }

    void TheSystemTakesTheQuestionBack()
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
        QVERIFY(bench.run.QuitRequested);
        QVERIFY(!bench.window->isVisible());
    }

    void TheEndOfASessionIsTold()
    {
        const WindowBench bench;
        const SessionWatch session;
        const QSignalSpy ending(&session, &SessionWatch::Ending);
        QEvent quit(QEvent::Quit);
        QCoreApplication::sendEvent(qApp, &quit);
        QCOMPARE(ending.size(), 1);
        QVERIFY(bench.window->isVisible()); // it is closed by those who listen
    }

    void ClosingEndsOtherForms()
    {
        WindowBench bench;
        QDialog dialog;
        bool seenByUnload = true;
        bench.window->Unload = [&] { seenByUnload = dialog.isVisible(); };
        QTimer::singleShot(0, bench.window.get(), [&] { bench.window->CloseUnasked(); });
        QCOMPARE(dialog.exec(), int(QDialog::Rejected));
        QVERIFY(!seenByUnload);
    }

    void APageOfADialogScrollsOnlyWhereTheScreenEnds()
    {
        auto *content = new QWidget;
        auto *field = new QWidget;
        auto *page = new ScrollPage(content);
        auto *button = new QPushButton("OK");
        QDialog dialog;
        auto *column = new QVBoxLayout(&dialog);
        column->addWidget(page);
        column->addWidget(button);
        (new QVBoxLayout(content))->addWidget(field); // later than the page was made
        for (const int height : {20, 200, 2000}) {
            field->setMinimumHeight(height);
            dialog.show();
            const int room = dialog.screen()->availableGeometry().height();
            QTRY_COMPARE(page->verticalScrollBar()->maximum() > 0, height > room);
            QTRY_VERIFY(dialog.frameGeometry().height() <= room);
            QVERIFY(dialog.rect().contains(button->geometry()));
        }
    }

    void ANoticeBlocksNothing()
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
            prompts.ShowNotice(about, CriticalMessage(text, "the file\nthe cause"));
        };
        tell("one file", "1");
        tell("one file", "2");
        tell("another", "3");
        QCOMPARE(boxes().keys(), QStringList({"1", "3"}));
        QVERIFY(!QApplication::activeModalWidget() && prompts.CriticalShown());
        QCOMPARE(boxes()["1"]->detailedText(), "the file\nthe cause");
        QTest::keyClick(boxes()["1"], Qt::Key_Escape);
        {
            QDialog over(bench.window.get());
            over.setModal(true);
            over.show();
            tell("one file", "4");
        }
        QTRY_COMPARE(boxes().keys(), QStringList({"3", "4"})); // it outlives what it stood over
        QList<PromptAnswer> answers;
        const auto ask = [&](const char *text) {
            prompts.Ask({.text = text,
                         .buttons = PromptButtons::YesNoCancel,
                         .defaultAnswer = PromptAnswer::No},
                        [&](PromptAnswer answer) { answers << answer; });
        };
        ask("one");
        ask("two");
        QVERIFY(!QApplication::activeModalWidget() && answers.isEmpty());
        QTest::keyClick(boxes()["one"], Qt::Key_Return);
        QCOMPARE(boxes().keys(), QStringList({"3", "4", "two"}));
        frmMain::UnloadForms(bench.window.get());
        QCOMPARE(boxes().keys(), QStringList());
        QCOMPARE(answers, (QList{PromptAnswer::No, PromptAnswer::Cancel}));
        prompts.EndUnasked();
        ask("three");
        for (const char *text : {"5", "5", "6"})
            tell("one file", text);
        QCOMPARE(boxes().keys(), QStringList());
        QCOMPARE(lines, "critical: 5 (the file; the cause)\ncritical: 6 (the file; the cause)\n");
    }

    void TypingWhileStoppedIsACommentAndTheCaretIsNoted()
    {
        const TextStyle style = {0x123456, true, false, true};
        WindowBench bench([&](WindowBench::Settings &settings) {
            settings.display.styles[StyleIndex::Comment] = style;
        });
        const RichTextModel &model = bench.views.View(Representation::Ascii);
        auto *box = bench.Find<RichTextBox>("txtASCII");
        QTest::keyClicks(box, "abc");
        QCOMPARE(bench.views.CaretPosition, 3);
        QTest::keyClick(box, Qt::Key_Home);
        QCOMPARE(bench.views.CaretPosition, 0);
        QTest::mouseClick(box->viewport(), Qt::LeftButton, {}, {box->viewport()->width() - 5, 5});
        QCOMPARE(bench.views.CaretPosition, 3);
        bench.views.SetCommunicating(true);
        QTest::keyClicks(box, "more");
        QCOMPARE(model.Bytes().toByteArray(), "abc");
        QCOMPARE(model.RunAt(model.Begin()).style, style);
    }
};

QTEST_MAIN(tst_frmmain)
#include "tst_frmmain.moc"
