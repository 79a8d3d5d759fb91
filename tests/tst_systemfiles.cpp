// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ClInputFile.h"
#include "ClOutputFile.h"
#include "FileName.h"
#include "MdSequenceEdition.h"
#include "ProjectFile.h"
#include "SystemFiles.h"
#include "support/Cases.h"
#include "support/NamesIn.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <cstdio>

#include <pwd.h>
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

/// What this program does in a process of its own: loads or saves a project without an
/// administrator's rights, or saves with a limit.
int RunAsHelper(const QString &task, const QString &path, int limit)
{
    const passwd *nobody = ::getpwnam("nobody");
    if (limit >= 0)
        LimitFileSize(task, rlim_t(limit));
    else if (::geteuid() == 0 &&
             (!nobody || ::setgid(nobody->pw_gid) != 0 || ::setuid(nobody->pw_uid) != 0))
        return 1;
    SystemFiles system;
    OpenFiles files(system);
    MdSequenceEdition tables;
    FillTables(tables);
    const Result done = task == "--load" ? ProjectFile::LoadProject(tables, files, path)
                                         : ProjectFile::SaveProject(tables, files, path);
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
        QVERIFY(!Save(PathOf("link.sqx")).Failed());
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
        QVERIFY(!Save(PathOf("second")).Failed());
        QVERIFY(BytesOf(PathOf("below/new.sqx")).size() > 64000);
        QVERIFY(Save(PathOf("loop")).Failed());
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
        QVERIFY(!Save(path).Failed());
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
            QVERIFY(input.OpenFile(path).Failed() && output.OpenFile(path).Failed() &&
                    Save(path).Failed());
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
        QVERIFY(!Save(folder->filePath(name)).Failed());
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

    void KeepsTheOldFileOnAFullDiskAndWhenKilled()
    {
        const QString path = PathOf("a.sqx");
        QVERIFY(!Save(path).Failed());
        const qint64 need = BytesOf(path).size();
        for (const QString task : {"--full", "--killed"}) {
            for (const qint64 room : {qint64(0), need / 2, need - 1, need}) {
                Put(path, OldBytes);
                const QString said = Helper({task, path, QString::number(room)});
                QCOMPARE(said.isEmpty(), task == "--killed" || room == need);
                QCOMPARE(said.isNull(), task == "--killed" && room < need);
                QCOMPARE(BytesOf(path).size(), room < need ? OldBytes.size() : need);
                QCOMPARE(Names(), QStringList("a.sqx"));
            }
        }
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

    Result Save(const QString &path)
    {
        MdSequenceEdition tables;
        FillTables(tables);
        return ProjectFile::SaveProject(tables, files, path);
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
    SystemFiles system;
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
