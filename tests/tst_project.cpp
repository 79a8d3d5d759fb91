// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "FileName.h"
#include "MdProject.h"
#include "OpenFiles.h"
#include "PathParts.h"
#include "ProjectState.h"
#include "ProjectWindow.h"
#include "QtSettingsStore.h"
#include "RecentProjects.h"
#include "RunState.h"
#include "SystemFiles.h"
#include "support/Cases.h"
#include "support/CommunicationBench.h"
#include "support/MemoryStore.h"
#include "support/NamesIn.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

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
    ProjectState state;
    RunState run;
    MdProject project{{state, tables, communication, store, prompts, files, run}};
    bool modified = false;
    QString caption = QStringLiteral("Serimonde");
    QStringList recent;
    int refreshes = 0;
    int busy = 0;

    explicit ProjectBench(bool ping = false)
    {
        project.Attach(*this);
        if (!ping)
            return;
        tables.AddSend({"Ping", "A\r", {}});
        modified = true;
    }

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
    void NameIt(const QString &name)
    {
        state.ProjectDirectory = folder.path() + '/';
        state.ProjectFileName = name;
    }
    /// Folder, name, caption, modified and the recent list in one text.
    QString State() const
    {
        QString shortened = (QStringList{state.ProjectDirectory, state.ProjectFileName, caption,
                                         modified ? "modified" : "unmodified"} +
                             recent)
                                .join(u'|');
        return shortened.replace(folder.path(), "~");
    }
};

const QString Key = QStringLiteral("Recent/RecentProject%1");

void Fill(MemoryStore &store, const QStringList &entries)
{
    for (int i = 0; i < entries.size(); ++i)
        store.texts[Key.arg(i + 1)] = entries[i];
}

} // namespace

class tst_project : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void ExtensionsAreStripped()
    {
        const std::pair<QString, QString> names[] = {{"  test.sqx ", "test"},
                                                     {"my.v1", "my"},
                                                     {"v1.2plus", "v1.2plus"},
                                                     {"my.v1.sqx", "my.v1"},
                                                     {"a.tx", "a.tx"},
                                                     {"project", "project"},
                                                     {"", ""}};
        for (const auto &[name, base] : names) {
            QCOMPARE(PathParts::WithoutExtension(name), base);
            QCOMPARE(PathParts::Folder("/a/b/" + name), "/a/b/");
            QCOMPARE(PathParts::FileName("/a/b/" + name), name);
            QCOMPARE(PathParts::Folder(name), "");
        }
    }

    void SavingAnUnnamedProjectAsksForItsName()
    {
        ProjectBench bench(true);
        bench.prompts.chosen = {bench.Path("test.sqx")};
        QVERIFY(bench.project.SaveProject());
        QCOMPARE(bench.State(), "~/|test|Serimonde - test|unmodified|~/test");
        QCOMPARE(bench.ReadFile("test.sqx"), PingFile);
        QCOMPARE(bench.prompts.asked.first().title, "Save Project");
        QCOMPARE(bench.prompts.asked.first().filter, "Serimonde Project Files (*.sqx)|*.sqx");
        QVERIFY(bench.prompts.shown.isEmpty());
    }

    void SavingANamedProjectDoesNotAsk()
    {
        ProjectBench bench(true);
        bench.NameIt("mine");
        QVERIFY(bench.project.SaveProject());
        QVERIFY(bench.prompts.asked.isEmpty());
        QCOMPARE(bench.ReadFile("mine.sqx"), PingFile);
        QCOMPARE(bench.State(), "~/|mine|Serimonde|unmodified|~/mine");
    }

    void ASaveTellsWhatWillNotComeBack()
    {
        ProjectBench bench(true);
        bench.tables.AddSend({"Pump, on", "A", {}});
        bench.tables.AddSend({"empty", "", {}});
        bench.tables.AddReceive({"Pump, on", "AB"});
        bench.tables.AddReceive({"last", "l"});
        bench.prompts.chosen = {bench.Path("test.sqx")};
        bench.prompts.whileStanding = [&bench] {
            if (!bench.prompts.shown.isEmpty())
                QCOMPARE(bench.State(), "~/|test|Serimonde - test|unmodified|~/test");
        };
        QVERIFY(bench.project.SaveProjectAs());
        QCOMPARE(bench.prompts.shown,
                 QList{ExclamationMessage(
                     "The project is saved, but these sequences will not come back as they are "
                     "when it is opened again. The editor of the first one tells why.\n"
                     "Send sequence 1, \"Pump, on\": other name, bytes\n"
                     "Send sequence 2, \"empty\": one byte 0 in place of no bytes\n"
                     "Receive sequence 0, \"Pump, on\": lost\n"
                     "Receive sequence 1, \"last\": lost")});
        QCOMPARE(bench.ReadFile("test.sqx"),
                 PingFile + "SEND\r\n1\r\nPump, on\r\n065\r\n\r\nSEND\r\n2\r\nempty\r\n\r\n\r\n"
                            "RECEIVE\r\n0\r\nPump, on\r\n065 | 066\r\n0\r\n1\r\nCOMMENT \r\n\r\n"
                            "RECEIVE\r\n1\r\nlast\r\n108\r\n0\r\n1\r\nCOMMENT \r\n\r\n");
    }

    void ACancelledDialogChangesNothing()
    {
        ProjectBench bench(true);
        const QString before = bench.State();
        QVERIFY(!bench.project.SaveProject());
        QVERIFY(!bench.project.SaveProjectAs());
        bench.prompts.answers = {PromptAnswer::No};
        bench.project.OpenProject();
        QCOMPARE(bench.State(), before);
        QCOMPARE(bench.tables.SendCount(), 1);
        QCOMPARE(bench.prompts.asked.last().title, "Open Project");
    }

    void OverwritingIsAskedAboutTheFileThatIsWritten()
    {
        ProjectBench bench(true);
        bench.WriteFile("my.sqx", "old");
        bench.prompts.chosen = {bench.Path("my"), bench.Path("my.v1"), bench.Path("my.sqx")};
        bench.prompts.answers = {PromptAnswer::No, PromptAnswer::Yes};
        QVERIFY(bench.project.SaveProjectAs());
        QCOMPARE(bench.prompts.shown.size(), 1);
        QVERIFY(bench.prompts.shown.first().text.contains(bench.Path("my.sqx")));
        QCOMPARE(bench.prompts.shown.first().defaultAnswer, PromptAnswer::No);
        QCOMPARE(bench.ReadFile("my.sqx"), "old");
        QCOMPARE(bench.State(), "~/|my.v1|Serimonde - my.v1|unmodified|~/my.v1");
        QCOMPARE(bench.ReadFile("my.v1.sqx"), PingFile);
        QVERIFY(bench.project.SaveProjectAs());
        QCOMPARE(bench.ReadFile("my.sqx"), PingFile);
        QStringList proposed;
        for (const FileDialogRequest &request : bench.prompts.asked)
            proposed << request.name;
        QCOMPARE(proposed, QStringList({"", "my.sqx", "my.v1.sqx"}));
    }

    void AFailedSaveKeepsEverything()
    {
        ProjectBench bench(true);
        const QString before = bench.State();
        QDir(bench.folder.path()).mkdir("folder.sqx");
        bench.prompts.chosen = {bench.Path("folder.sqx"), bench.Path("no-such-folder/a")};
        bench.prompts.answers = {PromptAnswer::Yes}; // yes, replace it
        QVERIFY(!bench.project.SaveProjectAs());
        QCOMPARE(bench.State(), before);
        QCOMPARE(bench.prompts.shown.last(),
                 CriticalMessage("Error while saving the project file",
                                 bench.Path("folder.sqx") + "\nIt is a folder"));
        bench.prompts.answers = {PromptAnswer::Yes}; // yes, save changes
        bench.project.NewProject();
        QCOMPARE(bench.tables.SendCount(), 1);
        QCOMPARE(bench.State(), before);
    }

    void OpeningStopsCommunicationAndNamesTheProject()
    {
        ProjectBench bench;
        bench.WriteFile("test.sqx", PingFile);
        bench.Open(CommMode::SendReceive);
        bench.prompts.chosen = {bench.Path("test.sqx")};
        bench.project.OpenProject();
        QVERIFY(!bench.communication.Running());
        QCOMPARE(bench.State(), "~/|test|Serimonde - test|unmodified|~/test");
        QCOMPARE(bench.tables.SendAt(0).Sequence, "A\r");
        QCOMPARE(bench.refreshes, 1);
    }

    void AFailedLoadLeavesTheProjectUnnamed()
    {
        const struct {
            QByteArray file;
            const char *message, *cause, *state;
        } files[] = {
            {"RIFF", "Error while loading the project", "Line 1: The first line is not VERSION",
             "~/||Serimonde|unmodified"},
            {PingFile + "SEND\r\nx\r\n", "Errow while loading the project",
             "Line 10: An index is not a whole 16-bit number",
             "~/||Serimonde|modified"}, // one record could be read
            {"VERSION\r\n4\r\n\r\nSEND\r\n", "Unknown project file version",
             "Line 2: The version is 4", "~/||Serimonde|unmodified"},
        };
        for (const auto &[file, message, cause, state] : files) {
            ProjectBench bench;
            bench.NameIt("old");
            bench.WriteFile("bad.sqx", file);
            bench.project.OpenFile(bench.Path("bad.sqx"));
            QCOMPARE(bench.State(), state);
            QCOMPARE(bench.state.LastFolder, bench.folder.path() + '/');
            QCOMPARE(bench.prompts.shown,
                     QList{CriticalMessage(message, bench.Path("bad.sqx") + '\n' + cause)});
            QCOMPARE(bench.refreshes, 1);
            QVERIFY(bench.store.texts.isEmpty());
            QCOMPARE(bench.ReadFile("bad.sqx"), file);
        }
    }

    void TheFileThatWasNamedIsOpened_data()
    {
        const Cases<QString, QString, QString, int> row("argument", "byCommandLine", "byDialog",
                                                        "messages");
        const QString good = "~/|good|Serimonde - good|unmodified|~/good";
        const QString unnamed = "~/||Serimonde|unmodified";
        const QString untouched = "||Serimonde|unmodified";
        row("a project", "good.sqx", good, good, 0);
        row("without extension", "good", good, good, 0);
        row("capitals, which a save would not meet", "UP.SQX", unnamed, unnamed, 0);
        row("another kind of file", "good.txt", untouched, good, 1);
        row("an extension of something missing", "good.xyz", unnamed, good, 1);
        row("something in a missing folder", "none/a.sqx", untouched, untouched, 2);
    }
    void TheFileThatWasNamedIsOpened()
    {
        QFETCH(const QString, argument);
        ProjectBench lineBench, dialogBench;
        for (ProjectBench *bench : {&lineBench, &dialogBench}) {
            for (const char *name : {"good.sqx", "UP.SQX", "good.txt"})
                bench->WriteFile(name, PingFile);
        }
        lineBench.project.OpenFile(lineBench.Path(argument));
        dialogBench.prompts.chosen = {dialogBench.Path(argument)};
        dialogBench.project.OpenProject();
        QTEST(lineBench.State(), "byCommandLine");
        QTEST(dialogBench.State(), "byDialog");
        QTEST(int(lineBench.prompts.shown.size() + dialogBench.prompts.shown.size()), "messages");
        QCOMPARE(lineBench.tables.SendCount(), lineBench.prompts.shown.isEmpty() ? 1 : 0);
        QCOMPARE(lineBench.busy + dialogBench.busy, 0);
    }

    void ANameThatIsNoTextStaysTheFilesName()
    {
        ProjectBench bench;
        const QString file = FileName::Decode(bench.Path("caf").toUtf8() + "\xE9.sqx");
        bench.WriteFile("caf\uFFFD.sqx", "not this one");
        const auto made = bench.fileSystem.Create(file);
        made.device->Write(PingFile);
        bench.project.OpenFile(file.chopped(4));
        QCOMPARE(bench.tables.SendCount(), 1);
        QCOMPARE(bench.caption, "Serimonde - caf\\xE9");
        bench.tables.AddSend({"Pong", "B", {}});
        QVERIFY(bench.project.SaveProject());
        QCOMPARE(NamesIn(bench.folder.path()),
                 QByteArrayList({"caf\xE9.sqx", "caf\xEF\xBF\xBD.sqx"}));
        QVERIFY(bench.fileSystem.Read(file, 1000).bytes.contains("Pong"));
        // The list of recent projects cannot hold it, nor can a dialog propose it.
        QCOMPARE(bench.prompts.shown.size(), 1);
        QVERIFY(bench.prompts.shown[0].text.contains("/caf\\xE9.sqx cannot be kept"));
        QVERIFY(!bench.prompts.CriticalShown() && bench.store.texts.isEmpty());
        bench.project.SaveProjectAs();
        QCOMPARE(bench.prompts.asked[0].name, "");
        QCOMPARE(bench.prompts.asked[0].folder, bench.folder.path() + '/');
    }

    void ANewProjectIsEmptyAndUnnamed()
    {
        ProjectBench bench(true);
        bench.NameIt("mine");
        bench.state.LastFolder = bench.state.ProjectDirectory;
        bench.prompts.answers = {PromptAnswer::No};
        bench.project.NewProject();
        QCOMPARE(bench.State(), "||Serimonde|unmodified");
        QCOMPARE(bench.state.LastFolder, bench.folder.path() + '/');
        QCOMPARE(bench.tables.SendCount(), 0);
        QCOMPARE(bench.refreshes, 1);
    }

    void TheQuestionGuards_data()
    {
        const Cases<bool, PromptAnswer, bool, bool> row("modified", "answer", "cancelled",
                                                        "goesOn");
        row("nothing to save", false, PromptAnswer::Cancel, true, true);
        row("No", true, PromptAnswer::No, true, true);
        row("Cancel", true, PromptAnswer::Cancel, true, false);
        row("Yes", true, PromptAnswer::Yes, false, true);
        row("Yes, then Cancel in the dialog", true, PromptAnswer::Yes, true, false);
    }
    void TheQuestionGuards()
    {
        QFETCH(const bool, modified);
        QFETCH(const PromptAnswer, answer);
        QFETCH(const bool, cancelled);
        ProjectBench bench(true);
        bench.modified = modified;
        bench.prompts.answers = {answer};
        if (!cancelled)
            bench.prompts.chosen = {bench.Path("saved.sqx")};
        QTEST(bench.project.AskSaveChanges(), "goesOn");
        QCOMPARE(bench.prompts.shown.size(), modified ? 1 : 0);
        QCOMPARE(bench.ReadFile("saved.sqx"), cancelled ? QByteArray("no file") : PingFile);
    }

    void RecentProjectsAreFound()
    {
        ProjectBench bench;
        bench.WriteFile("test.sqx", PingFile);
        bench.WriteFile("my.v1.sqx", PingFile); // with a full stop in its name
        bench.WriteFile("my.sqx", "not meant");
        bench.project.OpenRecentProject(bench.Path("test"));
        QCOMPARE(bench.State(), "~/|test|Serimonde - test|unmodified|~/test");
        bench.project.OpenRecentProject(bench.Path("my.v1"));
        const QString state = "~/|my.v1|Serimonde - my.v1|unmodified|~/my.v1|~/test";
        QCOMPARE(bench.State(), state);
        QVERIFY(bench.prompts.shown.isEmpty());
        for (const char *gone : {"gone", "my.v2"}) {
            bench.project.OpenRecentProject(bench.Path(gone));
            QCOMPARE(bench.State(), state);
            QCOMPARE(bench.prompts.shown.takeLast(),
                     CriticalMessage("Could not find project file " + bench.Path(gone) + ".sqx"));
        }
    }

    void RecentProjectsAreKnownByAnyLetterCase()
    {
        MemoryStore store;
        Fill(store, {"/p/a", "/p/b", "/p/C", "/p/c"}); // the last of two equal ones counts
        const std::pair<const char *, int> places[] = {
            {"/p/a", 1}, {"/P/B", 2}, {"/p/c", 4}, {"/p/d", 0}};
        for (const auto &[project, place] : places)
            QCOMPARE(RecentProjects::FindRecentProject(store, project), place);
    }

    void TheLatestProjectComesFirst_data()
    {
        const Cases<QStringList, QString, QStringList> row("before", "project", "after");
        row("the first project of all", {}, "a", {"a", "", "", ""});
        row("a new one moves all down", {"a", "b"}, "c", {"c", "a", "b", ""});
        row("a fifth drops the oldest", {"a", "b", "c", "d"}, "e", {"e", "a", "b", "c"});
        row("the first again", {"a", "b", "c", "d"}, "a", {"a", "b", "c", "d"});
        row("the fourth again", {"a", "b", "c", "d"}, "d", {"d", "a", "b", "c"});
        row("other letter case is kept", {"a", "b"}, "B", {"B", "a", "", ""});
        row("a gap is not moved by a new one", {"a", "", "c", ""}, "e", {"e", "a", "c", "c"});
        row("a gap moves with an old one", {"a", "", "c", "d"}, "c", {"c", "a", "", "d"});
    }
    void TheLatestProjectComesFirst()
    {
        QFETCH(const QStringList, before);
        QFETCH(const QString, project);
        MemoryStore store;
        Fill(store, before);
        RecentProjects::UpdateRecentProjects(store, project);
        QStringList entries;
        for (int place = 1; place <= 4; ++place)
            entries << store.texts.value(Key.arg(place), "");
        QTEST(entries, "after");
    }

    void TheMenuIsInTheStoresOrder()
    {
        MemoryStore store;
        QCOMPARE(RecentProjects::ListForMenu(store), QStringList());
        Fill(store, {"a", "b", "c", "d"});
        QCOMPARE(RecentProjects::ListForMenu(store), QStringList({"a", "b", "c", "d"}));
        store.texts[Key.arg(10)] = "behind the first by its key";
        QCOMPARE(RecentProjects::ListForMenu(store),
                 QStringList({"a", "behind the first by its key", "b", "c"}));
        Fill(store, {""}); // without a latest project there is no menu
        QCOMPARE(RecentProjects::ListForMenu(store), QStringList());
    }

    void RecentProjectsLiveInTheUsersStore()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath("Serimonde.conf");
        SystemFiles files;
        {
            QtSettingsStore store(files, path);
            store.Write("Recently", "Other", "x");
            for (const char *project : {"/p/a, b", "/p/\xC3\xA4", "/p/c"})
                RecentProjects::UpdateRecentProjects(store, project);
            QVERIFY(!store.Flush().Failed());
        }
        const QtSettingsStore store(files, path);
        QCOMPARE(RecentProjects::ListForMenu(store),
                 QStringList({"/p/c", "/p/\xC3\xA4", "/p/a, b"}));
    }
};

QTEST_GUILESS_MAIN(tst_project)
#include "tst_project.moc"
