// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "QtSettingsStore.h"

#include "ClOutputFile.h"

#include <QStandardPaths>

#include <utility>

namespace
{

/// Far more than the program has to store.
constexpr qint64 LargestFile = 16 * 1024 * 1024;

QString FullKey(const QString &section, const QString &key)
{
    return section + u'/' + key;
}

} // namespace

/// The folder and the name that the toolkit itself would take.
QString QtSettingsStore::UserPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/Serimonde.conf");
}

QtSettingsStore::QtSettingsStore(FileSystem &fileSystem, QString path)
    : m_path(std::move(path)), m_files(fileSystem)
{
    if (const Result read = ReadFile(); read.Failed())
        m_state = Named(read);
}

std::optional<QString> QtSettingsStore::Read(const QString &section, const QString &key) const
{
    for (const IniText::Texts *texts : {&m_changed, &m_stored}) {
        const auto found = texts->find(FullKey(section, key));
        if (found != texts->end())
            return *found;
    }
    return std::nullopt;
}

QList<SettingsStore::Entry> QtSettingsStore::ReadSection(const QString &section) const
{
    const QString prefix = FullKey(section, QString());
    const IniText::Texts texts = Merged();
    QList<Entry> entries;
    for (auto text = texts.cbegin(); text != texts.cend(); ++text) {
        if (text.key().startsWith(prefix))
            entries.append({text.key().sliced(prefix.size()), *text});
    }
    return entries;
}

/// What is as it was read is no change: another program may have changed it meanwhile.
void QtSettingsStore::Write(const QString &section, const QString &key, const QString &text)
{
    const QString fullKey = FullKey(section, key);
    const auto stored = m_stored.constFind(fullKey);
    if (stored != m_stored.constEnd() && *stored == text)
        m_changed.remove(fullKey);
    else
        m_changed[fullKey] = text;
}

Result QtSettingsStore::Flush()
{
    if (m_changed.isEmpty())
        return {};
    ClOutputFile file(m_files);
    if (const Result opened = file.OpenForUpdate(m_path); opened.Failed())
        return Named(opened);
    if (const Result read = ReadFile(); read.Failed())
        return Named(read, ". It is left as it is");
    const IniText::Texts merged = Merged();
    const QByteArray bytes = IniText::Write(merged);
    file.WriteInFile(bytes);
    if (const Result saved = file.Commit(); saved.Failed())
        return Named(saved);
    m_bytes = bytes;
    m_stored = merged;
    m_changed.clear();
    return {};
}

/// A file that is missing holds nothing. With a failure all stays as it was last read.
Result QtSettingsStore::ReadFile()
{
    const FileSystem::Content file = m_files.System().Read(m_path, LargestFile);
    if (file.result.Failed() && file.result.Number() != FileMissing)
        return file.result;
    if (file.bytes == m_bytes)
        return {};
    IniText::Content content = IniText::Read(file.bytes);
    if (content.result.Failed())
        return content.result;
    m_bytes = file.bytes;
    m_stored = std::move(content.texts);
    return {};
}

IniText::Texts QtSettingsStore::Merged() const
{
    IniText::Texts texts = m_stored;
    texts.insert(m_changed);
    return texts;
}

Failure QtSettingsStore::Named(const Result &result, const char *sequel) const
{
    return {m_path + QStringLiteral(": ") + result.Cause() + QLatin1StringView(sequel)};
}

SetAside SetSettingsAside(FileSystem &fileSystem, const QString &path)
{
    const QString target = fileSystem.CanonicalPath(path);
    if (!fileSystem.Exists(target))
        return {};
    QString kept = target + QStringLiteral(".old");
    for (int number = 2; fileSystem.Exists(kept); ++number)
        kept = target + QStringLiteral(".old%1").arg(number);
    if (const Result renamed = fileSystem.Rename(target, kept); renamed.Failed())
        return {{}, Failure{QStringLiteral("%1: %2").arg(target, renamed.Cause())}};
    return {kept, {}};
}
