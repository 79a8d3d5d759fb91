// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "MdSequenceEdition.h"
#include "ProjectState.h"
#include "SystemRecoveryFolder.h"
#include "UnsavedProject.h"
#include "support/Cases.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>

namespace
{

QByteArray AllBytes()
{
    QByteArray bytes;
    for (int byte = 0; byte < 256; ++byte)
        bytes += char(byte);
    return bytes;
}

/// A file system on which nothing grows beyond that; ended like this, in the middle of a write if
/// the signal is not ignored. Returns whether the content was kept.
bool KeepWithLimit(const QString &path, rlim_t bytes, sighandler_t atLimit)
{
    const pid_t child = ::fork();
    if (child == 0) {
        const rlimit limits[] = {{bytes, bytes}, {0, 0}};
        std::signal(SIGXFSZ, atLimit);
        ::setrlimit(RLIMIT_FSIZE, &limits[0]);
        ::setrlimit(RLIMIT_CORE, &limits[1]);
        ::_exit(SystemRecoveryFolder(path).Keep("0123456789").file ? 0 : 1);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

int ModeOf(const QString &path)
{
    struct stat status = {};
    return ::stat(qPrintable(path), &status) == 0 ? int(status.st_mode & 07777) : -1;
}

} // namespace

class tst_recovery : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void NothingOfAProjectIsLost()
    {
        MdSequenceEdition tables;
        const QList<QByteArray> texts = {"a,b", "\"", "line\r\nend", AllBytes(), {}};
        for (const QByteArray &text : texts) {
            tables.AddSend({text, text});
            tables.AddReceive({text, text, {}, {}, -1, text, 1, 7});
        }
        // Behind the counts stands what a file may have put there and an answer may refer to.
        tables.ChangeSend(1024, [](SendSequence &record) { record = {"far", "behind"}; });
        tables.ChangeReceive(1024, [](ReceiveSequence &record) { record = {"far", "behind"}; });
        const QString name = QStringLiteral("Gr\u00fc\u00dfe ") + QChar(0xDCE9);
        const auto text = UnsavedProject::Of(tables, {{}, "/f/", name, {}}).ToText();

        const auto read = UnsavedProject::FromText(text);
        QVERIFY(read && read->folder == "/f/" && read->name == name);
        MdSequenceEdition other;
        other.AddSend({"old", "old"});
        read->PutInto(other);
        QCOMPARE(other.SendCount(), tables.SendCount());
        QCOMPARE(other.ReceiveCount(), tables.ReceiveCount());
        for (int i = 0; i < MdSequenceEdition::Capacity; ++i) {
            QCOMPARE(other.SendAt(i).Name, tables.SendAt(i).Name);
            QCOMPARE(other.SendAt(i).Sequence, tables.SendAt(i).Sequence);
            const ReceiveSequence &is = other.ReceiveAt(i), &was = tables.ReceiveAt(i);
            QCOMPARE((QList{is.Name, is.Sequence, is.Comment}),
                     (QList{was.Name, was.Sequence, was.Comment}));
            QCOMPARE((QList{is.Answer, is.CommentToLog, is.Active}),
                     (QList{was.Answer, was.CommentToLog, was.Active}));
        }
    }

    void WhatIsNoProjectIsRefused_data()
    {
        const Cases<QByteArray, QByteArray> row("part", "instead");
        row("cut off", "]", "");
        row("of another kind", "unsaved project", "else");
        row("of a later version", "\"version\": 1", "\"version\": 2");
        row("an index that no table has", "\"index\": 0", "\"index\": 1025");
        row("more records than there are", "\"sendCount\": 1", "\"sendCount\": 2");
        row("a byte that is none", "6e616d65", "6e616d6");
        row("an answer that is no number", "\"answer\": 3", "\"answer\": \"3\"");
        row("an answer out of range", "\"answer\": 3", "\"answer\": 33000");
    }

    void WhatIsNoProjectIsRefused()
    {
        QFETCH(QByteArray, part);
        QFETCH(QByteArray, instead);
        MdSequenceEdition tables;
        tables.AddSend({"name", "s"});
        tables.AddReceive({"name", "s", {}, {}, 3});
        QByteArray text = UnsavedProject::Of(tables, {}).ToText();
        QVERIFY(UnsavedProject::FromText(text));
        QVERIFY(text.contains(part));
        QVERIFY(!UnsavedProject::FromText(text.replace(part, instead)));
    }

    void FilesAreTheUsersAlone()
    {
        const QString path = folder->filePath("own");
        SystemRecoveryFolder files(path);
        QCOMPARE(files.Names(), QStringList());
        QDir().mkpath(path);
        ::chmod(qPrintable(path), 0755);
        const auto kept = files.Keep("content").file;
        QVERIFY(kept);
        QCOMPARE(ModeOf(path), 0700);
        QCOMPARE(ModeOf(kept->Path()), 0600);
        QVERIFY(qAbs(kept->Written().secsTo(QDateTime::currentDateTime())) < 60);

        const QString elsewhere = folder->filePath("elsewhere");
        QVERIFY(QDir().mkpath(elsewhere) && QFile::link(elsewhere, folder->filePath("link")));
        SystemRecoveryFolder link(folder->filePath("link"));
        QVERIFY(link.Keep("content").result.Failed());
        QCOMPARE(QDir(elsewhere).count(), 2U); // itself and the one above
        QFile::link(kept->Path(), path + "/unsaved-link.json");
        ::mkfifo(qPrintable(path + "/unsaved-pipe.json"), 0600);
        for (const char *name : {"unsaved-link.json", "unsaved-pipe.json"})
            QVERIFY(!files.Take(name));
    }

    void AFileBelongsToOneProgramThatLives()
    {
        SystemRecoveryFolder one(folder->path()), other(folder->path());
        auto older = one.Keep("older").file;
        QVERIFY(QFile::rename(older->Path(), folder->filePath("unsaved-20260101000000000-a.json")));
        const auto newer = other.Keep("newer").file;
        QCOMPARE(one.Names().size(), 2);
        for (const QString &name : one.Names())
            QVERIFY(!one.Take(name) && !other.Take(name));
        older.reset();
        QVERIFY(!other.Take(one.Names().first()));
        const auto left = other.Take(one.Names().last());
        QVERIFY(left);
        QCOMPARE(left->Read().bytes, "older");
        left->Remove();
        newer->Remove();
        QCOMPARE(one.Names(), QStringList());
    }

    void AFileIsWholeOrNotThere()
    {
        const QString path = folder->path();
        for (const auto atLimit : {SIG_IGN, SIG_DFL}) {
            QVERIFY(!KeepWithLimit(path, 9, atLimit));
            QCOMPARE(SystemRecoveryFolder(path).Names(), QStringList());
        }
        const QStringList unfinished = QDir(path).entryList(QDir::Files);
        QCOMPARE(unfinished.size(), 1);
        const timespec longAgo[] = {{1000, 0}, {1000, 0}};
        ::utimensat(AT_FDCWD, qPrintable(path + '/' + unfinished.first()), longAgo, 0);
        QVERIFY(KeepWithLimit(path, 10, SIG_IGN));
        QCOMPARE(QDir(path).entryList(QDir::Files), SystemRecoveryFolder(path).Names());
    }

    void init() { folder = std::make_unique<QTemporaryDir>(); }

  private:
    std::unique_ptr<QTemporaryDir> folder;
};

QTEST_GUILESS_MAIN(tst_recovery)
#include "tst_recovery.moc"
