// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "project/DecimalList.h"
#include "project/FieldReader.h"

#include <QTest>

class tst_fieldreader : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void ReadsFields_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QByteArrayList>("fields");
        const auto row = [](const char *name, const QByteArray &text,
                            const QByteArrayList &fields) {
            QTest::newRow(name) << text << fields;
        };
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

    void ReadsDecimalLists_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QByteArray>("bytes");
        const auto row = [](const char *text, const QByteArray &bytes) {
            QTest::newRow(text) << QByteArray(text) << bytes;
        };
        row("065 | 013", "A\r");
        row("65|13", "A\r");
        row("", QByteArray(1, '\0'));
        row("|", QByteArray(2, '\0'));
        row("065 |", QByteArray("A\0", 2));
        row("abc", QByteArray(1, '\0'));
        row("65abc", "A");
        row("6 5", "\x06");
        row("  65", "A");
        row("+65", "A");
        row("-0.4", QByteArray(1, '\0'));
        row("6.5e1", "A");
        row("6.5E+1", "A");
        row("650e-1", "A");
        row("65e", "A");
        row("65e+", "A");
        row(".5", QByteArray(1, '\0'));
        row("1.5", "\x02");
        row("2.5", "\x02");
        row("65.", "A");
        row(".", QByteArray(1, '\0'));
        row("-", QByteArray(1, '\0'));
        row("1e-999", QByteArray(1, '\0'));
        row("&H41", QByteArray(1, '\0'));
        row("inf", QByteArray(1, '\0'));
        row("255.5", {});
        row("255.4", "\xFF");
        row("-0.6", {});
        row("256", {});
        row("-1", {});
        row("1e999", {});
        row("065 | 1e3", {});
    }
    /// No bytes expected: the list is refused.
    void ReadsDecimalLists()
    {
        QFETCH(const QByteArray, text);
        QFETCH(const QByteArray, bytes);
        const auto read = DecimalListToSeq(text);
        QCOMPARE(read.has_value(), !bytes.isEmpty());
        QCOMPARE(read.value_or(QByteArray()), bytes);
    }
};

QTEST_APPLESS_MAIN(tst_fieldreader)
#include "tst_fieldreader.moc"
