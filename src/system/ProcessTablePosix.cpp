// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ProcessTable.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <array>
#include <filesystem>

#include <unistd.h>

namespace
{

namespace fs = std::filesystem;

constexpr std::array<const char *, 5> LoginPrograms = {"agetty", "getty", "mgetty", "mingetty",
                                                       "login"};

fs::path Path(const QString &name)
{
    return QFile::encodeName(name).toStdString();
}

QString Name(const fs::path &path)
{
    return QFile::decodeName(path.c_str());
}

/// The number of a pseudo-terminal by its name; -1 if it is none.
int PseudoTerminalNumber(const QString &device)
{
    const QString prefix = QStringLiteral("/dev/pts/");
    bool isNumber = false;
    const int number = device.mid(prefix.size()).toInt(&isNumber);
    return device.startsWith(prefix) && isNumber ? number : -1;
}

/// Of a number field of many in a line, which stand behind the name in brackets.
QByteArray StatField(const QByteArray &stat, qsizetype field)
{
    constexpr qsizetype FirstBehindName = 3;
    return stat.mid(stat.lastIndexOf(')') + 2).split(' ').value(field - FirstBehindName);
}

} // namespace

QByteArray ProcessTable::Told(const QString &what) const
{
    QFile file(m_folder + u'/' + what);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList ProcessTable::Processes() const
{
    return QDir(m_folder).entryList({QStringLiteral("[1-9]*")}, QDir::Dirs);
}

/// The system keeps the first 15 characters of a name; how the program was called has all of it.
PortUser ProcessTable::Named(qint64 process) const
{
    constexpr qsizetype MostCharacters = 15;
    const QByteArray name = Told(QStringLiteral("%1/comm").arg(process)).trimmed();
    const QByteArray called =
        Told(QStringLiteral("%1/cmdline").arg(process)).split('\0').first().split('/').last();
    return {QString::fromLocal8Bit(name.size() == MostCharacters && called.startsWith(name) ? called
                                                                                            : name),
            process, process == ::getpid()};
}

/// Links are read and not followed: what they lead to may lie on a disk that hangs.
ProcessTable::Users ProcessTable::UsersOf(const QString &device) const
{
    const int terminal = PseudoTerminalNumber(device);
    const QByteArray index = "tty-index:\t" + QByteArray::number(terminal) + '\n';
    Users found;
    for (const QString &process : Processes()) {
        bool user = false;
        bool otherEnd = false;
        std::error_code failed;
        fs::directory_iterator entry(Path(m_folder + u'/' + process + QStringLiteral("/fd")),
                                     failed);
        // The kernel's own have no command line, and no files.
        found.hidden += int(failed == std::errc::permission_denied &&
                            !Told(process + QStringLiteral("/cmdline")).isEmpty());
        for (; !failed && entry != fs::directory_iterator(); entry.increment(failed)) {
            std::error_code gone;
            const QString target = Name(fs::read_symlink(entry->path(), gone));
            user = user || target == device;
            otherEnd = otherEnd ||
                       (terminal >= 0 && target.endsWith(QLatin1String("/ptmx")) &&
                        Told(process + QStringLiteral("/fdinfo/") + Name(entry->path().filename()))
                            .contains(index));
        }
        if (otherEnd)
            found.otherEnd.append(Named(process.toLongLong()));
        if (user)
            found.users.append(Named(process.toLongLong()));
    }
    return found;
}

std::optional<PortUser> ProcessTable::Find(const QString &program) const
{
    for (const QString &process : Processes()) {
        PortUser named = Named(process.toLongLong());
        if (named.program == program)
            return named;
    }
    return std::nullopt;
}

/// Some are given the terminal's name, others have it as their own.
std::optional<PortUser> ProcessTable::LoginOn(const QString &terminal, quint64 number) const
{
    constexpr qsizetype TerminalField = 7;
    for (const QString &process : Processes()) {
        PortUser named = Named(process.toLongLong());
        if (std::find(LoginPrograms.begin(), LoginPrograms.end(), named.program) ==
            LoginPrograms.end())
            continue;
        const QList<QByteArray> words = Told(process + QStringLiteral("/cmdline")).split('\0');
        const QByteArray own = StatField(Told(process + QStringLiteral("/stat")), TerminalField);
        const QByteArray name = QFile::encodeName(terminal);
        if (words.contains(name) || words.contains("/dev/" + name) ||
            (number != 0 && own == QByteArray::number(number)))
            return named;
    }
    return std::nullopt;
}

QStringList ProcessTable::KernelWords() const
{
    return QString::fromLocal8Bit(Told(QStringLiteral("cmdline")))
        .simplified()
        .split(u' ', Qt::SkipEmptyParts);
}
