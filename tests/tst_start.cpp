// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "support/Cases.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

#include <csignal>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

/// The program as it is started, in a home that is not as it should be.
class tst_start : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void RefusesWhatIsNoFileAtOnce_data()
    {
        const Cases<QString, QStringList, QString> row("pipe", "arguments", "said");
        row("settings", "Serimonde.conf", {},
            "critical: The settings could not be read. %1: It is a pipe, not a file. Correct that, "
            "or start with --reset-settings, which sets the file aside.");
        row("a project", "a.sqx", {"a.sqx"}, "critical: Errow while loading the project");
        row("a log", "log_asc.txt", {"--demo", "--log", "log.txt", "--overwrite"},
            "critical: Error while writing the ASCII log file - It is a pipe, not a file");
        row("a picture", "a.png", {"--screenshot", "a.png"},
            "critical: The picture a.png could not be written: It is a pipe, not a file");
    }
    void RefusesWhatIsNoFileAtOnce()
    {
        QFETCH(const QString, pipe);
        QFETCH(const QStringList, arguments);
        QFETCH(const QString, said);
        QCOMPARE(::mkfifo(qPrintable(home->filePath(pipe)), 0600), 0);
        QCOMPARE(Run(arguments), 1);
        QVERIFY2(errors.startsWith(QString(said).replace("%1", home->filePath(pipe))),
                 qPrintable(errors));
        QVERIFY(errors.contains("It is a pipe, not a file"));
    }

    void ASettingThatIsNoneIsNamedWithItsFileAndCanBeSetAside()
    {
        const QByteArray bad = "[Communication]\nCommSpeed=9,6\n";
        Put("Serimonde.conf", bad);
        QCOMPARE(Run({}), 1);
        for (const QString part : {"\"CommSpeed\"", "\"9,6\"", "--reset-settings"})
            QVERIFY2(errors.contains(part), qPrintable(errors));
        QVERIFY(errors.contains(home->filePath("Serimonde.conf")));
        QCOMPARE(Content("Serimonde.conf"), bad);
        QCOMPARE(Run({"--reset-settings"}), 0);
        QVERIFY(errors.contains(home->filePath("Serimonde.conf.old")));
        QCOMPARE(Content("Serimonde.conf.old"), bad);
        QVERIFY(Content("Serimonde.conf").contains("CommSpeed=5\n"));
    }

    /// Whoever read standard error has gone, and something is written to it.
    void OutlivesTheReaderOfItsMessages()
    {
        program.setChildProcessModifier([] {
            int ends[2] = {};
            if (::pipe(&ends[0]) == 0 && ::dup2(ends[1], STDERR_FILENO) >= 0) {
                ::close(ends[0]);
                ::close(ends[1]);
            }
            std::signal(SIGPIPE, SIG_DFL);
        });
        QCOMPARE(Run({"--demo", "--log", "log.txt", "--screenshot", "missing/a.png"}), 1);
        QVERIFY(QFile::exists(home->filePath("log_asc.txt")));
        QVERIFY(Content("Serimonde.conf").contains("CommSpeed=5\n"));
    }

    /// It accepts, as a daemon does that the system has stopped.
    void DoesWithoutABusThatDoesNotAnswer_data()
    {
        const Cases<QString> row("address");
        row("a path", "unix:guid=0,path=%1");
        row("an abstract name", "unix:abstract=%1;unix:path=/missing");
        row("the usual place", "");
    }
    void DoesWithoutABusThatDoesNotAnswer()
    {
        QFETCH(const QString, address);
        const QByteArray name =
            (address.contains("abstract") ? QByteArray(1, '\0') : QByteArray()) +
            QFile::encodeName(home->filePath("bus"));
        sockaddr_un bus = {};
        bus.sun_family = AF_UNIX;
        std::copy(name.cbegin(), name.cend(), std::begin(bus.sun_path));
        const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        QCOMPARE(::bind(socket, reinterpret_cast<const sockaddr *>(&bus),
                        socklen_t(offsetof(sockaddr_un, sun_path) + size_t(name.size()))),
                 0);
        QCOMPARE(::listen(socket, 5), 0);
        auto environment = program.processEnvironment();
        environment.insert("XDG_RUNTIME_DIR", home->path());
        environment.insert("DBUS_SESSION_BUS_ADDRESS",
                           QString(address).replace("%1", home->filePath("bus")));
        program.setProcessEnvironment(environment);
        const int status = Run({});
        ::close(socket);
        QCOMPARE(status, 0);
        QVERIFY2(errors.startsWith("serimonde: The session's bus does not answer."),
                 qPrintable(errors));
    }

    void ASignalKeepsWhatHasNotBeenSaved()
    {
        // What can be read of a damaged project has not been saved.
        Put("a.sqx", "VERSION\n3\nSEND\n0\nfirst\n65\nSEND\nnone\n");
        program.start(SERIMONDE_PROGRAM, {"a.sqx", "--quit-after", "100"});
        program.setReadChannel(QProcess::StandardError);
        QVERIFY(program.waitForReadyRead(20000)); // its message
        program.terminate();
        QVERIFY(program.waitForFinished(20000));
        const QDir state(home->filePath("serimonde"));
        QCOMPARE(state.entryList(QDir::Files).size(), 1);
        QVERIFY(Content(qPrintable("serimonde/" + state[2])).contains("6669727374")); // "first"
        QCOMPARE(Run({}), 0); // with nobody there it is left alone
        QCOMPARE(state.entryList(QDir::Files).size(), 1);
    }

    /// With the user's own assignments, and without a display.
    void TheDoctorNeedsNoWindow()
    {
        Put("Serimonde.conf", "[Ports]\nCOM7=/dev/ttyNone\n");
        auto environment = program.processEnvironment();
        for (const char *name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
            environment.remove(name);
        program.setProcessEnvironment(environment);
        const QByteArray missing = "/dev/ttyNone: 1 thing stands in the way\n"
                                   "! Device: there is no /dev/ttyNone\n";
        for (const QStringList &device : {QStringList{}, QStringList{"com7"}}) {
            program.start(SERIMONDE_PROGRAM, QStringList{"--doctor"} + device);
            QVERIFY(program.waitForFinished(20000));
            QVERIFY(program.readAllStandardOutput().contains("COM7, " + missing));
            QCOMPARE(program.exitCode(), 1);
        }
    }

    void init()
    {
        home = std::make_unique<QTemporaryDir>();
        auto environment = QProcessEnvironment::systemEnvironment();
        for (const char *folder : {"XDG_CONFIG_HOME", "XDG_STATE_HOME"})
            environment.insert(folder, home->path());
        program.setProcessEnvironment(environment);
        program.setWorkingDirectory(home->path());
        program.setChildProcessModifier({});
    }

  private:
    /// The exit status of an unattended run; -1 if it had another end, or none.
    int Run(const QStringList &arguments)
    {
        program.start(SERIMONDE_PROGRAM, arguments + QStringList{"--quit-after", "0.5"});
        const bool ended = program.waitForFinished(20000);
        if (!ended)
            program.kill();
        errors = QString::fromUtf8(program.readAllStandardError());
        return ended && program.exitStatus() == QProcess::NormalExit ? program.exitCode() : -1;
    }
    void Put(const char *name, const QByteArray &bytes) const
    {
        QFile file(home->filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    }
    QByteArray Content(const char *name) const
    {
        QFile file(home->filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    std::unique_ptr<QTemporaryDir> home;
    QProcess program;
    QString errors;
};

QTEST_GUILESS_MAIN(tst_start)
#include "tst_start.moc"
