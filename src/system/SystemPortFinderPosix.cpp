// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SystemPortFinder.h"

#include "TerminalFolder.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QStringList>

#include <algorithm>
#include <utility>

namespace
{

using TerminalFolder::IsPort;
using TerminalFolder::LineIn;
using TerminalFolder::UsbFolder;

/// Maker and product of the USB device that the port belongs to; empty if it belongs to none.
QString UsbDescription(const QString &description)
{
    const QString usb = UsbFolder(description);
    if (usb.isEmpty())
        return {};
    const QStringList words = {LineIn(usb + QStringLiteral("/manufacturer")),
                               LineIn(usb + QStringLiteral("/product"))};
    const QString text = words.join(u' ').trimmed();
    return text.isEmpty() ? QStringLiteral("USB device") : text;
}

QString Describe(const QString &description)
{
    QString usb = UsbDescription(description);
    if (!usb.isEmpty())
        return usb;
    return QFileInfo(description).fileName().startsWith(QLatin1String("ttyS"))
               ? QStringLiteral("Built-in serial port")
               : QString();
}

/// Stable names by the devices that they lead to; one of the adapter is better than one of the
/// socket that it is plugged into.
QHash<QString, QString> StableNames(const QString &devices)
{
    QHash<QString, QString> names;
    for (const char *kind : {"/serial/by-path", "/serial/by-id"}) {
        const QDir folder(devices + QLatin1String(kind));
        for (const QFileInfo &link : folder.entryInfoList(QDir::Files | QDir::System))
            names[link.canonicalFilePath()] = link.filePath();
    }
    return names;
}

/// So that ttyS2 comes before ttyS10.
std::pair<QString, int> Place(const QString &name)
{
    const auto digit = std::find_if(name.begin(), name.end(), [](QChar c) { return c.isDigit(); });
    const auto letters = digit - name.begin();
    return {name.first(letters), name.sliced(letters).toInt()};
}

} // namespace

QString SystemPortFinder::DescriptionOf(const QString &device) const
{
    const QString name = QFileInfo(device).fileName();
    const QString description = m_descriptions + u'/' + name;
    return !name.isEmpty() && IsPort(description) ? Describe(description) : QString();
}

QList<FoundPort> SystemPortFinder::FindPorts() const
{
    QStringList names = QDir(m_descriptions).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    std::sort(names.begin(), names.end(),
              [](const QString &a, const QString &b) { return Place(a) < Place(b); });
    const QHash<QString, QString> stableNames = StableNames(m_devices);
    QList<FoundPort> ports;
    for (const QString &name : std::as_const(names)) {
        const QString description = m_descriptions + u'/' + name;
        const QString device = m_devices + u'/' + name;
        if (QFileInfo::exists(device) && IsPort(description))
            ports.append({device, Describe(description),
                          stableNames.value(QFileInfo(device).canonicalFilePath())});
    }
    return ports;
}
