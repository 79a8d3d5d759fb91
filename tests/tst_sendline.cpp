// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "MdSendLine.h"
#include "PortDevices.h"
#include "SQEditSequence.h"
#include "SendLine.h"
#include "SendLineSettings.h"
#include "support/Cases.h"
#include "support/CommunicationBench.h"
#include "support/MemoryStore.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QSpinBox>

namespace
{

/// The send line over scripted ports.
class LineDesk : public CommunicationBench
{
  public:
    MemoryStore store;
    PortDevices devices{store, [](int) { return QString(); }};
    SendLineSettings stored;
    MdSendLine line{{communication, settings.comm, devices, stored}};
    SendLine widget{line};

    explicit LineDesk(bool open = true)
    {
        if (open)
            communication.OpenPorts();
        widget.show();
    }

    template <typename Widget> Widget *Find(const char *name) const
    {
        return widget.findChild<Widget *>(name);
    }
    SQEditSequence &Entry() const { return *Find<SQEditSequence>("txtLine"); }
    void Type(const QString &text) const
    {
        for (const QChar character : text)
            QTest::sendKeyEvent(QTest::Click, &Entry(), Qt::Key_unknown, character, {});
    }
    void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const
    {
        QTest::keyClick(&Entry(), key, modifiers);
    }
    void Choose(const char *box, const QString &entry) const
    {
        Find<QComboBox>(box)->setCurrentText(entry);
    }
    QByteArray Sent() { return std::exchange(portA.line.sent, {}); }
    QString Why() const { return Find<QLabel>("lblWhy")->text(); }
};

} // namespace

class tst_sendline : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void EnterSendsWhatIsTypedAndAppended_data()
    {
        const Cases<QString, QString, QString, QByteArray> row("form", "appends", "keys", "sent");
        row("characters", "ASCII", "CR LF", "Hi", "Hi\r\n");
        row("bytes", "HEX", "nothing", "0d41", "\x0D\x41");
        row("Decimal", "Decimal", "CR", "065", "A\r");
        row("a checksum", "HEX", "CRC-16/Modbus", "010300000002",
            QByteArray::fromHex("010300000002c40b"));
        row("a frame of characters is closed", "ASCII", "NMEA", "$GPGLL", "$GPGLL*50\r\n");
        row("no checksum can be made", "ASCII", "NMEA", "GPGLL", "");
        row("CR alone", "ASCII", "CR", "", "\r");
        row("nothing", "ASCII", "nothing", "", "");
    }

    void EnterSendsWhatIsTypedAndAppended()
    {
        QFETCH(QString, form);
        QFETCH(QString, appends);
        QFETCH(QString, keys);
        QFETCH(QByteArray, sent);
        LineDesk desk;
        desk.Choose("cboForm", form);
        desk.Choose("cboChecksum", appends);
        desk.Type(keys);
        QCOMPARE(desk.Find<QPushButton>("cmdSend")->isEnabled(), !sent.isEmpty());
        desk.Press(Qt::Key_Return);
        QCOMPARE(desk.Sent(), sent);
        QCOMPARE(desk.Entry().Sequence().isEmpty(), !sent.isEmpty() || keys.isEmpty());
        LineDesk next(true); // what was chosen is kept
        next.stored = desk.stored;
        QCOMPARE(MdSendLine({next.communication, next.settings.comm, next.devices, next.stored})
                     .Appendix(),
                 desk.line.Appendix());
    }

    void UpAndDownFetchWhatWasSent()
    {
        LineDesk desk;
        for (const char *text : {"one", "two", "one", "three"}) {
            desk.Type(text);
            desk.Press(Qt::Key_Enter, Qt::KeypadModifier);
        }
        desk.Type("typed");
        for (const char *text : {"three", "one", "two", "two"}) {
            desk.Press(Qt::Key_Up);
            QCOMPARE(desk.Entry().Sequence(), text);
        }
        for (const char *text : {"one", "three", "typed", "typed"}) {
            desk.Press(Qt::Key_Down);
            QCOMPARE(desk.Entry().Sequence(), text);
        }
        desk.Press(Qt::Key_Return, Qt::ShiftModifier);
        QCOMPARE(desk.Entry().Sequence(), "typed\r");
    }

    /// Four rows at the most; what is typed beyond is scrolled.
    void TheEntryIsAsHighAsWhatIsTyped()
    {
        LineDesk desk;
        QList<int> heights = {desk.Entry().height()};
        for (int row = 2; row <= 5; ++row) {
            while (desk.Entry().Layout().RowCount() < row)
                desk.Type("x");
            heights << desk.Entry().height();
        }
        const int step = heights[1] - heights[0];
        QVERIFY(step > 0);
        QCOMPARE(heights[3] - heights[2], step);
        QCOMPARE(heights[4], heights[3]);
        QSignalSpy left(&desk.widget, &SendLine::Left);
        desk.Press(Qt::Key_Escape);
        QCOMPARE(left.size(), 1);
    }

    void ClosedWhileNothingCanBeSent_data()
    {
        const Cases<CommMode, bool, QString, QString> row("mode", "open", "device", "why");
        row("open", CommMode::SendReceive, true, "", "");
        row("open in mode 2", CommMode::MonitorReceiveAndModify, true, "", "");
        row("no port", CommMode::SendReceive, false, "", "no port is open");
        row("mode 1", CommMode::MonitorReceiveOnly, true, "", "(Receive Only)");
        row("listens", CommMode::SendReceive, true, "rfc2217://host:2217?listen", "only listens");
    }

    void ClosedWhileNothingCanBeSent()
    {
        QFETCH(CommMode, mode);
        QFETCH(bool, open);
        QFETCH(QString, device);
        QFETCH(QString, why);
        LineDesk desk(false);
        desk.devices.AssignForRun(desk.settings.comm.PortA(), device);
        desk.settings.comm.stored.CommType = qint32(mode);
        if (open)
            desk.communication.OpenPorts();
        else
            desk.communication.ClosePorts();
        QVERIFY2(desk.Why().contains(why), qPrintable(desk.Why()));
        const bool closed = !why.isEmpty();
        QCOMPARE(desk.Why().isEmpty(), !closed);
        QCOMPARE(desk.Entry().isEnabled(), !closed);
        desk.Type("x");
        desk.Press(Qt::Key_Return);
        QCOMPARE(desk.line.Repeat("x"), !closed);
        QCOMPARE(desk.Sent(), closed ? "" : "x");
    }

    void RepeatsUntilAClickOrOutOfSight()
    {
        LineDesk desk;
        desk.Find<QSpinBox>("spnEvery")->setValue(20);
        desk.Find<QSpinBox>("spnCount")->setValue(3);
        desk.Type("x");
        auto *button = desk.Find<QPushButton>("cmdRepeat");
        button->click();
        desk.lines.Pass(0);
        QTRY_COMPARE(desk.Find<QLabel>("lblRepeat")->text(), "78 every 20 ms: 1 of 3 sent");
        QVERIFY(button->isChecked());
        button->click();
        desk.lines.Pass(20'000'000);
        QCOMPARE(desk.Sent(), "x");
        QVERIFY(!button->isChecked());
        button->click();
        desk.widget.hide();
        desk.lines.Pass(40'000'000);
        QCOMPARE(desk.Sent(), "");
    }

    void KeepsWhatWouldBeSent()
    {
        LineDesk desk;
        const QSignalSpy kept(&desk.widget, &SendLine::KeepRequested);
        auto *keep = desk.Find<QPushButton>("cmdKeep");
        QVERIFY(!keep->isEnabled());
        desk.Choose("cboChecksum", "CR");
        desk.Type("x");
        keep->click();
        desk.Press(Qt::Key_Return); // the line is empty again
        keep->click();
        QCOMPARE(kept, (QList<QVariantList>{{QByteArray("x\r")}, {QByteArray("x\r")}}));
    }
};

QTEST_MAIN(tst_sendline)
#include "tst_sendline.moc"
