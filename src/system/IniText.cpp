// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "IniText.h"

#include "MemoryFile.h"

#include <QSettings>

#include <array>
#include <cctype>
#include <optional>
#include <utility>

namespace
{

/// Characters that have a short form of their own.
constexpr std::array<std::pair<char16_t, const char *>, 9> ShortForms = {{
    {u'\a', "\\a"},
    {u'\b', "\\b"},
    {u'\f', "\\f"},
    {u'\n', "\\n"},
    {u'\r', "\\r"},
    {u'\t', "\\t"},
    {u'\v', "\\v"},
    {u'"', "\\\""},
    {u'\\', "\\\\"},
}};

constexpr QChar ByteOrderMark(u'\xFEFF');

bool IsHexDigit(QChar c)
{
    return c.unicode() < 0x80 && std::isxdigit(c.unicode());
}

const char *ShortFormOf(QChar c)
{
    for (const auto &[character, form] : ShortForms) {
        if (c == character)
            return form;
    }
    return nullptr;
}

/// How many units from the place on UTF-8 can express together; none if it cannot.
qsizetype Expressible(QStringView text, qsizetype place)
{
    const QChar c = text[place];
    if (c.isHighSurrogate() && place + 1 < text.size() && text[place + 1].isLowSurrogate())
        return 2;
    return c.isSurrogate() || c == ByteOrderMark ? 0 : 1;
}

QByteArray Escaped(QStringView text)
{
    QByteArray result;
    bool digitWouldJoin = false; // an escaped number of any length stands before it
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        const qsizetype units = Expressible(text, i);
        const char *shortForm = ShortFormOf(c);
        const bool joins = std::exchange(digitWouldJoin, false) && IsHexDigit(c);
        if (shortForm) {
            result += shortForm;
        } else if (c.isNull()) {
            result += "\\0";
            digitWouldJoin = true;
        } else if (joins || units == 0 || c < u' ') {
            result += "\\x" + QByteArray::number(c.unicode(), 16);
            digitWouldJoin = true;
        } else {
            result += text.sliced(i, units).toUtf8();
            i += units - 1;
        }
    }
    return result;
}

QByteArray Value(const QString &text)
{
    const bool hasNull = text.contains(QChar::Null);
    const QString marked = hasNull                 ? QStringLiteral("@String(%1)").arg(text)
                           : text.startsWith(u'@') ? u'@' + text
                                                   : text;
    const bool quoted = marked.contains(u';') || marked.contains(u',') || marked.contains(u'=') ||
                        marked.startsWith(u' ') || marked.endsWith(u' ');
    const QByteArray escaped = Escaped(marked);
    return quoted ? '"' + escaped + '"' : escaped;
}

/// A section or a key.
QByteArray Name(QStringView text)
{
    QByteArray result;
    for (const QChar c : text) {
        const ushort code = c.unicode();
        if (c == u'/')
            result += '\\';
        else if (code < 0x80 && (std::isalnum(code) || c == u'_' || c == u'-' || c == u'.'))
            result += char(code);
        else if (code <= 0xFF)
            result += '%' + QByteArray::number(code, 16).toUpper().rightJustified(2, '0');
        else
            result += "%U" + QByteArray::number(code, 16).toUpper().rightJustified(4, '0');
    }
    return result;
}

/// What is in no section stands in "General", and a section of that name under another one.
QByteArray Header(const QString &section)
{
    if (section.isEmpty())
        return "General";
    return section.compare(u"general", Qt::CaseInsensitive) == 0 ? QByteArray("%General")
                                                                 : Name(section);
}

struct Place {
    QString section;
    QString key;
};

Place PlaceOf(const QString &fullKey)
{
    const qsizetype slash = fullKey.indexOf(u'/');
    return {slash < 0 ? QString() : fullKey.left(slash), fullKey.mid(slash + 1)};
}

/// What stands behind "key=" in its section.
QString LineOf(const QByteArray &bytes, const Place &place)
{
    const QByteArray header = '[' + Header(place.section) + ']';
    const QByteArray start = Name(place.key) + '=';
    QByteArray found;
    bool inside = false;
    for (const QByteArray &each : bytes.split('\n')) {
        const QByteArray line = each.trimmed();
        if (line.startsWith('['))
            inside = line == header;
        else if (inside && line.startsWith(start))
            found = line.sliced(start.size()).trimmed();
    }
    return QString::fromUtf8(found);
}

/// The toolkit drops the blanks around the commas of a list.
QString TextOf(const QVariant &value, const QByteArray &bytes, const QString &fullKey)
{
    if (value.typeId() == QMetaType::QString)
        return value.toString();
    const QString line = LineOf(bytes, PlaceOf(fullKey));
    const bool plain = !line.isEmpty() && !line.contains(u'"') && !line.contains(u'\\');
    return plain || value.typeId() != QMetaType::QStringList
               ? line
               : value.toStringList().join(QStringLiteral(", "));
}

} // namespace

namespace IniText
{

Content Read(const QByteArray &bytes)
{
    const MemoryFile file(bytes);
    if (file.State().Failed())
        return {{}, file.State()};
    QSettings settings(file.Path(), QSettings::IniFormat);
    Content content;
    const QStringList keys = settings.allKeys();
    for (const QString &key : keys) {
        const QVariant value = settings.value(key);
        if (value.isValid())
            content.texts[key] = TextOf(value, bytes, key);
    }
    if (settings.status() != QSettings::NoError)
        return {{}, Failure{QStringLiteral("It is not a settings file")}};
    return content;
}

QByteArray Write(const Texts &texts)
{
    QMap<QString, QByteArray> sections;
    for (auto text = texts.cbegin(); text != texts.cend(); ++text) {
        const Place place = PlaceOf(text.key());
        sections[place.section] += Name(place.key) + '=' + Value(*text) + '\n';
    }
    QByteArray bytes;
    for (auto section = sections.cbegin(); section != sections.cend(); ++section) {
        bytes += bytes.isEmpty() ? "[" : "\n[";
        bytes += Header(section.key()) + "]\n" + *section;
    }
    return bytes;
}

} // namespace IniText
