// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "platform/SystemFiles.h"
#include "project/OpenFiles.h"
#include "project/ProjectFile.h"
#include "sequences/MdSequenceEdition.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

namespace
{

const QString Examples = QStringLiteral(SERIMONDE_SOURCE "/examples/");

QByteArray BytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
}

/// The check bytes of a bus frame: 0 when they are run through the sum as well.
quint16 FrameCheck(const QByteArray &frame)
{
    unsigned check = 0xFFFF;
    for (const char byte : frame) {
        check ^= uchar(byte);
        for (int bit = 0; bit < 8; ++bit)
            check = (check & 1) != 0 ? check >> 1 ^ 0xA001 : check >> 1;
    }
    return quint16(check);
}

} // namespace

class tst_examples : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void AreReadAndWrittenBack_data()
    {
        QTest::addColumn<int>("sendCount");
        QTest::addColumn<int>("receiveCount");
        QTest::newRow("demo.sqx") << 4 << 4;
        QTest::newRow("modem.sqx") << 12 << 9;
        QTest::newRow("modbus-rtu.sqx") << 11 << 7;
    }
    void AreReadAndWrittenBack()
    {
        const QString name = QString::fromLatin1(QTest::currentDataTag());
        Load(name);
        QTEST(tables.SendCount(), "sendCount");
        QTEST(tables.ReceiveCount(), "receiveCount");
        const QTemporaryDir folder;
        QVERIFY(!ProjectFile::SaveProject(tables, files, folder.filePath(name)));
        QCOMPARE(BytesOf(folder.filePath(name)), BytesOf(Examples + name));
    }

    void AreAllOfThese()
    {
        QCOMPARE(QDir(Examples).entryList({QStringLiteral("*.sqx")}).size(), 3);
    }

    void TheModemAnswersTheCall()
    {
        Load(QStringLiteral("modem.sqx"));
        const ReceiveSequence &ring = tables.ReceiveAt(3);
        QCOMPARE(ring.Sequence, QByteArray("\r\nRING\r\n"));
        QVERIFY(ring.IsWatched());
        QCOMPARE(tables.AnswerOf(ring)->Sequence, QByteArray("ATA\r"));
    }

    void TheBusFramesAreSound()
    {
        Load(QStringLiteral("modbus-rtu.sqx"));
        for (int i = 0; i < tables.SendCount(); ++i)
            QCOMPARE(FrameCheck(tables.SendAt(i).Sequence), quint16(0));
        for (int i = 0; i < tables.ReceiveCount(); ++i)
            QCOMPARE(FrameCheck(tables.ReceiveAt(i).Sequence), quint16(0));
    }

    /// Else two stations with this project would answer each other for ever.
    void TheBusDoesNotAnswerAnswers()
    {
        Load(QStringLiteral("modbus-rtu.sqx"));
        int answers = 0;
        for (int i = 0; i < tables.ReceiveCount(); ++i) {
            const SendSequence *answer = tables.AnswerOf(tables.ReceiveAt(i));
            answers += answer ? 1 : 0;
            for (int j = 0; answer && j < tables.ReceiveCount(); ++j)
                QVERIFY(!answer->Sequence.contains(tables.ReceiveAt(j).Sequence));
        }
        QCOMPARE(answers, 4);
    }

  private:
    void Load(const QString &name)
    {
        const auto failure = ProjectFile::LoadProject(tables, files, Examples + name);
        QVERIFY2(!failure, failure ? qPrintable(failure->cause) : "");
    }

    SystemFiles system;
    OpenFiles files{system};
    MdSequenceEdition tables;
};

QTEST_APPLESS_MAIN(tst_examples)
#include "tst_examples.moc"
