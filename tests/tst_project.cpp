// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "app/MdProject.h"
#include "app/ProjectWindow.h"
#include "platform/SystemFiles.h"
#include "project/OpenFiles.h"
#include "project/PathParts.h"
#include "support/CommunicationBench.h"
#include "support/MemoryStore.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

namespace
{

const QByteArray PingFile = "VERSION\r\n3\r\n\r\nSEND\r\n0\r\nPing\r\n065 | 013\r\n\r\n";

/// The project commands with a window that only notes, in a folder of their own.
class ProjectBench : public CommunicationBench, public ProjectWindow
{
  public:
    QTemporaryDir folder;
    MemoryStore store;
    SystemFiles fileSystem;
    OpenFiles files{fileSystem};
    MdProject project{{settings, tables, communication, store, prompts, files}};
    bool modified = false;
    QString caption = QStringLiteral("Serimonde");
    QStringList recent;
    int refreshes = 0;
    int busy = 0;

    ProjectBench() { project.Attach(*this); }

    bool ProjectModified() const override { return modified; }
    void SetProjectModified(bool is) override { modified = is; }
    void SetCaption(const QString &text) override { caption = text; }
    void SetBusy(bool is) override { busy += is ? 1 : -1; }
    void RefreshLists() override { ++refreshes; }
    void ShowRecentProjects(const QStringList &projects) override { recent = projects; }

    QString Path(const QString &name) const { return folder.filePath(name); }
    void WriteFile(const QString &name, const QByteArray &bytes) const
    {
        QFile file(Path(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    QByteArray ReadFile(const QString &name) const
    {
        QFile file(Path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
    }
    void AddPing()
    {
        tables.EditSend(0).Name = "Ping";
        tables.EditSend(0).Sequence = "A\r";
        tables.SetSendCount(1);
        modified = true;
    }
    /// Folder, name, caption, modified and the recent list in one text.
    QString State() const
    {
        QString shortened = (QStringList{settings.ProjectDirectory, settings.ProjectFileName,
                                         caption, modified ? "modified" : "unmodified"} +
                             recent)
                                .join(u'|');
        return shortened.replace(folder.path(), "~");
    }
};

} // namespace

class tst_project : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void ExtensionsAreStripped_data();
    void ExtensionsAreStripped();
    void SavingAnUnnamedProjectAsksForItsName();
    void SavingANamedProjectDoesNotAsk();
    void ACancelledDialogChangesNothing();
    void OverwritingIsAskedAboutTheFileThatIsWritten();
    void AFailedSaveKeepsEverything();
    void OpeningStopsCommunicationAndNamesTheProject();
    void AFailedLoadLeavesTheProjectUnnamed_data();
    void AFailedLoadLeavesTheProjectUnnamed();
    void TheCommandLineOpensTheFileItNames_data();
    void TheCommandLineOpensTheFileItNames();
    void ANewProjectIsEmptyAndUnnamed();
    void TheQuestionGuards_data();
    void TheQuestionGuards();
    void RecentProjectsAreFound_data();
    void RecentProjectsAreFound();
};

void tst_project::ExtensionsAreStripped_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("base");
    QTest::newRow("an extension of three") << "test.sqx"
                                           << "test";
    QTest::newRow("blanks around") << "  test.sqx "
                                   << "test";
    QTest::newRow("the first full stop of the tail") << "my.v1"
                                                     << "my";
    QTest::newRow("a full stop further in front stays") << "v1.2plus"
                                                        << "v1.2plus";
    QTest::newRow("only the tail is cut") << "my.v1.sqx"
                                          << "my.v1";
    QTest::newRow("short names stay whole") << "a.tx"
                                            << "a.tx";
    QTest::newRow("none") << "project"
                          << "project";
    QTest::newRow("nothing") << ""
                             << "";
}

void tst_project::ExtensionsAreStripped()
{
    QFETCH(QString, name);
    QTEST(PathParts::WithoutExtension(name), "base");
    QCOMPARE(PathParts::Folder("/a/b/" + name), QStringLiteral("/a/b/"));
    QCOMPARE(PathParts::FileName("/a/b/" + name), name);
    QCOMPARE(PathParts::Folder(name), QString());
}

void tst_project::SavingAnUnnamedProjectAsksForItsName()
{
    ProjectBench bench;
    bench.AddPing();
    bench.prompts.chosen = {bench.Path("test.sqx")};
    QVERIFY(bench.project.SaveProject());
    QCOMPARE(bench.State(), QStringLiteral("~/|test|Serimonde - test|unmodified|~/test"));
    QCOMPARE(bench.ReadFile("test.sqx"), PingFile);
    const FileDialogRequest &asked = bench.prompts.asked.first();
    QCOMPARE(asked.title, QStringLiteral("Save Project"));
    QCOMPARE(asked.filter, QStringLiteral("Serimonde Project Files (*.sqx)|*.sqx"));
    QVERIFY(bench.prompts.shown.isEmpty());
}

void tst_project::SavingANamedProjectDoesNotAsk()
{
    ProjectBench bench;
    bench.AddPing();
    bench.settings.ProjectDirectory = bench.folder.path() + '/';
    bench.settings.ProjectFileName = "mine";
    QVERIFY(bench.project.SaveProject());
    QVERIFY(bench.prompts.asked.isEmpty());
    QCOMPARE(bench.ReadFile("mine.sqx"), PingFile);
    QVERIFY(!bench.modified);
    QCOMPARE(bench.recent, QStringList{bench.Path("mine")});
}

void tst_project::ACancelledDialogChangesNothing()
{
    ProjectBench bench;
    bench.AddPing();
    const QString before = bench.State();
    QVERIFY(!bench.project.SaveProject());
    QVERIFY(!bench.project.SaveProjectAs());
    bench.prompts.answers = {PromptAnswer::No};
    bench.project.OpenProject();
    QCOMPARE(bench.State(), before);
    QCOMPARE(bench.tables.SendCount(), 1);
    QCOMPARE(bench.prompts.asked.last().title, QStringLiteral("Open Project"));
}

void tst_project::OverwritingIsAskedAboutTheFileThatIsWritten()
{
    ProjectBench bench;
    bench.AddPing();
    bench.WriteFile("my.sqx", "old");
    bench.prompts.chosen = {bench.Path("my.v1"), bench.Path("other")};
    bench.prompts.answers = {PromptAnswer::No};
    QVERIFY(bench.project.SaveProjectAs());
    QCOMPARE(bench.prompts.shown.size(), 1);
    QVERIFY(bench.prompts.shown.first().text.contains(bench.Path("my.sqx")));
    QCOMPARE(bench.prompts.shown.first().defaultAnswer, PromptAnswer::No);
    QCOMPARE(bench.ReadFile("my.sqx"), QByteArray("old"));
    QCOMPARE(bench.ReadFile("other.sqx"), PingFile);

    bench.prompts.chosen = {bench.Path("my.sqx")};
    bench.prompts.answers = {PromptAnswer::Yes};
    QVERIFY(bench.project.SaveProjectAs());
    QCOMPARE(bench.ReadFile("my.sqx"), PingFile);
}

void tst_project::AFailedSaveKeepsEverything()
{
    ProjectBench bench;
    bench.AddPing();
    const QString before = bench.State();
    QDir(bench.folder.path()).mkdir("folder.sqx");
    bench.prompts.chosen = {bench.Path("folder.sqx")};
    bench.prompts.answers = {PromptAnswer::Yes}; // yes, replace it
    QVERIFY(!bench.project.SaveProjectAs());
    QCOMPARE(bench.State(), before);
    QCOMPARE(bench.prompts.shown.last(), CriticalMessage("Error while saving the project file"));

    bench.prompts.chosen = {bench.Path("no-such-folder/a")};
    bench.prompts.answers = {PromptAnswer::Yes}; // yes, save changes
    bench.project.NewProject();
    QCOMPARE(bench.tables.SendCount(), 1);
    QCOMPARE(bench.State(), before);
}

void tst_project::OpeningStopsCommunicationAndNamesTheProject()
{
    ProjectBench bench;
    bench.WriteFile("test.sqx", PingFile);
    bench.Open(CommMode::SendReceive);
    bench.prompts.chosen = {bench.Path("test.sqx")};
    bench.project.OpenProject();
    QVERIFY(!bench.communication.Running());
    QCOMPARE(bench.State(), QStringLiteral("~/|test|Serimonde - test|unmodified|~/test"));
    QCOMPARE(bench.tables.SendAt(0).Sequence, QByteArray("A\r"));
    QCOMPARE(bench.refreshes, 1);
}

void tst_project::AFailedLoadLeavesTheProjectUnnamed_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("state");
    QTest::newRow("nothing could be read")
        << QByteArray("RIFF") << "Error while loading the project"
        << "||Serimonde|unmodified";
    QTest::newRow("one record could be read") << PingFile + "SEND\r\nx\r\n"
                                              << "Errow while loading the project"
                                              << "||Serimonde|modified";
    QTest::newRow("a version that is not known")
        << QByteArray("VERSION\r\n4\r\n\r\nSEND\r\n0\r\nPing\r\n065\r\n")
        << "Unknown project file version"
        << "||Serimonde|unmodified";
}

void tst_project::AFailedLoadLeavesTheProjectUnnamed()
{
    QFETCH(QByteArray, file);
    QFETCH(QString, message);
    ProjectBench bench;
    bench.settings.ProjectDirectory = "/old/";
    bench.settings.ProjectFileName = "old";
    bench.WriteFile("bad.sqx", file);
    bench.project.OpenFile(bench.Path("bad.sqx"));
    QTEST(bench.State(), "state");
    QCOMPARE(bench.prompts.shown, QList{CriticalMessage(message)});
    QCOMPARE(bench.refreshes, 1);
    QVERIFY(bench.store.texts.isEmpty());
    QCOMPARE(bench.ReadFile("bad.sqx"), file);
}

void tst_project::TheCommandLineOpensTheFileItNames_data()
{
    QTest::addColumn<QString>("argument");
    QTest::addColumn<QString>("state");
    QTest::addColumn<bool>("message");
    QTest::newRow("a project") << "good.sqx"
                               << "~/|good|Serimonde - good|unmodified|~/good" << false;
    QTest::newRow("without extension") << "good"
                                       << "~/|good|Serimonde - good|unmodified|~/good" << false;
    QTest::newRow("capitals, which a save would not meet") << "UP.SQX"
                                                           << "||Serimonde|unmodified" << false;
    QTest::newRow("another kind of file") << "good.txt"
                                          << "||Serimonde|unmodified" << true;
    QTest::newRow("an extension of something missing") << "good.xyz"
                                                       << "||Serimonde|unmodified" << true;
}

void tst_project::TheCommandLineOpensTheFileItNames()
{
    QFETCH(QString, argument);
    QFETCH(bool, message);
    ProjectBench bench;
    for (const char *name : {"good.sqx", "UP.SQX", "good.txt"})
        bench.WriteFile(name, PingFile);
    bench.project.OpenFile(bench.Path(argument));
    QTEST(bench.State(), "state");
    QCOMPARE(bench.tables.SendCount(), message ? 0 : 1);
    QCOMPARE(bench.prompts.shown.size(), message ? 1 : 0);
    QCOMPARE(bench.busy, 0);
}

void tst_project::ANewProjectIsEmptyAndUnnamed()
{
    ProjectBench bench;
    bench.AddPing();
    bench.settings.ProjectDirectory = bench.folder.path() + '/';
    bench.settings.ProjectFileName = "mine";
    bench.prompts.answers = {PromptAnswer::No};
    bench.project.NewProject();
    QCOMPARE(bench.State(), QStringLiteral("||Serimonde|unmodified"));
    QCOMPARE(bench.tables.SendCount(), 0);
    QCOMPARE(bench.refreshes, 1);
}

void tst_project::TheQuestionGuards_data()
{
    QTest::addColumn<bool>("modified");
    QTest::addColumn<PromptAnswer>("answer");
    QTest::addColumn<bool>("dialogCancelled");
    QTest::addColumn<bool>("goesOn");
    QTest::newRow("nothing to save") << false << PromptAnswer::Cancel << true << true;
    QTest::newRow("No") << true << PromptAnswer::No << true << true;
    QTest::newRow("Cancel") << true << PromptAnswer::Cancel << true << false;
    QTest::newRow("Yes") << true << PromptAnswer::Yes << false << true;
    QTest::newRow("Yes, then Cancel in the dialog") << true << PromptAnswer::Yes << true << false;
}

void tst_project::TheQuestionGuards()
{
    QFETCH(bool, modified);
    QFETCH(PromptAnswer, answer);
    QFETCH(bool, dialogCancelled);
    ProjectBench bench;
    bench.AddPing();
    bench.modified = modified;
    bench.prompts.answers = {answer};
    if (!dialogCancelled)
        bench.prompts.chosen = {bench.Path("saved.sqx")};
    QTEST(bench.project.AskSaveChanges(), "goesOn");
    QCOMPARE(bench.prompts.shown.size(), modified ? 1 : 0);
    QCOMPARE(bench.ReadFile("saved.sqx"), dialogCancelled ? QByteArray("no file") : PingFile);
}

void tst_project::RecentProjectsAreFound_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QString>("state");
    QTest::newRow("an ordinary one") << "test.sqx"
                                     << "test"
                                     << "~/|test|Serimonde - test|unmodified|~/test";
    QTest::newRow("one with a full stop in its name")
        << "my.v1.sqx"
        << "my.v1"
        << "~/|my.v1|Serimonde - my.v1|unmodified|~/my.v1";
    QTest::newRow("one that is gone") << ""
                                      << "gone"
                                      << "||Serimonde|unmodified";
}

void tst_project::RecentProjectsAreFound()
{
    QFETCH(QString, file);
    QFETCH(QString, entry);
    ProjectBench bench;
    if (!file.isEmpty())
        bench.WriteFile(file, PingFile);
    bench.project.OpenRecentProject(bench.Path(entry));
    QTEST(bench.State(), "state");
    QList<MessagePrompt> expected;
    if (file.isEmpty())
        expected << CriticalMessage("Could not find project file " + bench.Path("gone.sqx"));
    QCOMPARE(bench.prompts.shown, expected);
}

QTEST_GUILESS_MAIN(tst_project)
#include "tst_project.moc"
