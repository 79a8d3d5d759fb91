// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "support/Cases.h"
#include "support/CliProgram.h"
#include "support/PtyPair.h"
#include "support/RunStory.h"
#include "support/SerialServer.h"

#include <QTemporaryDir>

#include <memory>
#include <optional>
#include <vector>

namespace
{

/// A device on a port of the program, which can be unplugged and plugged in again.
class Device
{
  public:
    virtual ~Device() = default;
    virtual QString Name() const = 0;
    virtual PtyPair &Line() = 0;
    virtual void Unplug() = 0;
    virtual void PlugIn() = 0;
};

class LocalDevice final : public Device
{
  public:
    LocalDevice() { PlugIn(); }

    QString Name() const override { return m_folder.filePath("device"); }
    PtyPair &Line() override { return *m_line; }
    void Unplug() override
    {
        QFile::remove(Name());
        m_line->Unplug();
    }
    void PlugIn() override
    {
        m_line.emplace();
        QFile::link(m_line->DeviceName(), Name());
    }

  private:
    QTemporaryDir m_folder;
    std::optional<PtyPair> m_line;
};

/// Its server goes away and comes back.
class RemoteDevice final : public Device
{
  public:
    QString Name() const override
    {
        return "rfc2217://127.0.0.1:" + QString::number(m_server.Port());
    }
    PtyPair &Line() override { return m_server.line; }
    void Unplug() override { m_server.Kill(); }
    void PlugIn() override { m_server.Start(); }

  private:
    SerialServer m_server;
};

QString Times(int count, const QString &text)
{
    return text.repeated(count);
}

} // namespace

/// Whole dialogues over local lines and over a serial port server; exit status, JSON lines, report
/// and capture of each.
class tst_cliruns : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folder;
    std::vector<std::unique_ptr<Device>> m_devices; ///< by channel
    QList<QByteArray> m_told;                       ///< by the program, line by line

    QString PathOf(const QString &name) const { return m_folder.filePath(name); }

    QByteArray Content(const QString &name) const
    {
        QFile file(PathOf(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("none");
    }

    /// Up to a line with the text.
    bool HearFrom(Program &program, const QString &text)
    {
        do {
            m_told << program.NextLine();
        } while (!m_told.last().isEmpty() && !m_told.last().contains(text.toUtf8()));
        return !m_told.last().isEmpty();
    }

    /// "?PING" is to come, "!PONG" is said, "!2PONG" on the other line; "~gone" waits for that word
    /// of the program; "$wait 1ms" commands it; "unplug", "plug".
    bool Move(Program &program, const QString &move)
    {
        const QString text = move.sliced(1);
        const bool other = text.startsWith('2') && m_devices.size() > 1;
        switch (move[0].unicode()) {
        case '?':
            return m_devices[0]->Line().Read(text.size()) == text.toLatin1();
        case '!':
            return m_devices[size_t(other)]->Line().Write(text.sliced(int(other)).toLatin1());
        case '~':
            return HearFrom(program, text);
        case '$': {
            const QStringList words = text.split(' ');
            QJsonObject command{{"step", words[0]}, {"what", words[1]}};
            if (words.size() > 2)
                command["within"] = words[2];
            program.write(QJsonDocument(command).toJson(QJsonDocument::Compact) + '\n');
            return program.waitForBytesWritten();
        }
        default:
            move == "unplug" ? m_devices[0]->Unplug() : m_devices[0]->PlugIn();
            return true;
        }
    }

  private Q_SLOTS:
    void Run_data()
    {
        const Cases<bool, QString, QString, int, QString, QStringList, QString> row(
            "server", "options", "moves", "status", "steps", "cases", "traffic");
        const QString soon = " within 400ms";
        for (const bool server : {false, true}) {
            const auto add = [&](const char *name, const QString &options, const QString &moves,
                                 int status, const QString &steps, const QString &cases,
                                 const QString &traffic) {
                row(qPrintable(name + QString(server ? ", of a server" : "")), server, options,
                    moves, status, steps, cases.split(", "), "opened " + traffic);
            };
            add("pass", "send Ping|expect Pong", "?PING|!PONG", 0, "+1 +2 =0",
                "send Ping, expect Pong", ">PING <PONG closed");
            add("a wrong answer", "send Ping|expect Pong" + soon + "|close", "?PING|!NAK", 1,
                "+1 -2 ?3 =1",
                "send Ping, expect Pong" + soon +
                    " failed: it did not come in time (4E 41 4B), close not run",
                ">PING <NAK closed");
            add("a late answer", "--commands",
                "$send Ping|?PING|$expect Pong 20ms|~failed|!PONG|$expect Pong 20s|~\"line\":3", 1,
                "+1 -2 +3 =1",
                "send Ping, expect Pong within 20ms failed: it did not come in time (), "
                "expect Pong within 20s",
                ">PING <PONG closed");
            add("a forbidden answer", "forbid text:NAK|send Ping|expect Pong|close",
                "?PING|!NAKPONG", 1, "+1 +2 -3 ?4 =1",
                "forbid text:NAK, send Ping, expect Pong failed: what must not come has come: "
                "forbid text:NAK (step 1) (4E 41 4B 50 4F 4E 47), close not run",
                ">PING <NAKPONG closed");
            add("a port that goes", "send Ping|expect Pong within 1min|close", "?PING|unplug", 3,
                "+1 -2 ?3 =3",
                "send Ping, expect Pong within 1min failed: The port COM1 was disconnected (), "
                "close not run",
                ">PING gone closed");
            add("two ports", "--mode|2|send Ping|expect Pong on 2|expect text:A on 1",
                "?PING|!2PONG|~\"line\":2|!A", 0, "+1 +2 +3 =0",
                "send Ping, expect Pong on 2, expect text:A on 1",
                "opened2 >PING <2:PONG <A closed closed2");
            add("a thousand times", "repeat 1000|send Ping|expect Pong|end",
                Times(1000, "?PING|!PONG|") + "~status", 0, Times(1000, "+2 +3 ") + "=0",
                Times(1000, "send Ping, expect Pong, ").chopped(2),
                Times(1000, ">PING <PONG ") + "closed");
            add("a device that comes back",
                "--reconnect|send Ping|expect Pong|expect text:+ within 20s|send Ping",
                "?PING|!PONG-|~\"line\":2|unplug|~gone|plug|~back|!+|?PING", 0, "+1 +2 +3 +4 =0",
                "send Ping, expect Pong, expect text:+ within 20s, send Ping",
                ">PING <PONG- gone back <+ >PING closed");
        }
    }

    void Run()
    {
        QFETCH(bool, server);
        QFETCH(QString, options);
        QFETCH(QString, moves);
        m_told.clear();
        m_devices.clear();
        for (int left = options.contains("--mode") ? 2 : 1; left > 0; --left) {
            if (server)
                m_devices.push_back(std::make_unique<RemoteDevice>());
            else
                m_devices.push_back(std::make_unique<LocalDevice>());
        }
        QFile::remove(PathOf("p.sqx"));
        QFile project(PathOf("p.sqx"));
        QVERIFY(project.open(QIODevice::WriteOnly) && project.write(PingProject) > 0);
        project.close();
        Program program;
        QStringList arguments = {project.fileName(), "--json",    "--junit",
                                 PathOf("j.xml"),    "--capture", PathOf("c.pcapng"),
                                 "--overwrite"};
        for (size_t i = 0; i < m_devices.size(); ++i)
            arguments << "--port" << QString("%1=%2").arg(i + 1).arg(m_devices[i]->Name());
        program.start(SERIMONDE_CLI, arguments + options.split('|'));
        for (const QString &move : moves.split('|'))
            QVERIFY2(Move(program, move), qPrintable(move + ": " + m_told.join().trimmed()));
        program.closeWriteChannel();
        QTEST(program.Finished(), "status");
        HearFrom(program, "no such word");
        m_told.removeLast(); // empty
        const auto &[traffic, steps] = StoriesOfJson(m_told);
        QTEST(steps, "steps");
        QTEST(traffic, "traffic");
        QTEST(CasesOfReport(PathOf("j.xml")), "cases");
        QTEST(StoryOfCapture(Content("c.pcapng")), "traffic");
    }
};

QTEST_GUILESS_MAIN(tst_cliruns)
#include "tst_cliruns.moc"
