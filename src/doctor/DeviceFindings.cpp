// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "DeviceFindings.h"

#include <array>

namespace
{

using Weight = Finding::Weight;
using Kind = DeviceFacts::Kind;

QString Called(const PortUser &user)
{
    if (user.own)
        return QStringLiteral("this program (process %1)").arg(user.process);
    return user.program.isEmpty()
               ? QStringLiteral("process %1").arg(user.process)
               : QStringLiteral("%1 (process %2)").arg(user.program).arg(user.process);
}

QString Called(const QList<PortUser> &users)
{
    QStringList names;
    for (const PortUser &user : users)
        names << Called(user);
    return names.join(QStringLiteral(", "));
}

QString Way(const QString &name, const DeviceFacts &facts)
{
    if (facts.leadsTo.isEmpty() || facts.device.isEmpty())
        return {};
    return QStringLiteral("; %1 leads to %2").arg(name, facts.device);
}

Finding Missing(const QString &name, const DeviceFacts &facts)
{
    const QString text =
        facts.leadsTo.isEmpty()
            ? QStringLiteral("there is no %1").arg(name)
            : QStringLiteral("%1 is a link to %2, which is not there").arg(name, facts.leadsTo);
    return {QStringLiteral("Device"), text, Weight::Fault,
            QStringLiteral("plug it in, or choose another one")};
}

QString WhatAPortIs(const DeviceFacts &facts)
{
    if (facts.kind != Kind::PseudoTerminal)
        return facts.description.isEmpty() ? QStringLiteral("a serial port") : facts.description;
    const QString what = QStringLiteral("a pseudo-terminal");
    return facts.otherEnd.isEmpty()
               ? what
               : what + QStringLiteral(", at its other end ") + Called(facts.otherEnd);
}

Finding WhatItIs(const QString &name, const DeviceFacts &facts)
{
    const QString title = QStringLiteral("Device");
    switch (facts.kind) {
    case Kind::Missing:
        return Missing(name, facts);
    case Kind::Folder:
        return {title, QStringLiteral("%1 is a folder").arg(name), Weight::Fault};
    case Kind::File:
        return {title, QStringLiteral("%1 is a file and no device").arg(name), Weight::Fault};
    case Kind::OtherDevice:
        return {title, QStringLiteral("%1 is not a serial device").arg(name), Weight::Fault};
    default:
        break;
    }
    if (!facts.hardware)
        return {title,
                QStringLiteral("the driver has found no hardware behind it") + Way(name, facts),
                Weight::Fault, QStringLiteral("choose another one")};
    return {title, WhatAPortIs(facts) + Way(name, facts)};
}

void AddUsb(QList<Finding> &findings, const UsbFacts &usb)
{
    const QString maker = QStringList{usb.maker, usb.product}.join(u' ').trimmed();
    findings.append(
        {QStringLiteral("Maker"),
         maker.isEmpty() ? usb.identity : QStringLiteral("%1 (%2)").arg(maker, usb.identity)});
    findings.append({QStringLiteral("Serial number"),
                     usb.serialNumber.isEmpty()
                         ? QStringLiteral("none, so that it is told from others of its make by "
                                          "its USB place alone")
                         : usb.serialNumber});
    findings.append({QStringLiteral("USB place"), usb.place});
}

void AddNames(QList<Finding> &findings, const DeviceFacts &facts)
{
    if (!facts.driver.isEmpty())
        findings.append({QStringLiteral("Driver"), facts.driver});
    if (!facts.stableNames.isEmpty())
        findings.append(
            {QStringLiteral("Stable name"), facts.stableNames.join(QStringLiteral(", "))});
    else if (facts.usb)
        findings.append({QStringLiteral("Stable name"),
                         QStringLiteral("none, so that its name may be another one when it is "
                                        "plugged in again")});
}

/// What gives this user the right to a device that he has none to.
QString CureOfRights(const DeviceFacts &facts)
{
    const DeviceRights &rights = facts.rights;
    if (rights.groupMay && rights.membership == DeviceRights::Membership::NextLogin)
        return QStringLiteral("log out and in again: %1 is in the group %2 since this session "
                              "began")
            .arg(rights.user, rights.group);
    if (rights.groupMay && rights.membership == DeviceRights::Membership::None)
        return QStringLiteral("sudo usermod -aG %1 %2, then log out and in again")
            .arg(ShellWord(rights.group), ShellWord(rights.user));
    const char *command = facts.kind == Kind::PseudoTerminal ? "sudo chown %1 %2" // knows no lists
                                                             : "sudo setfacl -m u:%1:rw %2";
    return QString::fromLatin1(command).arg(ShellWord(rights.user), ShellWord(facts.device)) +
           QStringLiteral(", which holds until the device goes away");
}

Finding Rights(const DeviceFacts &facts)
{
    const DeviceRights &rights = facts.rights;
    const QString title = QStringLiteral("Rights");
    const QString whose =
        QStringLiteral(" (%1:%2, %3)").arg(rights.owner, rights.group, rights.mode);
    if (rights.administrator)
        return {title, QStringLiteral("%1 may open every device").arg(rights.user) + whose};
    if (rights.mayRead && rights.mayWrite)
        return {title, QStringLiteral("%1 may read and write").arg(rights.user) + whose};
    const char *may = rights.mayRead    ? "%1 may read, but not write"
                      : rights.mayWrite ? "%1 may write, but not read"
                                        : "%1 may neither read nor write";
    return {title, QString::fromLatin1(may).arg(rights.user) + whose, Weight::Fault,
            CureOfRights(facts)};
}

QString HiddenText(int processes)
{
    return processes == 1
               ? QStringLiteral("1 process of another user cannot be looked into")
               : QStringLiteral("%1 processes of other users cannot be looked into").arg(processes);
}

Finding Users(const DeviceFacts &facts)
{
    const QString title = QStringLiteral("Held by");
    const bool hidden = facts.hiddenProcesses > 0;
    if (facts.users.isEmpty())
        return {
            title,
            hidden ? QStringLiteral("nobody who can be seen; ") + HiddenText(facts.hiddenProcesses)
                   : QStringLiteral("nobody"),
            Weight::Fact,
            hidden ? QStringLiteral("sudo fuser -v %1").arg(ShellWord(facts.device)) : QString()};
    return {title, Called(facts.users), Weight::Fault,
            facts.users.first().own ? QStringLiteral("stop communication")
                                    : QStringLiteral("end that program, or choose another port")};
}

Finding Lock(const LockFile &lock)
{
    const QString title = QStringLiteral("Lock file");
    if (lock.alive)
        return {title, QStringLiteral("%1 of %2").arg(lock.file, Called(lock.user)),
                lock.inTheWay ? Weight::Fault : Weight::Notice,
                QStringLiteral("end that program, or choose another port")};
    const QString whose =
        lock.user.process == 0
            ? QStringLiteral("%1 says no process that could be asked").arg(lock.file)
            : QStringLiteral("%1 was left behind by process %2, which has ended")
                  .arg(lock.file)
                  .arg(lock.user.process);
    if (!lock.inTheWay)
        return {title, whose + QStringLiteral("; it does not keep Serimonde from opening"),
                Weight::Notice};
    return {title, whose, Weight::Fault, QStringLiteral("sudo rm %1").arg(ShellWord(lock.file))};
}

void AddLocks(QList<Finding> &findings, const DeviceFacts &facts)
{
    for (const LockFile &lock : facts.locks)
        findings.append(Lock(lock));
    if (facts.locks.isEmpty())
        findings.append({QStringLiteral("Lock file"), QStringLiteral("none")});
}

void AddConsole(QList<Finding> &findings, const DeviceFacts &facts)
{
    const QString title = QStringLiteral("Console");
    if (facts.login) {
        const QString unit =
            QStringLiteral("serial-getty@%1.service").arg(facts.device.section(u'/', -1));
        findings.append({title,
                         QStringLiteral("%1 asks for a login there and takes what comes")
                             .arg(Called(*facts.login)),
                         Weight::Fault,
                         QStringLiteral("sudo systemctl mask --now %1").arg(ShellWord(unit))});
    }
    if (facts.console || !facts.consoleWords.isEmpty())
        findings.append({title,
                         facts.console
                             ? QStringLiteral("the kernel writes its messages there")
                             : QStringLiteral("the kernel was told to write its messages there, "
                                              "and does not"),
                         Weight::Notice,
                         facts.consoleWords.isEmpty()
                             ? QString()
                             : QStringLiteral("take %1 out of the kernel's command line")
                                   .arg(facts.consoleWords)});
    else if (!facts.login)
        findings.append({title, QStringLiteral("no")});
}

Finding ModemManager(const DeviceFacts &facts)
{
    const QString title = QStringLiteral("ModemManager");
    if (!facts.modemManager)
        return {title, QStringLiteral("does not run")};
    if (facts.usb->modemManagerIgnores)
        return {title, QStringLiteral("runs, and is told to leave this device alone")};
    return {title,
            QStringLiteral("runs as process %1 and may take the device for some seconds after it "
                           "was plugged in")
                .arg(facts.modemManager->process),
            Weight::Notice, QStringLiteral("sudo systemctl stop ModemManager")};
}

Finding Latency(const UsbFacts &usb)
{
    const QString title = QStringLiteral("Latency timer");
    if (!usb.latency)
        return {title, QStringLiteral("the driver has none that could be set")};
    if (*usb.latency <= 1)
        return {title, QStringLiteral("%1 ms").arg(*usb.latency)};
    return {
        title,
        QStringLiteral("%1 ms, so long a short answer may wait in the adapter; Serimonde asks "
                       "the driver for 1 ms while it has the port open, for all programs it is "
                       "lowered by")
            .arg(*usb.latency),
        Weight::Notice,
        (usb.latencyMaySet ? QStringLiteral("echo 1 > %1") : QStringLiteral("echo 1 | sudo tee %1"))
            .arg(ShellWord(usb.latencyFile))};
}

} // namespace

QList<Finding> DeviceFindings(const QString &name, const DeviceFacts &facts)
{
    QList<Finding> findings = {WhatItIs(name, facts)};
    if (facts.kind != Kind::Port && facts.kind != Kind::PseudoTerminal)
        return findings;
    if (facts.usb)
        AddUsb(findings, *facts.usb);
    AddNames(findings, facts);
    findings.append({Rights(facts), Users(facts)});
    AddLocks(findings, facts);
    if (facts.kind == Kind::PseudoTerminal)
        return findings;
    AddConsole(findings, facts);
    if (facts.usb)
        findings.append({ModemManager(facts), Latency(*facts.usb)});
    return findings;
}

QList<Finding> TrialFindings(const DeviceTrial &trial)
{
    const QString title = QStringLiteral("Trial");
    QList<Finding> findings;
    if (trial.cause.isEmpty())
        findings.append(
            {title,
             QStringLiteral("it was opened, did %1 as asked, and was closed").arg(trial.asked)});
    else
        findings.append({title, trial.cause, trial.tried ? Weight::Fault : Weight::Fact});
    QStringList taken;
    QStringList others;
    for (const DeviceTrial::Speed &speed : trial.speeds) {
        if (speed.asked == speed.done)
            taken << QString::number(speed.asked);
        else
            others << QStringLiteral("%1 in place of %2").arg(speed.done).arg(speed.asked);
    }
    const QString comma = QStringLiteral(", ");
    if (!taken.isEmpty())
        findings.append({QStringLiteral("Speeds set"), taken.join(comma)});
    if (!others.isEmpty())
        findings.append({QStringLiteral("Other speeds set"), others.join(comma), Weight::Notice});
    return findings;
}
