// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ProcessTable.h"
#include "SerialDevice.h"
#include "SystemPortFinder.h"
#include "TerminalFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <vector>

#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace
{

using TerminalFolder::LineIn;

/// Who runs this program; the system's own list is no place for several threads.
struct CurrentUser {
    QByteArray name;
    gid_t group = 0;
    bool listed = false;

    CurrentUser()
    {
        constexpr size_t MostBytes = 65536;
        std::vector<char> room(MostBytes);
        passwd entry = {};
        passwd *found = nullptr;
        ::getpwuid_r(::geteuid(), &entry, room.data(), room.size(), &found);
        listed = found != nullptr;
        name = listed ? QByteArray(entry.pw_name) : QByteArray::number(::geteuid());
        group = listed ? entry.pw_gid : ::getegid();
    }
};

QString ModeText(mode_t mode)
{
    constexpr std::array<char16_t, 9> Letters = {u'r', u'w', u'x', u'r', u'w',
                                                 u'x', u'r', u'w', u'x'};
    QString text = S_ISCHR(mode) ? QStringLiteral("c") : QStringLiteral("-");
    for (size_t i = 0; i < Letters.size(); ++i)
        text += (mode & (0400U >> i)) != 0 ? QChar(Letters[i]) : QChar(u'-');
    return text;
}

bool InGroupNow(gid_t number)
{
    std::vector<gid_t> groups(size_t(std::max(::getgroups(0, nullptr), 0)));
    const int count = ::getgroups(int(groups.size()), groups.data());
    return number == ::getegid() || std::find(groups.begin(), groups.begin() + std::max(count, 0),
                                              number) != groups.begin() + std::max(count, 0);
}

/// As the system lists it, whatever this session knows of it.
bool InGroupAtLogin(const CurrentUser &user, gid_t number)
{
    constexpr int MostGroups = 4096;
    std::vector<gid_t> groups(MostGroups);
    int count = MostGroups;
    if (!user.listed ||
        ::getgrouplist(user.name.constData(), user.group, groups.data(), &count) < 0)
        return false;
    return std::find(groups.begin(), groups.begin() + count, number) != groups.begin() + count;
}

DeviceRights RightsTo(const QString &device, const struct stat &status)
{
    const QByteArray path = QFile::encodeName(device);
    constexpr mode_t GroupMay = S_IRGRP | S_IWGRP;
    const CurrentUser user;
    const QFileInfo info(device);
    DeviceRights rights;
    rights.owner = info.owner().isEmpty() ? QString::number(status.st_uid) : info.owner();
    rights.group = info.group().isEmpty() ? QString::number(status.st_gid) : info.group();
    rights.mode = ModeText(status.st_mode);
    rights.mayRead = ::faccessat(AT_FDCWD, path.constData(), R_OK, AT_EACCESS) == 0;
    rights.mayWrite = ::faccessat(AT_FDCWD, path.constData(), W_OK, AT_EACCESS) == 0;
    rights.user = QString::fromLocal8Bit(user.name);
    rights.administrator = ::geteuid() == 0;
    rights.groupMay = (status.st_mode & GroupMay) == GroupMay && status.st_gid != 0;
    if (InGroupNow(status.st_gid))
        rights.membership = DeviceRights::Membership::Now;
    else if (InGroupAtLogin(user, status.st_gid))
        rights.membership = DeviceRights::Membership::NextLogin;
    return rights;
}

/// Screens, keyboards and what a program is attached to.
bool IsVirtual(quint64 number)
{
    constexpr unsigned Screens = 4;
    constexpr unsigned FirstSerial = 64;
    constexpr unsigned Attached = 5;
    return (::major(number) == Screens && ::minor(number) < FirstSerial) ||
           ::major(number) == Attached;
}

DeviceFacts::Kind KindOf(const struct stat &status, const QString &terminal)
{
    using Kind = DeviceFacts::Kind;
    if (S_ISDIR(status.st_mode))
        return Kind::Folder;
    if (S_ISREG(status.st_mode))
        return Kind::File;
    if (!S_ISCHR(status.st_mode) || IsVirtual(status.st_rdev))
        return Kind::OtherDevice;
    if (SerialDevice::IsPseudoTerminal(status.st_rdev))
        return Kind::PseudoTerminal;
    return QFileInfo::exists(terminal) ? Kind::Port : Kind::OtherDevice;
}

QStringList StableNamesOf(const QString &devices, const QString &device)
{
    QStringList names;
    for (const char *kind : {"/serial/by-id", "/serial/by-path"}) {
        const QDir folder(devices + QLatin1String(kind));
        for (const QFileInfo &link : folder.entryInfoList(QDir::Files | QDir::System))
            if (link.canonicalFilePath() == device)
                names << link.filePath();
    }
    return names;
}

/// What the rules for devices have written down of one, by its number and kind.
bool ModemManagerIgnores(const QString &number)
{
    QFile file(QStringLiteral("/run/udev/data/c") + number);
    const QByteArray told = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    return told.contains("E:ID_MM_DEVICE_IGNORE=1") || told.contains("E:ID_MM_PORT_IGNORE=1");
}

/// As processes tell of their terminal.
quint64 TerminalNumber(const QString &number)
{
    constexpr unsigned LowMinor = 0xFF;
    const quint64 major = number.section(u':', 0, 0).toULongLong();
    const quint64 minor = number.section(u':', 1).toULongLong();
    return (minor & LowMinor) | major << 8U | (minor & ~quint64(LowMinor)) << 12U;
}

} // namespace

QString SystemPortFinder::CanonicalName(const QString &device) const
{
    return SerialDevice::CanonicalName(device);
}

DeviceFacts SystemPortFinder::FactsOf(const QString &device) const
{
    const QString path = SerialDevice::PathOf(device);
    DeviceFacts facts;
    facts.device = CanonicalName(device);
    facts.leadsTo = QFileInfo(path).symLinkTarget();
    struct stat status = {};
    if (facts.device.isEmpty() || ::stat(QFile::encodeName(facts.device).constData(), &status) != 0)
        return facts;
    const QString terminal = m_descriptions + u'/' + QFileInfo(facts.device).fileName();
    facts.kind = KindOf(status, terminal);
    facts.description = DescriptionOf(facts.device);
    facts.driver = TerminalFolder::Driver(terminal);
    facts.hardware = TerminalFolder::HasHardware(terminal);
    facts.stableNames = StableNamesOf(m_devices, facts.device);
    if (const QString usb = TerminalFolder::UsbFolder(terminal); !usb.isEmpty())
        facts.usb = UsbFactsOf(terminal, usb);
    facts.rights = RightsTo(facts.device, status);
    AddUsers(facts, path);
    AddConsole(facts);
    return facts;
}

UsbFacts SystemPortFinder::UsbFactsOf(const QString &terminal, const QString &usb) const
{
    const auto line = [&usb](const char *file) { return LineIn(usb + QLatin1String(file)); };
    UsbFacts facts;
    facts.maker = line("/manufacturer");
    facts.product = line("/product");
    facts.serialNumber = line("/serial");
    facts.identity = line("/idVendor") + u':' + line("/idProduct");
    facts.place = QFileInfo(usb).fileName();
    facts.latencyFile = terminal + QStringLiteral("/device/latency_timer");
    bool isNumber = false;
    if (const int latency = LineIn(facts.latencyFile).toInt(&isNumber); isNumber)
        facts.latency = latency;
    facts.latencyMaySet = ::faccessat(AT_FDCWD, QFile::encodeName(facts.latencyFile).constData(),
                                      W_OK, AT_EACCESS) == 0;
    facts.modemManagerIgnores = ModemManagerIgnores(LineIn(terminal + QStringLiteral("/dev"))) ||
                                ModemManagerIgnores(line("/dev"));
    return facts;
}

/// A program that has both ends of a pseudo-terminal only keeps it.
void SystemPortFinder::AddUsers(DeviceFacts &facts, const QString &alias) const
{
    const ProcessTable processes(m_processes);
    const ProcessTable::Users found = processes.UsersOf(facts.device);
    facts.otherEnd = found.otherEnd;
    facts.hiddenProcesses = found.hidden;
    for (const PortUser &user : found.users) {
        const bool keeps =
            std::any_of(found.otherEnd.begin(), found.otherEnd.end(),
                        [&user](const PortUser &other) { return other.process == user.process; });
        if (!keeps)
            facts.users.append(user);
    }
    facts.locks = SerialDevice::LockFilesOf(facts.device, alias);
    facts.modemManager = processes.Find(QStringLiteral("ModemManager"));
}

void SystemPortFinder::AddConsole(DeviceFacts &facts) const
{
    const QString name = QFileInfo(facts.device).fileName();
    const ProcessTable processes(m_processes);
    const QString words = QStringLiteral("console=") + name;
    for (const QString &word : processes.KernelWords())
        if (word == words || word.startsWith(words + u','))
            facts.consoleWords = word;
    facts.console =
        LineIn(m_descriptions + QStringLiteral("/console/active")).split(u' ').contains(name);
    facts.login = processes.LoginOn(
        name, TerminalNumber(LineIn(m_descriptions + u'/' + name + QStringLiteral("/dev"))));
}
