// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ByteLook.h"
#include "Representation.h"
#include "SequenceEditing.h"
#include "SequenceText.h"
#include "support/Cases.h"

#include <QRandomGenerator>

namespace
{

constexpr auto Ascii = Representation::Ascii;
constexpr auto Hex = Representation::Hex;
constexpr auto Decimal = Representation::Decimal;
constexpr auto Binary = Representation::Binary;

/// One step, typed digit by digit where the form has digits.
void Change(SequenceEditing &editing, int choice)
{
    if (choice == 4) {
        editing.EraseUnitBackward();
    } else if (choice == 5) {
        editing.EraseForward();
    } else if (choice == 6) {
        editing.Paste(u"10");
    } else {
        editing.Select(editing.Caret().byte, editing.Caret().byte);
        editing.Type(editing.Form() == Ascii ? u"x" : u"10");
        editing.FinishItem();
    }
}

} // namespace

class tst_SequenceText : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void ReadsPastedTexts()
    {
        const QByteArray crLf("\r\n");
        const struct {
            Representation form;
            QByteArray bytes;
            QStringList texts;
        } pasted[] = {
            {Hex, crLf, {"0D 0A ", "|0D|0A|", "0D,0A", "0D0A", "\t0D\r\n0A\n", "0D\u00A00A"}},
            {Hex, crLf, {"0x0D,0x0A", "0xD, 0XA", "0x0D0x0A", "0x0D0A"}}, // of a data sheet
            {Hex, crLf, {"\\x0D\\x0A", "$0D $0A", "0dh,0AH", "dhah"}},    // of a program
            {Hex, QByteArray("\r\n\0\xFF", 4), {"D A,0 fF"}},
            {Hex, "\xFF\xA5", {"0FFh 0A5h"}}, // the assembler's zero
            {Hex, "\x0B\r", {"0b 0d"}},       // no marks, though they look like it
            {Hex, "", {" , |\n"}},
            {Decimal, crLf + "\xFF", {"13,10,255", "013010255", "13d, 10D 255"}},
            {Binary, crLf, {"0000110100001010", "1101|1010", "0b1101,0B1010", "1101b 00001010B"}},
            {Ascii, "0D |,a\r\nb\nc\r", {"0D |,a\r\nb\nc\r"}},
            {Ascii, "\x80\xE4\x81", {"\u20AC\u00E4\u0081"}},
        };
        for (const auto &[form, bytes, texts] : pasted) {
            for (const QString &text : texts) {
                const SequenceText::Parsed parsed = SequenceText::Parse(text, form);
                QVERIFY2(parsed.refusal.isEmpty() && parsed.bytes == bytes, qPrintable(text));
            }
        }
    }

    void ItemsTypedAsCharactersAreSeen_data()
    {
        const Cases<QByteArray, QString> row("text", "meant");
        row("a frame", "01 03 00 00 00 02 C4 0B", "HEX 01 03 00 00 00 02 c4 0b");
        row("other separators, small letters", "0d,0a|ff", "HEX 0d 0a ff");
        row("as in a program", "{0x02, 0x03}", "");
        row("with marks", "0x02, 0x03", "HEX 02 03");
        row("the assembler's", "02h 0FFh", "HEX 02 ff");
        row("a dump of two lines", "01 02\r\n03 04\r\n", "HEX 01 02 03 04");
        row("a frame and the Enter of a habit", "01 03 00 C4\r", "HEX 01 03 00 c4");
        row("no digit at all", "FF FF FF", "HEX ff ff ff");
        row("decimal", "001 003 255", "Decimal 01 03 ff");
        row("decimal, above a byte", "001 300", "");
        row("binary", "00000001 11111111", "Binary 01 ff");
        row("nothing", "", "");
        row("blanks", "   ", "");
        row("one item", "12", "");
        row("one item in blanks", " 0D ", "");
        row("without separators", "0103000002C40B", "");
        row("half items", "1 3 0 2", "");
        row("half an item among whole ones", "01 03 0", "");
        row("marked half items", "$D $A", "");
        row("items and a word", "01 03 to 05", "");
        row("words", "be ad", "");
        row("commands", "AT", "");
        row("a command with numbers and its end", "10,20\r", "");
        row("a measurement", "T=21.4 C", "");
        row("NUL between digits", QByteArray("12\00034", 5), "");
        row("an ellipsis is no blank", "01\x85 02\x85", "");
    }
    void ItemsTypedAsCharactersAreSeen()
    {
        QFETCH(const QByteArray, text);
        const auto items = SequenceText::ItemsIn(text);
        QString meant;
        if (items)
            meant = QLatin1StringView(RowOf(items->form).caption) + u' ' +
                    QString::fromLatin1(items->bytes.toHex(' '));
        QTEST(meant, "meant");
    }

    void RefusesNamingTheFirstWrongItem()
    {
        const struct {
            Representation form;
            QString text;
            QString named;
        } pasted[] = {
            {Hex, "41 0D0", "Item 2, \"0D0\","},
            {Hex, "0x", "Item 1, \"0x\","},
            {Hex, "0D,h", "Item 2, \"h\","},
            {Hex, "0Dhh", "Item 1, \"0Dhh\","},
            {Hex, "4\u0661", "Item 1, \"4\u0661\","}, // a digit of another script
            {Hex, QString(40, u'0') + "X" + QString(40, u'Y'),
             "Item 21, \"XYYYYYYYYYYYYYYY\u2026\","},
            {Decimal, "255,256", "Item 2, \"256\","},
            {Decimal, "1310", "Item 1, \"1310\","},
            {Decimal, "-5", "Item 1, \"-5\","},
            {Binary, "101 102", "Item 2, \"102\","},
            {Ascii, "ab\u0416", "The character \u0416 (U+0416)"},
        };
        for (const auto &[form, text, named] : pasted) {
            const SequenceText::Parsed parsed = SequenceText::Parse(text, form);
            QVERIFY2(parsed.refusal.startsWith(named), qPrintable(parsed.refusal));
            QVERIFY(parsed.bytes.isEmpty());
        }
    }

    void ReadsBackWhatListsAndViewsShow()
    {
        QByteArray bytes;
        for (int i = 0; i < 256; ++i)
            bytes.append(char(i));
        for (const Representation form : AllRepresentations) {
            if (form == Ascii)
                continue;
            for (const QByteArray &text : {RowOf(form).toList(bytes), ViewText(form, bytes),
                                           SequenceText::Of(bytes, form).replace(" ", "")})
                QCOMPARE(SequenceText::Parse(QString::fromLatin1(text), form).bytes, bytes);
        }
    }

    void NamesControlCharacters()
    {
        const std::pair<uchar, const char *> names[] = {
            {0, "NUL NU"}, {31, "US US"}, {127, "DEL DT"}, {32, " "}, {0x81, " "}};
        for (const auto &[byte, both] : names)
            QCOMPARE(ByteLook::NameOf(byte).toByteArray() + ' ' +
                         ByteLook::BriefNameOf(byte).toByteArray(),
                     both);
    }

    void UndoesAndRedoesAcrossForms()
    {
        // The reference is the list of contents, one for each step.
        QRandomGenerator random(20);
        SequenceEditing editing;
        editing.SetBytes("start");
        QByteArrayList contents = {editing.Bytes()};
        qsizetype now = 0;
        for (int i = 0; i < 5000; ++i) {
            const int choice = random.bounded(10);
            const int from = random.bounded(int(editing.Length()) + 1);
            const int to = choice % 2 ? from : random.bounded(int(editing.Length()) + 1);
            if (choice == 0) {
                editing.SetForm(AllRepresentations[size_t(random.bounded(RepresentationCount))]);
            } else if (choice <= 2) {
                editing.Undo();
                now = qMax<qsizetype>(now - 1, 0);
            } else if (choice == 3) {
                editing.Redo();
                now = qMin(now + 1, contents.size() - 1);
            } else {
                editing.Select(from, to);
                Change(editing, choice);
                if (editing.Bytes() == contents[now])
                    continue; // what changes nothing is no step
                contents.resize(++now);
                contents.append(editing.Bytes());
            }
            QCOMPARE(editing.Bytes(), contents[now]);
        }
        QVERIFY(contents.size() > 5);
    }

    void ForgetsTheOldestSteps()
    {
        constexpr qsizetype Large = SequenceDocument::HistoryLimit / 4;
        SequenceDocument document;
        for (int i = 0; i < 10; ++i)
            document.Replace(0, document.Bytes().size(), QByteArray(Large, char('a' + i)));
        int steps = 0;
        for (; document.CanUndo(); ++steps)
            document.Undo();
        QCOMPARE(steps, 2); // each holds what went and what came
        QCOMPARE(document.Bytes(), QByteArray(Large, 'h'));
        while (document.CanRedo())
            document.Redo();
        QCOMPARE(document.Bytes(), QByteArray(Large, 'j'));
    }

    void RefusesToGrowBeyondItsLimit()
    {
        SequenceEditing editing;
        editing.SetBytes(QByteArray(SequenceEditing::MaxLength - 1, 'x'));
        QVERIFY(!editing.Insert("ab").isEmpty());
        QCOMPARE(editing.Length(), SequenceEditing::MaxLength - 1);
        QVERIFY(editing.Insert("a").isEmpty());
        editing.SetForm(Hex);
        QVERIFY(!editing.Type(u"4").isEmpty());
        editing.Select(0, 1);
        QCOMPARE(editing.Type(u"4"), QString());
        QCOMPARE(editing.Length(), SequenceEditing::MaxLength);
    }
};

QTEST_GUILESS_MAIN(tst_SequenceText)
#include "tst_sequencetext.moc"
