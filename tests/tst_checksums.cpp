// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "Checksum.h"
#include "support/Cases.h"

using Kind = ChecksumKind;

class tst_checksums : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    /// The first rows are the check values that are published for "123456789".
    void StandBehindTheirBytes_data()
    {
        const Cases<ChecksumRule, QByteArray, QByteArray> row("rule", "bytes", "hex");
        const QByteArray digits = "123456789";
        row("Modbus, low byte first", {Kind::Crc16Modbus, 1, false}, digits, "374b");
        row("Modbus, high byte first", {Kind::Crc16Modbus, 1, true}, digits, "4b37");
        row("XMODEM", {Kind::Crc16Xmodem, 1, true}, digits, "31c3");
        row("CCITT-FALSE", {Kind::Crc16CcittFalse, 1, true}, digits, "29b1");
        row("KERMIT", {Kind::Crc16Kermit, 1, true}, digits, "2189");
        row("CRC-8", {Kind::Crc8, 1, true}, digits, "f4");
        row("CRC-32", {Kind::Crc32, 1, true}, digits, "cbf43926");
        row("CRC-32, low byte first", {Kind::Crc32, 1, false}, digits, "2639f4cb");
        row("XOR", {Kind::Xor, 1, true}, digits, "31");
        row("sum", {Kind::Sum, 1, true}, digits, "dd");
        row("two's complement", {Kind::TwosComplement, 1, true}, digits, "23");
        row("two's complement of 0 is 0", {Kind::TwosComplement, 1, true}, "\x80\x80", "00");
        row("from the n-th byte on", {Kind::Crc32, 3, true}, "\x02\x80" + digits, "cbf43926");
        row("from a byte that is not there", {Kind::Crc32, 10, true}, digits, "");
        row("the published frame of Modbus ASCII", {Kind::ModbusAscii, 1, true}, ":1103006B0003",
            QByteArray("7E").toHex());
        row("a frame without its mark", {Kind::ModbusAscii, 1, true}, "1103006B0003", "");
        row("half a byte in a frame", {Kind::ModbusAscii, 1, true}, ":110", "");
        row("an NMEA sentence with its end mark", {Kind::Nmea, 1, true},
            "$GPGLL,5300.97914,N,00259.98174,E,125926,A*", QByteArray("28").toHex());
        row("an NMEA sentence without it", {Kind::Nmea, 1, true},
            "$GPGLL,5300.97914,N,00259.98174,E,125926,A", QByteArray("*28").toHex());
        row("an NMEA sentence that has its checksum", {Kind::Nmea, 1, true}, "$GPGLL*50", "");
    }

    void StandBehindTheirBytes()
    {
        QFETCH(ChecksumRule, rule);
        QFETCH(QByteArray, bytes);
        const QByteArray check = Checksum::Of(rule, bytes);
        QTEST(check.toHex(), "hex");
        QCOMPARE(Checksum::WhyNone(rule, bytes).isEmpty(), !check.isEmpty());
    }

    void TelegramsAreJudged_data()
    {
        const Cases<ChecksumRule, QByteArray, QString> row("rule", "telegram", "text");
        const ChecksumRule modbus{Kind::Crc16Modbus, 1, false};
        const ChecksumRule sum{Kind::Sum, 3, true};
        const ChecksumRule ascii{Kind::ModbusAscii, 1, true};
        const ChecksumRule nmea{Kind::Nmea, 1, true};
        // Unit 1 asks for 2 registers, from register 0 on.
        row("right", modbus, QByteArray::fromHex("010300000002c40b"), "CRC right");
        row("its bytes changed about", modbus, QByteArray::fromHex("0103000000020bc4"),
            "CRC wrong: C4 0B expected");
        row("no longer than a checksum", modbus, "\xFF\xFF", "CRC: too short");
        row("covered from the third byte on", sum,
            "\x02\x09"
            "\x01\x02\x03",
            "Checksum right");
        row("nothing left to cover", sum, "\x02\x09\x0B", "Checksum: too short");
        row("a frame in capitals", ascii, ":1103006B00037E\r\n", "Checksum right");
        row("small letters, no line end, noise", ascii, "x:1103006b00037e", "Checksum right");
        row("another check", ascii, ":1103006B00037F\r\n", "Checksum wrong: 7E expected");
        row("no frame", ascii, "hello\r\n", "Checksum: no Modbus ASCII frame");
        row("a sentence", nmea, "$GPGLL*50\r\n", "Checksum right");
        row("no end mark", nmea, "$GPGLL50\r\n", "Checksum: no NMEA frame");
    }

    void TelegramsAreJudged()
    {
        QFETCH(ChecksumRule, rule);
        QFETCH(QByteArray, telegram);
        QTEST(Checksum::Text(rule, Checksum::Check(rule, telegram)), "text");
    }

    void RulesAreStored()
    {
        for (const ChecksumRow &row : Checksum::Rows()) {
            const ChecksumRule rule{row.kind, 7, !row.highByteFirst};
            ChecksumRule restored;
            QVERIFY(Checksum::Restore(Checksum::Stored(rule), restored));
            QVERIFY(restored == rule);
        }
        for (const char *damaged : {"", "crc8", "crc8,0,low", "crc9,1,low", "crc8,1,up"}) {
            ChecksumRule rule;
            QVERIFY(!Checksum::Restore(QString::fromLatin1(damaged), rule));
        }
    }
};

QTEST_APPLESS_MAIN(tst_checksums)
#include "tst_checksums.moc"
