// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "DemoInstrument.h"

#include <QTest>

#include <fcntl.h>
#include <unistd.h>

namespace
{

/// A device opened as any program would open it, and everything heard on it so far.
class Listener
{
  public:
    explicit Listener(const DemoInstrument &instrument, int channel = 0)
        : m_device(open(qPrintable(instrument.DevicePath(channel)), O_RDWR | O_NOCTTY | O_NONBLOCK))
    {
    }
    ~Listener() { close(m_device); }
    Q_DISABLE_COPY(Listener)

    bool Say(const QByteArray &bytes)
    {
        return write(m_device, bytes.data(), size_t(bytes.size())) == bytes.size();
    }

    const QByteArray &Heard()
    {
        char bytes[512];
        for (ssize_t n = 0; (n = read(m_device, bytes, sizeof bytes)) > 0;)
            m_heard.append(bytes, n);
        return m_heard;
    }

  private:
    int m_device;
    QByteArray m_heard;
};

const QByteArray Beginning = "SIMULATED INSTRUMENT\r\nT=21.4 C\r\n";

} // namespace

class tst_demoinstrument : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void SpeaksUnasked()
    {
        const DemoInstrument instrument(CommMode::SendReceive);
        Listener listener(instrument);
        QTRY_COMPARE(listener.Heard().left(Beginning.size()), Beginning);
        // 0x53 ^ 0x01 ^ 0x00 ^ 0xD9 is 0x8B: after one reading it measures 21.7 degrees.
        QTRY_VERIFY(listener.Heard().contains(QByteArray::fromHex("02530100D98B03")));
        QTRY_VERIFY(listener.Heard().count("T=2") >= 2);
        QTRY_VERIFY(listener.Heard().endsWith("READY?\r\n"));
        QVERIFY(!listener.Heard().contains("OK\r\n"));
        QVERIFY(listener.Say("YES\r\n"));
        QTRY_VERIFY(listener.Heard().endsWith("READY?\r\nOK\r\n"));
    }

    void AnswersRequests()
    {
        const std::pair<QByteArrayList, QByteArray> talks[] = {
            {{"*IDN?\r\n"}, "SIMULATED INSTRUMENT 1.0\r\n"},
            {{"*IDN?\r"}, "SIMULATED INSTRUMENT 1.0\r\n"},
            {{"STAT?\r\n"}, "\x02S"},
            {{"*ID", "N?\r\n"}, "SIMULATED INSTRUMENT 1.0\r\n"}, // in pieces
            {{"WHO?\r\n"}, "ERROR\r\n"}};
        for (const auto &[request, answer] : talks) {
            const DemoInstrument instrument(CommMode::SendReceive);
            Listener listener(instrument);
            QTRY_VERIFY(listener.Heard().startsWith(Beginning)); // now it listens
            for (const QByteArray &piece : request)
                QVERIFY(listener.Say(piece));
            QTRY_VERIFY(listener.Heard().mid(Beginning.size()).contains(answer));
        }
    }

    void SurvivesAnyNumberOfClosings()
    {
        const DemoInstrument instrument(CommMode::SendReceive);
        for (int round = 0; round < 3; ++round) {
            Listener listener(instrument);
            QTRY_VERIFY(listener.Heard().contains("T=2"));
            QVERIFY(listener.Say("*IDN?\r\n"));
            QTRY_VERIFY(listener.Heard().contains("SIMULATED INSTRUMENT 1.0\r\n"));
        }
        // Whoever comes in the very moment that another goes may pass for the same.
        const auto greeted = [&] {
            Listener listener(instrument);
            return QTest::qWaitFor(
                [&] { return listener.Heard().startsWith("SIMULATED INSTRUMENT\r\n"); }, 1000);
        };
        QVERIFY(QTest::qWaitFor(greeted));
    }

    void TwoInstrumentsTalkToEachOtherAlone()
    {
        const DemoInstrument instrument(CommMode::MonitorReceiveAndModify);
        Listener controller(instrument);
        Listener meter(instrument, 1);
        QTRY_VERIFY(controller.Heard().startsWith("MEAS?\r\n"));
        QVERIFY(controller.Say("*IDN?\r\n")); // of a third
        QTRY_VERIFY(meter.Heard().contains("SIMULATED INSTRUMENT 1.0\r\n"));
        QTRY_VERIFY(meter.Heard().contains("READY?\r\n"));
        QCOMPARE(meter.Heard().count("SIMULATED INSTRUMENTS\r\n"), 1);
        QTRY_VERIFY(controller.Heard().endsWith("YES\r\n"));
    }
};

QTEST_GUILESS_MAIN(tst_demoinstrument)
#include "tst_demoinstrument.moc"
