// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ComPortClient.h"
#include "support/Cases.h"

using Outcome = ComPortClient::Outcome;
using News = ComPortClient::Piece::News;

namespace
{

QByteArray Bytes(const char *hex)
{
    return QByteArray::fromHex(hex);
}

/// What a server says that agrees to everything, and that it has done as asked: 9600,N,8,1.
const char *const Agreed = "fffd2c fffd00 fffb00 fffd03 fffb03";
const char *const Done = "fffa2c6500002580fff0 fffa2c6608fff0 fffa2c6701fff0 fffa2c6801fff0";

/// What comes of it, in words; the server's words are fed in parts of so many bytes.
QByteArray Heard(ComPortClient &client, const QByteArray &words, qsizetype part)
{
    QByteArray heard;
    for (qsizetype at = 0; at < words.size(); at += part) {
        const QByteArray fed = words.mid(at, part);
        client.Feed(fed);
        while (const auto piece = client.Next()) {
            heard += piece->bytes;
            if (piece->news == News::ModemLines)
                heard += client.Modem()->CTS ? "<CTS>" : "<-CTS>";
            if (piece->news == News::LineState)
                heard += '<' + QByteArray::number(piece->lineState, 16) + '>';
            if (piece->news == News::Settings)
                heard += '<' + LineSettingsText(client.Settings()).toLatin1() + '>';
        }
    }
    return heard;
}

} // namespace

/// The conversation with a serial port server, from bytes to bytes.
class tst_comportclient : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void TheServersWordsAreUnderstood_data()
    {
        const Cases<QByteArray, QByteArray, Outcome, QString> row("words", "heard", "state",
                                                                  "settings");
        const QByteArray ready = Bytes(Agreed) + Bytes(Done);
        const QString asked = "9600,N,8,1";
        row("nothing", "", "", Outcome::Opening, asked);
        row("a server of plain bytes", "login: ", "login: ", Outcome::Opening, asked);
        row("agreed, not set", Bytes(Agreed), "", Outcome::Opening, asked);
        row("all but the stop bits", ready.chopped(7), "", Outcome::Opening, asked);
        row("set", ready, "", Outcome::Ready, asked);
        row("set before it was agreed", Bytes(Done) + Bytes(Agreed), "", Outcome::Opening, asked);
        row("set twice", ready + Bytes(Done), "", Outcome::Ready, asked);
        row("knows no lines", Bytes("fffe2c"), "", Outcome::NoComPort, asked);
        row("changes bytes", Bytes("fffc00"), "", Outcome::NoBinary, asked);
        row("does seven bits", Bytes(Agreed) + Bytes(Done).replace(14, 1, "\7"), "",
            Outcome::OtherSettings, "9600,N,7,1");
        row("a rate that comes near", ready + Bytes("fffa2c6500002594fff0"), "", Outcome::Ready,
            "9620,N,8,1");
        row("an escaped rate", ready + Bytes("fffa2c650000fffffffffff0"), "<65535,N,8,1>",
            Outcome::Ready, "65535,N,8,1");
        row("other settings later on, told once",
            ready + Bytes("fffa2c6603fff0 fffa2c6703fff0 fffa2c6703fff0 fffa2c6803fff0"),
            "<9600,E,8,1>", Outcome::Ready, "9600,E,8,1.5");
        row("data", ready + Bytes("61ffff62 0d00 fff1 63"), Bytes("61ff620d0063"), Outcome::Ready,
            asked);
        row("line state at its place", ready + Bytes("61fffa2c6a10fff062"), "a<10>b",
            Outcome::Ready, asked);
        row("modem lines once each", ready + Bytes("fffa2c6b11fff0 fffa2c6b10fff0 fffa2c6b01fff0"),
            "<CTS><-CTS>", Outcome::Ready, asked);
        row("a device with lines", ready + Bytes("fffa2c690bfff0 fffa2c6b10fff0 fffa2c6b01fff0"),
            "<-CTS><CTS><-CTS>", Outcome::Ready, asked);
        row("a lost end", ready + Bytes("fffa2c6b fffb05 61"), "a", Outcome::Ready, asked);
        row("words without sense",
            ready + Bytes("fffa2cfff0 fffafff0 fffa1865fff0 fffa2c65fff0 fffa2c6500000000fff0"
                          "fffa2c6609fff0 fffa2c6700fff0 fffa2cc8fff0 fff0"),
            "", Outcome::Ready, asked);
        row("one without an end",
            ready + Bytes("fffa2c6a") + QByteArray(1 << 20, '\x10') + Bytes("fff061"), "a",
            Outcome::Ready, asked);
    }
    /// However the reads are cut.
    void TheServersWordsAreUnderstood()
    {
        QFETCH(QByteArray, words);
        for (const qsizetype part : {qsizetype(1), qsizetype(3), qsizetype(1 << 21)}) {
            ComPortClient client({});
            QTEST(Heard(client, words, part), "heard");
            QTEST(client.Verdict(), "state");
            QTEST(LineSettingsText(client.Settings()), "settings");
        }
    }

    void WhatIsSent_data()
    {
        const Cases<bool, QByteArray, QByteArray> row("listens", "words", "sent");
        const QByteArray first = Bytes("fffb2c fffb00 fffd00 fffb03 fffd03");
        const QByteArray asked =
            Bytes("fffa2c00fff0 fffa2c0100002580fff0 fffa2c0208fff0 fffa2c0301fff0"
                  "fffa2c0401fff0 fffa2c0501fff0 fffa2c050bfff0 fffa2c0508fff0"
                  "fffa2c0a1efff0 fffa2c0bfffffff0");
        row("at first", false, "", first);
        row("with settings and signals", false, Bytes("fffd2c"), first + asked);
        row("only once", false, Bytes("fffd2c fffd2c fffe2c fffd2c"),
            first + asked + Bytes("fffc2c fffb2c"));
        row("listening", true, Bytes(Agreed) + Bytes(Done), first + Bytes("fffa2c00fff0"));
        row("what is not wanted is refused", true, Bytes("fffb01 fffd18"),
            first + Bytes("fffe01 fffc18"));
        row("what is off already is not", true, Bytes("fffc01 fffe18"), first);
        row("not for ever", true, Bytes("fffd18").repeated(100'000),
            first + Bytes("fffc18").repeated(16));
        row("nor in a quarrel", true, Bytes("fffd00") + Bytes("fffe00fffd00").repeated(100'000),
            first + Bytes("fffc00fffb00").repeated(8));
    }
    void WhatIsSent()
    {
        QFETCH(bool, listens);
        QFETCH(QByteArray, words);
        ComPortClient client({.settings = {}, .listens = listens});
        Heard(client, words, words.size() + 1);
        QTEST(client.TakeOutgoing(), "sent");
        QCOMPARE(client.TakeOutgoing(), "");
        QCOMPARE(Telnet::Escaped(Bytes("00ff61ffff")), Bytes("00ffff61ffffffff"));
    }

    void SettingsTravel_data()
    {
        const Cases<QString, QByteArray> row("settings", "commands");
        row("slow", "110,E,7,2",
            Bytes("fffa2c010000006efff0 fffa2c0207fff0 fffa2c0303fff0 fffa2c0402fff0"));
        row("fast", "16777215,O,5,1.5",
            Bytes("fffa2c0100fffffffffffffff0 fffa2c0205fff0 fffa2c0302fff0 fffa2c0403fff0"));
        row("mark", "300,M,8,1",
            Bytes("fffa2c010000012cfff0 fffa2c0208fff0 fffa2c0304fff0 fffa2c0401fff0"));
        row("space", "300,S,8,1",
            Bytes("fffa2c010000012cfff0 fffa2c0208fff0 fffa2c0305fff0 fffa2c0401fff0"));
    }
    void SettingsTravel()
    {
        QFETCH(QString, settings);
        QFETCH(QByteArray, commands);
        ComPortClient client({.settings = *ParseLineSettings(settings)});
        Heard(client, Bytes(Agreed), 1);
        QVERIFY(client.TakeOutgoing().contains(commands));
    }

    void SignalsAndNames()
    {
        ComPortClient client({});
        Heard(client, Bytes(Agreed) + Bytes(Done), 1);
        QVERIFY(client.RTS() && client.DTR() && !client.Modem() && !client.Suspended());
        client.TakeOutgoing();
        client.SetRTS(false);
        client.SetDTR(true);
        client.SetBreak(true);
        client.SetBreak(false);
        QCOMPARE(client.TakeOutgoing(),
                 Bytes("fffa2c050cfff0 fffa2c0508fff0 fffa2c0505fff0 fffa2c0506fff0"));
        Heard(client, Bytes("fffa2c050bfff0 fffa2c690bfff0 fffa2c6909fff0 fffa2c6cfff0"), 1);
        QVERIFY(client.RTS() && !client.DTR() && client.Modem() && client.Suspended());
        Heard(client, Bytes("fffa2c6dfff0 fffa2c6473657220326e 0a07 fff0"), 1);
        QVERIFY(!client.Suspended());
        QCOMPARE(client.ServerName(), "ser 2n");
    }
};

QTEST_GUILESS_MAIN(tst_comportclient)
#include "tst_comportclient.moc"
