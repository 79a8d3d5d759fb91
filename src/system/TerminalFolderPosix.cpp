// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TerminalFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace
{

/// The hardware's folder, in which and above which its files stand.
QDir Hardware(const QString &terminal)
{
    return QDir(QFileInfo(terminal + QStringLiteral("/device")).canonicalFilePath());
}

} // namespace

QString TerminalFolder::LineIn(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readLine(4096)).trimmed()
                                          : QString();
}

bool TerminalFolder::HasHardware(const QString &terminal)
{
    return LineIn(terminal + QStringLiteral("/type")) != QLatin1String("0");
}

bool TerminalFolder::IsPort(const QString &terminal)
{
    return QFileInfo::exists(terminal + QStringLiteral("/device")) && HasHardware(terminal);
}

QString TerminalFolder::UsbFolder(const QString &terminal)
{
    QDir folder = Hardware(terminal);
    while (!folder.exists(QStringLiteral("idVendor"))) {
        if (folder.isRoot() || !folder.cdUp())
            return {};
    }
    return folder.path();
}

/// The bus on which the kernel's own layer for serial ports stands says nothing of the hardware.
QString TerminalFolder::Driver(const QString &terminal)
{
    if (!QFileInfo::exists(terminal + QStringLiteral("/device")))
        return {};
    for (QDir folder = Hardware(terminal); !folder.isRoot(); folder.cdUp()) {
        const QFileInfo driver(folder.filePath(QStringLiteral("driver")));
        const QFileInfo bus(folder.filePath(QStringLiteral("subsystem")));
        if (driver.isSymLink() && !bus.symLinkTarget().endsWith(QLatin1String("/serial-base")))
            return QFileInfo(driver.symLinkTarget()).fileName();
    }
    return {};
}
