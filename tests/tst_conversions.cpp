// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "repr/CodePage1252.h"
#include "repr/Common_Function.h"

#include <QTest>

using namespace Common_Function;

class tst_conversions : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void AllForms_data();
    void AllForms();
    void ByteToBinaryWritesTheHighestBitFirst();
    void EveryByteSurvivesTheCodePage();
    void CodePageKnowsItsOwn_data();
    void CodePageKnowsItsOwn();
    void LettersHaveOneLowerCase();
};

void tst_conversions::AllForms_data()
{
    QTest::addColumn<QByteArray>("seq");
    QTest::addColumn<QByteArrayList>("listForms");   // ASCII, HEX, Decimal, Binary
    QTest::addColumn<QByteArrayList>("searchForms"); // HEX, Decimal, Binary
    QTest::addColumn<QByteArrayList>("viewForms");   // ASCII, HEX, Decimal, Binary

    QTest::newRow("no bytes give no text")
        << QByteArray() << QByteArrayList{"", "", "", ""} << QByteArrayList{"", "", ""}
        << QByteArrayList{"", "", "", ""};
    QTest::newRow("one byte has no separators but a blank in the views")
        << QByteArray("A") << QByteArrayList{"A", "41", "065", "01000001"}
        << QByteArrayList{"41", "065", "01000001"}
        << QByteArrayList{"A", "41 ", "065 ", "01000001 "};
    QTest::newRow("a line break is hidden in lists and real in the ASCII view")
        << QByteArray("\r\n")
        << QByteArrayList{"\x81 | \x81", "0D | 0A", "013 | 010", "00001101 | 00001010"}
        << QByteArrayList{"0D 0A", "013 010", "00001101 00001010"}
        << QByteArrayList{"\r\n", "0D 0A ", "013 010 ", "00001101 00001010 "};
    QTest::newRow("zero is hidden in both ASCII forms")
        << QByteArray("A\0B", 3)
        << QByteArrayList{"A | \x81 | B", "41 | 00 | 42", "065 | 000 | 066",
                          "01000001 | 00000000 | 01000010"}
        << QByteArrayList{"41 00 42", "065 000 066", "01000001 00000000 01000010"}
        << QByteArrayList{"A\x81"
                          "B",
                          "41 00 42 ", "065 000 066 ", "01000001 00000000 01000010 "};
    QTest::newRow("31 is hidden in lists, 32 and the high bytes pass")
        << QByteArray("\x1F \xFF")
        << QByteArrayList{"\x81 |   | \xFF", "1F | 20 | FF", "031 | 032 | 255",
                          "00011111 | 00100000 | 11111111"}
        << QByteArrayList{"1F 20 FF", "031 032 255", "00011111 00100000 11111111"}
        << QByteArrayList{"\x1F \xFF", "1F 20 FF ", "031 032 255 ", "00011111 00100000 11111111 "};
}

void tst_conversions::AllForms()
{
    QFETCH(QByteArray, seq);
    QTEST((QByteArrayList{SeqToAsciiList(seq), SeqToHexList(seq), SeqToDecimalList(seq),
                          SeqToBinaryList(seq)}),
          "listForms");
    QTEST((QByteArrayList{SeqToHexText(seq), SeqToDecimalText(seq), SeqToBinaryText(seq)}),
          "searchForms");
    QByteArrayList views;
    for (const Representation r : AllRepresentations)
        views << SeqToViewText(r, seq);
    QTEST(views, "viewForms");
}

void tst_conversions::ByteToBinaryWritesTheHighestBitFirst()
{
    QCOMPARE(ByteToBinary('\x41'), QByteArray("01000001"));
    QCOMPARE(ByteToBinary('\x80'), QByteArray("10000000"));
    QCOMPARE(ByteToBinary('\0'), QByteArray("00000000"));
}

void tst_conversions::EveryByteSurvivesTheCodePage()
{
    for (int value = 0; value < 256; ++value) {
        const QByteArray byte(1, char(value));
        const auto back = CodePage1252::FromUnicode(CodePage1252::ToUnicode(byte));
        QCOMPARE(back.bytes, byte);
        QCOMPARE(back.firstForeign, -1);
    }
}

void tst_conversions::CodePageKnowsItsOwn_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("firstForeign");

    QTest::newRow("the euro sign has a code of its own")
        << QStringLiteral("5 €") << QByteArray("5 \x80") << -1;
    QTest::newRow("umlauts are Latin-1") << QStringLiteral("Grüße")
                                         << QByteArray("Gr\xFC\xDF"
                                                       "e")
                                         << -1;
    QTest::newRow("Greek is foreign") << QStringLiteral("2 Ω") << QByteArray("2 ") << 2;
    QTest::newRow("the code point of a taken code is foreign")
        << QString(QChar(0x80)) << QByteArray() << 0;
    QTest::newRow("an empty code stands for itself")
        << QString(QChar(0x81)) << QByteArray("\x81") << -1;
}

void tst_conversions::CodePageKnowsItsOwn()
{
    QFETCH(QString, text);
    const auto encoded = CodePage1252::FromUnicode(text);
    QTEST(encoded.bytes, "bytes");
    QTEST(int(encoded.firstForeign), "firstForeign");
}

void tst_conversions::LettersHaveOneLowerCase()
{
    const QByteArray upper = "AZ\xC4\xDE\x8A\x8C\x8E\x9F";
    const QByteArray lower = "az\xE4\xFE\x9A\x9C\x9E\xFF";
    for (qsizetype i = 0; i < upper.size(); ++i) {
        QCOMPARE(CodePage1252::ToLower(uchar(upper[i])), uchar(lower[i]));
        QCOMPARE(CodePage1252::ToLower(uchar(lower[i])), uchar(lower[i]));
    }
    for (const char notALetter : {'[', '@', '\xD7', '\xF7', '\x80', '\x81', '0'})
        QCOMPARE(CodePage1252::ToLower(uchar(notALetter)), uchar(notALetter));
}

QTEST_GUILESS_MAIN(tst_conversions)
#include "tst_conversions.moc"
