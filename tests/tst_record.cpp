// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CaptureBookmarks.h"
#include "CaptureEncoder.h"
#include "CaptureTraffic.h"
#include "MdRecord.h"
#include "OpenFiles.h"
#include "RecordSettings.h"
#include "RunState.h"
#include "SystemRecordFolder.h"
#include "support/Cases.h"
#include "support/FixedClock.h"
#include "support/MemoryRecordFolder.h"
#include "support/ScriptedPrompts.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QTemporaryFile>
#include <QTest>

#include <csignal>

#include <sys/stat.h>
#include <sys/wait.h>

using Kind = TrafficEvent::Kind;

namespace
{

constexpr qint64 Start = 1'700'000'000'000'000'000;

TrafficSession Ports(const QStringList &names, bool replay = false)
{
    TrafficSession session;
    session.replay = replay;
    for (const QString &name : names)
        session.ports.append({name, QStringLiteral("a device"), 9600});
    return session;
}

TrafficEvent Received(int number, const QByteArray &bytes, int channel = 0)
{
    TrafficEvent event;
    event.channel = channel;
    event.time = {number, Start + number};
    event.bytes = bytes;
    return event;
}

/// A capture of these ports, with one packet for each of the bytes.
QByteArray CaptureOf(const QStringList &ports, const QByteArrayList &packets, int from = 1)
{
    CaptureEncoder encoder(Ports(ports).ports, QStringLiteral("test"));
    QByteArray capture = encoder.Head();
    for (const QByteArray &bytes : packets)
        encoder.Append(capture, Received(from++, bytes));
    return capture;
}

/// Of a capture: for each event its port and its bytes, or how many are missing.
QByteArrayList Told(const QByteArray &capture)
{
    const ScriptedDisk::Reader input(capture);
    CaptureReader reader(input);
    if (reader.Begin().Failed())
        return {"no capture"};
    CaptureTraffic traffic(reader);
    QByteArrayList told;
    TrafficEvent event;
    CaptureReader::Step step = traffic.Next(event);
    for (; step == CaptureReader::Step::Packet; step = traffic.Next(event)) {
        told << reader.Ports()[event.channel].name.toLatin1() + ' ' +
                    (event.kind == Kind::Lost ? "lost " + QByteArray::number(event.count)
                                              : event.bytes);
    }
    return step == CaptureReader::Step::End ? told : told << "damaged";
}

/// Boxes stand until somebody answers.
class StandingPrompts final : public ScriptedPrompts
{
  public:
    void Ask(const MessagePrompt &prompt, const Answered &answered) override
    {
        if (laterAnswers.isEmpty())
            m_standing << answered;
        ScriptedPrompts::Ask(prompt, answered);
    }

  private:
    QList<Answered> m_standing;
};

/// A record of a program, and who works with it.
class Session
{
  public:
    std::shared_ptr<MemoryRecordFolder> folder;
    ScriptedDisk disk;
    OpenFiles files{disk};
    StandingPrompts prompts;
    FixedClock clock;
    RunState run;
    RecordSettings settings;
    QString lastFolder;
    MdRecord record;

    explicit Session(
        std::shared_ptr<MemoryRecordFolder> in = std::make_shared<MemoryRecordFolder>(),
        qint32 most = 1024)
        : folder(std::move(in)),
          settings{most},
          record({settings, lastFolder, files, prompts, clock, run}, folder, QStringLiteral("test"))
    {
        record.ApplySettings();
    }
    ~Session() { record.Finish(); }
    Q_DISABLE_COPY_MOVE(Session)

    void Open(const QStringList &ports, bool replay = false)
    {
        record.Consumer().Begin(Ports(ports, replay));
    }
    void Receive(const QByteArray &bytes, int channel = 0)
    {
        record.Consumer().Take(Received(++m_number, bytes, channel));
    }
    /// Waits until all of it is written.
    void Settle() { record.Keep(); }

    QByteArrayList Saved()
    {
        prompts.chosen = {"/a/saved.pcapng"};
        disk.files.clear();
        record.SaveCapture();
        return Told(disk.files.value("/a/saved.pcapng"));
    }

  private:
    int m_number = 0;
};

/// What a program says.
QByteArray Told(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    return process.waitForFinished() ? process.readAllStandardOutput() : "did not end";
}

int ModeOf(const QString &path)
{
    struct stat status = {};
    return ::stat(qPrintable(path), &status) == 0 ? int(status.st_mode & 07777) : -1;
}

} // namespace

/// What is kept of a session, and what becomes of it.
class tst_record : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void EverythingOfARunIsSaved()
    {
        Session session;
        const QList<CaptureBookmark> bookmarks = {{Start + 3, "\u03A9: 1"}, {-1, {}}};
        session.record.Notes = [&bookmarks] {
            return QStringList{CaptureBookmarks::CommentOf(bookmarks[0]), "bookmark at 7: it",
                               "bookmark at 2023-11-14T22:13:20.00000000xZ", "a comment",
                               CaptureBookmarks::CommentOf(bookmarks[1])};
        };
        QVERIFY(session.Saved() == QByteArrayList{"no capture"});
        QVERIFY(session.prompts.shown.last().text.contains("nothing has been recorded"));
        session.Open({"COM1"});
        session.Receive("one");
        session.record.Consumer().End();
        session.Open({"COM9"}, true);
        session.Receive("replayed");
        session.record.Consumer().End();
        session.Open({"COM3", "COM4"});
        session.Receive("two");
        session.Receive("three", 1);
        session.Open({"COM1"});
        session.Receive("four");
        session.Settle();
        QCOMPARE(session.Saved(),
                 (QByteArrayList{"COM1 one", "COM3 two", "COM4 three", "COM1 four"}));
        QCOMPARE(session.prompts.asked.last().name, "capture-20261105-071349.pcapng");
        QCOMPARE(session.lastFolder, "/a/");
        QCOMPARE(CaptureBookmarks::In(ScriptedDisk::Reader(session.disk.files["/a/saved.pcapng"])),
                 bookmarks);

        // Other programs tell the ports apart, in a copy with other bookmarks, too.
        const auto saved =
            std::make_shared<ScriptedDisk::Reader>(session.disk.files["/a/saved.pcapng"]);
        session.prompts.chosen = {"/a/copy"};
        QVERIFY(session.record.SaveCopy({saved, {{Start + 4, "new"}}}, "saved.pcapng"));
        QCOMPARE(session.prompts.asked.last().name, "saved with bookmarks.pcapng");
        const QByteArray packets = "COM1\t6f6e65\t1700000000.000000001\n"
                                   "COM3\t74776f\t1700000000.000000003\n"
                                   "COM4\t7468726565\t1700000000.000000004\n"
                                   "COM1\t666f7572\t1700000000.000000005\n";
        for (const char *path : {"/a/saved.pcapng", "/a/copy.pcapng"}) {
            QTemporaryFile file;
            QVERIFY(file.open());
            file.write(session.disk.files[path]);
            file.close();
            QCOMPARE(
                Told("tshark", {"-r", file.fileName(), "-T", "fields", "-e", "frame.interface_name",
                                "-e", "data.data", "-e", "frame.time_epoch"}),
                packets);
            const QByteArray comments = Told("capinfos", {"-k", file.fileName()});
            const bool isCopy = path == QByteArray("/a/copy.pcapng");
            QVERIFY2(comments.contains("20.000000004Z: new") == isCopy, comments);
            QVERIFY2(comments.contains(": 1") != isCopy, comments);
            QVERIFY2(comments.contains("a comment"), comments);
        }
        session.prompts.answers = {PromptAnswer::No};
        session.prompts.chosen = {"/a/saved.pcapng"};
        session.record.SaveCapture();
        QVERIFY(session.prompts.shown.last().text.contains("already exists"));
        session.prompts.beforeWork = [&] { session.prompts.atWork->Cancel(); };
        QCOMPARE(session.Saved(), QByteArrayList{"no capture"});
        QCOMPARE(session.disk.unfinished, 0);
    }

    void TheBoundHoldsInABurst_data()
    {
        const Cases<int, int> row("most", "packet");
        row("small packets", 1, 500);
        row("packets as large as a segment", 1, 65536);
        row("larger segments", 8, 20000);
    }

    /// Leftovers and what others have finished go first if they are older; what is held stays.
    void TheBoundHoldsInABurst()
    {
        QFETCH(int, most);
        QFETCH(int, packet);
        const qint64 bound = qint64(most) << 20;
        const auto folder = std::make_shared<MemoryRecordFolder>();
        folder->Put("left", 1, QByteArray(50000, 'x'));
        folder->Put("other", 7, QByteArray(50000, 'x'));
        folder->Put("other", 8, QByteArray(50000, 'x'));
        folder->held << MemoryRecordFolder::Key("other", 8);
        Session session(folder, most);
        session.Open({"COM1"});
        for (qint64 sent = 0; sent < 3 * bound; sent += packet)
            session.Receive(QByteArray::number(sent).leftJustified(packet, '.'));
        session.Settle();
        QVERIFY2(folder->most <= bound, qPrintable(QString::number(folder->most)));
        QVERIFY(folder->Size() > bound * 2 / 3);
        QVERIFY(!folder->files.contains({"left", 1}) && !folder->files.contains({"other", 7}));
        QVERIFY(folder->files.contains({"other", 8}));

        const RecordState state = session.record.State();
        QVERIFY(state.taken > bound);
        QByteArrayList told = session.Saved(); // large packets are several chunks
        told.removeIf([](const QByteArray &each) { return each.startsWith("COM1 ."); });
        const qint64 last = (3 * bound - 1) / packet * packet;
        for (qsizetype i = 0; i < told.size(); ++i)
            QCOMPARE(told[told.size() - 1 - i].split('.')[0],
                     "COM1 " + QByteArray::number(last - i * packet));
        QVERIFY(session.prompts.notices.last().text.contains("are gone"));
        QVERIFY(session.disk.files["/a/saved.pcapng"].contains("are gone"));

        // A smaller bound is in force at once, if the user wants it; none keeps nothing.
        session.prompts.answers = {PromptAnswer::No, PromptAnswer::Yes};
        session.record.ChangeBound(0);
        QCOMPARE(session.settings.MostMegabytes, most);
        QVERIFY(session.prompts.shown.last().text.endsWith("it, and keep nothing from now on?"));
        session.record.ChangeBound(0);
        QTRY_COMPARE(folder->Segments().size(), 1);
        session.Receive("not kept");
        session.Settle();
        QCOMPARE(folder->Segments().size(), 1);
        session.record.ChangeBound(1);
        QTRY_COMPARE(session.record.State().bound, 1 << 20);
        session.Receive("kept");
        session.Settle();
        QCOMPARE(session.Saved(), QByteArrayList{"COM1 kept"});
    }

    void AFullDiskEndsTheRecordOnce()
    {
        Session session;
        session.Open({"COM1", "COM2"});
        session.Receive("kept");
        session.Settle();
        session.folder->room = 0;
        for (const int channel : {0, 1, 1}) {
            session.Receive("lost", channel);
            session.Settle();
        }
        QTRY_COMPARE(session.prompts.notices.size(), 1);
        QVERIFY(session.prompts.notices.first().text.contains("No space left on device"));
        QCOMPARE(session.Saved(), (QByteArrayList{"COM1 kept", "COM1 lost 4", "COM2 lost 8"}));
        session.folder->room = ScriptedDisk::Plenty;
        session.Receive("lost", 1);
        session.Open({"COM3"}); // tries again
        session.Receive("new");
        session.Settle();
        QCOMPARE(session.Saved(), (QByteArrayList{"COM1 kept", "COM3 lost 16", "COM3 new"}));
        QCOMPARE(session.prompts.notices.size(),
                 2); // that, and that it is missing in what was saved
    }

    void ADeletedSegmentIsFollowedByAnother()
    {
        Session session;
        session.Open({"COM1"});
        session.Receive("deleted");
        session.Settle();
        session.folder->files.clear();
        session.Receive("kept");
        session.Settle();
        QCOMPARE(session.Saved(), QByteArrayList{"COM1 kept"});
        QVERIFY(session.record.State().taken > 0);
    }

    void TheEndTakesTheRecordAwayUnlessItCameUnasked()
    {
        for (const bool unasked : {false, true}) {
            const auto folder = std::make_shared<MemoryRecordFolder>();
            {
                Session session(folder);
                session.Open({"COM1"});
                session.Receive("bytes");
                if (unasked)
                    session.record.Keep();
                QVERIFY(session.record.Finish());
            }
            QCOMPARE(folder->files.size(), unasked ? 1 : 0);
        }
    }

    void TheNextStartOffersWhatWasLeft_data()
    {
        using Answers = QList<PromptAnswer>;
        const Cases<Answers, QStringList, bool, QStringList, int> row("answers", "chosen", "full",
                                                                      "saved", "left");
        const QStringList both = {"/a/x-1.pcapng", "/a/x-2.pcapng"};
        row("not answered", {}, {}, false, {}, 3);
        row("yes", {PromptAnswer::Yes}, {"/a/x"}, false, both, 0);
        row("yes, but no file", {PromptAnswer::Yes}, {}, false, {}, 3);
        row("yes, but the disk is full", {PromptAnswer::Yes}, {"/a/x"}, true, {}, 3);
        row("no", {PromptAnswer::No}, {}, false, {}, 0);
        row("not now", {PromptAnswer::Cancel}, {}, false, {}, 3);
    }

    void TheNextStartOffersWhatWasLeft()
    {
        const auto folder = std::make_shared<MemoryRecordFolder>();
        const QByteArray second = CaptureOf({"COM1"}, {"two", "torn"}, 2);
        folder->Put("a", 4, CaptureOf({"COM1"}, {"one"}));
        folder->Put("a", 5, second.chopped(9));
        folder->Put("b", 1, CaptureOf({"COM2"}, {"three"}));
        folder->Put("empty", 1, CaptureOf({"COM2"}, {}));
        folder->Put("lives", 1, CaptureOf({"COM2"}, {"other"}));
        folder->held << MemoryRecordFolder::Key("lives", 1);
        Session session(folder);
        QFETCH(QList<PromptAnswer>, answers);
        QFETCH(QStringList, chosen);
        QFETCH(QStringList, saved);
        session.prompts.laterAnswers = answers;
        session.prompts.chosen = chosen;
        QFETCH(bool, full);
        session.disk.room = full ? 0 : ScriptedDisk::Plenty;
        session.record.Offer();
        QTRY_COMPARE(session.prompts.questions.size(), 1);
        QCOMPARE(session.prompts.questions[0].text,
                 "The last session ended unexpectedly. Save its capture?");
        QTRY_COMPARE(session.disk.files.keys(), saved);
        QTRY_COMPARE(folder->Segments().size() - 1, Left());
        if (!saved.isEmpty()) {
            QCOMPARE(Told(session.disk.files[saved[0]]), (QByteArrayList{"COM1 one", "COM1 two"}));
            QVERIFY(session.disk.files[saved[0]].contains("beginning of the record is missing"));
            QCOMPARE(Told(session.disk.files[saved[1]]), QByteArrayList{"COM2 three"});
        }

        // While the question stands, nobody else asks it.
        Session other(folder);
        other.record.Offer();
        QVERIFY(other.record.Finish());
        QCoreApplication::processEvents();
        QCOMPARE(other.prompts.questions.size(), answers.isEmpty() || Left() == 0 ? 0 : 1);
    }

    void FilesAreTheUsersAlone()
    {
        const QTemporaryDir place;
        const QString path = place.filePath("record");
        QDir().mkpath(path);
        ::chmod(qPrintable(path), 0755);
        SystemRecordFolder one(path), other(path);
        const RecordFolder::Name name = {"a", 1};
        auto file = one.Make(name, "head").file;
        QVERIFY(file && !file->Append(" and more").Failed());
        const QString segment = path + "/session-a-000001.pcapng";
        QCOMPARE(ModeOf(path), 0700);
        QCOMPARE(ModeOf(segment), 0600);
        QVERIFY(!other.Take(name) && other.Segments().first().held);
        QCOMPARE(other.Segments().first().size, 13);
        file.reset();
        QVERIFY(!other.Segments().first().held);

        // Neither another's file nor what is none.
        QVERIFY(QFile::link(segment, path + "/session-link-000001.pcapng"));
        ::mkfifo(qPrintable(path + "/session-pipe-000001.pcapng"), 0600);
        for (const char *session : {"link", "pipe"}) {
            QVERIFY(!other.Take({session, 1}));
            QVERIFY(!other.Open({session, 1}).device);
        }
        QCOMPARE(other.Segments().size(), 1);
        const auto turn = one.TakeTurn();
        QVERIFY(turn && !other.TakeTurn());
        file = other.Take(name);
        file->Remove();
        QVERIFY(file->Append("x").Number() == FileMissing);
        QVERIFY(QDir().mkpath(place.filePath("elsewhere")));
        QVERIFY(QFile::link(place.filePath("elsewhere"), place.filePath("folder")));
        QVERIFY(SystemRecordFolder(place.filePath("folder")).Make(name, "x").result.Failed());
    }

    void WhatAKilledProgramHadIsLeft()
    {
        const QTemporaryDir place;
        const pid_t child = ::fork();
        if (child == 0) {
            auto made = SystemRecordFolder(place.path())
                            .Make({"a", 1}, CaptureOf({"COM1"}, {"one", "two"}));
            ::raise(SIGKILL);
        }
        ::waitpid(child, nullptr, 0);
        const auto folder = std::make_shared<SystemRecordFolder>(place.path());
        const auto left = LeftRecord::TakeAll(folder);
        QCOMPARE(left.size(), 1);
        QCOMPARE(LeftRecord::TakeAll(folder).size(), 0);
        QCOMPARE(left[0]->Begins(), Start + 1);
        QCOMPARE(left[0]->Copy().parts.size(), 1);
        left[0]->Remove();
        QCOMPARE(folder->Segments().size(), 0);
    }

  private:
    static int Left()
    {
        QFETCH(int, left);
        return left;
    }
};

QTEST_GUILESS_MAIN(tst_record)
#include "tst_record.moc"
