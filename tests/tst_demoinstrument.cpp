// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "platform/DemoInstrument.h"

#include <QRegularExpression>
#include <QTest>

#include <fcntl.h>
#include <unistd.h>

namespace
{

/// A device opened as any program would open it, and everything heard on it so far.
class Listener
{
  public:
    explicit Listener(const QString &path)
        : m_device(open(qPrintable(path), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC))
    {
    }
    ~Listener() { close(m_device); }
    Q_DISABLE_COPY(Listener)

    bool IsOpen() const { return m_device >= 0; }

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

const QByteArray Reading = "T=21.4 C\r\n";

} // namespace

class tst_demoinstrument : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void OffersTheChannelsOfItsMode()
    {
        for (const int mode : {0, 1, 2}) {
            const DemoInstrument instrument{CommMode(mode)};
            QCOMPARE(instrument.ErrorText(), QString());
            QVERIFY(instrument.DevicePath(0).startsWith("/dev/"));
            QCOMPARE(instrument.DevicePath(1).isEmpty(), mode == 0); // two to listen
            QVERIFY(instrument.DevicePath(0) != instrument.DevicePath(1));
            QCOMPARE(instrument.DevicePath(2), QString());
            QCOMPARE(instrument.DevicePath(-1), QString());
        }
    }

    void SendsReadingsAndStatusFramesUnasked()
    {
        const DemoInstrument instrument(CommMode::SendReceive);
        Listener listener(instrument.DevicePath(0));
        QVERIFY(listener.IsOpen());
        QTRY_COMPARE(listener.Heard().left(Reading.size()), Reading);
        // 0x53 ^ 0x01 ^ 0x00 ^ 0xD9 is 0x8B: after one reading it measures 21.7 degrees.
        const QByteArray frame = QByteArray::fromHex("02530100D98B03");
        QTRY_VERIFY(listener.Heard().contains(frame));
        const QRegularExpression reading("T=2[0-9]\\.[0-9] C\r\n");
        QTRY_VERIFY(QString::fromLatin1(listener.Heard()).count(reading) >= 2);
    }

    void AnswersRequests()
    {
        const std::pair<QByteArrayList, QByteArray> talks[] = {
            {{"*IDN?\r\n"}, "SIMULATED INSTRUMENT 1.0\r\n"},
            {{"*IDN?\r"}, "SIMULATED INSTRUMENT 1.0\r\n"},
            {{"STAT?\r\n"}, "\x02S"},
            {{"ME", "AS?\r\n"}, "T=21.7 C\r\n"}, // in pieces
            {{"WHO?\r\n"}, "ERROR\r\n"}};
        for (const auto &[request, answer] : talks) {
            const DemoInstrument instrument(CommMode::SendReceive);
            Listener listener(instrument.DevicePath(0));
            QTRY_COMPARE(listener.Heard(), Reading);
            for (const QByteArray &piece : request)
                QVERIFY(listener.Say(piece));
            QTRY_COMPARE(listener.Heard().mid(Reading.size(), answer.size()), answer);
        }
    }

    void AsksAQuestionAndAcknowledgesItsAnswer()
    {
        const DemoInstrument instrument(CommMode::SendReceive);
        Listener listener(instrument.DevicePath(0));
        QTRY_VERIFY(listener.Heard().endsWith("READY?\r\n"));
        QVERIFY(!listener.Heard().contains("OK\r\n"));
        QVERIFY(listener.Say("YES\r\n"));
        QTRY_VERIFY(listener.Heard().endsWith("READY?\r\nOK\r\n"));
    }

    void SurvivesAnyNumberOfClosings()
    {
        const DemoInstrument instrument(CommMode::SendReceive);
        for (int round = 0; round < 3; ++round) {
            Listener listener(instrument.DevicePath(0));
            QVERIFY(listener.IsOpen());
            QTRY_VERIFY(listener.Heard().contains("T=2"));
            QVERIFY(listener.Say("*IDN?\r\n"));
            QTRY_VERIFY(listener.Heard().contains("SIMULATED INSTRUMENT 1.0\r\n"));
        }
    }

    void TwoInstrumentsTalkToEachOther()
    {
        const DemoInstrument instrument(CommMode::MonitorReceiveOnly);
        Listener controller(instrument.DevicePath(0));
        Listener meter(instrument.DevicePath(1));
        QTRY_VERIFY(controller.Heard().startsWith("MEAS?\r\n"));
        QTRY_VERIFY(meter.Heard().startsWith("T=21.4 C\r\nSIMULATED INSTRUMENT 1.0\r\n"));
        QTRY_VERIFY(meter.Heard().contains("READY?\r\nOK\r\n"));
        QTRY_VERIFY(controller.Heard().contains("*IDN?\r\nSTAT?\r\nMEAS?\r\nYES\r\n"));
    }

    void TwoInstrumentsDoNotAnswerAThird()
    {
        const DemoInstrument instrument(CommMode::MonitorReceiveAndModify);
        Listener controller(instrument.DevicePath(0));
        QTRY_COMPARE(controller.Heard(), QByteArray("MEAS?\r\n"));
        QVERIFY(controller.Say("*IDN?\r\nWHO?\r\n"));
        QTRY_COMPARE(controller.Heard(), QByteArray("MEAS?\r\n*IDN?\r\nSTAT?\r\nMEAS?\r\nYES\r\n"));
    }
};

QTEST_GUILESS_MAIN(tst_demoinstrument)
#include "tst_demoinstrument.moc"
