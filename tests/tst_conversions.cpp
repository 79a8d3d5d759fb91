// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CodePage1252.h"
#include "Representation.h"
#include "support/Cases.h"

class tst_conversions : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void AllForms_data()
    {
        // In the order of the representations.
        const Cases<QByteArray, QByteArrayList, QByteArrayList, QByteArrayList> row(
            "seq", "listForms", "searchForms", "viewForms");
        row("no bytes give no text", "", {"", "", "", ""}, {"", "", "", ""}, {"", "", "", ""});
        row("one byte has no separators but a blank in the views", "A",
            {"A", "41", "065", "01000001"}, {"A", "41", "065", "01000001"},
            {"A", "41 ", "065 ", "01000001 "});
        row("zero is hidden in lists and views in ASCII", QByteArray("B\0", 2),
            {"B | \x81", "42 | 00", "066 | 000", "01000010 | 00000000"},
            {QByteArray("B\0", 2), "42 00", "066 000", "01000010 00000000"},
            {"B\x81", "42 00 ", "066 000 ", "01000010 00000000 "});
        row("31 is hidden in lists, 32 and the high bytes pass", "\x1F \xFF",
            {"\x81 |   | \xFF", "1F | 20 | FF", "031 | 032 | 255",
             "00011111 | 00100000 | 11111111"},
            {"\x1F \xFF", "1F 20 FF", "031 032 255", "00011111 00100000 11111111"},
            {"\x1F \xFF", "1F 20 FF ", "031 032 255 ", "00011111 00100000 11111111 "});
    }

    void AllForms()
    {
        QFETCH(QByteArray, seq);
        QByteArrayList lists, searches, views;
        for (const RepresentationRow &row : RepresentationRows) {
            lists << row.toList(seq);
            searches << row.toText(seq);
            views << ViewText(row.representation, seq);
        }
        QTEST(lists, "listForms");
        QTEST(searches, "searchForms");
        QTEST(views, "viewForms");
    }

    void EveryByteSurvivesTheCodePage()
    {
        for (int value = 0; value < 256; ++value) {
            const QByteArray byte(1, char(value));
            const auto back = CodePage1252::FromUnicode(CodePage1252::ToUnicode(byte));
            QCOMPARE(back.bytes, byte);
            QCOMPARE(back.firstForeign, -1);
        }
    }

    void CodePageKnowsItsOwn()
    {
        const struct {
            QString text;
            const char *bytes;
            int firstForeign;
        } texts[] = {{"5 € ü", "5 \x80 \xFC", -1},
                     {"2 Ω", "2 ", 2},
                     {QChar(0x80), "", 0}, // the code point of a code that is taken
                     {QChar(0x81), "\x81", -1}};
        for (const auto &[text, bytes, firstForeign] : texts) {
            QCOMPARE(CodePage1252::FromUnicode(text).bytes, bytes);
            QCOMPARE(CodePage1252::FromUnicode(text).firstForeign, firstForeign);
        }
    }

    void LettersHaveOneLowerCase()
    {
        const QByteArray upper = "AZ\xC4\xDE\x8A\x8C\x8E\x9F[@\xD7\xF7\x80\x81"
                                 "0";
        const QByteArray lower = "az\xE4\xFE\x9A\x9C\x9E\xFF[@\xD7\xF7\x80\x81"
                                 "0";
        for (qsizetype i = 0; i < upper.size(); ++i) {
            QCOMPARE(CodePage1252::ToLower(uchar(upper[i])), uchar(lower[i]));
            QCOMPARE(CodePage1252::ToLower(uchar(lower[i])), uchar(lower[i]));
        }
    }
};

QTEST_GUILESS_MAIN(tst_conversions)
#include "tst_conversions.moc"
