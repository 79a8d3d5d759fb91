// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QSet>
#include <QString>
#include <QStringList>

/// Finds a device again after it went away, and no other one in its place: by its stable names
/// where it has any, whatever the system itself calls it then, else by the name that the user gave.
/// A link to a name that the system lends out must have been made anew.
class DeviceSearch final
{
  public:
    DeviceSearch() = default;
    /// While the device is there, and before it is opened. The stable names are links in the
    /// folders by-id and by-path of a folder.
    DeviceSearch(const QString &canonicalName, const QString &alias,
                 const QString &stableNames = QStringLiteral("/dev/serial"));

    /// Where the device will be found, the best name first.
    const QStringList &Names() const { return m_names; }

    /// To be called when the device has gone: others that are there now are none of those that
    /// come back. Two adapters of one make may share a name, which the one that stays then takes.
    void NoteOthers();

    /// The canonical name of the device; empty while it is away.
    QString Find();
    /// What can be seen at little cost: while it is the same, Find finds the same, but that a link
    /// may have been made anew.
    QByteArray Sight() const;

    /// What was found has been opened.
    void NoteOpened(const QString &canonicalName);

  private:
    QString m_device; ///< canonical name when it was opened
    QString m_stableNames;
    QStringList m_names;
    QSet<QString> m_others;
    QByteArray m_links;       ///< by which it was found when it was opened
    QByteArray m_linksOfFind; ///< the same of the latest Find
};
