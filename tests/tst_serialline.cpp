// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SerialLine.h"
#include "support/Cases.h"
#include "support/LineStandIn.h"
#include "support/PtyPair.h"

#include <sys/ioctl.h>

namespace
{

/// Notes what is heard, in order: bytes, "!2" for two damaged bytes, "^" breaks, "#" overruns, and
/// the modem lines that are on, such as "<CTS RI>".
class Notes final : public LineListener
{
  public:
    QByteArray text;

    void OnRead(const LineRead &read) override { text += read.bytes; }
    void OnCondition(LineCondition condition, qint64 count, const LineTime &) override
    {
        text += "!^#"[size_t(condition)] + QByteArray::number(count);
    }
    void OnModemLines(const ModemLines &lines, const LineTime &) override
    {
        text += '<' + QByteArray(lines.CTS ? "CTS " : "") + (lines.DSR ? "DSR " : "") +
                (lines.DCD ? "DCD " : "") + (lines.RI ? "RI " : "") + '>';
    }
    void OnGone(const QString &, const LineTime &) override { text += " gone"; }
};

QByteArray Text(const std::optional<qint64> &count)
{
    return count ? QByteArray::number(*count) : "none";
}

/// A line on a pseudo-terminal whose driver says what the test has it say.
struct Bench {
    LineStandIn standIn;
    PtyPair pty;
    LineLoop loop;
    SerialLine line{loop};
    Notes notes;

    explicit Bench(const QByteArray &driver)
    {
        if (!driver.isEmpty())
            standIn.Say(pty, driver);
        line.Listen(&notes);
    }
    ~Bench() { End(); }
    Q_DISABLE_COPY_MOVE(Bench)

    void Open()
    {
        const Result opened = line.Open({1, pty.DeviceName(), pty.DeviceName(), {}, true});
        if (opened.Failed())
            qFatal("%s", qPrintable(opened.Cause()));
    }
    void Begin()
    {
        Open();
        loop.Do([this] { line.BeginReading(); });
    }
    void End()
    {
        loop.Do([this] { line.EndReading(); });
    }
    QByteArray Heard()
    {
        QByteArray heard;
        loop.Do([&] { heard = notes.text; });
        return heard;
    }
    QByteArray Counted() const
    {
        const LineCounts counts = line.Counts();
        return Text(counts.damaged) + ' ' + Text(counts.breaks) + ' ' + Text(counts.overruns);
    }
};

} // namespace

/// What a line with a real driver tells; the driver is a stand-in.
class tst_serialline : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void EveryByteArrivesOnce_data()
    {
        const Cases<QByteArray, bool> row("driver", "marked");
        row("a driver that counts", "brk=0", true);
        row("a driver with modem lines", "cts=0", true);
        row("a pseudo-terminal", "", false);
    }

    /// With marks the system itself doubles FF.
    void EveryByteArrivesOnce()
    {
        QFETCH(QByteArray, driver);
        QFETCH(bool, marked);
        QByteArray all("\xFF\xFF\xFF");
        for (int round = 0; round < 40; ++round) {
            for (int value = 0; value < 256; ++value)
                all += char(round % 2 == 0 ? value : 255 - value);
        }
        Bench bench(driver);
        QVERIFY(bench.pty.Write(all.first(200) + "\xFF")); // before there are marks
        QTRY_VERIFY([&] {
            int waiting = 0;
            return ::ioctl(bench.pty.Device(), FIONREAD, &waiting) == 0 && waiting == 201;
        }());
        bench.Begin();
        termios line = {};
        QCOMPARE(::tcgetattr(bench.pty.Device(), &line), 0);
        QCOMPARE(line.c_iflag & (IGNBRK | BRKINT | IGNPAR | INPCK | PARMRK),
                 tcflag_t(marked ? INPCK | PARMRK : 0));
        QVERIFY(bench.pty.Write(all));
        QTRY_COMPARE(bench.Heard(), all.first(200) + "\xFF" + all);
        QCOMPARE(bench.line.Counts().receivedBytes, all.size() + 201);
    }

    void MarksBecomeEvents_data()
    {
        const Cases<QByteArray, QByteArray, QByteArray, QByteArray, QByteArray> row(
            "before", "driver", "raw", "heard", "counted");
        const QByteArray raw("a\xFF\0b\xFF\0\0\xFF\xFF\xFF\0\0z", 13);
        row("a driver that does not count", "cts=0", "cts=0", raw, "ab!1^1\xFF^1z", "1 2 none");
        row("one that counts a break", "brk=5 frame=1", "brk=6 frame=3", raw,
            QByteArray("ab!1^1\xFF\0!1z", 11), "2 1 0");
        row("one that counts none", "brk=5 frame=1", "brk=5 frame=4", raw,
            QByteArray("ab!1\0!1\xFF\0!1z", 12), "3 0 0");
        row("one with more than it marks", "parity=0", "parity=2 overrun=3 brk=1", "", "#3!2^1",
            "2 1 3");
        row("none without a mark", "cts=0", "cts=0", "a", "a", "none none none");
    }

    void MarksBecomeEvents()
    {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, driver);
        QFETCH(QByteArray, raw);
        QFETCH(QByteArray, heard);
        Bench bench(before + " marks=1");
        bench.Begin();
        bench.loop.Do([&] { // at one moment
            bench.standIn.Say(bench.pty, driver + " marks=1");
            bench.pty.Write(raw);
        });
        QTRY_COMPARE(bench.Heard(), heard);
        QTEST(bench.Counted(), "counted");
        QCOMPARE(bench.line.Counts().receivedChunks, raw.isEmpty() ? 0 : 1);
    }

    void AHalfMarkIsNotLost()
    {
        for (const bool gone : {false, true}) {
            Bench bench("brk=0 marks=1");
            bench.Begin();
            QVERIFY(bench.pty.Write(QByteArray("a\xFF\0", 3)));
            QTRY_COMPARE(bench.Heard(), "a");
            if (gone)
                bench.pty.Unplug();
            else
                bench.End();
            QTRY_COMPARE(bench.Heard(), QByteArray("a\xFF\0", 3) + (gone ? " gone" : ""));
        }
    }

    void ModemLinesAreToldAsTheyChange()
    {
        Bench bench("cts=1 dsr=0 dcd=0 rng=0");
        bench.Open();
        QCOMPARE(bench.line.Counts().modem, (ModemLines{true, false, false, false}));
        bench.loop.Do([&] { bench.line.BeginReading(); });
        bench.standIn.Say(bench.pty, "cts=0 dsr=1 dcd=1 rng=1");
        QTRY_COMPARE(bench.Heard(), "<DSR DCD RI >");
        bench.standIn.Say(bench.pty, "cts=1");
        QTRY_COMPARE(bench.Heard(), "<DSR DCD RI ><CTS >");
        QCOMPARE(bench.line.Counts().modem, (ModemLines{true, false, false, false}));
    }

    void OwnLinesAreSwitched()
    {
        Bench bench("cts=0");
        bench.Begin();
        QCOMPARE(bench.standIn.Switched(bench.pty), "rts=1"); // by the opening
        QVERIFY(bench.line.Counts().RTS && bench.line.Counts().DTR);
        QVERIFY(!bench.line.SetRTS(false).Failed() && !bench.line.Counts().RTS);
        QCOMPARE(bench.standIn.Switched(bench.pty), "rts=0");
        QVERIFY(!bench.line.SetDTR(false).Failed() && !bench.line.Counts().DTR);
        QCOMPARE(bench.standIn.Switched(bench.pty), "dtr=0");
        bench.standIn.Say(bench.pty, "");
        QVERIFY(bench.line.SetRTS(true).Failed() && !bench.line.Counts().RTS);
        QTRY_VERIFY(!bench.line.Counts().modem);
    }
};

QTEST_GUILESS_MAIN(tst_serialline)
#include "tst_serialline.moc"
