// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "project/ClOutputFile.h"
#include "project/FieldReader.h"
#include "project/ProjectFile.h"
#include "sequences/MdSequenceEdition.h"
#include "support/Cases.h"
#include "support/ScriptedDisk.h"

namespace
{

const QByteArray PingProject = "VERSION\r\n3\r\n\r\n"
                               "SEND\r\n0\r\nPing\r\n065 | 013\r\n\r\n"
                               "RECEIVE\r\n0\r\nReply\r\n079 | 075\r\n1\r\n1\r\n"
                               "COMMENT got OK\r\n\r\n";
const QString Path = QStringLiteral("/projects/ping.sqx");

const char *const SaveMessage = "Error while saving the project file";
const char *const LoadMessage = "Errow while loading the project";
const char *const FirstLineMessage = "Error while loading the project";
const char *const VersionMessage = "Unknown project file version";

void FillPingProject(MdSequenceEdition &tables)
{
    tables.EditSend(0).Name = "Ping";
    tables.EditSend(0).Sequence = "A\r";
    tables.SetSendCount(1);
    ReceiveSequence &reply = tables.EditReceive(0);
    reply.Name = "Reply";
    reply.Sequence = "OK";
    reply.Answer = 1;
    reply.Comment = "got OK";
    tables.SetReceiveCount(1);
}

QString Read(MdSequenceEdition &tables, const QByteArray &bytes)
{
    FieldReader fields(bytes);
    const ProjectFile::Result failure = ProjectFile::ReadProject(tables, fields);
    return failure ? failure->message : QString();
}

} // namespace

class tst_projectfile : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void WritesAndReadsByteForByte()
    {
        QCOMPARE(ProjectFile::PathOf("/projects/", "ping"), Path);
        QCOMPARE(ProjectFile::PathOf("/projects/ping", QString()), Path);
        MdSequenceEdition saved;
        FillPingProject(saved);
        QVERIFY(!ProjectFile::SaveProject(saved, files, Path));
        QCOMPARE(disk.files[Path], PingProject);

        MdSequenceEdition tables;
        QVERIFY(!ProjectFile::LoadProject(tables, files, Path));
        QCOMPARE(tables.SendCount(), 1);
        QCOMPARE(tables.SendAt(0).Name, "Ping");
        QCOMPARE(tables.SendAt(0).Sequence, "A\r");
        QCOMPARE(tables.ReceiveCount(), 1);
        const ReceiveSequence &reply = tables.ReceiveAt(0);
        QCOMPARE(reply.Name, "Reply");
        QCOMPARE(reply.Sequence, "OK");
        QCOMPARE(reply.Answer, qint16(1));
        QCOMPARE(reply.Active, qint16(1));
        QCOMPARE(reply.Comment, "got OK");
    }

    void WritesWhatIsUnusual()
    {
        MdSequenceEdition tables;
        tables.EditSend(0).Name = "a, \"b\" \xE4";
        tables.SetSendCount(1);
        tables.EditReceive(0).Sequence = QByteArray("\0\xFF", 2);
        tables.EditReceive(0).Answer = -32768;
        tables.EditReceive(0).Active = -1;
        tables.SetReceiveCount(1);
        QVERIFY(!ProjectFile::SaveProject(tables, files, Path));
        QCOMPARE(disk.files[Path], QByteArray("VERSION\r\n3\r\n\r\n"
                                              "SEND\r\n0\r\na, \"b\" \xE4\r\n\r\n\r\n"
                                              "RECEIVE\r\n0\r\n\r\n000 | 255\r\n-32768\r\n-1\r\n"
                                              "COMMENT \r\n\r\n"));
    }

    void AnEmptySequenceComesBackAsOneByte()
    {
        MdSequenceEdition tables;
        tables.EditSend(0).Name = "empty";
        tables.SetSendCount(1);
        ProjectFile::SaveProject(tables, files, Path);
        QVERIFY(!ProjectFile::LoadProject(tables, files, Path));
        QCOMPARE(tables.SendAt(0).Sequence, QByteArray(1, '\0'));
    }

    void ReadsEveryVersion()
    {
        const struct {
            QByteArray version;
            QByteArray rest;
            int active;
            QByteArray comment;
        } versions[] = {{"1", "", 1, "before"}, // is active and keeps the place's comment
                        {"2", "0\r\n", 0, "before"},
                        {"3", "0\r\nCOMMENT a\r\n", 0, "a"}};
        for (const auto &[version, rest, active, comment] : versions) {
            MdSequenceEdition tables;
            tables.EditReceive(0).Comment = "before";
            tables.EditReceive(0).Active = 0;
            tables.SetReceiveCount(1);
            QCOMPARE(Read(tables, "VERSION\r\n" + version +
                                      "\r\n\r\nSEND\r\n0\r\nx\r\n065\r\n\r\n" +
                                      "RECEIVE\r\n0\r\ny\r\n066\r\n-7\r\n" + rest + "\r\n"),
                     QString());
            QCOMPARE(tables.SendAt(0).Sequence, "A");
            QCOMPARE(tables.ReceiveAt(0).Sequence, "B");
            QCOMPARE(tables.ReceiveAt(0).Answer, qint16(-7));
            QCOMPARE(int(tables.ReceiveAt(0).Active), active);
            QCOMPARE(tables.ReceiveAt(0).Comment, comment);
        }
    }

    void ReadsComments()
    {
        const std::pair<QByteArray, QByteArray> lines[] = {
            {"COMMENT ", ""}, {"COMMENT", ""},   {"COMMENTx", ""},     {"COMMENT a", "a"},
            {"", ""},         {"comment a", ""}, {"COMMENT a,b", "a"}, {"COMMENTxab ", "ab "}};
        for (const auto &[line, comment] : lines) {
            MdSequenceEdition tables;
            tables.EditReceive(0).Comment = "before";
            QCOMPARE(Read(tables,
                          "VERSION\r\n3\r\nRECEIVE\r\n0\r\ny\r\n066\r\n0\r\n1\r\n" + line + "\r\n"),
                     QString());
            QCOMPARE(tables.ReceiveAt(0).Comment, comment);
        }
    }

    void JudgesFiles_data()
    {
        const Cases<QByteArray, QString, QByteArrayList> row("bytes", "message", "names");
        const QByteArray a = "SEND\r\n0\r\na\r\n065\r\n\r\n";
        const QByteArray head = "VERSION\r\n3\r\n\r\n";
        row("zero bytes", "", FirstLineMessage, {});
        row("another first line", "Version\r\n3\r\n", FirstLineMessage, {});
        row("a blank first line", "\r\nVERSION\r\n3\r\n", FirstLineMessage, {});
        row("blanks around the first line", "  VERSION \r\n3\r\n" + a, "", {"a"});
        row("bare line feeds", QByteArray(head + a).replace("\r\n", "\n"), "", {"a"});
        row("no records", head, "", {});
        row("no version", "VERSION\r\n", LoadMessage, {});
        row("a version that is no number", "VERSION\r\n3x\r\n", LoadMessage, {});
        row("a version that is not whole", "VERSION\r\n3.0\r\n", LoadMessage, {});
        row("a version beyond 16 bits", "VERSION\r\n32768\r\n", LoadMessage, {});
        row("blanks around the version", "VERSION\r\n 3 \r\n" + a, "", {"a"});
        row("an unknown version without records", "VERSION\r\n4\r\n\r\n", "", {});
        row("an unknown version with a record", "VERSION\r\n4\r\n" + a, VersionMessage, {});
        row("version 0 with a record", "VERSION\r\n0\r\n" + a, VersionMessage, {});
        row("an unknown version with a receive record", "VERSION\r\n-1\r\nRECEIVE\r\n0\r\n",
            VersionMessage, {});
        row("unknown lines between records", head + "x\r\n\r\nsend\r\nSEND \r\n" + a, "", {"a"});
        row("blanks before a keyword", head + "  " + a, "", {"a"});
        row("the same index twice", head + a + "SEND\r\n0\r\nb\r\n066\r\n", "", {"b", ""});
        row("an index out of order", head + "SEND\r\n2\r\nc\r\n066\r\n" + a, "", {"a", ""});
        row("the last index", head + "SEND\r\n1024\r\nz\r\n065\r\n", "", {""});
        row("an index behind the table", head + a + "SEND\r\n1025\r\nz\r\n065\r\n", LoadMessage,
            {"a"});
        row("a negative index", head + a + "SEND\r\n-1\r\nz\r\n065\r\n", LoadMessage, {"a"});
        row("no index", head + a + "SEND\r\n", LoadMessage, {"a"});
        row("an index that is a word", head + a + "SEND\r\nx\r\nz\r\n065\r\n", LoadMessage, {"a"});
        row("a byte out of range", head + a + "SEND\r\n1\r\nb\r\n256\r\n", LoadMessage, {"a"});
        row("a comma in a name shifts the lines", head + "SEND\r\n0\r\na,066\r\n065\r\n", "",
            {"a"});
        row("a quoted name loses its quotes", head + "SEND\r\n0\r\n\"a,b\" c\r\n065\r\n", "",
            {"a,b"});
        row("an answer that is no number", head + a + "RECEIVE\r\n0\r\nr\r\n065\r\n\r\n1\r\n",
            LoadMessage, {"a"});
        row("an answer beyond 16 bits", head + a + "RECEIVE\r\n0\r\nr\r\n065\r\n-32769\r\n1\r\n",
            LoadMessage, {"a"});
        row("no active flag", head + a + "RECEIVE\r\n0\r\nr\r\n065\r\n1\r\n", LoadMessage, {"a"});
        row("as many records as fit", head + a.repeated(1025), "",
            QByteArrayList{"a"} + QByteArrayList(1024));
        row("one record more", head + a.repeated(1026), LoadMessage,
            QByteArrayList{"a"} + QByteArrayList(1024));
    }
    void JudgesFiles()
    {
        QFETCH(const QByteArray, bytes);
        MdSequenceEdition tables;
        FillPingProject(tables);
        QTEST(Read(tables, bytes), "message");
        QByteArrayList names;
        for (int i = 0; i < tables.SendCount(); ++i)
            names << tables.SendAt(i).Name;
        QTEST(names, "names");
        QCOMPARE(tables.ReceiveCount(), 0);
    }

    void EmptiesTheTablesBeforeAMissingFile()
    {
        MdSequenceEdition tables;
        FillPingProject(tables);
        const auto failure = ProjectFile::LoadProject(tables, files, Path);
        QCOMPARE(failure->message, QLatin1String(LoadMessage));
        QVERIFY(!failure->cause.isEmpty());
        QCOMPARE(tables.SendCount() + tables.ReceiveCount(), 0);
        QVERIFY(tables.SendAt(0).Name.isEmpty());
    }

    void DoesNotTouchAFileThatIsInUse()
    {
        disk.files[Path] = PingProject;
        ClOutputFile log(files);
        log.OpenFile(Path);
        MdSequenceEdition tables;
        QCOMPARE(ProjectFile::LoadProject(tables, files, Path)->message,
                 "Could not load project. File already in use.");
        QCOMPARE(ProjectFile::SaveProject(tables, files, Path)->message,
                 QLatin1String(SaveMessage));
    }

    void SavesAllOrNothing()
    {
        MdSequenceEdition tables;
        FillPingProject(tables);
        for (qint64 room = 0; room <= PingProject.size(); ++room) {
            disk.files[Path] = "old";
            disk.room = room;
            const auto failure = ProjectFile::SaveProject(tables, files, Path);
            const bool fits = room == PingProject.size();
            QCOMPARE(failure.has_value(), !fits);
            QCOMPARE(disk.files[Path], fits ? PingProject : QByteArray("old"));
            QCOMPARE(disk.unfinished, 0);
            if (failure) {
                QCOMPARE(failure->message, QLatin1String(SaveMessage));
                QCOMPARE(failure->cause, "No space left on device");
            }
        }
    }

    void init()
    {
        disk.files.clear();
        disk.room = ScriptedDisk::Plenty;
    }

  private:
    ScriptedDisk disk;
    OpenFiles files{disk};
};

QTEST_APPLESS_MAIN(tst_projectfile)
#include "tst_projectfile.moc"
