// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "project/ClInputFile.h"
#include "project/ClOutputFile.h"
#include "support/ScriptedDisk.h"

#include <QTest>

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
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("blanks");
        QTest::newRow("from the line's start") << QByteArray() << 1 << 14;
        QTest::newRow("from inside a zone") << QByteArray("abc") << 1 << 11;
        QTest::newRow("from the last column of a zone") << QByteArray("abcdefghijklm") << 1 << 1;
        QTest::newRow("from a zone's start") << QByteArray("abcdefghijklmn") << 1 << 14;
        QTest::newRow("twice") << QByteArray("abc") << 2 << 25;
        QTest::newRow("after a line end") << QByteArray("abcdef\r\nab") << 1 << 12;
        QTest::newRow("not at all") << QByteArray("abc") << 0 << 0;
        QTest::newRow("less than that") << QByteArray("abc") << -5 << 0;
    }
    void StartsZonesOf14Columns()
    {
        QFETCH(const QByteArray, before);
        QFETCH(const int, count);
        QFETCH(const int, blanks);
        file.OpenFile(Path);
        file.WriteInFile(before);
        file.WriteTabInFile(qint16(count));
        file.NextLine();
        file.CloseFile();
        QCOMPARE(disk.files[Path], before + QByteArray(blanks, ' ') + "\r\n");
    }

    void KeepsTheColumnFromWriteToWrite()
    {
        file.OpenFile(Path);
        file.WriteInFile("ab");
        file.WriteInFile("c");
        file.WriteTabInFile(1);
        file.WriteInFile("d");
        file.WriteTabInFile(1);
        file.NextLine();
        file.WriteTabInFile(1);
        file.CloseFile();
        QCOMPARE(disk.files[Path], "abc" + QByteArray(11, ' ') + "d" + QByteArray(13, ' ') +
                                       "\r\n" + QByteArray(14, ' '));
    }

    void HandsOverAtFlush()
    {
        QVERIFY(!file.OpenFile(Path));
        file.WriteInFile("received");
        QCOMPARE(disk.files[Path], QByteArray());
        QVERIFY(!file.Flush());
        QCOMPARE(disk.files[Path], QByteArray("received"));
        QVERIFY(!file.Failure());
    }

    void TellsOfAFullDiskAndGoesOnWithoutAGap()
    {
        file.OpenFile(Path);
        disk.room = 4;
        file.WriteInFile("first line\r\n");
        QVERIFY(file.Flush());
        QCOMPARE(file.Failure()->description, QStringLiteral("No space left on device"));
        file.WriteInFile("second\r\n");
        QVERIFY(file.Failure());
        QCOMPARE(disk.files[Path], QByteArray("firs"));
        disk.room = ScriptedDisk::Plenty;
        file.WriteInFile("third\r\n");
        QVERIFY(!file.Failure());
        QCOMPARE(disk.files[Path], QByteArray("first line\r\nsecond\r\nthird\r\n"));
    }

    void HoldsBackAMebibyteAndNoMore()
    {
        file.OpenFile(Path);
        disk.room = 0;
        const QByteArray text(1000, 'x');
        for (int i = 0; i < 2000; ++i)
            file.WriteInFile(text);
        QVERIFY(file.Failure());
        disk.room = ScriptedDisk::Plenty;
        file.WriteInFile("end");
        // 1048 texts fit into 1048576 bytes; the others are lost whole.
        QCOMPARE(disk.files[Path], QByteArray(1048 * 1000, 'x') + "end");
    }

    void TellsOfAFailureWhileClosing()
    {
        file.OpenFile(Path);
        disk.room = 2;
        file.WriteInFile("text");
        file.CloseFile();
        QVERIFY(!file.IsOpen());
        QVERIFY(file.Failure());
        disk.room = ScriptedDisk::Plenty;
        QVERIFY(!file.OpenFile(Path));
        QVERIFY(!file.Failure());
    }

    void KeepsTheOldFileUntilTheNewOneIsWhole()
    {
        disk.files[Path] = "old";
        QVERIFY(!file.OpenForReplacing(Path));
        file.WriteInFile("new");
        file.Flush();
        QCOMPARE(disk.files[Path], QByteArray("old"));
        QVERIFY(!file.Commit());
        QCOMPARE(disk.files[Path], QByteArray("new"));
        QCOMPARE(disk.unfinished, 0);
        QVERIFY(file.Commit());
    }

    void LeavesTheOldFileIfNotCommitted()
    {
        disk.files[Path] = "old";
        file.OpenForReplacing(Path);
        file.WriteInFile("new");
        file.CloseFile();
        QCOMPARE(disk.files[Path], QByteArray("old"));
        QCOMPARE(disk.unfinished, 0);
    }

    void ReplacesNothingByHalfAFile_data()
    {
        QTest::addColumn<int>("step");
        QTest::newRow("the disk is full") << 0;
        QTest::newRow("it fails to hold what it took") << 1;
        QTest::newRow("bytes are missing in the file") << 2;
        QTest::newRow("the name cannot be taken over") << 3;
    }
    void ReplacesNothingByHalfAFile()
    {
        QFETCH(const int, step);
        disk.files[Path] = "old";
        disk.room = step == 0 ? 2 : ScriptedDisk::Plenty;
        disk.failSync = step == 1;
        disk.vanishing = step == 2 ? 1 : 0;
        disk.failTakePlace = step == 3;
        file.OpenForReplacing(Path);
        file.WriteInFile("new");
        const FileResult failure = file.Commit();
        QVERIFY(failure);
        QVERIFY(!failure->description.isEmpty());
        QCOMPARE(disk.files[Path], QByteArray("old"));
        QCOMPARE(disk.unfinished, 0);
        QVERIFY(!file.IsOpen());
    }

    void IsAloneWithItsFile()
    {
        QVERIFY(!file.OpenFile(Path));
        ClOutputFile second(files);
        ClInputFile input(files);
        QVERIFY(second.OpenForReplacing(Path)->inUse);
        QVERIFY(input.OpenFile(Path)->inUse);
        file.CloseFile();
        QVERIFY(!input.OpenFile(Path));
        QVERIFY(file.OpenFile(Path)->inUse);
        input.CloseFile();
        QVERIFY(!file.OpenFile(Path));
    }

    void IgnoresWritesWhileClosed()
    {
        file.WriteInFile("lost");
        file.NextLine();
        QVERIFY(!file.Flush());
        QVERIFY(disk.files.isEmpty());
    }

    void init()
    {
        file.CloseFile();
        disk.files.clear();
        disk.room = ScriptedDisk::Plenty;
        disk.failSync = disk.failTakePlace = false;
        disk.vanishing = 0;
    }

  private:
    ScriptedDisk disk;
    OpenFiles files{disk};
    ClOutputFile file{files};
};

QTEST_APPLESS_MAIN(tst_outputfile)
#include "tst_outputfile.moc"
