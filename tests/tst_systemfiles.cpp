// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "platform/SystemFiles.h"
#include "project/ClInputFile.h"
#include "project/ClOutputFile.h"
#include "project/ProjectFile.h"
#include "sequences/MdSequenceEdition.h"
#include "support/KillingFiles.h"

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
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("%s cannot be written", qPrintable(path));
}

void FillTables(MdSequenceEdition &tables)
{
    for (int i = 0; i < 500; ++i)
        tables.EditSend(i).Sequence = QByteArray(64, 'x');
    tables.SetSendCount(500);
}

/// Limits the size of every file that this process writes, as a full disk would.
class SmallDisk
{
  public:
    explicit SmallDisk(rlim_t bytes)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit = {bytes, m_before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~SmallDisk() { ::setrlimit(RLIMIT_FSIZE, &m_before); }
    Q_DISABLE_COPY_MOVE(SmallDisk)

  private:
    rlimit m_before = {};
};

/// What this program does in a process of its own: loads or saves a project without an
/// administrator's rights, or saves until it is killed at a step.
int RunAsHelper(const QStringList &arguments)
{
    const QString task = arguments[1];
    const QString path = arguments[2];
    if (::geteuid() == 0 && task != "--killed") {
        const passwd *nobody = ::getpwnam("nobody");
        if (!nobody || ::setgid(nobody->pw_gid) != 0 || ::setuid(nobody->pw_uid) != 0)
            return 1;
    }
    SystemFiles system;
    KillingFiles killing(system, arguments.value(3, "-1").toInt());
    OpenFiles files(killing);
    MdSequenceEdition tables;
    FillTables(tables);
    const auto failure = task == "--load" ? ProjectFile::LoadProject(tables, files, path)
                                          : ProjectFile::SaveProject(tables, files, path);
    if (failure)
        std::puts(qPrintable(failure->message + u'|' + failure->cause));
    return 0;
}

} // namespace

class tst_systemfiles : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void CreatesAndEmptiesFiles()
    {
        const QString path = PathOf("log.txt");
        Put(path, "old and long");
        QVERIFY(!output.OpenFile(path));
        QCOMPARE(BytesOf(path), QByteArray());
        output.WriteInFile("new");
        QVERIFY(!output.Flush());
        QCOMPARE(BytesOf(path), "new");
        output.CloseFile();
    }

    void TellsThatAFileHasBeenDeleted()
    {
        const QString path = PathOf("log.txt");
        QVERIFY(!output.OpenFile(path));
        QVERIFY(QFile::remove(path));
        for (int i = 0; i < 2; ++i) { // again and again
            output.WriteInFile("lost");
            const FileResult failure = output.Flush();
            QVERIFY(failure && failure->description.contains("deleted"));
        }
    }

    void ReplacesTheFileBehindALinkAndKeepsItsMode()
    {
        const QString path = PathOf("a.sqx");
        Put(path, OldBytes);
        QCOMPARE(::chmod(qPrintable(path), 0640), 0);
        QVERIFY(QFile::link(path, PathOf("link.sqx")));
        QVERIFY(!Save(PathOf("link.sqx")));
        QCOMPARE(ModeOf(path), 0640);
        QVERIFY(QFileInfo(PathOf("link.sqx")).isSymLink());
        QVERIFY(BytesOf(path).size() > 64000);
        QCOMPARE(Names(), QStringList({"a.sqx", "link.sqx"}));
    }

    void MakesANewFileAsTheUserWantsIt()
    {
        const QString name = QString(251, u'x') + ".sqx"; // the longest name that there is
        const mode_t before = ::umask(027);
        QVERIFY(!Save(folder->filePath(name)));
        ::umask(before);
        QCOMPARE(ModeOf(folder->filePath(name)), 0640);
        QCOMPARE(Names(), QStringList(name));
    }

    void KnowsAFileByAllItsNames()
    {
        Put(PathOf("real.sqx"), OldBytes);
        QVERIFY(QFile::link(PathOf("real.sqx"), PathOf("link.sqx")));
        QVERIFY(!output.OpenFile(PathOf("real.sqx")));
        ClInputFile input(files);
        for (const char *name : {"link.sqx", "./real.sqx"})
            QVERIFY(input.OpenFile(PathOf(name))->inUse);
        output.CloseFile();
        QVERIFY(!input.OpenFile(PathOf("link.sqx")));
    }

    void RefusesWhatIsNoFile()
    {
        Put(PathOf("file"), OldBytes);
        QCOMPARE(::mkfifo(qPrintable(PathOf("pipe")), 0600), 0); // and nobody writes to it
        const QString longName(300, u'x');
        for (const QString &path :
             {QString(), QString("/dev/null"), QString("/dev/full"), QString("pipe"),
              QString("none/a.sqx"), QString("file/a.sqx"), longName}) {
            const QString target = QDir(folder->path()).filePath(path);
            ClInputFile input(files);
            const FileResult refusals[] = {input.OpenFile(target), output.OpenFile(target),
                                           output.OpenForReplacing(target)};
            for (const FileResult &refusal : refusals)
                QVERIFY2(refusal && !refusal->description.isEmpty(), qPrintable(path));
        }
        QCOMPARE(Names(), QStringList({"file", "pipe"}));
        QVERIFY(!QFileInfo("/dev/null").isFile());
    }

    void RefusesAFileAboveTheLimitUnread()
    {
        const QString path = PathOf("large.sqx");
        QFile large(path);
        QVERIFY(large.open(QIODevice::WriteOnly) && large.resize(64 * 1024 * 1024 + 1));
        large.close();
        MdSequenceEdition tables;
        const auto failure = ProjectFile::LoadProject(tables, files, path);
        QCOMPARE(failure->message, "Errow while loading the project");
        QVERIFY(failure->cause.contains("67108865"));
        QVERIFY(large.resize(64 * 1024 * 1024));
        QCOMPARE(ProjectFile::LoadProject(tables, files, path)->message,
                 "Error while loading the project");
    }

    void ObeysMissingRights()
    {
        const QString load = "Errow while loading the project|Permission denied\n";
        const QString save = "Error while saving the project file|Permission denied\n";
        const struct {
            QString task;
            int folderMode, fileMode;
            QString said;
        } rights[] = {{"--load", 0755, 0000, load},
                      {"--save", 0777, 0444, save},
                      {"--save", 0555, 0666, save}};
        const QString path = PathOf("a.sqx");
        Put(path, OldBytes);
        for (const auto &[task, folderMode, fileMode, said] : rights) {
            QCOMPARE(::chmod(qPrintable(path), mode_t(fileMode)), 0);
            QCOMPARE(::chmod(qPrintable(folder->path()), mode_t(folderMode)), 0);
            const QString heard = Helper({task, path});
            QCOMPARE(::chmod(qPrintable(folder->path()), mode_t(0700)), 0);
            QCOMPARE(::chmod(qPrintable(path), mode_t(0600)), 0);
            QCOMPARE(heard, said);
            QCOMPARE(BytesOf(path), OldBytes);
            QCOMPARE(Names(), QStringList("a.sqx"));
        }
    }

    void KeepsTheOldFileOnAFullDisk()
    {
        const QString path = PathOf("a.sqx");
        QVERIFY(!Save(path));
        const qint64 need = BytesOf(path).size();
        for (const qint64 room : {qint64(0), qint64(1), need / 2, need - 1, need}) {
            Put(path, OldBytes);
            ProjectFile::Result failure;
            {
                const SmallDisk small{rlim_t(room)};
                failure = Save(path);
            }
            QCOMPARE(failure.has_value(), room < need);
            QCOMPARE(BytesOf(path).size(), room < need ? OldBytes.size() : need);
            QCOMPARE(Names(), QStringList("a.sqx"));
        }
    }

    void KeepsTheOldFileWhenKilled()
    {
        const QString path = PathOf("a.sqx");
        int step = 0;
        for (bool killed = true; killed; ++step) {
            Put(path, OldBytes);
            killed = Helper({"--killed", path, QString::number(step)}).isNull();
            QCOMPARE(BytesOf(path) == OldBytes, killed);
        }
        QVERIFY(step > 4);
    }

    void init()
    {
        folder = std::make_unique<QTemporaryDir>();
        QVERIFY(folder->isValid());
    }
    void cleanup() { output.CloseFile(); }

  private:
    QString PathOf(const char *name) const { return folder->filePath(QString::fromLatin1(name)); }

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

    ProjectFile::Result Save(const QString &path)
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
    if (arguments.size() > 2 &&
        QStringList({"--load", "--save", "--killed"}).contains(arguments[1]))
        return RunAsHelper(arguments);
    tst_systemfiles test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_systemfiles.moc"
