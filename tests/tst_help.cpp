// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "HelpBrowser.h"
#include "HelpFile.h"
#include "HelpLoading.h"
#include "HelpPages.h"
#include "QtPrompts.h"
#include "frmHelp.h"
#include "support/Cases.h"
#include "support/ProgramBench.h"

#include <QDialog>
#include <QFile>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QPrintDialog>
#include <QProcess>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTextStream>
#include <QTreeView>
#include <QWindow>

#include <memory>

namespace
{

const QString RealFile = QStringLiteral(SERIMONDE_HELP_FILE);

void Write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
}

/// A help of a few pages, each a link to another; two of its keywords begin alike, and one stands
/// for two pages.
class SmallHelp
{
    QTemporaryDir m_folder;

  public:
    const QString path = m_folder.filePath("small.hlp");

    SmallHelp()
    {
        for (const char *page : {"index", "window", "sequences", "logging", "printing", "messages"})
            Write(m_folder.filePath(page) + ".html", QByteArray("<title>") + page +
                                                         "</title><p><a href=\"window.html#end\">" +
                                                         QByteArray(1000, 'x') + "</a></p>");
        Write(m_folder.filePath("small.qhp"), R"(<QtHelpProject version="1.0">
            <namespace>small.help</namespace><virtualFolder>doc</virtualFolder><filterSection>
            <toc><section title="Start" ref="index.html">
                <section title="Window" ref="window.html"/></section></toc>
            <keywords><keyword name="beam" ref="window.html"/>
                <keyword name="beat" ref="sequences.html"/>
                <keyword name="zone" ref="window.html"/><keyword name="zone" ref="index.html"/>
            </keywords><files><file>*.html</file></files></filterSection></QtHelpProject>)");
        QProcess::execute(SERIMONDE_HELP_COMPILER,
                          {"-s", m_folder.filePath("small.qhp"), "-o", path});
    }
};

/// The help of a program, and what is seen of its window.
class HelpBench
{
  public:
    RecordingShell shell;
    ScriptedPrompts prompts;
    MdHelp help{prompts, shell};

    explicit HelpBench(const QString &path) { help.SetFile(path); }

    template <typename Widget> Widget *Find(const char *name) const
    {
        return help.Window()->findChild<Widget *>(name);
    }
    HelpBrowser *Browser() const { return Find<HelpBrowser>("txtPage"); }
    QString Page() const { return Browser()->source().toString(); }
};

} // namespace

class tst_help : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void HelpThatCannotBeShown_data();
    void HelpThatCannotBeShown();
    void TheCommandsOpenTheirPanes();
    void TheKeyOpensThePageOfItsForm_data();
    void TheKeyOpensThePageOfItsForm();
    void TheKeyWorksInThePrompts_data();
    void TheKeyWorksInThePrompts();
    void TheWindowCanBeUsedBesideModalDialogs();
    void TheIndexIsSearched();
    void LinksLeadOutside_data();
    void LinksLeadOutside();
    void NoPageIsMissing();
    void EveryPageFitsItsWidth();
};

void tst_help::HelpThatCannotBeShown_data()
{
    const Cases<QString, std::function<void(const QString &)>> row("cause", "spoil");
    const auto halve = [](auto &path) { QFile::resize(path, QFileInfo(path).size() / 2); };
    row("missing", "No such file or directory.", [](auto &path) { QFile::remove(path); });
    row("the half of it", "", halve);
    row("a page that cannot be unpacked", "The file is damaged.", [](const QString &path) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        const qsizetype packed = file.readAll().indexOf(QByteArray("\x78\x9C", 2));
        QVERIFY(packed > 0);
        file.seek(packed);
        file.write("????????");
    });
}

void tst_help::HelpThatCannotBeShown()
{
    QFETCH(std::function<void(const QString &)>, spoil);
    QFETCH(QString, cause);
    const SmallHelp small;
    HelpBench opened(small.path);
    opened.help.ShowContents();
    spoil(small.path);
    opened.help.ShowContents();
    QCOMPARE(opened.prompts.shown.size(), 1);

    HelpBench bench(small.path);
    bench.help.ShowContents();
    bench.help.ShowSearch();
    QCOMPARE(bench.prompts.shown.size(), 2);
    const MessagePrompt shown = bench.prompts.shown.last();
    QCOMPARE(shown.icon, PromptIcon::Critical);
    const QString start = "The help file " + small.path + " could not be opened. ";
    QVERIFY2(shown.text.startsWith(start + cause) && shown.text.size() > start.size() + 5,
             qPrintable(shown.text));
    QVERIFY(!bench.help.Window());

    bench.help.SetFile(QString());
    bench.help.ShowContents();
    QCOMPARE(bench.prompts.shown.last(),
             InformationMessage("Unable to display Help Contents. There is no Help associated "
                                "with this project."));
}

void tst_help::TheCommandsOpenTheirPanes()
{
    const SmallHelp small;
    ProgramBench bench;
    QString usualFile;
    const auto choose = [&](const char *entry) {
        if (usualFile.isEmpty())
            usualFile = bench.program->Help().File();
        bench.program->Help().SetFile(small.path);
        bench.program->Window()->findChild<QAction *>(entry)->trigger();
    };
    const auto shows = [&](int pane, const char *focus) {
        const frmHelp *window = bench.program->Help().Window();
        const auto *list = window->findChild<QTreeView *>("lstContents");
        const QModelIndex first = list->model()->index(0, 0);
        return window->isVisible() && window->focusWidget()->objectName() == focus &&
               window->findChild<QTabWidget *>("tbsPanes")->currentIndex() == pane &&
               window->findChild<HelpBrowser *>("txtPage")->source().fileName() == "index.html" &&
               list->currentIndex() == first && first.data() == "Start" &&
               list->model()->index(0, 0, first).data() == "Window";
    };
    QCOMPARE(
        bench.Run(
            {{[&] { choose("mnuHelpContents"); }, [&] { return shows(0, "lstContents"); }},
             {[&] { choose("mnuHelpSearchForHelpOn"); }, [&] { return shows(1, "txtKeyword"); }}}),
        0);
    QVERIFY(!bench.stuck && bench.prompts.shown.isEmpty());
    QVERIFY(!bench.program->Help().Window()->isVisible()); // it goes with the program
    QCOMPARE(usualFile, QCoreApplication::applicationDirPath() + "/serimonde.hlp");
}

void tst_help::TheKeyOpensThePageOfItsForm_data()
{
    const Cases<QString, QString, QString> row("form", "owner", "page");
    row("a form of the table", "frmEditAction", "", "sequences.html");
    row("a message over it", "QMessageBox", "frmEditAction", "messages.html");
    row("a message over a dialog of the toolkit", "QMessageBox", "QPrintDialog", "messages.html");
    row("the nearest form decides", "frmEditAction", "frmMain", "sequences.html");
    row("an unknown form", "frmUnknown", "", "index.html");
    row("a form whose page is missing", "frmAbout", "frmMain", "index.html");
    row("a dialog of the toolkit", "QPrintDialog", "frmMain", "printing.html");
}

void tst_help::TheKeyOpensThePageOfItsForm()
{
    QFETCH(QString, form);
    QFETCH(QString, owner);
    QFETCH(QString, page);
    const SmallHelp small;
    const HelpBench bench(small.path);
    const auto make = [](const QString &name, QWidget *parent) -> std::unique_ptr<QDialog> {
        if (name == "QPrintDialog")
            return std::make_unique<QPrintDialog>(parent);
        if (name == "QMessageBox")
            return std::make_unique<QMessageBox>(parent);
        return std::make_unique<QDialog>(parent);
    };
    const std::unique_ptr<QDialog> window = make(owner, nullptr);
    window->setObjectName(owner);
    const std::unique_ptr<QDialog> dialog = make(form, window.get());
    dialog->setObjectName(form);
    QLineEdit field(dialog.get());
    dialog->show();
    QTest::keyClick(&field, Qt::Key_F1, Qt::ShiftModifier);
    QVERIFY(!bench.help.Window());
    QTest::keyClick(&field, Qt::Key_F1);
    QVERIFY(bench.help.Window()->isVisible());
    QCOMPARE(bench.Page(), "qthelp://small.help/doc/" + page);
}

void tst_help::TheKeyWorksInThePrompts_data()
{
    const Cases<std::function<void(QtPrompts &)>, QString> row("prompt", "page");
    row(
        "a file is chosen",
        [](QtPrompts &prompts) {
            prompts.ChooseFile({.dialog = "dlgLogFile", .title = "", .filter = "", .folder = "."});
        },
        "logging.html");
    row(
        "a printer is chosen", [](QtPrompts &prompts) { prompts.ChoosePrinter({}); },
        "printing.html");
    row(
        "a message", [](QtPrompts &prompts) { prompts.ShowMessage(CriticalMessage("")); },
        "messages.html");
    row(
        "a notice", [](QtPrompts &prompts) { prompts.ShowNotice("", CriticalMessage("")); },
        "messages.html");
    row(
        "a question that waits",
        [](QtPrompts &prompts) { prompts.Ask(InformationMessage(""), [](PromptAnswer) {}); },
        "messages.html");
}

void tst_help::TheKeyWorksInThePrompts()
{
    QFETCH(std::function<void(QtPrompts &)>, prompt);
    QFETCH(QString, page);
    const SmallHelp small;
    const HelpBench bench(small.path);
    QTextStream errors(stderr);
    QtPrompts prompts(errors);
    QTimer::singleShot(0, qApp, [] {
        for (QWidget *form : QApplication::topLevelWidgets()) {
            if (!qobject_cast<QDialog *>(form) || !form->isVisible())
                continue;
            QTest::keyClick(form->focusWidget() ? form->focusWidget() : form, Qt::Key_F1);
            form->close();
            return;
        }
    });
    prompt(prompts);
    QTRY_VERIFY(bench.help.Window() && bench.help.Window()->isVisible());
    QCOMPARE(bench.Page(), "qthelp://small.help/doc/" + page);
}

void tst_help::TheWindowCanBeUsedBesideModalDialogs()
{
    const SmallHelp small;
    HelpBench bench(small.path);
    bench.help.ShowContents();
    QTabWidget *panes = bench.Find<QTabWidget>("tbsPanes");
    const auto canBeUsed = [&] {
        panes->setCurrentIndex(0);
        const QTabBar *bar = panes->tabBar();
        const QPoint place = bar->mapTo(bench.help.Window(), bar->tabRect(1).center());
        QTest::mouseClick(bench.help.Window()->windowHandle(), Qt::LeftButton, {}, place);
        return panes->currentIndex() == 1 && bench.help.Window()->isVisible();
    };
    const auto open = [](QDialog &dialog) {
        dialog.setModal(true);
        dialog.show();
    };
    QDialog outer;
    open(outer);
    QTRY_VERIFY(canBeUsed());
    for (const bool asked : {true, false}) {
        QDialog inner(&outer);
        open(inner);
        QTRY_VERIFY(canBeUsed());
        if (asked)
            QTest::keyClick(&inner, Qt::Key_F1);
        inner.close();
        QTRY_VERIFY(canBeUsed());
    }
    QDialog own(bench.help.Window());
    open(own);
    QTest::keyClick(&own, Qt::Key_F1);
    QCoreApplication::processEvents();
    QVERIFY(!canBeUsed()); // it belongs to the help
    own.close();
    QTRY_VERIFY(canBeUsed());
    QTRY_VERIFY(bench.help.Window()->isActiveWindow());
    QTest::keyClick(bench.help.Window(), Qt::Key_Escape);
    QVERIFY(!bench.help.Window()->isVisible() && outer.isVisible());
}

void tst_help::TheIndexIsSearched()
{
    const SmallHelp small;
    HelpBench bench(small.path);
    bench.help.ShowSearch();
    auto *field = bench.Find<QLineEdit>("txtKeyword");
    const auto *index = bench.Find<QListView>("lstIndex");
    QTRY_COMPARE(index->model()->rowCount(), 3);
    QTest::keyClicks(field, "BEA");
    QCOMPARE(index->model()->rowCount(), 2);
    QTest::keyClick(field, Qt::Key_Return);
    QCOMPARE(bench.Page(), QString("qthelp://small.help/doc/window.html"));
    QTest::keyClick(field, Qt::Key_Down);
    QTest::keyClick(field, Qt::Key_Return);
    QCOMPARE(bench.Page(), QString("qthelp://small.help/doc/sequences.html"));

    field->setText("zo");
    QTest::keyClick(field, Qt::Key_Return);
    const QString choice = bench.Browser()->toPlainText();
    QVERIFY2(choice.contains("window") && choice.contains("index"), qPrintable(choice));
    field->setText("*[\\<no such keyword>");
    QTest::keyClick(field, Qt::Key_Return);
    QCOMPARE(bench.Browser()->toPlainText(), choice);
    bench.Find<QAction>("cmdBack")->trigger();
    QCOMPARE(bench.Page(), QString("qthelp://small.help/doc/sequences.html"));
    bench.help.ShowSearch();
    QCOMPARE(field->text(), "");
    QCOMPARE(index->model()->rowCount(), 3);
}

void tst_help::LinksLeadOutside_data()
{
    const Cases<QString, QStringList, QString> row("link", "opened", "page");
    row("a page", "", {}, "window.html#end"); // as the text of the first page has it
    row("a web site", "https://a.test/?b=c", {"https://a.test/?b=c"}, "index.html");
    row("mail", "mailto:a@b.test", {"mailto:a@b.test"}, "index.html");
    row("a file of the computer", "file:///etc/passwd", {}, "index.html");
}

void tst_help::LinksLeadOutside()
{
    QFETCH(QString, link);
    QFETCH(QStringList, opened);
    QFETCH(QString, page);
    const SmallHelp small;
    HelpBench bench(small.path);
    bench.shell.refused << link;
    bench.help.ShowContents();
    const auto *contents = bench.Find<QTreeView>("lstContents");
    QTRY_COMPARE(contents->currentIndex().data().toString(), QString("Start"));
    if (link.isEmpty())
        QTest::mouseClick(bench.Browser()->viewport(), Qt::LeftButton, {},
                          bench.Browser()->viewport()->rect().center() / 8);
    else
        Q_EMIT bench.Browser()->anchorClicked(link);
    QCOMPARE(contents->currentIndex().data().toString(),
             QString(link.isEmpty() ? "Window" : "Start"));
    QCOMPARE(bench.shell.opened, opened);
    QCOMPARE(bench.prompts.shown.size(), opened.size());
    QCOMPARE(bench.Page(), "qthelp://small.help/doc/" + page);
}

void tst_help::NoPageIsMissing()
{
    const LoadedHelp loaded = LoadHelpFile();
    QVERIFY(!loaded.state.Failed());
    HelpFile &file = *loaded.file;
    QVERIFY(!file.Open(RealFile).Failed());
    for (const HelpPages::Row &row : HelpPages::Table())
        QVERIFY2(file.Page(row.page).path().endsWith(row.page), row.page);
    static const QRegularExpression link("(?:href|src|ref)=\"([^\":]+)\"");
    const QList<QUrl> pages = file.Pages();
    QVERIFY(!pages.isEmpty());
    const auto everyLinkLeads = [&](const QUrl &page, const QByteArray &text) {
        auto links = link.globalMatch(QString::fromUtf8(text));
        while (links.hasNext()) {
            const QUrl target = page.resolved(QUrl(links.next().captured(1)));
            const QString place = target.fragment();
            const QByteArray content = file.Read(target);
            QVERIFY2(!content.isEmpty(), qPrintable(page.path() + target.path()));
            QVERIFY2(place.isEmpty() || content.contains("id=\"" + place.toUtf8() + '"'),
                     qPrintable(page.path() + place));
        }
    };
    for (const QUrl &page : pages)
        everyLinkLeads(page, file.Read(page));
    QFile project(SERIMONDE_HELP_PROJECT);
    QVERIFY(project.open(QIODevice::ReadOnly));
    everyLinkLeads(pages.first(), project.readAll());
}

void tst_help::EveryPageFitsItsWidth()
{
    const LoadedHelp loaded = LoadHelpFile();
    QVERIFY(!loaded.state.Failed());
    HelpFile &file = *loaded.file;
    QVERIFY(!file.Open(RealFile).Failed());
    HelpBrowser browser(file);
    browser.show();
    for (const QUrl &page : file.Pages()) {
        browser.Show(page);
        for (const int width : {500, 501, 720}) {
            browser.resize(width, 400);
            QTRY_VERIFY2(browser.horizontalScrollBar()->maximum() == 0, qPrintable(page.path()));
        }
    }
}

QTEST_MAIN(tst_help)
#include "tst_help.moc"
