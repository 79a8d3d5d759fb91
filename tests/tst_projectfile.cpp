// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ClInputFile.h"
#include "ClOutputFile.h"
#include "DecimalList.h"
#include "FieldReader.h"
#include "MdSequenceEdition.h"
#include "ProjectFile.h"
#include "ProjectLosses.h"
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
    tables.AddSend({"Ping", "A\r", {}});
    tables.AddReceive({"Reply", "OK", {}, {}, 1, "got OK"});
}

QString Read(MdSequenceEdition &tables, const QByteArray &bytes)
{
    FieldReader fields(bytes);
    const Result read = ProjectFile::ReadProject(tables, fields);
    return read.Failed() ? read.Message() + u'|' + read.Cause() : QString();
}

} // namespace

class tst_projectfile : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void ReadsFields_data()
    {
        const Cases<QByteArray, QByteArrayList> row("text", "fields");
        row("nothing has no field", "", {});
        row("line ends may be mixed", "a\rb\nc\r\n\r\nd", {"a", "b", "c", "", "d"});
        row("the last line needs no field behind it", "a\r\n", {"a"});
        row("nothing between commas is an empty field", "a,,b", {"a", "", "b"});
        row("a comma before the line end adds an empty field", "a,\r\nb", {"a", "", "b"});
        row("a comma at the end adds none", "a,", {"a"});
        row("a line of blanks is empty, leading ones go", "   \r\n  a", {"", "a"});
        row("trailing blanks and tabs stay", "a  \r\n\tb ,c", {"a  ", "\tb ", "c"});
        row("quotes are dropped; commas and lines in them", "\"a,\r\nb\",c", {"a,\r\nb", "c"});
        row("blanks before a quote go, those behind it stay", "  \"  a \"", {"  a "});
        row("text behind the closing quote is dropped", "\"a\"xyz\r\nb", {"a", "b"});
        row("and the field ends at the comma there", "\"a\" x,b", {"a", "b"});
        row("an open quote runs to the end", "\"a\r\nb,c", {"a\r\nb,c"});
        row("empty quotes are an empty field", "\"\"\r\na", {"", "a"});
        row("a quote inside a field is text", "a\"b\"\r\nc", {"a\"b\"", "c"});
        row("byte 0 and byte 255 are text", {"\0a\xFF\r\nb", 6}, {{"\0a\xFF", 3}, "b"});
    }
    void ReadsFields()
    {
        QFETCH(const QByteArray, text);
        FieldReader reader(text);
        QByteArrayList fields;
        while (!reader.EndOfFile())
            fields << reader.ReadInfo();
        QTEST(fields, "fields");
        QCOMPARE(reader.ReadInfo(), QByteArray());
        QVERIFY(reader.EndOfFile());
    }

    void ReadsDecimalLists()
    {
        const QByteArray zero(1, '\0');
        const std::pair<QByteArrayList, QByteArray> lists[] = {
            {{"065 | 013", "65|13"}, "A\r"},
            {{"65abc", "  65", "+65", "6.5E+1", "650e-1", "65e+", "65."}, "A"},
            {{"", "abc", "-0.4", ".5", ".", "-", "1e-999", "&H41", "inf"}, zero},
            {{"065 |"}, "A" + zero},
            {{"6 5"}, "\x06"},
            {{"1.5", "2.5"}, "\x02"},
            {{"255.4"}, "\xFF"},
        };
        for (const auto &[texts, bytes] : lists)
            for (const QByteArray &text : texts)
                QVERIFY2(DecimalListToSeq(text) == bytes, text);
        for (const char *text : {"255.5", "-0.6", "1e999", "065 | 1e3"})
            QVERIFY2(!DecimalListToSeq(text), text);
    }

    void WritesAndReadsByteForByte()
    {
        QCOMPARE(ProjectFile::PathOf("/projects/", "ping"), Path);
        MdSequenceEdition saved;
        FillPingProject(saved);
        QVERIFY(!ProjectFile::SaveProject(saved, files, Path).Failed());
        QCOMPARE(disk.files[Path], PingProject);

        MdSequenceEdition tables;
        QVERIFY(!ProjectFile::LoadProject(tables, files, Path).Failed());
        disk.files[Path].clear();
        QVERIFY(!ProjectFile::SaveProject(tables, files, Path).Failed());
        QCOMPARE(disk.files[Path], PingProject);
    }

    void WritesWhatIsUnusual()
    {
        MdSequenceEdition tables;
        tables.AddSend({"a, \"b\" \xE4", {}, {}});
        tables.AddReceive({.Sequence = QByteArray("\0\xFF", 2), .Answer = -32768, .Active = -1});
        QVERIFY(!ProjectFile::SaveProject(tables, files, Path).Failed());
        QCOMPARE(disk.files[Path], QByteArray("VERSION\r\n3\r\n\r\n"
                                              "SEND\r\n0\r\na, \"b\" \xE4\r\n\r\n\r\n"
                                              "RECEIVE\r\n0\r\n\r\n000 | 255\r\n-32768\r\n-1\r\n"
                                              "COMMENT \r\n\r\n"));
        QVERIFY(!ProjectFile::LoadProject(tables, files, Path).Failed());
        QCOMPARE(tables.SendAt(0).Sequence, QByteArray(1, '\0')); // an empty one is one byte then
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
                        {"3", "0\r\nCOMMENT a,b\r\n", 0, "a"},
                        {"3", "0\r\nCOMMENTxab \r\n", 0, "ab "},
                        {"3", "0\r\nCOMMENT\r\n", 0, ""},
                        {"3", "0\r\ncomment a\r\n", 0, ""}};
        for (const auto &[version, rest, active, comment] : versions) {
            MdSequenceEdition tables;
            tables.AddReceive({.Comment = "before", .Active = 0});
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

    void JudgesFiles_data()
    {
        const Cases<QByteArray, QString, QByteArrayList> row("bytes", "failure", "names");
        const QByteArray a = "SEND\r\n0\r\na\r\n065\r\n\r\n";
        const QByteArray head = "VERSION\r\n3\r\n\r\n";
        const QString noProject =
            FirstLineMessage + QString("|Line 1: The first line is not VERSION");
        const QString noVersion =
            LoadMessage + QString("|Line 2: The version is not a whole 16-bit number");
        const auto bad = [&](const char *name, const char *record, const char *cause) {
            row(name, head + a + record, LoadMessage + QString("|Line ") + cause, {"a"});
        };
        row("zero bytes", "", noProject, {});
        row("another first line", "Version\r\n3\r\n", noProject, {});
        row("a blank first line", "\r\nVERSION\r\n3\r\n", noProject, {});
        row("blanks around first lines", "  VERSION \r\n 3 \r\n" + a, "", {"a"});
        row("bare line feeds", QByteArray(head + a).replace("\r\n", "\n"), "", {"a"});
        row("no version", "VERSION\r\n", noVersion, {});
        row("a version that is not whole", "VERSION\r\n3.0\r\n", noVersion, {});
        row("a version beyond 16 bits", "VERSION\r\n32768\r\n", noVersion, {});
        row("an unknown version without records", "VERSION\r\n4\r\n\r\n", "", {});
        row("an unknown version with a record", "VERSION\r\n4\r\n" + a,
            VersionMessage + QString("|Line 2: The version is 4"), {});
        row("version 0 with a receive record", "VERSION\r\n0\r\nRECEIVE\r\n0\r\n",
            VersionMessage + QString("|Line 2: The version is 0"), {});
        row("unknown lines between records", head + "x\r\n\r\nsend\r\nSEND \r\n  " + a, "", {"a"});
        row("the same index twice", head + a + "SEND\r\n0\r\nb\r\n066\r\n", "", {"b", ""});
        row("an index out of order", head + "SEND\r\n2\r\nc\r\n066\r\n" + a, "", {"a", ""});
        row("the last index", head + "SEND\r\n1024\r\nz\r\n065\r\n", "", {""});
        bad("an index behind the table", "SEND\r\n1025\r\nz\r\n065\r\n",
            "10: There is no record 1025");
        bad("a negative index", "SEND\r\n-1\r\nz\r\n065\r\n", "10: There is no record -1");
        bad("no index", "SEND\r\n", "10: An index is not a whole 16-bit number");
        bad("line ends of every kind", "\r\n\n\rSEND\rx",
            "13: An index is not a whole 16-bit number");
        bad("a byte out of range", "SEND\r\n1\r\nb\r\n256\r\n",
            "12: A byte is not in the range 0 to 255");
        bad("an answer beyond 16 bits", "RECEIVE\r\n0\r\nr\r\n065\r\n-32769\r\n1\r\n",
            "13: An answer is not a whole 16-bit number");
        bad("no active flag", "RECEIVE\r\n0\r\nr\r\n065\r\n1\r\n",
            "14: An active flag is not a whole 16-bit number");
        row("a comma in a name shifts the lines", head + "SEND\r\n0\r\na,066\r\n065\r\n", "",
            {"a"});
        row("as many records as fit", head + a.repeated(1025), "",
            QByteArrayList{"a"} + QByteArrayList(1024));
        row("one record more", head + a.repeated(1026),
            LoadMessage + QString("|Line 5129: There are too many records"),
            QByteArrayList{"a"} + QByteArrayList(1024));
    }
    void JudgesFiles()
    {
        QFETCH(const QByteArray, bytes);
        MdSequenceEdition tables;
        FillPingProject(tables);
        QTEST(Read(tables, bytes), "failure");
        QByteArrayList names;
        for (int i = 0; i < tables.SendCount(); ++i)
            names << tables.SendAt(i).Name;
        QTEST(names, "names");
        QCOMPARE(tables.ReceiveCount(), 0);
    }

    void WhatANameDoesIsTold_data()
    {
        const Cases<char, QByteArray, QByteArray, QString, QByteArray> row("list", "name", "bytes",
                                                                           "told", "read");
        const QString gives = "Because of %1, opening the saved project gives the name \"%2\"%3.";
        const QString loses =
            "Because of %1, opening the saved project loses this sequence and %2.";
        const QString takes = "The double quote in front takes all that follows in the saved file, "
                              "up to the next double quote, into this name.";
        const QString all = "those behind it, all receive sequences too";
        const QString bytes = ", with other bytes";
        const auto comma = QStringLiteral("the comma");
        const auto lineEnd = QStringLiteral("the line end");
        const auto quote = QStringLiteral("the double quote in front");

        row("plain", 'S', "on", "A", "", "on=A next=n / last=l,2,1,c");
        row("no bytes; that is not the name's fault", 'S', "on", "", "",
            "on=\\0 next=n / last=l,2,1,c");
        row("blanks", 'S', "  on", "A", gives.arg("the blank in front", "on", ""),
            "on=A next=n / last=l,2,1,c");
        row("a comma", 'S', "on, it", "A", gives.arg(comma, "on", bytes),
            "on=\\0 next=n / last=l,2,1,c");
        row("a comma, a number behind it", 'S', "on, 300", "A", loses.arg(comma, all),
            " /  failed");
        row("a line end", 'S', "on\r\nit", "A", gives.arg(lineEnd, "on", bytes),
            "on=\\0 next=n / last=l,2,1,c");
        row("quotes, a comma in them", 'S', "\"on, it\"", "A", gives.arg(quote, "on, it", ""),
            "on, it=A next=n / last=l,2,1,c");
        row("a comma behind quotes", 'S', "\"on\", 7", "A", gives.arg(comma, "on", bytes),
            "on=\a next=n / last=l,2,1,c");
        row("a quote", 'S', "\"on", "A", takes, "on\r\n065\r\n\r\nSEN=\\0 / ");
        row("a quote, another one further on", 'Q', "\"on", "A", takes,
            "on\r\n065\r\n\r\nSEN=n / last=l,2,1,c");
        row("a quote inside", 'S', "on \"it\"", "A", "", "on \"it\"=A next=n / last=l,2,1,c");

        row("plain, received", 'R', "on", "AB", "", "next=n / on=AB,1,1,done last=l,2,1,c");
        row("no bytes, received", 'R', "on", "", "", "next=n / on=\\0,1,1,done last=l,2,1,c");
        row("a comma, received", 'R', "on, it", "AB", loses.arg(comma, "those behind it"),
            "next=n /  failed");
        row("a comma, one byte received", 'R', "on, it", "A",
            gives.arg(comma, "on", ", with other bytes, answer, comment"),
            "next=n / on=\\0,65,1, last=l,2,1,c");
        row("a comma, no byte received", 'R', "on, it", "", loses.arg(comma, "those behind it"),
            "next=n /  failed");
        row("a line end, received", 'R', "on\nit", "AB", loses.arg(lineEnd, "those behind it"),
            "next=n /  failed");
        row("quotes, received", 'R', "\"on\"", "AB", gives.arg(quote, "on", ""),
            "next=n / on=AB,1,1,done last=l,2,1,c");
        row("a quote, received", 'R', "\"on", "AB", takes, "next=n /  failed");
    }
    void WhatANameDoesIsTold()
    {
        QFETCH(const char, list);
        QFETCH(const QByteArray, name);
        QFETCH(const QByteArray, bytes);
        const ReceiveSequence received = {
            .Name = name, .Sequence = bytes, .Answer = 1, .Comment = "done"};
        MdSequenceEdition tables;
        if (list != 'R')
            tables.AddSend({name, bytes, {}});
        tables.AddSend({list == 'Q' ? "ne\"xt" : "next", "n", {}});
        if (list == 'R')
            tables.AddReceive(received);
        tables.AddReceive({"last", "l", {}, {}, 2, "c"});
        QTEST(list == 'R' ? ProjectLosses::OfName(received)
                          : ProjectLosses::OfName(SendSequence{name, bytes, {}}),
              "told");
        QTEST(SavedAndRead(tables), "read");
    }

    void WhatACommentDoesIsTold_data()
    {
        const Cases<QByteArray, QString, QByteArray> row("comment", "told", "read");
        const QString because = "Because of %1, opening the saved project %2.";
        row("blanks and quotes, all well", "  \"on\"", "", " / on=A,0,1,  \"on\" last=l,0,1,");
        row("a comma", "on, it", because.arg("the comma", "gives the comment \"on\""),
            " / on=A,0,1,on last=l,0,1,");
        row("a line end", "on\nit", because.arg("the line end", "gives the comment \"on\""),
            " / on=A,0,1,on last=l,0,1,");
        row("a quote behind a comma", "on, \"it",
            because.arg("the comma", "loses the sequences behind this one"), " / on=A,0,1,on");
    }
    void WhatACommentDoesIsTold()
    {
        QFETCH(const QByteArray, comment);
        const ReceiveSequence record = {.Name = "on", .Sequence = "A", .Comment = comment};
        MdSequenceEdition tables;
        tables.AddReceive(record);
        tables.AddReceive({.Name = "last", .Sequence = "l"});
        QTEST(ProjectLosses::OfComment(record), "told");
        QTEST(SavedAndRead(tables), "read");
    }

    void EmptiesTheTablesBeforeAMissingFile()
    {
        MdSequenceEdition tables;
        FillPingProject(tables);
        const Result loaded = ProjectFile::LoadProject(tables, files, Path);
        QCOMPARE(loaded.Message(), LoadMessage);
        QCOMPARE(loaded.Cause(), "cannot be read");
        QCOMPARE(tables.SendCount() + tables.ReceiveCount(), 0);
        QVERIFY(tables.SendAt(0).Name.isEmpty());
    }

    void DoesNotTouchAFileThatIsInUse()
    {
        ClOutputFile log(files);
        QVERIFY(!log.OpenFile(Path).Failed());
        MdSequenceEdition tables;
        QCOMPARE(ProjectFile::LoadProject(tables, files, Path).Message(),
                 "Could not load project. File already in use.");
        QCOMPARE(ProjectFile::SaveProject(tables, files, Path).Message(), SaveMessage);
    }

    void SavesAllOrNothing()
    {
        MdSequenceEdition tables;
        FillPingProject(tables);
        for (qint64 room = 0; room <= PingProject.size(); ++room) {
            disk.files[Path] = "old";
            disk.room = room;
            const Result saved = ProjectFile::SaveProject(tables, files, Path);
            const bool fits = room == PingProject.size();
            QCOMPARE(saved.Failed(), !fits);
            QCOMPARE(saved.Message(), fits ? "" : SaveMessage);
            QCOMPARE(saved.Cause(), fits ? "" : "No space left on device");
            QCOMPARE(disk.files[Path], fits ? PingProject : QByteArray("old"));
            QCOMPARE(disk.unfinished, 0);
        }
    }

    void RefusesWhatItCouldNotRead()
    {
        const qint64 most = 64 * 1024 * 1024;
        const qint64 rest = QByteArray("VERSION\r\n3\r\n\r\nSEND\r\n0\r\n\r\n065\r\n\r\n").size();
        for (const qint64 size : {most, most + 1}) {
            MdSequenceEdition tables;
            tables.AddSend({QByteArray(size - rest, 'n'), "A", {}});
            disk.files[Path] = "old";
            QCOMPARE(ProjectFile::SaveProject(tables, files, Path).Message(),
                     size > most ? "The project is too large to be saved: a project file has at "
                                   "most 64 MiB. Nothing has been written."
                                 : "");
            QCOMPARE(disk.files[Path].size(), size > most ? 3 : size);
            disk.files[Path].resize(size);
            QCOMPARE(ClInputFile(files).OpenFile(Path).Failed(), size > most);
        }
    }

    void init() { disk.Reset(); }

  private:
    /// What comes back: sequences as name=bytes, received ones with answer, active flag, comment.
    QByteArray SavedAndRead(const MdSequenceEdition &saved)
    {
        MdSequenceEdition read;
        const bool written = !ProjectFile::SaveProject(saved, files, Path).Failed();
        const bool whole = !ProjectFile::LoadProject(read, files, Path).Failed();
        QByteArrayList sends, receives;
        for (int i = 0; i < read.SendCount(); ++i)
            sends << read.SendAt(i).Name.left(14) + '=' + read.SendAt(i).Sequence;
        for (int i = 0; i < read.ReceiveCount(); ++i) {
            const ReceiveSequence &is = read.ReceiveAt(i);
            receives << is.Name + '=' + is.Sequence + ',' + QByteArray::number(is.Answer) + ',' +
                            QByteArray::number(is.Active) + ',' + is.Comment;
        }
        const QByteArray all = sends.join(' ') + " / " + receives.join(' ');
        return QByteArray(all).replace('\0', "\\0") + (written && whole ? "" : " failed");
    }

    ScriptedDisk disk;
    OpenFiles files{disk};
};

QTEST_APPLESS_MAIN(tst_projectfile)
#include "tst_projectfile.moc"
