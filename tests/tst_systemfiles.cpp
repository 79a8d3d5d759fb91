// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ClInputFile.h"
#include "ClOutputFile.h"
#include "FileName.h"
#include "MdSequenceEdition.h"
#include "ProjectFile.h"
#include "QtSettingsStore.h"
#include "SystemFiles.h"
#include "support/Cases.h"
#include "support/NamesIn.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

#include <array>
#include <csignal>
#include <cstdio>

#include <fcntl.h>
#include <pwd.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

const QByteArray OldBytes = "VERSION\r\n3\r\n\r\n";

QByteArray BytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void Put(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
}

void FillTables(MdSequenceEdition &tables)
{
    for (int i = 0; i < 500; ++i)
        tables.AddSend({{}, QByteArray(64, 'x'), {}});
}

/// No file of this process grows beyond that. Like a full disk it fails with --full, else the
/// process is killed in the middle of a write.
void LimitFileSize(const QString &task, rlim_t bytes)
{
    std::signal(SIGXFSZ, task == "--full" ? SIG_IGN : SIG_DFL);
    const rlimit limits[] = {{bytes, bytes}, {0, 0}};
    ::setrlimit(RLIMIT_FSIZE, &limits[0]);
    ::setrlimit(RLIMIT_CORE, &limits[1]);
}

Result SaveTables(SystemFiles &system, const QString &path)
{
    OpenFiles files(system);
    MdSequenceEdition tables;
    FillTables(tables);
    return ProjectFile::SaveProject(tables, files, path);
}

Result SaveSettings(QtSettingsStore &store)
{
    for (int i = 0; i < 300; ++i)
        store.Write("Section", QString::number(i), QString(40, u'x'));
    return store.Flush();
}

/// Settings if that is what the file's name says, else a project.
Result Save(SystemFiles &system, const QString &path)
{
    if (!path.endsWith(".conf"))
        return SaveTables(system, path);
    QtSettingsStore store(system, path);
    return SaveSettings(store);
}

Result SaveWithALimit(const QString &task, const QString &path, rlim_t limit)
{
    SystemFiles system;
    QtSettingsStore store(system, path); // reads first, to which the limit would apply, too
    LimitFileSize(task, limit);
    return path.endsWith(".conf") ? SaveSettings(store) : SaveTables(system, path);
}

Result SaveOften(const QString &path, int number)
{
    SystemFiles system;
    QtSettingsStore store(system, path);
    Result saved;
    for (int i = 1; i <= 10 && !saved.Failed(); ++i) {
        store.Write("Own", QString::number(number), QString::number(i));
        saved = path.endsWith(".conf") ? store.Flush() : SaveTables(system, path);
    }
    return saved;
}

Result ActUnprivileged(const QString &task, const QString &path)
{
    const passwd *nobody = ::getpwnam("nobody");
    if (::geteuid() == 0 &&
        (!nobody || ::setgid(nobody->pw_gid) != 0 || ::setuid(nobody->pw_uid) != 0))
        return Failure{"no rights to give up"};
    SystemFiles system;
    if (task == "--save")
        return Save(system, path);
    OpenFiles files(system);
    MdSequenceEdition tables;
    return ProjectFile::LoadProject(tables, files, path);
}

/// What this program does in a process of its own: loads or saves without an administrator's
/// rights, saves with a limit, or again and again.
int RunAsHelper(const QString &task, const QString &path, int number)
{
    const Result done = task == "--often" ? SaveOften(path, number)
                        : number >= 0     ? SaveWithALimit(task, path, rlim_t(number))
                                          : ActUnprivileged(task, path);
    if (done.Failed())
        std::puts(qPrintable(done.Message() + u'|' + done.Cause()));
    return 0;
}

} // namespace

class tst_systemfiles : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void EmptiesAFileAndTellsThatItHasBeenDeleted()
    {
        const QString path = PathOf("log.txt");
        Put(path, "old and long");
        QVERIFY(!output.OpenFile(path).Failed());
        QCOMPARE(BytesOf(path), "");
        output.WriteInFile("new");
        QVERIFY(!output.Flush().Failed());
        QCOMPARE(BytesOf(path), "new");
        QVERIFY(QFile::remove(path));
        for (int i = 0; i < 2; ++i) { // again and again
            output.WriteInFile("lost");
            QVERIFY(output.Flush().Cause().contains("deleted"));
        }
    }

    void ReplacesTheFileBehindALinkAndKeepsItsMode()
    {
        const QString path = PathOf("a.sqx");
        Put(path, OldBytes);
        QCOMPARE(::chmod(qPrintable(path), 0640), 0);
        QVERIFY(QFile::link(path, PathOf("link.sqx")));
        QCOMPARE(Save(system, PathOf("link.sqx")).Cause(), "");
        QCOMPARE(ModeOf(path), 0640);
        QVERIFY(QFileInfo(PathOf("link.sqx")).isSymLink());
        QVERIFY(BytesOf(path).size() > 64000);
        QCOMPARE(Names(), QStringList({"a.sqx", "link.sqx"}));
    }

    void MakesTheFileThatALinkLeadsTo()
    {
        QVERIFY(QDir(folder->path()).mkdir("below"));
        const std::pair<QByteArray, const char *> links[] = {
            {"below/new.sqx", "first"}, {PathOf("first").toUtf8(), "second"}, {"loop", "loop"}};
        for (const auto &[target, name] : links)
            QCOMPARE(::symlink(target, qPrintable(PathOf(name))), 0);
        QCOMPARE(Save(system, PathOf("second")).Cause(), "");
        QVERIFY(BytesOf(PathOf("below/new.sqx")).size() > 64000);
        QVERIFY(Save(system, PathOf("loop")).Failed());
        for (const auto &[target, name] : links)
            QVERIFY(QFileInfo(PathOf(name)).isSymLink());
        QCOMPARE(Names(), QStringList({"below", "first", "loop", "second"}));
    }

    void NamesAreBytes_data()
    {
        const Cases<QByteArray, QString> row("bytes", "shown");
        row("ASCII", "a.sqx", "a.sqx");
        row("UTF-8", "caf\xC3\xA9 \xF0\x9F\x98\x80", "caf\u00E9 \U0001F600");
        row("a byte order mark", "\xEF\xBB\xBF.sqx", QChar(0xFEFF) + QString(".sqx"));
        row("another code page", "caf\xE9.sqx", "caf\\xE9.sqx");
        row("behind a long character", "\xF0\x9F\x98\x80\x98", "\U0001F600\\x98");
        row("a character cut off", "\xE2\x82", "\\xE2\\x82");
        row("a surrogate", "\xED\xB3\xA9", "\\xED\\xB3\\xA9");
        row("an overlong form", "\xC0\xAF", "\\xC0\\xAF");
        row("what a terminal obeys", "a\n\x1B[2J\xE2\x80\xAE", "a\\x0A\\x1B[2J\\xE2\\x80\\xAE");
        row("what stands for the unknown", "caf\xEF\xBF\xBD", "caf\\xEF\\xBF\\xBD");
    }
    void NamesAreBytes()
    {
        QFETCH(const QByteArray, bytes);
        const QString name = FileName::Decode(bytes);
        QCOMPARE(FileName::Encode(name), bytes);
        QTEST(FileName::Shown(name), "shown");
        QCOMPARE(FileName::IsText(name), bytes.isValidUtf8());

        const QString path = folder->path() + u'/' + name;
        QVERIFY(!output.OpenFile(path).Failed());
        output.CloseFile();
        QCOMPARE(Save(system, path).Cause(), "");
        QCOMPARE(NamesIn(folder->path()), QByteArrayList{bytes});
        QVERIFY(system.Read(path, 1000000).bytes.size() > 64000);
        QCOMPARE(system.CanonicalPath(folder->path() + "/./" + name), path);
        QVERIFY(system.Exists(path));
        system.Remove(path);
        QVERIFY(!system.Exists(path) && NamesIn(folder->path()).isEmpty());
    }

    void WhatIsNoNameIsRefused()
    {
        Put(PathOf("a"), OldBytes);
        for (const QString &name :
             {QString("a") + QChar::Null + "b", QString(QChar(0xD83D)) + "a"}) {
            const QString path = folder->path() + u'/' + name;
            QVERIFY(!FileName::IsText(path) && !system.Exists(path));
            ClInputFile input(files);
            QVERIFY(input.OpenFile(path).Failed() && output.OpenFile(path).Failed());
            QVERIFY(Save(system, path).Failed());
        }
        QCOMPARE(Names(), QStringList("a"));
        QCOMPARE(BytesOf(PathOf("a")), OldBytes);
    }

    void RelativeNamesStartInTheWorkingFolder()
    {
        const QByteArray odd = folder->path().toUtf8() + "/d\xE9r";
        const QString before = QDir::currentPath();
        QVERIFY(::mkdir(odd, 0700) == 0 && ::chdir(odd) == 0);
        const QString absolute = system.AbsolutePath("a.sqx");
        const QString above = system.AbsolutePath("../b.sqx");
        QVERIFY(QDir::setCurrent(before));
        QCOMPARE(FileName::Encode(absolute), odd + "/a.sqx");
        QCOMPARE(above, PathOf("b.sqx"));
        QCOMPARE(system.AbsolutePath("/x/../y"), "/x/../y"); // x may be a link
    }

    void MakesANewFileAsTheUserWantsIt()
    {
        const QString name = QString(251, u'x') + ".sqx"; // the longest name that there is
        const mode_t before = ::umask(027);
        QCOMPARE(Save(system, folder->filePath(name)).Cause(), "");
        ::umask(before);
        QCOMPARE(ModeOf(folder->filePath(name)), 0640);
        QCOMPARE(Names(), QStringList(name));
    }

    void KnowsAFileByAllItsNames()
    {
        Put(PathOf("real.sqx"), OldBytes);
        QVERIFY(QFile::link(PathOf("real.sqx"), PathOf("link.sqx")));
        QVERIFY(!output.OpenFile(PathOf("real.sqx")).Failed());
        ClInputFile input(files);
        for (const char *name : {"link.sqx", "./real.sqx"})
            QCOMPARE(input.OpenFile(PathOf(name)).Number(), FileAlreadyOpen);
        output.CloseFile();
        QVERIFY(!input.OpenFile(PathOf("link.sqx")).Failed());
    }

    void RefusesWhatIsNoFile()
    {
        Put(PathOf("file"), OldBytes);
        QCOMPARE(::mkfifo(qPrintable(PathOf("pipe")), 0600), 0); // and nobody writes to it
        for (const QString &path :
             {QString(), QString("pipe"), QString("none/a.sqx"), QString(300, u'x')}) {
            const QString target = QDir(folder->path()).filePath(path);
            ClInputFile input(files);
            const Result refusals[] = {input.OpenFile(target), output.OpenFile(target),
                                       output.OpenForReplacing(target)};
            for (const Result &refusal : refusals)
                QVERIFY2(refusal.Failed() && !refusal.Cause().isEmpty(), qPrintable(path));
        }
        QCOMPARE(Names(), QStringList({"file", "pipe"}));
    }

    void RefusesAFileAboveTheLimitUnread()
    {
        const QString path = PathOf("large.sqx");
        QFile large(path);
        QVERIFY(large.open(QIODevice::WriteOnly) && large.resize(64 * 1024 * 1024 + 1));
        large.close();
        MdSequenceEdition tables;
        const Result loaded = ProjectFile::LoadProject(tables, files, path);
        QCOMPARE(loaded.Message(), "Errow while loading the project");
        QVERIFY(loaded.Cause().contains("67108865"));
        QVERIFY(large.resize(64 * 1024 * 1024));
        QCOMPARE(ProjectFile::LoadProject(tables, files, path).Message(),
                 "Error while loading the project");
    }

    void ObeysMissingRights()
    {
        const struct {
            QString task;
            mode_t folderMode, fileMode;
            QString said;
        } rights[] = {{"--load", 0755, 0000, "Errow while loading the project"},
                      {"--save", 0777, 0444, "Error while saving the project file"},
                      {"--save", 0555, 0666, "Error while saving the project file"}};
        const QString path = PathOf("a.sqx");
        Put(path, OldBytes);
        for (const auto &[task, folderMode, fileMode, said] : rights) {
            SetModes(folderMode, fileMode);
            const QString heard = Helper({task, path, "-1"});
            SetModes(0700, 0600);
            QCOMPARE(heard, said + "|Permission denied\n");
            QCOMPARE(BytesOf(path), OldBytes);
            QCOMPARE(Names(), QStringList("a.sqx"));
        }
    }

    void KeepsTheOldFileOnAFullDiskAndWhenKilled_data()
    {
        const Cases<QString, QByteArray, bool> row("name", "oldBytes", "leavesItsName");
        row("a project", "a.sqx", OldBytes, false);
        row("the settings", "a.conf", "[Old]\nkey=" + QByteArray(2000, 'y') + '\n', true);
    }
    void KeepsTheOldFileOnAFullDiskAndWhenKilled()
    {
        QFETCH(const QString, name);
        QFETCH(const QByteArray, oldBytes);
        QFETCH(const bool, leavesItsName);
        const QString path = folder->filePath(name);
        Put(path, oldBytes);
        QCOMPARE(Save(system, path).Cause(), "");
        const qint64 need = BytesOf(path).size();
        for (const QString task : {"--full", "--killed"}) {
            for (const qint64 room : {qint64(0), qint64(4096), qint64(8192), need - 1, need}) {
                Put(path, oldBytes);
                const QString said = Helper({task, path, QString::number(room)});
                QCOMPARE(said.isEmpty(), task == "--killed" || room == need);
                QCOMPARE(said.isNull(), task == "--killed" && room < need);
                QCOMPARE(BytesOf(path).size(), room < need ? oldBytes.size() : need);
                if (said.isNull() && leavesItsName)
                    system.Tidy(path);
                QCOMPARE(Names(), QStringList(name));
            }
        }
    }

    void MakesRoomForWhatWasLeftBehindAndForNothingElse()
    {
        for (const QString name : {"a.sqx", "a.conf"}) {
            const QString path = folder->filePath(name);
            const QString unfinished = folder->filePath('.' + name + ".saving");
            Put(unfinished, "half");
            QCOMPARE(Save(system, path).Cause(), "");
            QCOMPARE(Names(), QStringList(name));
            const QByteArray whole = BytesOf(path);
            Put(path, "");
            Put(unfinished, "half");
            const int held = ::open(qPrintable(unfinished), O_RDWR | O_CLOEXEC);
            QCOMPARE(::flock(held, LOCK_EX | LOCK_NB), 0);
            system.Tidy(path);
            const QString fault = Save(system, path).Cause();
            QVERIFY2(fault.endsWith("Another program is saving it"), qPrintable(fault));
            QCOMPARE(BytesOf(path) + BytesOf(unfinished), "half");
            ::close(held);
            system.Tidy(path);
            QCOMPARE(Names(), QStringList(name));
            QCOMPARE(Save(system, path).Cause(), "");
            QCOMPARE(BytesOf(path), whole);
            Put(path, "");
            QVERIFY(QFile::link(path, unfinished)); // no program makes that
            QVERIFY(Save(system, path).Cause().contains(unfinished + " is in the way"));
            QCOMPARE(BytesOf(path), "");
            QVERIFY(QFile::remove(unfinished) && QFile::remove(path));
        }
    }

    void ManyProgramsSaveTheSameFile()
    {
        for (const QString name : {"a.conf", "a.sqx"}) {
            const QString path = folder->filePath(name);
            std::array<QProcess, 6> programs;
            for (size_t i = 0; i < programs.size(); ++i)
                programs[i].start(QCoreApplication::applicationFilePath(),
                                  {"--often", path, QString::number(i)});
            for (QProcess &program : programs) {
                QVERIFY(program.waitForFinished());
                QCOMPARE(program.readAllStandardOutput(), "");
            }
            QCOMPARE(Names(), QStringList(name));
            QCOMPARE(Save(system, path).Cause(), "");
            const QByteArray own = "[Own]\n0=10\n1=10\n2=10\n3=10\n4=10\n5=10\n";
            QCOMPARE(BytesOf(path).startsWith(own), name == "a.conf");
            QVERIFY(QFile::remove(path));
        }
    }

    void WritesNewSettingsIntoANewFolderAndThroughALink()
    {
        const QString path = PathOf("new/folder/a.conf");
        QCOMPARE(Save(system, path).Cause(), "");
        const QByteArray whole = BytesOf(path);
        Put(path, "");
        QVERIFY(QFile::link(path, PathOf("link.conf")));
        QCOMPARE(Save(system, PathOf("link.conf")).Cause(), "");
        QCOMPARE(BytesOf(path), whole);
        QVERIFY(QFileInfo(PathOf("link.conf")).isSymLink());
    }

    void init()
    {
        folder = std::make_unique<QTemporaryDir>();
        QVERIFY(folder->isValid());
    }
    void cleanup() { output.CloseFile(); }

  private:
    QString PathOf(const char *name) const { return folder->filePath(QString::fromLatin1(name)); }

    void SetModes(mode_t folderMode, mode_t fileMode) const
    {
        QCOMPARE(::chmod(qPrintable(PathOf("a.sqx")), fileMode), 0);
        QCOMPARE(::chmod(qPrintable(folder->path()), folderMode), 0);
    }
    static int ModeOf(const QString &path)
    {
        struct stat status = {};
        return ::stat(qPrintable(path), &status) == 0 ? int(status.st_mode & 0777) : -1;
    }

    QStringList Names() const
    {
        return QDir(folder->path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }

    /// What the helper said; null if it was killed.
    static QString Helper(const QStringList &arguments)
    {
        QProcess process;
        process.start(QCoreApplication::applicationFilePath(), arguments);
        if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit)
            return {};
        const QString said = QString::fromUtf8(process.readAllStandardOutput());
        return said.isNull() ? QString("") : said;
    }

    std::unique_ptr<QTemporaryDir> folder;
    SystemFiles system{std::chrono::milliseconds(0)};
    OpenFiles files{system};
    ClOutputFile output{files};
};

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 4)
        return RunAsHelper(arguments[1], arguments[2], arguments[3].toInt());
    tst_systemfiles test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_systemfiles.moc"
