// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ClInputFile.h"
#include "ClOutputFile.h"
#include "support/Cases.h"
#include "support/ScriptedDisk.h"

#include <functional>

namespace
{

const QString Path = QStringLiteral("file.txt");

} // namespace

class tst_outputfile : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void StartsZonesOf14Columns_data()
    {
        const Cases<QByteArray, int, int> row("before", "count", "blanks");
        row("from the line's start", "", 1, 14);
        row("from the last column of a zone", "abcdefghijklm", 1, 1);
        row("from a zone's start", "abcdefghijklmn", 1, 14);
        row("twice from inside a zone", "abc", 2, 25);
        row("after a line end", "abcdef\r\nab", 1, 12);
        row("after much behind a line end", "a\n" + QByteArray(4096, 'b'), 1, 6);
        row("after more than is kept", "a\r" + QByteArray(70001, 'b'), 1, 13);
        row("not at all", "abc", 0, 0);
        row("less than that", "abc", -5, 0);
    }
    void StartsZonesOf14Columns()
    {
        QFETCH(const QByteArray, before);
        QFETCH(const int, count);
        QFETCH(const int, blanks);
        for (const qsizetype piece : {qsizetype(1), qsizetype(100000)}) {
            QVERIFY(!file.OpenFile(Path).Failed());
            for (qsizetype i = 0; i < before.size(); i += piece) // kept from write to write
                file.WriteInFile(before.mid(i, piece));
            file.WriteTabInFile(qint16(count));
            file.NextLine();
            file.WriteTabInFile(1);
            file.CloseFile();
            QCOMPARE(disk.files[Path],
                     before + QByteArray(blanks, ' ') + "\r\n" + QByteArray(14, ' '));
        }
    }

    void HandsOverAtFlush()
    {
        file.WriteInFile("lost, as it is closed");
        QVERIFY(!file.Flush().Failed());
        QVERIFY(!file.OpenFile(Path).Failed());
        file.WriteInFile("received");
        QCOMPARE(disk.files[Path], "");
        QVERIFY(!file.Flush().Failed());
        QCOMPARE(disk.files[Path], "received");
    }

    void TellsOfAFullDiskAndGoesOnWithoutAGap()
    {
        QVERIFY(!file.OpenFile(Path).Failed());
        disk.room = 4;
        file.WriteInFile("first line\r\n");
        QVERIFY(file.Flush().Failed());
        QCOMPARE(file.State().Cause(), "No space left on device");
        file.WriteInFile("second\r\n");
        QVERIFY(file.State().Failed());
        QCOMPARE(disk.files[Path], "firs");
        disk.room = ScriptedDisk::Plenty;
        file.WriteInFile("third\r\n");
        QVERIFY(!file.State().Failed());
        QCOMPARE(disk.files[Path], "first line\r\nsecond\r\nthird\r\n");
    }

    void HoldsBackAMebibyteAndNoMore()
    {
        QVERIFY(!file.OpenFile(Path).Failed());
        disk.room = 0;
        for (int i = 0; i < 2000; ++i)
            file.WriteInFile(QByteArray(1000, 'x'));
        QVERIFY(file.State().Failed());
        disk.room = ScriptedDisk::Plenty;
        file.WriteInFile("end");
        // 1048 texts fit into 1048576 bytes; the others are lost whole.
        QCOMPARE(disk.files[Path], QByteArray(1048 * 1000, 'x') + "end");
    }

    void TellsOfAFailureWhileClosing()
    {
        QVERIFY(!file.OpenFile(Path).Failed());
        disk.room = 2;
        file.WriteInFile("text");
        file.CloseFile();
        QVERIFY(!file.IsOpen() && file.State().Failed());
        QVERIFY(!file.OpenFile(Path).Failed() && !file.State().Failed());
    }

    void KeepsTheOldFileUntilTheNewOneIsWhole()
    {
        Replace("given up");
        file.CloseFile();
        QCOMPARE(disk.files[Path], "old");
        Replace("new");
        QVERIFY(!file.Flush().Failed());
        QCOMPARE(disk.files[Path], "old");
        QVERIFY(!file.Commit().Failed());
        QCOMPARE(disk.files[Path], "new");
        QCOMPARE(disk.unfinished, 0);
        QVERIFY(file.Commit().Failed());
    }

    void ReplacesNothingByHalfAFile()
    {
        const std::pair<const char *, std::function<void()>> accidents[] = {
            {"the disk is full", [this] { disk.room = 2; }},
            {"it fails to hold what it took", [this] { disk.failSync = true; }},
            {"bytes are missing in the file", [this] { disk.vanishing = 1; }},
            {"the name cannot be taken over", [this] { disk.failTakePlace = true; }},
        };
        for (const auto &[name, happens] : accidents) {
            init();
            happens();
            Replace("new");
            const Result committed = file.Commit();
            QVERIFY2(committed.Failed() && !committed.Cause().isEmpty(), name);
            QCOMPARE(disk.files[Path], "old");
            QVERIFY(!file.IsOpen() && disk.unfinished == 0);
        }
    }

    void IsAloneWithItsFile()
    {
        QVERIFY(!file.OpenFile(Path).Failed());
        ClOutputFile second(files);
        ClInputFile input(files);
        QCOMPARE(second.OpenForReplacing(Path).Number(), FileAlreadyOpen);
        QCOMPARE(input.OpenFile(Path).Number(), FileAlreadyOpen);
        file.CloseFile();
        QVERIFY(!input.OpenFile(Path).Failed());
        QCOMPARE(file.OpenFile(Path).Number(), FileAlreadyOpen);
        input.CloseFile();
        QVERIFY(!file.OpenFile(Path).Failed());
    }

    void init()
    {
        file.CloseFile();
        disk.Reset();
    }

  private:
    void Replace(const char *text)
    {
        disk.files[Path] = "old";
        QVERIFY(!file.OpenForReplacing(Path).Failed());
        file.WriteInFile(text);
    }

    ScriptedDisk disk;
    OpenFiles files{disk};
    ClOutputFile file{files};
};

QTEST_APPLESS_MAIN(tst_outputfile)
#include "tst_outputfile.moc"
