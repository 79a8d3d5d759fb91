// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "project/DecimalList.h"
#include "project/FieldReader.h"
#include "support/Cases.h"

class tst_fieldreader : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void ReadsFields_data()
    {
        const Cases<QByteArray, QByteArrayList> row("text", "fields");
        row("nothing has no field", "", {});
        row("a line is a field", "abc\r\n", {"abc"});
        row("the last line needs no end", "a\r\nb", {"a", "b"});
        row("a bare line feed ends a line", "a\nb\n", {"a", "b"});
        row("a bare carriage return ends a line", "a\rb\r", {"a", "b"});
        row("line ends may be mixed", "a\rb\nc\r\n\r\nd", {"a", "b", "c", "", "d"});
        row("an empty line is an empty field", "\r\n\r\na", {"", "", "a"});
        row("a comma ends a field", "a,b\r\nc", {"a", "b", "c"});
        row("nothing between commas is an empty field", "a,,b", {"a", "", "b"});
        row("a comma before the line end adds an empty field", "a,\r\nb", {"a", "", "b"});
        row("a comma at the end adds none", "a,", {"a"});
        row("leading blanks go", "   a", {"a"});
        row("a line of blanks is empty", "   \r\na", {"", "a"});
        row("trailing blanks stay", "a  \r\nb ,c", {"a  ", "b ", "c"});
        row("a leading tab stays", "\ta", {"\ta"});
        row("quotes are dropped", "\"a b\"\r\nc", {"a b", "c"});
        row("a comma in quotes is text", "\"a,b\",c", {"a,b", "c"});
        row("a line end in quotes is text", "\"a\r\nb\"\r\nc", {"a\r\nb", "c"});
        row("blanks before a quote go, those behind it stay", "  \"  a \"", {"  a "});
        row("text behind the closing quote is dropped", "\"a\"xyz\r\nb", {"a", "b"});
        row("and the field ends at the comma there", "\"a\" x,b", {"a", "b"});
        row("an open quote runs to the end", "\"a\r\nb,c", {"a\r\nb,c"});
        row("empty quotes are an empty field", "\"\"\r\na", {"", "a"});
        row("a quote inside a field is text", "a\"b\"\r\nc", {"a\"b\"", "c"});
        row("byte 0 and byte 255 are text", QByteArray("\0a\xFF\r\nb", 6),
            {QByteArray("\0a\xFF", 3), "b"});
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
            {{"65abc", "  65", "+65", "6.5e1", "6.5E+1", "650e-1", "65e", "65e+", "65."}, "A"},
            {{"", "abc", "-0.4", ".5", ".", "-", "1e-999", "&H41", "inf"}, zero},
            {{"|"}, zero + zero},
            {{"065 |"}, "A" + zero},
            {{"6 5"}, "\x06"},
            {{"1.5", "2.5"}, "\x02"},
            {{"255.4"}, "\xFF"},
        };
        for (const auto &[texts, bytes] : lists)
            for (const QByteArray &text : texts)
                QVERIFY2(DecimalListToSeq(text) == bytes, text);
        for (const char *text : {"255.5", "-0.6", "256", "-1", "1e999", "065 | 1e3"})
            QVERIFY2(!DecimalListToSeq(text), text);
    }
};

QTEST_APPLESS_MAIN(tst_fieldreader)
#include "tst_fieldreader.moc"
