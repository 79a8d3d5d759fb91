// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TextRegistry.h"

#include "FileSystem.h"

namespace
{

/// A larger file is no store that a packager has written.
constexpr qint64 LargestFile = 1024 * 1024;

constexpr QLatin1String TextMark("REG_SZ");
constexpr QLatin1String NumberMark("REG_DWORD");

QByteArray LowestByteFirst(quint32 number)
{
    QByteArray bytes;
    for (int shift = 0; shift < 32; shift += 8)
        bytes += char(number >> shift & 0xFFU);
    return bytes;
}

/// What stands behind the "=": a type, a blank and the content.
std::optional<RegistryValue> ParseValue(const QString &text)
{
    const QString mark = text.section(u' ', 0, 0);
    const QString content = text.section(u' ', 1).trimmed();
    if (mark == TextMark)
        return RegistryValue{RegistryValue::Type::Text, content.toUtf8()};
    if (mark != NumberMark)
        return RegistryValue{RegistryValue::Type::Other, content.toUtf8()};
    bool whole = false;
    const bool hexadecimal = content.startsWith(QLatin1String("0x"));
    const quint32 number = content.toUInt(&whole, hexadecimal ? 16 : 10);
    if (!whole)
        return std::nullopt;
    return RegistryValue{RegistryValue::Type::Number, LowestByteFirst(number)};
}

bool SameName(const QString &one, const QString &other)
{
    return one.compare(other, Qt::CaseInsensitive) == 0;
}

std::optional<RegistryValue> Find(const QString &content, const QString &header,
                                  const QString &name)
{
    bool inKey = false;
    for (const QString &raw : content.split(u'\n')) {
        const QString line = raw.trimmed();
        if (line.startsWith(u'['))
            inKey = SameName(line, header);
        else if (inKey && !line.startsWith(u'#') && line.contains(u'=') &&
                 SameName(line.section(u'=', 0, 0).trimmed(), name))
            return ParseValue(line.section(u'=', 1).trimmed());
    }
    return std::nullopt;
}

} // namespace

std::optional<RegistryValue> TextRegistry::Read(const QString &root, const QString &key,
                                                const QString &name)
{
    const QString header = u'[' + root + u'\\' + key + u']';
    for (const QString &path : m_paths) {
        const FileSystem::Content file = m_files.Read(path, LargestFile);
        if (file.result.Failed())
            continue;
        auto value = Find(QString::fromUtf8(file.bytes), header, name);
        if (value)
            return value;
    }
    return std::nullopt;
}
