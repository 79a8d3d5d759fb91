// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "controls/SequenceEditing.h"
#include "controls/SequenceText.h"
#include "repr/Common_Function.h"

#include <QRandomGenerator>
#include <QTest>

namespace
{

constexpr auto Ascii = Representation::Ascii;
constexpr auto Hex = Representation::Hex;
constexpr auto Decimal = Representation::Decimal;
constexpr auto Binary = Representation::Binary;

QByteArray EveryByte()
{
    QByteArray bytes;
    for (int i = 0; i < 256; ++i)
        bytes.append(char(i));
    return bytes;
}

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
        for (const QChar digit :
             editing.Form() == Ascii ? QStringLiteral("x") : QStringLiteral("10"))
            editing.Type(QStringView(&digit, 1));
        editing.FinishItem();
    }
}

} // namespace

Q_DECLARE_METATYPE(Representation)

class tst_SequenceText : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void ReadsPastedTexts_data();
    void ReadsPastedTexts();
    void RefusesNamingTheFirstWrongItem_data();
    void RefusesNamingTheFirstWrongItem();
    void ReadsBackWhatListsAndViewsShow();
    void ShowsItemsWithOneBlank();
    void NamesControlCharacters();
    void UndoesAndRedoesAcrossForms();
    void ForgetsTheOldestSteps();
    void RefusesToGrowBeyondItsLimit();
};

void tst_SequenceText::ReadsPastedTexts_data()
{
    QTest::addColumn<Representation>("form");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("bytes");

    const QByteArray crLf("\r\n");
    QTest::newRow("HEX with blanks") << Hex << "0D 0A" << crLf;
    QTest::newRow("HEX from a view, with its last blank") << Hex << "0D 0A " << crLf;
    QTest::newRow("HEX from a list") << Hex << "0D | 0A" << crLf;
    QTest::newRow("HEX with bars alone") << Hex << "|0D|0A|" << crLf;
    QTest::newRow("HEX with commas") << Hex << "0D,0A" << crLf;
    QTest::newRow("HEX with line breaks and tabs") << Hex << "\t0D\r\n0A\n" << crLf;
    QTest::newRow("HEX with hard blanks") << Hex << QStringLiteral("0D\u00A00A") << crLf;
    QTest::newRow("HEX with nothing between") << Hex << "0D0A" << crLf;
    QTest::newRow("HEX partly with nothing between") << Hex << "0D0A 410D" << QByteArray("\r\nA\r");
    QTest::newRow("HEX in small letters") << Hex << "0d 0a fF" << QByteArray("\r\n\xFF");
    QTest::newRow("HEX of single digits") << Hex << "D A,0" << QByteArray("\r\n\0", 3);
    QTest::newRow("HEX of a data sheet") << Hex << "0x0D,0x0A" << crLf;
    QTest::newRow("HEX of a data sheet, short") << Hex << "0xD, 0XA" << crLf;
    QTest::newRow("HEX marked, with nothing between") << Hex << "0x0D0x0A" << crLf;
    QTest::newRow("HEX of one mark for two bytes") << Hex << "0x0D0A" << crLf;
    QTest::newRow("HEX of a string in a program") << Hex << "\\x0D\\x0A" << crLf;
    QTest::newRow("HEX with dollar signs") << Hex << "$0D $0A" << crLf;
    QTest::newRow("HEX with h") << Hex << "0dh,0AH" << crLf;
    QTest::newRow("HEX with h and nothing between") << Hex << "dhah" << crLf;
    QTest::newRow("HEX with h and the assembler's zero")
        << Hex << "0FFh 0A5h" << QByteArray("\xFF\xA5");
    QTest::newRow("HEX items that look like marks") << Hex << "0b 0d" << QByteArray("\x0B\r");
    QTest::newRow("no HEX items at all") << Hex << " , |\n" << QByteArray();

    QTest::newRow("Decimal with blanks") << Decimal << "013 010" << crLf;
    QTest::newRow("Decimal from a list") << Decimal << "013 | 010" << crLf;
    QTest::newRow("Decimal of fewer digits") << Decimal << "13,10,7" << QByteArray("\r\n\a");
    QTest::newRow("Decimal with nothing between")
        << Decimal << "013010255" << QByteArray("\r\n\xFF");
    QTest::newRow("Decimal with d") << Decimal << "13d, 10D" << crLf;
    QTest::newRow("Decimal up to 255") << Decimal << "0 255" << QByteArray("\0\xFF", 2);

    QTest::newRow("Binary with blanks") << Binary << "00001101 00001010" << crLf;
    QTest::newRow("Binary with nothing between") << Binary << "0000110100001010" << crLf;
    QTest::newRow("Binary of fewer digits") << Binary << "1101|1010" << crLf;
    QTest::newRow("Binary as in a program") << Binary << "0b1101,0B1010" << crLf;
    QTest::newRow("Binary with b") << Binary << "1101b 00001010B" << crLf;

    QTest::newRow("ASCII takes every character") << Ascii << "0D |,0A" << QByteArray("0D |,0A");
    QTest::newRow("ASCII takes line breaks as they stand")
        << Ascii << "a\r\nb\nc\r" << QByteArray("a\r\nb\nc\r");
    QTest::newRow("ASCII takes the code page")
        << Ascii << QStringLiteral("\u20AC\u00E4\u0081") << QByteArray("\x80\xE4\x81");
}

void tst_SequenceText::ReadsPastedTexts()
{
    QFETCH(const Representation, form);
    QFETCH(const QString, text);
    const SequenceText::Parsed parsed = SequenceText::Parse(text, form);
    QCOMPARE(parsed.refusal, QString());
    QTEST(parsed.bytes, "bytes");
}

void tst_SequenceText::RefusesNamingTheFirstWrongItem_data()
{
    QTest::addColumn<Representation>("form");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("named");

    QTest::newRow("a letter in HEX") << Hex << "0D 0G"
                                     << "Item 2, \"0G\",";
    QTest::newRow("an odd run of HEX digits") << Hex << "41 0D0"
                                              << "Item 2, \"0D0\",";
    QTest::newRow("a mark without digits") << Hex << "0x"
                                           << "Item 1, \"0x\",";
    QTest::newRow("an h without digits") << Hex << "0D,h"
                                         << "Item 2, \"h\",";
    QTest::newRow("two marks behind") << Hex << "0Dhh"
                                      << "Item 1, \"0Dhh\",";
    QTest::newRow("a sign") << Hex << "-1"
                            << "Item 1, \"-1\",";
    QTest::newRow("the offsets of a dump") << Hex << "0000: 0D"
                                           << "Item 1, \"0000:\",";
    QTest::newRow("digits of another script")
        << Hex << QStringLiteral("4\u0661") << QStringLiteral("Item 1, \"4\u0661\",");
    QTest::newRow("words") << Hex << "Hello world"
                           << "Item 1, \"Hello\",";
    QTest::newRow("above 255") << Decimal << "255,256"
                               << "Item 2, \"256\",";
    QTest::newRow("four decimal digits") << Decimal << "1310"
                                         << "Item 1, \"1310\",";
    QTest::newRow("a negative number") << Decimal << "-5"
                                       << "Item 1, \"-5\",";
    QTest::newRow("a fraction") << Decimal << "1.5"
                                << "Item 1, \"1.5\",";
    QTest::newRow("a HEX byte in Decimal") << Decimal << "0A"
                                           << "Item 1, \"0A\",";
    QTest::newRow("a 2 in Binary") << Binary << "101 102"
                                   << "Item 2, \"102\",";
    QTest::newRow("nine binary digits") << Binary << "000011011"
                                        << "Item 1, \"000011011\",";
    QTest::newRow("a long run is cut")
        << Hex << QString(QByteArray(40, '0') + "X" + QByteArray(40, 'Y'))
        << QStringLiteral("Item 21, \"XYYYYYYYYYYYYYYY\u2026\",");
    QTest::newRow("a character that the code page lacks")
        << Ascii << QStringLiteral("ab\u0416") << QStringLiteral("The character \u0416 (U+0416)");
}

void tst_SequenceText::RefusesNamingTheFirstWrongItem()
{
    QFETCH(const Representation, form);
    QFETCH(const QString, text);
    QFETCH(const QString, named);
    const SequenceText::Parsed parsed = SequenceText::Parse(text, form);
    QVERIFY2(parsed.refusal.startsWith(named), qPrintable(parsed.refusal));
    QVERIFY(parsed.bytes.isEmpty());
}

void tst_SequenceText::ReadsBackWhatListsAndViewsShow()
{
    const QByteArray bytes = EveryByte();
    const auto reads = [&](const QByteArray &text, Representation form) {
        return SequenceText::Parse(QString::fromLatin1(text), form).bytes == bytes;
    };
    QVERIFY(reads(Common_Function::SeqToHexList(bytes), Hex));
    QVERIFY(reads(Common_Function::SeqToDecimalList(bytes), Decimal));
    QVERIFY(reads(Common_Function::SeqToBinaryList(bytes), Binary));
    for (const Representation form : {Hex, Decimal, Binary}) {
        QVERIFY(reads(Common_Function::SeqToViewText(form, bytes), form));
        QVERIFY(reads(SequenceText::Of(bytes, form).replace(" ", ""), form));
    }
}

void tst_SequenceText::ShowsItemsWithOneBlank()
{
    const QByteArray bytes("A\0\xFF", 3);
    QCOMPARE(SequenceText::Of(bytes, Ascii), bytes);
    QCOMPARE(SequenceText::Of(bytes, Hex), "41 00 FF");
    QCOMPARE(SequenceText::Of(bytes, Decimal), "065 000 255");
    QCOMPARE(SequenceText::Of(bytes, Binary), "01000001 00000000 11111111");
}

void tst_SequenceText::NamesControlCharacters()
{
    QCOMPARE(SequenceText::ControlName(0), "NUL");
    QCOMPARE(SequenceText::ControlName(13), "CR");
    QCOMPARE(SequenceText::ControlName(31), "US");
    QCOMPARE(SequenceText::ControlName(127), "DEL");
    QVERIFY(SequenceText::ControlName(32).isEmpty());
    QVERIFY(SequenceText::ControlName(0x81).isEmpty());
}

void tst_SequenceText::UndoesAndRedoesAcrossForms()
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

void tst_SequenceText::ForgetsTheOldestSteps()
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

void tst_SequenceText::RefusesToGrowBeyondItsLimit()
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

QTEST_GUILESS_MAIN(tst_SequenceText)
#include "tst_sequencetext.moc"
