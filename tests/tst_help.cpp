// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "help/HelpBrowser.h"
#include "help/HelpFile.h"
#include "help/HelpPages.h"
#include "help/frmHelp.h"
#include "support/Cases.h"
#include "support/ProgramBench.h"

#include <QDialog>
#include <QFile>
#include <QHelpContentWidget>
#include <QHelpEngine>
#include <QHelpIndexWidget>
#include <QLineEdit>
#include <QProcess>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QWindow>

namespace
{

const QString RealFile = QStringLiteral(SERIMONDE_HELP_FILE);

void Write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
}

/// A help of three pages; two of its keywords begin alike, and one stands for two pages.
class SmallHelp
{
    QTemporaryDir m_folder;

  public:
    const QString path = m_folder.filePath("small.hlp");

    SmallHelp()
    {
        for (const char *page : {"index", "window", "sequences"})
            Write(m_folder.filePath(page) + ".html",
                  QByteArray("<title>") + page + "</title><p>" + QByteArray(1000, 'x') + "</p>");
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
    void TheWindowCanBeUsedBesideAModalDialog();
    void TheIndexIsSearched();
    void LinksLeadOutside_data();
    void LinksLeadOutside();
    void NoPageIsMissing();
    void TheWindowGoesWithTheProgram();
};

void tst_help::HelpThatCannotBeShown_data()
{
    QTest::addColumn<std::function<void(const QString &)>>("spoil");
    QTest::addColumn<QString>("cause");
    using Spoil = std::function<void(const QString &)>;
    const auto row = [](const char *name, const QString &cause, const Spoil &spoil) {
        QTest::newRow(name) << spoil << cause;
    };
    const auto keep = [](const QString &path, int quarters) {
        QFile file(path);
        file.resize(file.size() * quarters / 4);
    };
    row("missing", "No such file or directory.", [](auto &path) { QFile::remove(path); });
    row("empty", "", [&](auto &path) { keep(path, 0); });
    row("another kind of file", "", [](auto &path) { Write(path, "What is this?"); });
    row("a quarter of it", "", [=](auto &path) { keep(path, 1); });
    row("half of it", "", [=](auto &path) { keep(path, 2); });
    row("three quarters of it", "", [=](auto &path) { keep(path, 3); });
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
    QString page;
    QList<int> panes;
    bool caretInField = false;
    QStringList contents;
    QString usualFile;
    const auto choose = [&](const char *entry) {
        if (usualFile.isEmpty())
            usualFile = bench.program->Help().File();
        bench.program->Help().SetFile(small.path);
        bench.program->Window()->findChild<QAction *>(entry)->trigger();
        const frmHelp *window = bench.program->Help().Window();
        panes << window->findChild<QTabWidget *>("tbsPanes")->currentIndex();
        page = window->findChild<HelpBrowser *>("txtPage")->source().toString();
        caretInField = window->focusWidget()->objectName() == "txtKeyword";
        return window->isVisible();
    };
    const auto tree = [&] {
        const auto *list =
            bench.program->Help().Window()->findChild<QHelpContentWidget *>("lstContents");
        const QModelIndex first = list->model()->index(0, 0);
        contents = {first.data().toString(), list->model()->index(0, 0, first).data().toString()};
        return first.isValid() && list->currentIndex() == first;
    };
    bench.Run({{[&] { QVERIFY(choose("mnuHelpContents")); }, tree},
               {[&] { QVERIFY(choose("mnuHelpSearchForHelpOn")); }, [] { return true; }}});
    QVERIFY(!bench.stuck);
    QCOMPARE(usualFile, QCoreApplication::applicationDirPath() + "/serimonde.hlp");
    QCOMPARE(panes, QList({0, 1}));
    QCOMPARE(page, QString("qthelp://small.help/doc/index.html"));
    QVERIFY(caretInField);
    QCOMPARE(contents, QStringList({"Start", "Window"}));
    QVERIFY(bench.prompts.shown.isEmpty());
}

void tst_help::TheKeyOpensThePageOfItsForm_data()
{
    const Cases<QString, QString, QString> row("form", "owner", "page");
    row("a form of the table", "frmEditAction", "", "sequences.html");
    row("a message over it", "qt_msgbox", "frmEditAction", "sequences.html");
    row("the nearest form decides", "frmEditAction", "frmMain", "sequences.html");
    row("an unknown form", "frmUnknown", "", "index.html");
    row("a form whose page is missing", "frmAbout", "frmMain", "index.html");
}

void tst_help::TheKeyOpensThePageOfItsForm()
{
    QFETCH(QString, form);
    QFETCH(QString, owner);
    QFETCH(QString, page);
    const SmallHelp small;
    const HelpBench bench(small.path);
    QWidget window;
    window.setObjectName(owner);
    QDialog dialog(&window);
    dialog.setObjectName(form);
    QLineEdit field(&dialog);
    dialog.show();
    QTest::keyClick(&field, Qt::Key_F1, Qt::ShiftModifier);
    QVERIFY(!bench.help.Window());
    QTest::keyClick(&field, Qt::Key_F1);
    QVERIFY(bench.help.Window()->isVisible());
    QCOMPARE(bench.Page(), "qthelp://small.help/doc/" + page);
}

void tst_help::TheWindowCanBeUsedBesideAModalDialog()
{
    const SmallHelp small;
    HelpBench bench(small.path);
    bench.help.ShowContents();
    const QTabWidget *panes = bench.Find<QTabWidget>("tbsPanes");
    const auto clickOnIndexTab = [&] {
        const QTabBar *bar = panes->tabBar();
        const QPoint place = bar->mapTo(bench.help.Window(), bar->tabRect(1).center());
        QTest::mouseClick(bench.help.Window()->windowHandle(), Qt::LeftButton, {}, place);
    };
    {
        QDialog dialog;
        dialog.setObjectName("frmEditAction");
        dialog.setModal(true);
        dialog.show();
        clickOnIndexTab();
        QCOMPARE(panes->currentIndex(), 0); // the dialog keeps it from being used
        QTest::keyClick(&dialog, Qt::Key_F1);
        clickOnIndexTab();
        QCOMPARE(panes->currentIndex(), 1);
        QTest::keyClick(bench.help.Window(), Qt::Key_Escape);
        QVERIFY(!bench.help.Window()->isVisible() && dialog.isVisible());
        QTest::keyClick(&dialog, Qt::Key_F1);
    }
    QVERIFY(bench.help.Window()->isVisible());
    bench.help.ShowContents();
    clickOnIndexTab();
    QCOMPARE(panes->currentIndex(), 1);
}

void tst_help::TheIndexIsSearched()
{
    const SmallHelp small;
    HelpBench bench(small.path);
    bench.help.ShowSearch();
    auto *field = bench.Find<QLineEdit>("txtKeyword");
    const auto *index = bench.Find<QHelpIndexWidget>("lstIndex");
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
}

void tst_help::LinksLeadOutside_data()
{
    const Cases<QString, QStringList, QString> row("link", "opened", "page");
    row("a page", "qthelp://small.help/doc/window.html", {}, "window.html");
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
    const auto *contents = bench.Find<QHelpContentWidget>("lstContents");
    QTRY_COMPARE(contents->currentIndex().data().toString(), QString("Start"));
    Q_EMIT bench.Browser()->anchorClicked(link);
    QCOMPARE(contents->currentIndex().data().toString(),
             QString(page == "window.html" ? "Window" : "Start"));
    QCOMPARE(bench.shell.opened, opened);
    QCOMPARE(bench.prompts.shown.size(), opened.size());
    QCOMPARE(bench.Page(), "qthelp://small.help/doc/" + page);
}

void tst_help::NoPageIsMissing()
{
    HelpFile file;
    QCOMPARE(file.Open(RealFile), QString());
    for (const HelpPages::Row &row : HelpPages::Table())
        QVERIFY2(file.Page(row.page).path().endsWith(row.page), row.page);
    static const QRegularExpression link("(?:href|src)=\"([^\"#:]+)(?:#[^\"]*)?\"");
    const QList<QUrl> pages = file.Engine().files("org.serimonde.help", QString(), "html");
    QVERIFY(!pages.isEmpty());
    for (const QUrl &page : pages) {
        auto links = link.globalMatch(QString::fromUtf8(file.Read(page)));
        while (links.hasNext()) {
            const QUrl target = page.resolved(QUrl(links.next().captured(1)));
            QVERIFY2(!file.Read(target).isEmpty(), qPrintable(page.path() + target.path()));
        }
    }
    QSignalSpy created(file.Engine().indexModel(), &QHelpIndexModel::indexCreated);
    QVERIFY(created.wait());
    for (const QString &keyword : file.Engine().indexModel()->stringList())
        QVERIFY2(!file.PagesAbout(keyword).isEmpty(), qPrintable(keyword));
}

void tst_help::TheWindowGoesWithTheProgram()
{
    const SmallHelp small;
    ProgramBench bench;
    const auto help = [&] {
        bench.program->Help().SetFile(small.path);
        bench.program->Execute(Command::HelpContents);
    };
    QCOMPARE(bench.Run({{help, [&] { return bench.program->Help().Window()->isVisible(); }}}), 0);
    QVERIFY(!bench.stuck);
    QVERIFY(!bench.program->Help().Window()->isVisible());
}

QTEST_MAIN(tst_help)
#include "tst_help.moc"
