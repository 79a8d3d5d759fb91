// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "DeviceSearch.h"

#include "SerialDevice.h"

#include <QDir>
#include <QFileInfo>

#include <utility>

namespace
{

QFileInfoList LinksIn(const QString &folder)
{
    return QDir(folder).entryInfoList(QDir::Files | QDir::System);
}

} // namespace

DeviceSearch::DeviceSearch(const QString &canonicalName, const QString &alias,
                           const QString &stableNames)
    : m_device(canonicalName), m_stableNames(stableNames)
{
    // A name of the adapter is better than one of the socket that it is plugged into.
    for (const char *kind : {"/by-id", "/by-path"}) {
        for (const QFileInfo &link : LinksIn(m_stableNames + QLatin1String(kind))) {
            if (link.canonicalFilePath() == canonicalName) {
                m_names << link.filePath();
                break;
            }
        }
    }
    if (m_names.isEmpty())
        m_names << SerialDevice::PathOf(alias);
    m_links = SerialDevice::SightOfLinks(m_names.first());
}

void DeviceSearch::NoteOthers()
{
    m_others.clear();
    for (const QFileInfo &link : LinksIn(m_stableNames + QStringLiteral("/by-path")))
        m_others << link.canonicalFilePath();
    m_others.remove(m_device);
    m_others.remove(QString()); // links that lead nowhere
}

QString DeviceSearch::Find()
{
    m_others.removeIf([](const QString &device) { return !QFileInfo::exists(device); });
    for (const QString &name : std::as_const(m_names)) {
        m_linksOfFind = SerialDevice::SightOfLinks(name);
        QString device = SerialDevice::CanonicalName(name);
        const bool lentToOthers =
            !m_links.isEmpty() && m_links == m_linksOfFind && SerialDevice::HasLentName(device);
        if (!lentToOthers && !m_others.contains(device))
            return device;
    }
    return {};
}

QByteArray DeviceSearch::Sight() const
{
    QByteArray sight;
    for (const QString &name : m_names)
        sight += SerialDevice::SightOf(name) + '\n';
    return sight;
}

void DeviceSearch::NoteOpened(const QString &canonicalName)
{
    m_device = canonicalName;
    m_links = m_linksOfFind;
}
