// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CaptureBookmarks.h"
#include "CaptureEncoder.h"
#include "CapturePages.h"
#include "CaptureSection.h"
#include "CaptureTraffic.h"
#include "PcapBlocks.h"
#include "PlainText.h"
#include "TextStyle.h"
#include "support/Cases.h"
#include "support/ScriptedDisk.h"

#include <QDataStream>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

namespace
{

using Kind = TrafficEvent::Kind;
using Step = CaptureReader::Step;

constexpr qint64 Second = 1'000'000'000;
constexpr qint64 Start = 1'700'000'000 * Second;

TrafficEvent Event(Kind kind, qint64 time, const QByteArray &bytes = {}, int channel = 0)
{
    TrafficEvent event;
    event.kind = kind;
    event.channel = channel;
    event.time = {Start + time, Start + time};
    event.bytes = bytes;
    return event;
}

TrafficEvent Named(TrafficEvent event, const QList<QByteArray> &names, bool answer = false)
{
    event.names = names;
    event.answer = answer;
    return event;
}

TrafficEvent Counted(TrafficEvent event, qint64 count, const QString &cause = {})
{
    event.count = count;
    event.cause = cause;
    return event;
}

/// One of everything, as a test of a modem would see it.
QList<TrafficEvent> SampleEvents()
{
    TrafficEvent modem = Event(Kind::ModemLines, 7);
    modem.modem = {.CTS = true, .DSR = false, .DCD = true, .RI = true};
    TrafficEvent uncertain = Event(Kind::Received, 11, "B", 1);
    uncertain.orderUncertain = true;
    return {Event(Kind::Opened, 0),
            Named(Event(Kind::Sent, 1, "ATZ\r"), {"Reset"}),
            Event(Kind::Received, 2, QByteArray("\r\n", 2)),
            Named(Event(Kind::Received, 3, "OK"), {"Acknowledgement", "Two, \xE4\x80"}),
            Named(Event(Kind::Sent, 3, QByteArray("\0\xFF", 2)), {"Acknowledgement"}, true),
            Counted(Event(Kind::Damaged, 4), 1),
            Counted(Event(Kind::Break, 5), 1),
            Counted(Event(Kind::Overrun, 6), 7),
            modem,
            Counted(Event(Kind::NotSent, 8), 12, "COM1 does not send: 4 bytes are waiting"),
            Counted(Event(Kind::Gone, 9), 0, "No such device"),
            Event(Kind::Back, 10),
            uncertain,
            Counted(Event(Kind::Lost, 12, {}, 1), 123456),
            Event(Kind::Closed, 13, {}, 1)};
}

const QList<TrafficPort> TwoPorts = {{"COM1", "/dev/ttyUSB0 (an adapter)", 9600},
                                     {"COM2", "/dev/ttyUSB1", 115200}};

QByteArray CaptureOf(const QList<TrafficEvent> &events, const QList<TrafficPort> &ports = TwoPorts)
{
    CaptureEncoder encoder(ports, "Serimonde");
    QByteArray capture = encoder.Head();
    for (const TrafficEvent &event : events)
        encoder.Append(capture, event);
    return capture;
}

struct Reading {
    Result begun;
    QList<TrafficEvent> events;
    QList<TrafficPort> ports;
    QString damage;
};

Reading Read(const QByteArray &file)
{
    const ScriptedDisk::Reader device(file);
    CaptureReader reader(device);
    Reading reading;
    reading.begun = reader.Begin();
    CaptureTraffic traffic(reader);
    TrafficEvent event;
    Step step = reading.begun.Failed() ? Step::End : traffic.Next(event);
    for (; step == Step::Packet; step = traffic.Next(event))
        reading.events << event;
    if (step == Step::Damaged)
        reading.damage = reader.Damage().cause;
    reading.ports = reader.Ports();
    return reading;
}

QString Shown(const TrafficEvent &event)
{
    const ModemLines &m = event.modem;
    return QStringList{QString::number(int(event.kind)),
                       QString::number(event.channel),
                       QString::number(event.time.monotonic - Start),
                       QString::number(event.time.wall - Start),
                       event.bytes.toHex(),
                       event.names.join('|').toHex(),
                       QString::number(event.answer),
                       QString::number(event.count),
                       event.cause,
                       QString::number(event.orderUncertain),
                       event.kind == Kind::ModemLines
                           ? QString("%1%2%3%4").arg(m.CTS).arg(m.DSR).arg(m.DCD).arg(m.RI)
                           : QString()}
        .join(' ');
}

QStringList Shown(const QList<TrafficEvent> &events)
{
    QStringList lines;
    for (const TrafficEvent &event : events)
        lines << Shown(event);
    return lines;
}

/// Captures as other programs write them, put together number by number.
class Foreign
{
  public:
    explicit Foreign(QDataStream::ByteOrder order) : m_order(order) {}

    QByteArray Numbers(const QList<QPair<int, quint64>> &sizesAndNumbers) const
    {
        QByteArray bytes;
        QDataStream stream(&bytes, QIODevice::WriteOnly);
        stream.setByteOrder(m_order);
        for (const auto &[size, number] : sizesAndNumbers) {
            if (size == 1)
                stream << quint8(number);
            else if (size == 2)
                stream << quint16(number);
            else if (size == 4)
                stream << quint32(number);
            else
                stream << number;
        }
        return bytes;
    }
    QByteArray Block(quint32 type, QByteArray body) const
    {
        body.append((4 - body.size() % 4) % 4, '\0');
        const quint64 length = quint64(body.size()) + 12;
        return Numbers({{4, type}, {4, length}}) + body + Numbers({{4, length}});
    }
    QByteArray Section(const QByteArray &options = {}) const
    {
        return Block(0x0A0D0D0A,
                     Numbers({{4, 0x1A2B3C4D}, {2, 1}, {2, 0}, {8, ~quint64(0)}}) + options);
    }
    QByteArray Interface(const QByteArray &options = {}, int linkType = 250, quint64 snap = 0) const
    {
        return Block(1, Numbers({{2, quint64(linkType)}, {2, 0}, {4, snap}}) + options);
    }
    QByteArray Option(quint64 code, const QByteArray &value) const
    {
        return Numbers({{2, code}, {2, quint64(value.size())}}) +
               value.leftJustified((value.size() + 3) / 4 * 4, '\0');
    }
    /// Big endian always.
    static QByteArray Record(int event, const QByteArray &bytes)
    {
        return Foreign(QDataStream::BigEndian)
                   .Numbers(
                       {{4, Start / Second}, {4, 250000}, {1, quint64(event)}, {1, 0}, {2, 0}}) +
               bytes;
    }
    QByteArray Packet(quint64 ticks, const QByteArray &record, quint64 interface = 0,
                      const QByteArray &options = {}) const
    {
        const auto size = quint64(record.size());
        const QByteArray head = Numbers(
            {{4, interface}, {4, ticks >> 32}, {4, ticks & 0xFFFFFFFF}, {4, size}, {4, size}});
        return Block(6, head + record.leftJustified((record.size() + 3) / 4 * 4, '\0') + options);
    }
    QByteArray Pcap(quint64 magic, const QList<QPair<quint64, QByteArray>> &packets,
                    quint64 linkType = 250) const
    {
        QByteArray file =
            Numbers({{4, magic}, {2, 2}, {2, 4}, {4, 0}, {4, 0}, {4, 65535}, {4, linkType}});
        for (const auto &[part, record] : packets) {
            const auto size = quint64(record.size());
            file += Numbers({{4, Start / Second}, {4, part}, {4, size}, {4, size}}) + record;
        }
        return file;
    }

  private:
    QDataStream::ByteOrder m_order;
};

} // namespace

class tst_captures : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void EventsComeBack()
    {
        QList<TrafficEvent> events = SampleEvents();
        const Reading reading = Read(CaptureOf(events));
        QCOMPARE(reading.damage, QString());
        QCOMPARE(Shown(reading.events), Shown(events));
        QCOMPARE(reading.ports, TwoPorts);
        QCOMPARE(reading.events[2].direction, 0); // channel 1 of two
        QCOMPARE(Read(CaptureOf(events.first(4), {TwoPorts[0]})).events[2].direction,
                 StyleIndex::Direction2);
    }

    /// What docs/capture-format.md explains byte by byte.
    void TheDocumentedExample()
    {
        QFile document(QFINDTESTDATA("../docs/capture-format.md"));
        QVERIFY(document.open(QIODevice::ReadOnly));
        QByteArray bytes;
        for (const QByteArray &line : document.readAll().split('\n')) {
            static const QRegularExpression dump("^    [0-9A-F]{2}  ");
            if (dump.match(QString::fromUtf8(line)).hasMatch())
                bytes += QByteArray::fromHex(line.sliced(8));
        }
        QCOMPARE(CaptureOf({Named(Event(Kind::Received, 3, "OK"), {"Ack"})}, {{"COM1", {}, 9600}}),
                 bytes);
    }

    void MuchAtOnceBecomesSeveralPackets()
    {
        QByteArray much(200'000, '\0');
        for (qsizetype i = 0; i < much.size(); ++i)
            much[i] = char(i * 7);
        for (const Kind kind : {Kind::Sent, Kind::Received}) {
            const Reading reading = Read(CaptureOf({Named(Event(kind, 1, much), {"Much"})}));
            QByteArray together;
            int named = 0;
            for (const TrafficEvent &event : reading.events) {
                together += event.bytes;
                named += int(!event.names.isEmpty());
                QVERIFY(kind == Kind::Sent || event.bytes.size() <= 511);
            }
            QVERIFY(together == much);
            QCOMPARE(named, 1);
            QVERIFY((kind == Kind::Sent ? reading.events.first() : reading.events.last())
                        .names.contains("Much"));
        }
    }

    void AClockThatIsSetMovesNoDifference()
    {
        TrafficEvent set = Counted(Event(Kind::ClockSet, 5), -3600 * Second);
        TrafficEvent after = Event(Kind::Received, 6, "x");
        set.time.wall -= 3600 * Second;
        after.time.wall -= 3600 * Second;
        const QList<TrafficEvent> events = {Event(Kind::Received, 1, "w"), set, after};
        QCOMPARE(Shown(Read(CaptureOf(events)).events), Shown(events));
    }

    void ReadsWhatOthersWrite_data()
    {
        const Cases<QByteArray> row("file");
        for (const auto order : {QDataStream::BigEndian, QDataStream::LittleEndian}) {
            const Foreign f(order);
            const char *name = order == QDataStream::BigEndian ? "big" : "little";
            const auto add = [&row, name](const char *what, const QByteArray &file) {
                row(qPrintable(QString("%1, %2 endian").arg(what, name)), file);
            };
            const QByteArray in = Foreign::Record(2, "in");
            const QByteArray out = Foreign::Record(1, "out");
            constexpr quint64 Micro = Start / 1000 + 250000;
            constexpr quint64 Nano = quint64(Start) + 250'000'000;
            add("pcap in us", f.Pcap(0xA1B2C3D4, {{250000, in}, {250001, out}}));
            add("pcap in ns", f.Pcap(0xA1B23C4D, {{250000000, in}, {250001000, out}}));
            add("pcapng in us",
                f.Section() + f.Interface() + f.Packet(Micro, in) + f.Packet(Micro + 1, out));
            add("pcapng in ns, strangers in between",
                f.Section() + f.Block(4711, "unknown") +
                    f.Interface(f.Option(1000, "what") + f.Option(9, QByteArray(1, 9)) +
                                f.Option(3, "a device")) +
                    f.Packet(Nano, in, 0, f.Option(1001, "x") + f.Option(2, f.Numbers({{4, 1}}))) +
                    f.Block(0x80000001, QByteArray(1000, 'x')) + f.Packet(Nano + 1000, out));
            add("pcapng in halves of a millionth, with an offset",
                f.Section() +
                    f.Interface(f.Option(9, QByteArray(1, char(0x80 | 20))) +
                                f.Option(14, f.Numbers({{8, quint64(Start / Second)}}))) +
                    f.Packet(1 << 18, in) + f.Packet((1 << 18) + 1, out));
            add("packets of old kinds, a section of the other order",
                f.Section() + f.Interface({}, 250, 14) + f.Block(3, f.Numbers({{4, 14}}) + in) +
                    Foreign(QDataStream::BigEndian).Section() +
                    Foreign(QDataStream::BigEndian).Interface() +
                    Foreign(QDataStream::BigEndian)
                        .Block(2, Foreign(QDataStream::BigEndian)
                                          .Numbers({{2, 0},
                                                    {2, 0},
                                                    {4, (Micro + 1) >> 32},
                                                    {4, (Micro + 1) & 0xFFFFFFFF},
                                                    {4, 15},
                                                    {4, 15}}) +
                                      out));
            add("interfaces that take the place of others",
                f.Section() + f.Interface() + f.Packet(Micro, in) +
                    f.Interface(f.Option(1, "channel 1")) + f.Interface(f.Option(1, "channel 2")) +
                    f.Interface(f.Option(1, "channel 1")) + f.Packet(Micro + 1, out, 3));
        }
    }
    void ReadsWhatOthersWrite()
    {
        QFETCH(const QByteArray, file);
        const Reading reading = Read(file);
        QVERIFY2(!reading.begun.Failed(), qPrintable(reading.begun.Cause()));
        QCOMPARE(reading.damage, QString());
        QCOMPARE(reading.events.size(), 2);
        QCOMPARE(reading.events[0].bytes, "in");
        QCOMPARE(reading.events[0].kind, Kind::Received);
        QCOMPARE(reading.events[0].time.wall - Start, 250'000'000);
        QCOMPARE(reading.events[1].bytes, "out");
        QCOMPARE(reading.events[1].kind, Kind::Sent);
        QVERIFY(qAbs(reading.events[1].time.wall - Start - 250'001'000) < 100);
        QCOMPARE(reading.ports.size(), 1);
    }

    void Refuses_data()
    {
        const Cases<QByteArray, QString> row("file", "cause");
        const Foreign f(QDataStream::LittleEndian);
        row("nothing", {}, "The file is empty");
        row("text", "HEX log of a line\r\n", "The file is neither a pcapng nor a pcap capture");
        row("Ethernet in pcap", f.Pcap(0xA1B2C3D4, {}, 1), "link type 1 (Ethernet)");
        row("Ethernet in pcapng", f.Section() + f.Interface({}, 1), "link type 1 (Ethernet)");
        row("something else", f.Section() + f.Interface({}, 147), "link type 147, not of serial");
    }
    void Refuses()
    {
        QFETCH(const QByteArray, file);
        QFETCH(const QString, cause);
        const Reading reading = Read(file);
        QVERIFY(reading.begun.Failed());
        QVERIFY2(reading.begun.Cause().contains(cause), qPrintable(reading.begun.Cause()));
    }

    void DamageTakesNothingThatIsBeforeIt()
    {
        const QList<TrafficEvent> events = SampleEvents();
        const QByteArray whole = CaptureOf(events);
        const QStringList all = Shown(events);
        for (qsizetype length = CaptureOf({}).size(); length <= whole.size(); ++length) {
            const Reading reading = Read(whole.first(length));
            QCOMPARE(Shown(reading.events), all.first(reading.events.size()));
            const qsizetype read = CaptureOf(events.first(reading.events.size())).size();
            if (length == read)
                QCOMPARE(reading.damage, QString());
            else
                QVERIFY2(reading.damage.startsWith(
                             QString("The capture is damaged from byte %1 on: it ends in the ")
                                 .arg(read)),
                         qPrintable(reading.damage));
        }
    }

    void LyingNumbersEndInDamage()
    {
        const QByteArray whole = CaptureOf(SampleEvents());
        for (qsizetype place = 0; place + 4 <= whole.size(); place += 2) {
            for (const quint32 lie : {0U, 8U, 13U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
                QByteArray file = whole;
                memcpy(file.data() + place, &lie, sizeof lie);
                const Reading reading = Read(file);
                QVERIFY(reading.events.size() <= SampleEvents().size() + 1);
            }
        }
        const Foreign f(QDataStream::LittleEndian);
        QVERIFY(!Read(f.Section() + f.Interface() + f.Packet(1, "short")).damage.isEmpty());
        QVERIFY(!Read(f.Section() + f.Packet(1, Foreign::Record(2, "x"))).damage.isEmpty());
    }

    void AnotherProgramReadsTheSame()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath("a.pcapng");
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(CaptureOf(SampleEvents()));
        file.close();
        QProcess tshark;
        QStringList arguments = {"-r", path, "-T", "fields", "-E", "separator=|"};
        for (const char *field :
             {"frame.interface_name", "frame.time_epoch", "frame.packet_flags_direction",
              "rtacser.eventtype", "rtacser.cts", "data.data", "frame.comment"})
            arguments << "-e" << field;
        tshark.start("tshark", arguments);
        QVERIFY2(tshark.waitForFinished(), qPrintable(tshark.errorString()));
        const QList<QByteArray> lines = tshark.readAllStandardOutput().trimmed().split('\n');
        QCOMPARE(lines,
                 QByteArray("COM1|1700000000.000000000||0x00|0||opened\n"
                            "COM1|1700000000.000000001|0x00000002|0x01|0|41545a0d|Reset\n"
                            "COM1|1700000000.000000002|0x00000001|0x02|0|0d0a|\n"
                            "COM1|1700000000.000000003|0x00000001|0x02|0|4f4b|"
                            "Acknowledgement,Two, \xC3\xA4\xE2\x82\xAC\n"
                            "COM1|1700000000.000000003|0x00000002|0x01|0|00ff|"
                            "answer to Acknowledgement\n"
                            "COM1|1700000000.000000004||0x07|0||\n"
                            "COM1|1700000000.000000005||0x09|0||\n"
                            "COM1|1700000000.000000006||0x0a|0||7 times\n"
                            "COM1|1700000000.000000007||0x00|1||\n"
                            "COM1|1700000000.000000008||0x00|1||not sent: 12 bytes: "
                            "COM1 does not send: 4 bytes are waiting\n"
                            "COM1|1700000000.000000009||0x00|1||went away: No such device\n"
                            "COM1|1700000000.000000010||0x00|1||is back\n"
                            "COM2|1700000000.000000011|0x00000001|0x02|0|42|order uncertain\n"
                            "COM2|1700000000.000000012||0x05|0||not recorded: 123456 bytes\n"
                            "COM2|1700000000.000000013||0x00|0||closed")
                     .split('\n'));
    }

    /// Wherever the system cuts what a program that is killed was writing.
    void PacketsEndWherePagesDo()
    {
        QList<TrafficEvent> events;
        for (int i = 0; i < 2000; ++i)
            events << Event(Kind::Received, i, QByteArray(1 + i * 7919 % 500, 'x'));
        events << Event(Kind::Sent, 2000, QByteArray(5000, 'y'))
               << Event(Kind::Received, 2001, "z");
        const QByteArray plain = CaptureOf(events);
        QByteArray filled = CapturePages::Fill(plain, 0);
        filled += CapturePages::Fill(CaptureOf({}), filled.size());
        QVERIFY(filled.size() < plain.size() + plain.size() / 5);
        QCOMPARE(Shown(Read(filled).events), Shown(events));
        const qsizetype large = filled.indexOf(QByteArray(5000, 'y'));
        for (qsizetype end = CapturePages::PageSize; end < large - 100;
             end += CapturePages::PageSize)
            QCOMPARE(Read(filled.first(end)).damage, QString());
    }

    void BookmarksOfOthersCaptures_data()
    {
        const Cases<QByteArray, QByteArray> row("before", "after");
        const QByteArray ours = "bookmark at 2023-11-14T22:13:20.000000000Z";
        const QByteArray old = "bookmark at 2001-01-01T00:00:00.000000000Z: old";
        for (const auto order : {QDataStream::LittleEndian, QDataStream::BigEndian}) {
            const Foreign foreign(order);
            const QByteArray end(4, '\0');
            const QByteArray hardware = foreign.Option(2, "a machine");
            const QByteArray note = foreign.Option(1, "bookmark at noon");
            const char *name = order == QDataStream::BigEndian ? "big endian" : "little endian";
            const auto add = [&](const char *what, const QByteArray &before,
                                 const QByteArray &after) {
                row(qPrintable(QString("%1, %2").arg(what, name)), foreign.Section(before),
                    foreign.Section(foreign.Option(1, ours) + after));
            };
            add("without options", {}, end);
            add("with options", hardware + note + end, hardware + note + end);
            add("with bookmarks", foreign.Option(1, old) + note + foreign.Option(1, ours) + end,
                note + end);
            add("with options that do not end", note + hardware, note + hardware);
            add("with half an option", note + hardware.first(8), note + hardware.first(8));
        }
    }

    /// Nothing changes but bookmarks, and they come back.
    void BookmarksOfOthersCaptures()
    {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, after);
        const auto section = CaptureSection::Of(ScriptedDisk::Reader(before + "packets"));
        QVERIFY(section && section->Length() == before.size());
        const QList<CaptureBookmark> bookmarks = {{Start, {}}};
        QCOMPARE(CaptureBookmarks::SectionWith(*section, bookmarks).toHex(' '), after.toHex(' '));
        QCOMPARE(CaptureBookmarks::In(ScriptedDisk::Reader(after)), bookmarks);
        for (qsizetype size = 0; size < before.size(); ++size)
            QVERIFY(!CaptureSection::Of(ScriptedDisk::Reader(before.first(size))));
    }

    void PcapBecomesPcapNg_data()
    {
        const Cases<QDataStream::ByteOrder, quint64, int> row("order", "magic", "resolution");
        row("microseconds", QDataStream::LittleEndian, 0xA1B2C3D4, 6);
        row("nanoseconds, big endian", QDataStream::BigEndian, 0xA1B23C4D, 9);
    }
    void PcapBecomesPcapNg()
    {
        QFETCH(QDataStream::ByteOrder, order);
        QFETCH(quint64, magic);
        QFETCH(int, resolution);
        const QByteArray one = Foreign::Record(2, "one"), two = Foreign::Record(77, {});
        const QByteArray file = Foreign(order).Pcap(magic, {{250, one}, {250000, two}});
        const QByteArray head = PcapBlocks::HeadOf(ScriptedDisk::Reader(file));
        QVERIFY(PcapBlocks::HeadOf(ScriptedDisk::Reader(file.first(23))).isEmpty());
        QVERIFY(PcapBlocks::HeadOf(ScriptedDisk::Reader(file.sliced(1))).isEmpty());
        const PcapBlocks packets(head);
        const Foreign made(QDataStream::LittleEndian);
        QCOMPARE(
            packets.Interface(),
            made.Interface(made.Option(9, QByteArray(1, char(resolution))) + QByteArray(4, '\0'),
                           250, 65535));
        const quint64 second = Start / Second * (resolution == 9 ? 1'000'000'000 : 1'000'000);
        const QByteArrayView bytes = QByteArrayView(file).sliced(head.size());
        QByteArray blocks;
        QCOMPARE(packets.Append(blocks, bytes.chopped(1)), 16 + one.size());
        QCOMPARE(packets.Append(blocks, bytes.sliced(16 + one.size())), 16 + two.size());
        QCOMPARE(blocks, made.Packet(second + 250, one) + made.Packet(second + 250000, two));
        QCOMPARE(packets.Append(blocks, QByteArray(16, '\xFF')), -1);
    }

    void StrangersTextIsPlain()
    {
        const char16_t text[] = u"a\n\x1B[2J\x7F \u202E"
                                u"b\xD83D\xDE00 \xDE00";
        const char16_t shown[] = u"a\u240A\u241B[2J\u2421 \uFFFD"
                                 u"b\xD83D\xDE00 \uFFFD";
        QCOMPARE(PlainText(text), QString::fromUtf16(shown));
    }
};

QTEST_GUILESS_MAIN(tst_captures)
#include "tst_captures.moc"
