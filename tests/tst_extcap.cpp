// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CaptureTraffic.h"
#include "ListeningLines.h"
#include "PortDevices.h"
#include "SystemPortName.h"
#include "support/Cases.h"
#include "support/LineStandIn.h"
#include "support/MemoryStore.h"
#include "support/PtyPair.h"
#include "support/ScriptedDisk.h"

#include <QDir>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <mutex>

#include <grp.h>
#include <pwd.h>
#include <sys/ioctl.h>
#include <sys/stat.h>

namespace
{

constexpr int LongEnough = 20000;

/// What happened, in words: "received" and its bytes, "damaged" and so on, and the channel.
QString WordsOf(const TrafficEvent &event)
{
    static const char *const words[] = {"",        "sent",  "not sent", "damaged", "break",
                                        "overrun", "lines", "opened",   "closed",  "gone",
                                        "back",    "lost",  "clock"};
    return QString(words[int(event.kind)]) + event.bytes + (event.modem.CTS ? "+CTS" : "") +
           QString::number(event.channel);
}

class Notes final : public TrafficConsumer
{
  public:
    void Begin(const TrafficSession &session) override
    {
        for (const TrafficPort &port : session.ports)
            Add(QString("%1 %2 %3").arg(port.name, port.description).arg(port.speed));
    }
    void Take(const TrafficEvent &event) override { Add(WordsOf(event)); }
    void End() override { Add("end"); }

    QString Text() const
    {
        const std::lock_guard guard(m_lock);
        return m_words.join(' ');
    }

  private:
    void Add(const QString &words)
    {
        const std::lock_guard guard(m_lock);
        m_words << words;
    }

    mutable std::mutex m_lock;
    QStringList m_words;
};

/// The events of a capture, as far as it is there.
QList<TrafficEvent> EventsOf(const QByteArray &capture)
{
    QList<TrafficEvent> events;
    const ScriptedDisk::Reader device(capture);
    CaptureReader reader(device);
    if (reader.Begin().Failed())
        return {};
    CaptureTraffic traffic(reader);
    for (TrafficEvent event; traffic.Next(event) == CaptureReader::Step::Packet;)
        events << event;
    return events;
}

/// The number behind a word in a file of the system.
qint64 NumberIn(const QString &path, const QByteArray &word, int base = 10)
{
    QFile file(path);
    const QByteArray text = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    return text.mid(text.indexOf(word) + word.size())
        .simplified()
        .split(' ')
        .first()
        .toLongLong(nullptr, base);
}

/// A user's home with his settings, the pipe that a capture goes into, and the program.
struct Bench {
    QTemporaryDir home;
    QProcess program;
    PtyPair line;
    int pipe = -1; ///< its reading end
    QByteArray capture;

    Bench()
    {
        auto environment = QProcessEnvironment::systemEnvironment();
        for (const char *name : {"HOME", "XDG_CONFIG_HOME", "TMPDIR"})
            environment.insert(name, home.path());
        program.setProcessEnvironment(environment);
        program.setProgram(SERIMONDE_EXTCAP);
        if (::mkfifo(qPrintable(Pipe()), 0600) != 0)
            qFatal("no pipe");
    }
    ~Bench()
    {
        CloseReader();
        program.kill();
        program.waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(Bench)

    QString Pipe() const { return home.filePath("pipe"); }
    void CloseReader()
    {
        if (const int open = std::exchange(pipe, -1); open >= 0)
            ::close(open);
    }

    void Put(const QByteArray &settings) const
    {
        QFile file(home.filePath("Serimonde.conf"));
        if (!file.open(QIODevice::WriteOnly) || file.write(settings) != settings.size())
            qFatal("no settings");
    }
    /// What the program starts is an ordinary user's from now on, and finds it in a folder.
    void LetInOrdinaryUsers()
    {
        const QString extcap = home.filePath("extcap");
        if (!QDir().mkdir(extcap) || !QFile::copy(SERIMONDE_EXTCAP, extcap + "/serimonde-extcap"))
            qFatal("no program");
        auto environment = program.processEnvironment();
        environment.insert("WIRESHARK_EXTCAP_DIR", extcap);
        program.setProcessEnvironment(environment);
        if (::geteuid() != 0)
            return;
        const passwd *nobody = ::getpwnam("nobody");
        for (QDir folder(home.path()); folder.path() != "/tmp" && !folder.isRoot(); folder.cdUp())
            QFile::setPermissions(folder.path(),
                                  QFile::permissions(folder.path()) | QFile::ExeOther);
        if (!nobody || ::chown(qPrintable(home.path()), nobody->pw_uid, nobody->pw_gid) != 0 ||
            ::fchown(line.Device(), nobody->pw_uid, nobody->pw_gid) != 0)
            qFatal("no ordinary user");
        program.setChildProcessModifier([user = nobody->pw_uid, group = nobody->pw_gid] {
            if (::setgroups(0, nullptr) != 0 || ::setgid(group) != 0 || ::setuid(user) != 0)
                std::_Exit(1);
        });
    }

    QStringList CaptureArguments(const QStringList &more = {}) const
    {
        return QStringList{"--capture", "--extcap-interface", "serimonde-COM7", "--fifo",
                           Pipe(),      "--device",           line.DeviceName()} +
               more;
    }
    void Start(const QStringList &arguments)
    {
        program.setArguments(arguments);
        program.start();
    }
    void Begin(const QStringList &more = {})
    {
        Start(CaptureArguments(more));
        pipe = ::open(qPrintable(Pipe()), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    }
    /// The exit status, and what was said on both outputs.
    QString Finish()
    {
        if (program.state() != QProcess::NotRunning && !program.waitForFinished(LongEnough))
            return "goes on";
        return QString::number(program.exitCode()) + '|' + program.readAllStandardOutput() + '|' +
               program.readAllStandardError();
    }
    QString Run(const QStringList &arguments)
    {
        Start(arguments);
        return Finish();
    }

    /// What has come through the pipe by now, in words.
    QString Told()
    {
        QByteArray part(1 << 16, '\0');
        for (ssize_t count = 1; count > 0;) {
            count = ::read(pipe, part.data(), size_t(part.size()));
            capture += part.first(std::max<ssize_t>(0, count));
        }
        QStringList words;
        for (const TrafficEvent &event : EventsOf(capture))
            words << WordsOf(event);
        return words.join(' ');
    }
    /// Whether others are kept away from the device.
    bool Kept() const
    {
        int exclusive = 0;
        return ::ioctl(line.Device(), TIOCGEXCL, &exclusive) == 0 && exclusive != 0;
    }
    QString Proc(const char *file) const
    {
        return QString("/proc/%1/%2").arg(program.processId()).arg(file);
    }
};

} // namespace

/// The lines in Wireshark.
class tst_extcap : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void SaysWhatItIsAsked_data()
    {
        const Cases<QString, QString> row("arguments", "said");
        const QString line = "--extcap-interface serimonde-COM7 ";
        const QString usage = "^2\\|\\|";
        row("nothing", "", usage + "nothing is asked for\n$");
        row("the lines", "--extcap-interfaces --extcap-version=4.0",
            "^0\\|extcap \\{version=[0-9.]+\\}\\{help=http.*\\}\n"
            "(interface .*\n)*"
            "interface \\{value=serimonde-COM3-COM4\\}\\{display=Serial lines COM3 and COM4\\}\n"
            "(interface .*\n)*"
            "interface \\{value=serimonde-COM7\\}\\{display=Serial line COM7, "
            "/dev/\\(none\\)\u241B\\[2J\\}\n(interface .*\n)*\\|$");
        row("a later Wireshark", "--extcap-interfaces --extcap-colour red --extcap-mood=good",
            "^0\\|extcap ");
        row("the version", "--extcap-version", "^0\\|extcap \\{version=");
        row("the link type", line + "--extcap-dlts",
            "^0\\|dlt \\{number=250\\}\\{name=RTAC_SERIAL\\}\\{display=Serial line\\}\n\\|$");
        row("the questions", line + "--extcap-config",
            "^0\\|arg \\{number=0\\}\\{call=--device\\}.*\\{type=string\\}.*\n"
            "arg \\{number=1\\}\\{call=--settings\\}.*\\{placeholder=19200,E,8,1\\}.*\n"
            "arg .*\\{call=--reconnect\\}.*\\{type=boolean\\}\\{default=true\\}\n"
            "arg .*\\{call=--request-to-send\\}.*\\{default=true\\}.*\n\\|$");
        row("the questions of two", "--extcap-config --extcap-interface serimonde-COM3-COM4",
            "call=--device.*COM3.*\n.*call=--second-device.*COM4");
        row("no filter", line + "--extcap-capture-filter ", "^0\\|\\|$");
        row("a filter", line + "--extcap-capture-filter tcp", "^0\\|Serial lines have no");
        row("a filter at last", line + "--capture --fifo x --extcap-capture-filter tcp",
            "^1\\|\\|Serial lines have no capture filters; use a display filter\n$");
        row("another line", "--extcap-config --extcap-interface serimonde-COM256",
            usage + "--extcap-interface serimonde-COM256: there is no such line");
        row("no pipe", line + "--capture", usage + "--capture needs --fifo\n$");
        row("line settings", line + "--settings 9600,X,8,1 --capture",
            usage + "--settings 9600,X,8,1: it must be of the form");
        row("no truth", line + "--reconnect perhaps --capture",
            usage + "--reconnect perhaps: it must be true or false\n$");
    }
    void SaysWhatItIsAsked()
    {
        QFETCH(const QString, arguments);
        QFETCH(const QString, said);
        Bench bench;
        bench.Put("[Communication]\nCommType=1\nCommPortA=3\nCommPortB=4\nCommSpeed=7\n"
                  "CommParity=0\n[Ports]\nCOM7=/dev/{none}\\x1b[2J\n[Reconnection]\n"
                  "Reopen=True\n");
        const QString answer = bench.Run(arguments.split(' ', Qt::SkipEmptyParts));
        QVERIFY2(QRegularExpression(said).match(answer).hasMatch(), qPrintable(answer));
        QCOMPARE(QDir(bench.home.path())
                     .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot),
                 QStringList({"pipe", "Serimonde.conf"}));
    }

    void OnlyAPipeIsWrittenTo_data()
    {
        const Cases<QString> row("target");
        row("nothing", "missing");
        row("a file", "file");
        row("a folder", ".");
        row("a link to the pipe", "link");
    }
    void OnlyAPipeIsWrittenTo()
    {
        QFETCH(const QString, target);
        Bench bench;
        QFile file(bench.home.filePath("file"));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("kept") == 4);
        file.close();
        QVERIFY(QFile::link(bench.Pipe(), bench.home.filePath("link")));
        const QString path = bench.home.filePath(target);
        const QString answer = bench.Run(bench.CaptureArguments({"--fifo", path}));
        QVERIFY2(answer.startsWith("1||--fifo " + path + ": "), qPrintable(answer));
        QCOMPARE(answer.count('\n'), 1);
        QCOMPARE(file.size(), 4);
        QVERIFY(!QFile::exists(bench.home.filePath("missing")));
    }

    void ADeviceThatIsHeldIsRefusedWithItsHolder()
    {
        Bench bench;
        QCOMPARE(::ioctl(bench.line.Device(), TIOCEXCL), 0);
        QCOMPARE(bench.Run(bench.CaptureArguments()),
                 QString("1||COM7: %1 is in use by tst_extcap (process %2)\n")
                     .arg(bench.line.DeviceName())
                     .arg(QCoreApplication::applicationPid()));
        QCOMPARE(bench.Run({"--capture", "--extcap-interface", "serimonde-COM200", "--fifo",
                            bench.Pipe()}),
                 QString("1||COM200: it has no device; name one in the options of the interface, "
                         "or assign one in Serimonde\n"));
    }

    /// The device is open for reading alone, and has no lock file.
    void WhatIsHeardIsInThePipeAtOnce()
    {
        Bench bench;
        const QString device = bench.line.DeviceName();
        bench.Begin({"--settings", "115200,N,8,1"});
        QTRY_COMPARE(bench.Told(), "opened0");
        QVERIFY(bench.line.Write("OK"));
        QTRY_COMPARE(bench.Told(), "opened0 OK0");
        for (const QFileInfo &open : QDir(bench.Proc("fd")).entryInfoList(QDir::System)) {
            const QString flags = bench.Proc("fdinfo/") + open.fileName();
            if (open.symLinkTarget() == device)
                QCOMPARE(NumberIn(flags, "flags:", 8) & O_ACCMODE, O_RDONLY);
        }
        QVERIFY(!QFile::exists("/var/lock/LCK..pts_" + device.section('/', -1)));
        QVERIFY(bench.Kept());

        bench.program.terminate();
        QCOMPARE(bench.Finish(), "0||");
        QCOMPARE(bench.Told(), "opened0 OK0 closed0");
        QVERIFY(!bench.Kept());
    }

    void ItsReaderEndsIt()
    {
        Bench bench;
        bench.Begin();
        QTRY_COMPARE(bench.Told(), "opened0");
        bench.CloseReader();
        QCOMPARE(bench.Finish(), "0||");
        QVERIFY(!bench.Kept());
    }

    /// More than a pipe holds has come while nobody read it.
    void TheEndLeavesNothingBehind()
    {
        Bench bench;
        bench.Begin();
        QTRY_COMPARE(bench.Told(), "opened0");
        QByteArray sent;
        for (int i = 0; i < 30000; ++i)
            sent += QByteArray::number(i) + ' ';
        const qint64 read = NumberIn(bench.Proc("io"), "rchar:");
        QVERIFY(bench.line.Write(sent));
        QTRY_VERIFY(NumberIn(bench.Proc("io"), "rchar:") >= read + sent.size());
        bench.program.terminate();
        QTRY_VERIFY(bench.Told().endsWith(" closed0"));
        QCOMPARE(bench.Finish(), "0||");
        QByteArray heard;
        for (const TrafficEvent &event : EventsOf(bench.capture))
            heard += event.bytes;
        QCOMPARE(heard, sent);
    }

    void ADeviceThatGoesEndsItWithAMessage()
    {
        Bench bench;
        bench.Begin({"--reconnect", "false"});
        QTRY_COMPARE(bench.Told(), "opened0");
        bench.line.Unplug();
        QCOMPARE(bench.Finish(), "1||COM7: " + bench.line.DeviceName() + " was unplugged\n");
        QCOMPARE(bench.Told(), "opened0 gone0 closed0");
    }

    /// What a driver tells of a line, and a device that comes back under its name.
    void EverythingOnTwoLinesIsTold()
    {
        LineStandIn drivers;
        PtyPair first;
        auto second = std::make_unique<PtyPair>();
        QTemporaryDir folder;
        const QString link = folder.filePath("device");
        QVERIFY(QFile::link(second->DeviceName(), link));
        drivers.Say(first, "cts=1 marks=1");
        MemoryStore store;
        PortDevices devices(store, SystemPortName);
        devices.AssignForRun(3, first.DeviceName());
        devices.AssignForRun(4, link);
        Notes notes;
        ListeningLines lines(devices);
        const Result opened = lines.Open({{3, 4}, "19200,N,8,1", false, true});
        QVERIFY2(!opened.Failed(), qPrintable(opened.Cause()));
        QCOMPARE(drivers.Switched(first), "rts=0");
        lines.Begin(notes);
        QString told = "COM3 " + first.DeviceName() + " 19200 COM4 " + second->DeviceName() +
                       " 19200 opened0 opened1 lines+CTS0";
        QTRY_COMPARE(notes.Text(), told);

        QVERIFY(second->Write("a"));
        told += " a1";
        QTRY_COMPARE(notes.Text(), told);
        QVERIFY(first.Write(QByteArray("b\xFF\0x\xFF\0\0", 7)));
        told += " bx0 damaged0 break0";
        QTRY_COMPARE(notes.Text(), told);
        drivers.Say(first, "cts=0 marks=1");
        told += " lines0";
        QTRY_COMPARE(notes.Text(), told);
        second = std::make_unique<PtyPair>();
        told += " gone1";
        QTRY_COMPARE(notes.Text(), told);
        QVERIFY(QFile::remove(link) && QFile::link(second->DeviceName(), link));
        told += " back1";
        QTRY_COMPARE(notes.Text(), told);
        QVERIFY(second->Write("c"));
        told += " c1";
        QTRY_COMPARE(notes.Text(), told);
        lines.End();
        told += " closed0 closed1 end";
        QCOMPARE(notes.Text(), told);
    }

    /// As an ordinary user, for it lets an administrator have only what is installed.
    void AnotherProgramListsAsksAndReads()
    {
        Bench bench;
        bench.Put("[Ports]\nCOM7=/dev/none\n");
        bench.LetInOrdinaryUsers();
        bench.program.setProgram("tshark");
        const QString listed = bench.Run({"-D"});
        QVERIFY2(listed.contains(". serimonde-COM7 (Serial line COM7, /dev/none)\n"),
                 qPrintable(listed));

        QStringList arguments = {"-i", "serimonde-COM7", "-c", "4",          "-l",
                                 "-T", "fields",         "-E", "separator=|"};
        arguments << "-o"
                  << "extcap.serimonde_com7.device:" + bench.line.DeviceName();
        for (const char *field : {"frame.time_epoch", "frame.interface_name", "frame.comment",
                                  "frame.packet_flags_direction", "data.data"})
            arguments << "-e" << field;
        bench.Start(arguments);
        QStringList told;
        const auto count = [&] {
            for (; bench.program.canReadLine();)
                told << QString(bench.program.readLine()).trimmed();
            return told.size();
        };
        for (const QByteArray &bytes :
             {QByteArray(), QByteArray("ATZ\r"), QByteArray("\0\xFF", 2), QByteArray(500, 'x')}) {
            const qint64 before = QDateTime::currentMSecsSinceEpoch();
            const qsizetype packets = count();
            QVERIFY(bench.line.Write(bytes));
            QTRY_COMPARE_WITH_TIMEOUT(count(), packets + 1, LongEnough);
            const auto time = qint64(told.last().section('|', 0, 0).toDouble() * 1000);
            QVERIFY(time >= before && time <= QDateTime::currentMSecsSinceEpoch());
            QCOMPARE(told.last().section('|', 1),
                     bytes.isEmpty() ? "COM7|opened||" : "COM7||0x00000001|" + bytes.toHex());
        }
        QVERIFY(bench.Finish().startsWith("0|"));
    }
};

QTEST_GUILESS_MAIN(tst_extcap)
#include "tst_extcap.moc"
