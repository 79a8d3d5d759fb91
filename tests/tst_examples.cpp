// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "DemoProject.h"
#include "DemoProtocol.h"
#include "FieldReader.h"
#include "MdSequenceEdition.h"
#include "OpenFiles.h"
#include "ProjectFile.h"
#include "SystemFiles.h"
#include "support/FullTables.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

namespace
{

const QDir Examples(QStringLiteral(SERIMONDE_SOURCE "/examples"));
const QDir Corpus(QStringLiteral(SERIMONDE_SOURCE "/fuzzing/corpus/project"));

QByteArrayList ContentsOf(const QDir &folder, const QStringList &names)
{
    QByteArrayList contents;
    for (const QString &name : names) {
        QFile file(folder.filePath(name));
        if (!file.open(QIODevice::ReadOnly))
            qFatal("%s cannot be read", qPrintable(name));
        contents << file.readAll();
    }
    return contents;
}

/// Loads into tables that were full before. Whatever the bytes are, the tables keep their bounds
/// and the user gets a message that he knows.
struct Loaded {
    MdSequenceEdition tables;
    QString message;

    explicit Loaded(const QByteArray &bytes)
    {
        FillSendTable(tables);
        FillReceiveTable(tables);
        FieldReader fields(bytes);
        message = ProjectFile::ReadProject(tables, fields).Message();
    }

    bool IsSound() const
    {
        static const QStringList messages = {"", "Error while loading the project",
                                             "Unknown project file version",
                                             "Errow while loading the project"};
        const auto fits = [](int count) { return count >= 0 && count <= 1025; };
        return messages.contains(message) && fits(tables.SendCount()) &&
               fits(tables.ReceiveCount());
    }
};

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
    void SurvivesTheCorpus()
    {
        const QByteArrayList corpus = ContentsOf(Corpus, Corpus.entryList(QDir::Files));
        QVERIFY(!corpus.isEmpty());
        for (const QByteArray &bytes : corpus)
            QVERIFY2(Loaded(bytes).IsSound(), bytes.constData());
    }

    void AreReadAndWrittenBack()
    {
        QCOMPARE(names, QStringList({"demo.sqx", "modbus-rtu.sqx", "modem.sqx"}));
        const QTemporaryDir folder;
        for (const QString &name : names) {
            Load(name);
            QVERIFY(tables.SendCount() >= 4 && tables.ReceiveCount() >= 4);
            QVERIFY(!ProjectFile::SaveProject(tables, files, folder.filePath(name)).Failed());
        }
        QCOMPARE(ContentsOf(QDir(folder.path()), names), projects);
    }

    void TheModemAnswersTheCall()
    {
        Load("modem.sqx");
        const ReceiveSequence &ring = tables.ReceiveAt(3);
        QCOMPARE(ring.Sequence, "\r\nRING\r\n");
        QVERIFY(ring.IsWatched());
        QCOMPARE(tables.AnswerOf(ring)->Sequence, "ATA\r");
    }

    /// Else two stations with this project would answer each other for ever.
    void TheBusFramesAreSoundAndAnswerNoAnswers()
    {
        Load("modbus-rtu.sqx");
        for (int i = 0; i < tables.SendCount(); ++i)
            QCOMPARE(FrameCheck(tables.SendAt(i).Sequence), quint16(0));
        int answers = 0;
        for (int i = 0; i < tables.ReceiveCount(); ++i) {
            QCOMPARE(FrameCheck(tables.ReceiveAt(i).Sequence), quint16(0));
            const SendSequence *answer = tables.AnswerOf(tables.ReceiveAt(i));
            answers += answer ? 1 : 0;
            for (int j = 0; answer && j < tables.ReceiveCount(); ++j)
                QVERIFY(!answer->Sequence.contains(tables.ReceiveAt(j).Sequence));
        }
        QCOMPARE(answers, 4);
    }

    void TheDemoSpeaksAsTheInstrumentDoes()
    {
        FillSendTable(tables);
        FillDemoProject(tables);
        QCOMPARE(tables.SendCount(), 4);
        QCOMPARE(tables.ReceiveCount(), 6);
        const char *const requests[] = {"*IDN?\r\n", "MEAS?\r\n", "STAT?\r\n", "YES\r\n"};
        const char *const heard[] = {"READY?\r\n", "OK\r\n", "SIMULATED INSTRUMENT 1.0\r\n", "T="};
        for (int i = 0; i < 4; ++i) {
            QCOMPARE(tables.SendAt(i).Sequence, requests[i]);
            QVERIFY(DemoProtocol::AnswerTo(tables.SendAt(i).Sequence.trimmed()) !=
                    DemoProtocol::Text::Refusal);
            QCOMPARE(tables.ReceiveAt(i).Sequence, heard[i]);
            QCOMPARE(tables.ReceiveAt(i).IsWatched(), i < 3);
        }
        // The question is answered by itself.
        QCOMPARE(tables.ReceiveAt(0).AnswerName, tables.SendAt(3).Name);
        QCOMPARE(tables.AnswerOf(tables.ReceiveAt(0)), &tables.SendAt(3));
        QCOMPARE(tables.AnswerOf(tables.ReceiveAt(1)), nullptr);
        QVERIFY(DemoProtocol::BytesOf(DemoProtocol::Text::Reading).startsWith(heard[3]));
        // Both greetings are commented, and the comment names what is there to be clicked.
        using DemoProtocol::Text;
        for (const auto &[greeting, i] :
             {std::pair(Text::Greeting, 4), std::pair(Text::GreetingOfTwo, 5)}) {
            QCOMPARE(tables.ReceiveAt(i).Sequence, DemoProtocol::BytesOf(greeting));
            QVERIFY(tables.ReceiveAt(i).IsWatched());
        }
        QVERIFY(tables.ReceiveAt(4).Comment.contains('"' + tables.SendAt(0).Name + '"'));
    }

  private:
    void Load(const QString &name)
    {
        const Result loaded = ProjectFile::LoadProject(tables, files, Examples.filePath(name));
        QVERIFY2(!loaded.Failed(), qPrintable(loaded.Cause()));
    }

    SystemFiles system;
    OpenFiles files{system};
    MdSequenceEdition tables;

    const QStringList names = Examples.entryList({"*.sqx"});
    const QByteArrayList projects = ContentsOf(Examples, names);
};

QTEST_APPLESS_MAIN(tst_examples)
#include "tst_examples.moc"
