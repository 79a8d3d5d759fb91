// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "QtSettingsStore.h"

#include <QFileInfo>
#include <QStringList>

namespace
{

QString FullKey(const QString &section, const QString &key)
{
    return section + u'/' + key;
}

} // namespace

QtSettingsStore::QtSettingsStore()
    : m_settings(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("Serimonde"))
{
    m_settings.setFallbacksEnabled(false);
    m_settings.allKeys(); // reads all sections, so that status() tells of faults in any of them
}

std::optional<QString> QtSettingsStore::Read(const QString &section, const QString &key) const
{
    const QVariant value = m_settings.value(FullKey(section, key));
    if (!value.isValid())
        return std::nullopt;
    // A text with a comma that somebody wrote into the file by hand is read as a list.
    if (value.typeId() == QMetaType::QStringList)
        return value.toStringList().join(QStringLiteral(", "));
    return value.toString();
}

QList<SettingsStore::Entry> QtSettingsStore::ReadSection(const QString &section) const
{
    const QString prefix = FullKey(section, QString());
    QList<Entry> entries;
    for (const QString &fullKey : m_settings.allKeys()) {
        if (!fullKey.startsWith(prefix))
            continue;
        const QString key = fullKey.sliced(prefix.size());
        entries.append({key, Read(section, key).value_or(QString())});
    }
    return entries;
}

void QtSettingsStore::Write(const QString &section, const QString &key, const QString &text)
{
    m_settings.setValue(FullKey(section, key), text);
}

Result QtSettingsStore::Flush()
{
    m_settings.sync();
    if (m_settings.status() == QSettings::NoError)
        return {};
    return Failure{QStringLiteral("%1 cannot be written").arg(m_settings.fileName())};
}

Result QtSettingsStore::CheckReading() const
{
    if (m_settings.status() == QSettings::FormatError)
        return Failure{QStringLiteral("%1 is not a settings file").arg(m_settings.fileName())};
    const QFileInfo file(m_settings.fileName());
    if (file.exists() && !file.isReadable())
        return Failure{QStringLiteral("%1 may not be read").arg(m_settings.fileName())};
    return {};
}
