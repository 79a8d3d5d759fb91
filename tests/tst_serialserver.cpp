// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CommConfiguration.h"
#include "DisplaySettings.h"
#include "MdCommunication.h"
#include "PortDevices.h"
#include "RemoteOpening.h"
#include "SerialPort.h"
#include "SerialPortHub.h"
#include "StampText.h"
#include "support/Cases.h"
#include "support/FixedClock.h"
#include "support/MemoryStore.h"
#include "support/RecordingLog.h"
#include "support/ScriptedPrompts.h"
#include "support/SerialServer.h"
#include "support/WatchSequence.h"

#include <QDir>
#include <QElapsedTimer>

#include <future>
#include <mutex>

#include <termios.h>

namespace
{

QByteArray AllBytes()
{
    QByteArray bytes;
    for (int byte = 0; byte < 256; ++byte)
        bytes += char(byte);
    return bytes;
}

/// A server's part of an opening with 9600,N,8,1.
const QByteArray Agreed =
    QByteArray::fromHex("fffd2c fffd00 fffb00 fffa2c6500002580fff0 fffa2c6608fff0"
                        "fffa2c6701fff0 fffa2c6801fff0");

QString Address(const QString &scheme, quint16 port, const QString &query = {})
{
    return QStringLiteral("%1://localhost:%2%3").arg(scheme).arg(port).arg(query);
}

/// A port whose line is heard on the lines' thread and asked for by the test's.
class Desk final : private LineListener
{
  public:
    explicit Desk(const QString &address, int number = 1) : m_number(number)
    {
        m_devices.AssignForRun(number, address);
        port.Wire().Listen(this);
    }
    ~Desk() override
    {
        lines.Do([this] { port.Wire().EndReading(); });
        port.SetPortOpen(false).Ignore();
        lines.Do([this] { port.Wire().Listen(nullptr); });
    }
    Q_DISABLE_COPY_MOVE(Desk)

    Result Open(const QString &settings = "9600,N,8,1", bool reopens = false)
    {
        port.SetCommPort(m_number).Ignore();
        port.SetSettings(settings).Ignore();
        port.SetReopens(reopens);
        Result opened = port.SetPortOpen(true);
        lines.Do([this] { port.Wire().BeginReading(); });
        return opened;
    }

    QByteArray Heard() const
    {
        const std::lock_guard guard(m_lock);
        return m_heard;
    }

  private:
    LineLoop m_lines;
    MemoryStore m_store;
    PortDevices m_devices{m_store, [](int) { return QString(); }};
    SerialPortHub m_hub;
    int m_number;
    mutable std::mutex m_lock;
    QByteArray m_heard;

    void Hear(const QByteArray &what)
    {
        const std::lock_guard guard(m_lock);
        m_heard += what;
    }
    void OnRead(const LineRead &read) override { Hear(read.bytes.toByteArray()); }
    void OnCondition(LineCondition condition, qint64, const LineTime &) override
    {
        Hear(std::array{"<damaged>", "<break>", "<overrun>"}[size_t(condition)]);
    }
    void OnModemLines(const ModemLines &modem, const LineTime &) override
    {
        Hear(modem.CTS ? "<CTS>" : "<-CTS>");
    }
    void OnGone(const QString &cause, const LineTime &) override { Hear(cause.toUtf8()); }
    void OnAway(const QString &, qint64, const LineTime &) override { Hear("<away>"); }
    void OnBack(const LineTime &) override { Hear("<back>"); }
    void OnOtherSettings(const QString &what) override { Hear('<' + what.toUtf8() + '>'); }

  public:
    LineLoop &lines = m_lines;
    SerialPort port{m_lines, m_hub, m_devices};
};

/// Certificates of one authority, made anew for each run.
class Certificates
{
  public:
    Certificates()
    {
        const QString request = "req -newkey rsa:2048 -nodes -batch -subj /CN=bench -keyout ";
        Make(request + "ca.key -x509 -days 2 -out ca.crt");
        Make(request + "key -out csr");
        Write("localhost", "subjectAltName=DNS:localhost");
        Write("elsewhere", "subjectAltName=DNS:elsewhere.lab");
        const QString sign = "x509 -req -in csr -CA ca.crt -CAkey ca.key -CAcreateserial ";
        Make(sign + "-days 2 -extfile localhost -out good.crt");
        Make(sign + "-days -1 -extfile localhost -out expired.crt");
        Make(sign + "-days 2 -extfile elsewhere -out elsewhere.crt");
        QDir(m_folder.path()).mkpath("users/bench/allowed_certs");
        QFile::copy(Path("ca.crt"), Path("users/bench/allowed_certs/ca.crt"));
        Make("rehash users/bench/allowed_certs");
        Make("pkcs8 -topk8 -in key -passout pass:word -out locked.key");
    }

    QString Path(const QString &name) const { return m_folder.filePath(name); }
    QString Accepter(const QString &words) const
    {
        return "telnet(rfc2217),ssl(key=" + Path("key") + ",cert=" + Path(words) + "),tcp(nodelay)";
    }

  private:
    void Make(const QString &words) const
    {
        QProcess openssl;
        openssl.setWorkingDirectory(m_folder.path());
        openssl.start("openssl", words.split(u' '));
        if (!openssl.waitForFinished() || openssl.exitCode() != 0)
            qFatal("no certificate: %s", openssl.readAllStandardError().constData());
    }
    void Write(const QString &name, const QByteArray &text) const
    {
        QFile file(Path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
            qFatal("no file");
    }

    QTemporaryDir m_folder;
};

const Certificates &OfThisRun()
{
    static const Certificates certificates;
    return certificates;
}

/// Communication as the program runs it, on two ports of the system.
struct Bench {
    CommConfiguration comm;
    DisplaySettings display;
    StampSettings stamp;
    MdSequenceEdition tables;
    RecordingLog log; ///< on the lines' thread
    ScriptedPrompts prompts;
    FixedClock clock;
    MemoryStore store;
    PortDevices devices{store, [](int) { return QString(); }};
    SerialPortHub hub;
    LineLoop lines;
    SerialPort portA{lines, hub, devices};
    SerialPort portB{lines, hub, devices};
    MdCommunication communication{
        {comm, display, stamp, tables, nullptr, log, prompts, clock, portA, portB, lines}};

    Bench(CommMode mode, const QString &deviceA, const QString &deviceB)
    {
        devices.AssignForRun(1, deviceA);
        devices.AssignForRun(2, deviceB);
        comm.run.mode = mode;
        WatchSequence(tables, "ask", "asked", "YES");
        communication.OpenPorts();
    }

    QByteArray Logged()
    {
        QByteArray text;
        lines.Do([&] { text = log.texts[size_t(Representation::Ascii)]; });
        return text;
    }
};

/// An opening that has not much time; the cause of its failure.
QString Refusal(quint16 port, std::chrono::milliseconds mostTime)
{
    RemoteRequest request;
    request.address = ParseRemoteAddress(Address("rfc2217", port)).address;
    request.mostTime = mostTime;
    RemoteOpening opening(request);
    opening.Open([] { return true; });
    return QString(opening.State().Cause()).replace(QString::number(port), "PORT");
}

} // namespace

/// Lines on other machines, with a real serial port server and with hostile ones.
class tst_serialserver : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void BytesAndSettingsTravel_data()
    {
        const Cases<QString, QString, QString> row("scheme", "accepter", "note");
        row("with settings", "rfc2217", "telnet(rfc2217),tcp(nodelay)", "");
        row("bytes alone", "tcp", "tcp(nodelay)", "set by the other side");
    }
    void BytesAndSettingsTravel()
    {
        QFETCH(QString, scheme);
        QFETCH(QString, accepter);
        SerialServer server(accepter);
        Desk desk(Address(scheme, server.Port()));
        QCOMPARE(desk.Open("19200,N,8,2").Cause(), "");
        const QByteArray bytes = AllBytes().repeated(64);
        QVERIFY(server.line.Write(bytes));
        QTRY_COMPARE(desk.Heard(), bytes);
        QCOMPARE(desk.port.Output(bytes).Cause(), "");
        QCOMPARE(server.line.Read(bytes.size()), bytes);
        termios line = {};
        ::tcgetattr(server.line.Device(), &line);
        QCOMPARE(::cfgetospeed(&line) == B19200 && (line.c_cflag & CSTOPB) != 0,
                 scheme == "rfc2217");
        QTEST(desk.port.SettingsNote(), "note");
        QCOMPARE(desk.port.Description(), scheme == "rfc2217" ? "ser2net" : "");
        QVERIFY(!desk.port.Wire().Counts().modem);
    }

    void AListenerChangesNothing()
    {
        SerialServer server;
        Desk talker(Address("rfc2217", server.Port()));
        QCOMPARE(talker.Open().Cause(), "");
        Desk listener(Address("rfc2217", server.Port(), "?listen"));
        QCOMPARE(listener.Open("19200,N,8,2").Cause(), "");
        QVERIFY(server.line.Write("both"));
        QTRY_COMPARE(listener.Heard(), "both");
        QTRY_COMPARE(talker.Heard(), "both");
        const Result sent = listener.port.Output("no");
        QCOMPARE(sent.Number(), LineOnlyListens);
        QCOMPARE(
            sent.Cause(),
            QString("COM1 only listens to localhost:%1; nothing is sent there").arg(server.Port()));
        Result switched;
        listener.lines.Do([&] { switched = listener.port.Wire().SetRTS(false); });
        QVERIFY(switched.Failed());
        QCOMPARE(listener.port.SettingsNote(), "listening only, set by the other side");
        QCOMPARE(talker.port.Output("yes").Cause(), "");
        QCOMPARE(server.line.Read(3), "yes");
        termios line = {};
        ::tcgetattr(server.line.Device(), &line);
        QVERIFY(::cfgetospeed(&line) == B9600 && (line.c_cflag & CSTOPB) == 0);
    }

    void AnswersGoFromLineToLine_data()
    {
        const Cases<bool> row("remoteAnswers");
        row("of the other machine, here", false);
        row("of this machine, there", true);
    }
    void AnswersGoFromLineToLine()
    {
        QFETCH(bool, remoteAnswers);
        SerialServer server;
        PtyPair device;
        const QString remote = Address("rfc2217", server.Port());
        Bench bench(CommMode::MonitorReceiveAndModify, remoteAnswers ? remote : device.DeviceName(),
                    remoteAnswers ? device.DeviceName() : remote);
        QVERIFY(bench.communication.Running());
        PtyPair &asking = remoteAnswers ? device : server.line;
        PtyPair &answered = remoteAnswers ? server.line : device;
        for (int round = 1; round <= 50; ++round) {
            QVERIFY(asking.Write("ask"));
            QCOMPARE(answered.Read(3), "YES");
            QVERIFY(answered.Write("."));
            QTRY_COMPARE(bench.Logged(), QByteArray("ask asked YES.").repeated(round));
        }
        bench.communication.ClosePorts();
        QVERIFY(bench.prompts.shown.isEmpty());
    }

    void WhatAListenerWouldSendIsNotShown()
    {
        SerialServer server;
        Desk talker(Address("rfc2217", server.Port()));
        QCOMPARE(talker.Open().Cause(), "");
        Bench bench(CommMode::SendReceive, Address("rfc2217", server.Port(), "?listen"), {});
        QVERIFY(server.line.Write("ask"));
        QTRY_COMPARE(bench.Logged(), "ask asked ");
        QTRY_COMPARE(bench.prompts.notices.size(), 1);
        bench.communication.Transmit("by hand");
        QCOMPARE(talker.port.Output("said").Cause(), "");
        QCOMPARE(server.line.Read(4), "said"); // first and alone
        QVERIFY(server.line.Write("end"));
        QTRY_COMPARE(bench.Logged(), "ask asked end");
        QVERIFY(bench.prompts.notices[0].text.contains("nothing is sent there"));
        bench.communication.ClosePorts();
    }

    void ASecureServerMustBeTheOneThatIsMeant_data()
    {
        const Cases<QString, QString, QString> row("certificate", "query", "cause");
        const QString refused = "The certificate of localhost:PORT is not accepted: ";
        row("good", "good.crt", "?authority=ca.crt", "");
        row("expired", "expired.crt", "?authority=ca.crt", refused + "certificate has expired");
        row("another's", "elsewhere.crt", "?authority=ca.crt", refused + "hostname mismatch");
        row("of an unknown authority", "good.crt", "", refused + "unable to get local issuer");
        row("asks for ours", "good.crt,clientauth",
            "?authority=ca.crt&certificate=good.crt&key=key", "");
        row("asks in vain", "good.crt,clientauth", "?authority=ca.crt", "localhost:PORT closed");
        row("its key has a passphrase", "good.crt",
            "?authority=ca.crt&certificate=good.crt&key=locked.key", "The key in locked.key has a");
        row("its key is another's", "good.crt", "?authority=ca.crt&certificate=good.crt&key=ca.key",
            "The key in ca.key cannot be used");
        row("no authority's file", "good.crt", "?authority=none.crt",
            "The authority's certificate in none.crt cannot be used: No such file");
    }
    void ASecureServerMustBeTheOneThatIsMeant()
    {
        QFETCH(QString, certificate);
        QFETCH(QString, query);
        QFETCH(QString, cause);
        const Certificates &certificates = OfThisRun();
        for (const QString name : {"ca.crt", "good.crt", "locked.key", "ca.key", "none.crt"})
            query.replace('=' + name, '=' + certificates.Path(name));
        query.replace("key=key", "key=" + certificates.Path("key"));
        SerialServer server(certificates.Accepter(certificate), certificates.Path("users"));
        Desk desk(Address("rfc2217s", server.Port(), query));
        QString opened =
            QString(desk.Open().Cause()).replace(QString::number(server.Port()), "PORT");
        opened.remove(certificates.Path("") + '/');
        // What it turns out ends by a reset if something of ours was still on its way.
        opened.replace("The connection to localhost:PORT was lost: Connection reset by peer",
                       "localhost:PORT closed the connection");
        QVERIFY2(cause.isEmpty() ? opened.isEmpty() : opened.startsWith(cause), qPrintable(opened));
        if (!cause.isEmpty())
            return;
        const QByteArray bytes = AllBytes().repeated(256);
        QVERIFY(server.line.Write(bytes));
        QTRY_COMPARE(desk.Heard(), bytes);
        QCOMPARE(desk.port.Output(bytes).Cause(), "");
        QCOMPARE(server.line.Read(bytes.size()), bytes);
    }

    void AnOwnCertificateIsShown_data()
    {
        const Cases<bool, QByteArray> row("own", "heard");
        row("where it is asked for", true, "welcome\n");
        row("without one", false, "certificate required");
    }
    void AnOwnCertificateIsShown()
    {
        QFETCH(bool, own);
        QFETCH(QByteArray, heard);
        const Certificates &certificates = OfThisRun();
        const quint16 port = FreePort();
        QProcess server;
        server.setWorkingDirectory(certificates.Path(""));
        server.start("openssl",
                     QString("s_server -accept %1 -cert good.crt -key key -CAfile ca.crt "
                             "-Verify 1 -verify_return_error -quiet")
                         .arg(port)
                         .split(u' '));
        QTRY_VERIFY(Listens(port));
        QString query = "?authority=" + certificates.Path("ca.crt");
        if (own)
            query += "&certificate=" + certificates.Path("good.crt") +
                     "&key=" + certificates.Path("key");
        Desk desk(Address("tls", port, query));
        QCOMPARE(desk.Open().Cause(), "");
        server.write("welcome\n");
        QTRY_VERIFY2(desk.Heard().contains(heard), desk.Heard().constData());
        server.kill();
        server.waitForFinished();
    }

    void AHostileServerIsRefused_data()
    {
        const Cases<TcpServer::Script, QString> row("script", "cause");
        using Client = TcpServer::Client;
        const QString noServer = "localhost:PORT is connected, but does not answer as a serial "
                                 "port server (RFC 2217); one that passes bytes alone is tcp://";
        const auto says = [](const QByteArray &words) {
            return [words](const Client &client) {
                client.Say(words);
                client.Hear();
            };
        };
        row("silence", says(""), noServer);
        row("plain bytes", says("login: "), noServer);
        row("half an option", says("\xFF"), noServer);
        row("agreed, no more", says(QByteArray::fromHex("fffd2c")),
            "localhost:PORT does not answer when it is asked for settings");
        row("half the settings", says(Agreed.chopped(14)),
            "localhost:PORT was asked for 9600,N,8,1 and does not confirm the parity and the stop "
            "bits");
        row("other settings", says(QByteArray(Agreed).replace(23, 1, "\7")),
            "localhost:PORT was asked for 9600,N,8,1 and does 9600,N,7,1");
        row("knows no lines", says(QByteArray::fromHex("fffe2c")),
            "localhost:PORT refuses to speak of serial lines (RFC 2217)");
        row("changes bytes", says(QByteArray::fromHex("fffc00")),
            "localhost:PORT refuses to pass all bytes as they are");
        row(
            "closes with a word",
            [](const Client &client) {
                client.Hear([](const QByteArray &heard) { return heard.size() >= 15; });
                client.Say("Port in use\r\n");
            },
            "localhost:PORT closed the connection; its last words: \"Port in use\"");
        row(
            "endless options",
            [](const Client &client) {
                while (client.Say(QByteArray::fromHex("fffd18fffe00fffd00").repeated(1000))) {
                }
            },
            "localhost:PORT refuses to pass all bytes as they are");
        row(
            "endless words",
            [](const Client &client) {
                client.Say("\xFF\xFA\x2C");
                while (client.Say(QByteArray(1 << 20, 'x'))) {
                }
            },
            noServer);
        row(
            "endless bytes",
            [](const Client &client) {
                while (client.Say(QByteArray(1 << 20, 'x'))) {
                }
            },
            "localhost:PORT speaks without end and does not answer as a serial port server");
    }
    void AHostileServerIsRefused()
    {
        QFETCH(TcpServer::Script, script);
        const TcpServer server(script);
        QElapsedTimer taken;
        taken.start();
        QTEST(Refusal(server.Port(), std::chrono::milliseconds(300)), "cause");
        QVERIFY(taken.elapsed() < 3000);
    }

    void NobodyIsThere()
    {
        QCOMPARE(Refusal(FreePort(), std::chrono::seconds(5)),
                 "localhost:PORT cannot be reached: Connection refused");
    }

    void TheUserNeedNotWait()
    {
        const TcpServer server([](const TcpServer::Client &client) { client.Hear(); });
        Desk desk(Address("rfc2217", server.Port()));
        ScriptedPrompts prompts;
        prompts.beforeWork = [&] { prompts.atWork->Cancel(); };
        desk.port.WaitThrough(prompts);
        QElapsedTimer taken;
        taken.start();
        QCOMPARE(desk.Open().Number(), OpeningCancelled);
        QVERIFY(taken.elapsed() < 1000 && !desk.port.PortOpen());
    }

    void AFloodDoesNotHoldACloseUp()
    {
        const TcpServer server([](const TcpServer::Client &client) {
            client.Say(Agreed);
            while (client.Say(QByteArray::fromHex("fffd18fffa2c6b10fff0fffe18").repeated(1000))) {
            }
        });
        auto desk = std::make_unique<Desk>(Address("rfc2217", server.Port()));
        QCOMPARE(desk->Open().Cause(), "");
        QElapsedTimer taken;
        taken.start();
        desk.reset();
        QVERIFY(taken.elapsed() < 3000);
    }

    /// In every phase, in good order and not.
    void AConnectionMayEndAnywhere()
    {
        std::atomic<int> round = 0;
        const TcpServer server([&](const TcpServer::Client &client) {
            client.Say((Agreed + "data").left(round / 2));
            if (round % 2 == 1)
                client.Reset();
        });
        const uint before = QDir("/proc/self/fd").count();
        for (round = 0; round < 200; ++round) {
            const bool whole = round / 2 >= Agreed.size();
            Desk desk(Address("rfc2217", server.Port()));
            const QString cause = desk.Open().Cause();
            QVERIFY2(whole || cause.contains("localhost:"), qPrintable(cause));
            if (cause.isEmpty())
                QTRY_VERIFY(desk.Heard().contains("localhost:"));
        }
        QCOMPARE(QDir("/proc/self/fd").count(), before);
    }

    void AServerThatComesBackIsOpenedAgain()
    {
        SerialServer server;
        Desk desk(Address("rfc2217", server.Port()));
        QCOMPARE(desk.Open("19200,N,8,1", true).Cause(), "");
        QVERIFY(server.line.Write("one"));
        QTRY_COMPARE(desk.Heard(), "one");
        server.Kill();
        QTRY_COMPARE(desk.Heard(), "one<away>");
        QVERIFY(desk.port.Output("lost").Failed());
        server.Start();
        QTRY_COMPARE(desk.Heard(), "one<away><back>");
        QVERIFY(server.line.Write("two"));
        QTRY_COMPARE(desk.Heard(), "one<away><back>two");
        QCOMPARE(desk.port.Output("three").Cause(), "");
        QCOMPARE(server.line.Read(5), "three");
        server.Kill();
        QTRY_VERIFY(desk.Heard().endsWith("<away>")); // and is closed while it is waited for
    }

    void WhatAServerTellsIsHeard()
    {
        std::atomic<bool> resumes = false;
        std::promise<QByteArray> meanwhile;
        std::promise<QByteArray> afterwards;
        const TcpServer server([&](const TcpServer::Client &client) {
            client.Say(Agreed + "first");
            client.Hear([](const QByteArray &heard) { return heard.endsWith("go"); });
            client.Say("a" + QByteArray::fromHex("fffa2c690bfff0 fffa2c6a1cfff0") + "b" +
                       QByteArray::fromHex("fffa2c6a06fff0 fffa2c6b10fff0 fffa2c6607fff0"
                                           "fffa2c6608fff0 fffa2c6607fff0 fffa2c6cfff0") +
                       "c");
            meanwhile.set_value(client.Hear([&](const QByteArray &) { return resumes.load(); }));
            client.Say(QByteArray::fromHex("fffa2c6dfff0"));
            afterwards.set_value(
                client.Hear([](const QByteArray &heard) { return heard.size() >= 6; }));
        });
        Desk desk(Address("rfc2217", server.Port()));
        QCOMPARE(desk.Open().Cause(), "");
        QCOMPARE(desk.port.Output("go").Cause(), "");
        const QString other = "<localhost:%1 was asked for 9600,N,8,1 and now does 9600,N,7,1>";
        QTRY_COMPARE(desk.Heard(), "firsta<-CTS><break>b<overrun><damaged><CTS>" +
                                       other.arg(server.Port()).toLatin1() + "c");
        QCOMPARE(desk.port.Output("held\xFF").Cause(), "");
        QTRY_COMPARE(desk.port.Wire().Counts().waiting, 5);
        const LineCounts counts = desk.port.Wire().Counts();
        QVERIFY(counts.RTS && counts.modem && counts.modem->CTS && counts.breaks == 1 &&
                counts.damaged == 1 && counts.overruns == 1);
        resumes = true;
        QCOMPARE(meanwhile.get_future().get(), "");
        QCOMPARE(afterwards.get_future().get(), "held\xFF\xFF");
        QTRY_COMPARE(desk.port.Wire().Counts().waiting, 0);
    }
};

QTEST_GUILESS_MAIN(tst_serialserver)
#include "tst_serialserver.moc"
