// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "project/FieldReader.h"
#include "project/ProjectFile.h"
#include "sequences/MdSequenceEdition.h"

#include <QDir>
#include <QTest>

#include <random>

namespace
{

const QString Source = QStringLiteral(SERIMONDE_SOURCE);

QByteArray BytesOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("%s cannot be read", qPrintable(path));
    return file.readAll();
}

/// Loads into tables that were full before. Whatever the bytes are, the tables keep their bounds
/// and the user gets a message that he knows.
struct Loaded {
    MdSequenceEdition tables;
    QString message;

    explicit Loaded(const QByteArray &bytes)
    {
        tables.SetSendCount(MdSequenceEdition::Capacity);
        tables.SetReceiveCount(MdSequenceEdition::Capacity);
        FieldReader fields(bytes);
        if (const auto failure = ProjectFile::ReadProject(tables, fields))
            message = failure->message;
    }

    bool IsSound() const
    {
        static const QStringList Messages = {QString(),
                                             QStringLiteral("Error while loading the project"),
                                             QStringLiteral("Unknown project file version"),
                                             QStringLiteral("Errow while loading the project")};
        return Messages.contains(message) && tables.SendCount() >= 0 &&
               tables.SendCount() <= 1025 && tables.ReceiveCount() >= 0 &&
               tables.ReceiveCount() <= 1025;
    }
};

QByteArray Damaged(QByteArray bytes, std::mt19937 &random)
{
    const auto below = [&random](qsizetype limit) {
        return qsizetype(random() % unsigned(std::max<qsizetype>(limit, 1)));
    };
    for (qsizetype count = 1 + below(8); count > 0; --count) {
        const qsizetype place = below(bytes.size());
        const qsizetype length = below(40);
        switch (below(5)) {
        case 0:
            bytes[place] = char(below(256));
            break;
        case 1:
            bytes.remove(place, length);
            break;
        case 2:
            bytes.insert(place, bytes.mid(below(bytes.size()), length));
            break;
        case 3:
            bytes[place] = "0123456789-|,\"\r\n"[below(16)];
            break;
        default:
            bytes.insert(place, QByteArray(length, char(below(256))));
            break;
        }
    }
    return bytes;
}

} // namespace

class tst_projectdamage : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void Projects_data()
    {
        QTest::addColumn<QByteArray>("project");
        for (const char *name : {"demo.sqx", "modem.sqx", "modbus-rtu.sqx"})
            QTest::newRow(name) << BytesOf(Source + QStringLiteral("/examples/") +
                                           QString::fromLatin1(name));
    }

    void SurvivesBeingCutAtEveryByte_data() { Projects_data(); }
    void SurvivesBeingCutAtEveryByte()
    {
        QFETCH(const QByteArray, project);
        const Loaded whole(project);
        for (qsizetype size = 0; size < project.size(); ++size) {
            const QByteArray cut = project.first(size);
            const Loaded loaded(cut);
            QVERIFY(loaded.IsSound());
            // The keyword of a record stands behind all records that are whole in the file.
            const auto keywords = cut.count("\r\n\r\nSEND") + cut.count("\r\n\r\nRECEIVE");
            const QByteArray tail = cut.mid(cut.lastIndexOf("SEND\r\n") + 6);
            const int cutIndex = tail.contains('\n') ? -1 : tail.trimmed().toInt();
            for (int i = 0; i < std::min<qsizetype>(keywords - 1, whole.tables.SendCount()); ++i) {
                if (i == cutIndex) // "12" may have become "1", which is then this record
                    continue;
                QCOMPARE(loaded.tables.SendAt(i).Name, whole.tables.SendAt(i).Name);
                QCOMPARE(loaded.tables.SendAt(i).Sequence, whole.tables.SendAt(i).Sequence);
            }
        }
    }

    void SurvivesEveryMissingLine_data() { Projects_data(); }
    void SurvivesEveryMissingLine()
    {
        QFETCH(const QByteArray, project);
        const QByteArrayList lines = project.split('\n');
        for (qsizetype i = 0; i < lines.size(); ++i) {
            QByteArrayList rest = lines;
            rest.removeAt(i);
            QVERIFY(Loaded(rest.join('\n')).IsSound());
        }
    }

    void SurvivesSwappedLines_data() { Projects_data(); }
    void SurvivesSwappedLines()
    {
        QFETCH(const QByteArray, project);
        const QByteArrayList lines = project.split('\n');
        for (qsizetype distance : {1, 2, 5}) {
            for (qsizetype i = 0; i + distance < lines.size(); ++i) {
                QByteArrayList swapped = lines;
                swapped.swapItemsAt(i, i + distance);
                QVERIFY(Loaded(swapped.join('\n')).IsSound());
            }
        }
    }

    void SurvivesRandomDamage_data() { Projects_data(); }
    void SurvivesRandomDamage()
    {
        QFETCH(const QByteArray, project);
        std::mt19937 random(20);
        for (int i = 0; i < 200; ++i) {
            const QByteArray damaged = Damaged(project, random);
            QVERIFY2(Loaded(damaged).IsSound(), damaged.constData());
        }
    }

    void SurvivesTheCorpus()
    {
        const QDir corpus(Source + QStringLiteral("/fuzzing/corpus/project"));
        const QStringList names = corpus.entryList(QDir::Files);
        QVERIFY(!names.isEmpty());
        for (const QString &name : names)
            QVERIFY2(Loaded(BytesOf(corpus.filePath(name))).IsSound(), qPrintable(name));
    }
};

QTEST_APPLESS_MAIN(tst_projectdamage)
#include "tst_projectdamage.moc"
