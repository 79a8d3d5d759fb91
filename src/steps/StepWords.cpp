// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "StepWords.h"

#include "CodePage1252.h"

#include <array>
#include <cmath>
#include <optional>
#include <utility>

namespace
{

constexpr double LongestSeconds = 365.0 * 24 * 3600;

struct Escape {
    char16_t letter;
    char byte;
};
constexpr std::array Escapes = {Escape{u'r', '\r'}, Escape{u'n', '\n'},  Escape{u't', '\t'},
                                Escape{u'0', '\0'}, Escape{u'\\', '\\'}, Escape{u'"', '"'}};

struct Unit {
    QStringView name;
    double seconds;
};
/// "ms" is looked for before "s", in which it ends too.
constexpr std::array Units = {Unit{u"ms", 0.001}, Unit{u"min", 60.0}, Unit{u"s", 1.0}};

bool IsBlank(QChar c)
{
    return c == u' ' || c == u'\t';
}

std::optional<int> HexDigit(QChar c)
{
    if (c >= u'0' && c <= u'9')
        return c.unicode() - u'0';
    const QChar small = c.toLower();
    if (small >= u'a' && small <= u'f')
        return small.unicode() - u'a' + 10;
    return {};
}

/// The byte of the two digits at a place.
std::optional<char> HexByte(QStringView text, qsizetype place)
{
    if (place + 1 >= text.size())
        return {};
    const std::optional<int> high = HexDigit(text[place]);
    const std::optional<int> low = HexDigit(text[place + 1]);
    if (!high || !low)
        return {};
    return char(*high * 16 + *low);
}

/// Takes the escape behind a backslash at the beginning of the text; its length, 0 if it is none.
qsizetype TakeEscape(QStringView text, QByteArray &bytes)
{
    if (text.size() < 2)
        return 0;
    for (const Escape &escape : Escapes) {
        if (text[1] == escape.letter) {
            bytes += escape.byte;
            return 2;
        }
    }
    const std::optional<char> byte = text[1] == u'x' ? HexByte(text, 2) : std::nullopt;
    if (!byte)
        return 0;
    bytes += *byte;
    return 4;
}

} // namespace

QString StepWords::Word::Name() const
{
    QString name = text;
    if (!quoted)
        return name;
    for (qsizetype i = 0; i + 1 < name.size(); ++i) {
        if (name[i] == u'\\' && (name[i + 1] == u'\\' || name[i + 1] == u'"'))
            name.remove(i, 1);
    }
    return name;
}

StepWords::Words StepWords::Split(QStringView line)
{
    Words split;
    std::optional<Word> word;
    bool inQuotes = false;
    for (qsizetype i = 0; i < line.size(); ++i) {
        const QChar c = line[i];
        if (!inQuotes && IsBlank(c)) {
            if (word)
                split.words.push_back(std::move(*word));
            word.reset();
            continue;
        }
        if (!inQuotes && !word && c == u'#')
            break;
        if (!word)
            word.emplace();
        if (c == u'"') {
            inQuotes = !inQuotes;
            word->quoted = true;
            continue;
        }
        word->text += c;
        if (inQuotes && c == u'\\' && i + 1 < line.size())
            word->text += line[++i];
    }
    if (inQuotes)
        split.result = Failure{QStringLiteral("a quote is not closed")};
    if (word)
        split.words.push_back(std::move(*word));
    return split;
}

StepWords::Bytes StepWords::FromHex(QStringView text)
{
    Bytes read;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (IsBlank(text[i]))
            continue;
        const std::optional<char> byte = HexByte(text, i++);
        if (!byte) {
            return {
                {},
                Failure{
                    QStringLiteral("\"%1\" is not made of pairs of hexadecimal digits").arg(text)}};
        }
        read.bytes += *byte;
    }
    return read;
}

StepWords::Bytes StepWords::FromText(QStringView text)
{
    Bytes read;
    while (!text.isEmpty()) {
        if (text[0] == u'\\') {
            const qsizetype taken = TakeEscape(text, read.bytes);
            if (taken == 0) {
                return {{},
                        Failure{QStringLiteral("\"%1\" is none of \\r \\n \\t \\0 \\\\ \\\" \\xHH")
                                    .arg(text.left(2))}};
            }
            text = text.sliced(taken);
            continue;
        }
        const CodePage1252::Encoded encoded = CodePage1252::FromUnicode(text.first(1));
        if (encoded.firstForeign >= 0) {
            return {{}, Failure{CodePage1252::RefusalOf(text, 0)}};
        }
        read.bytes += encoded.bytes;
        text = text.sliced(1);
    }
    return read;
}

StepWords::Time StepWords::FromTime(QStringView text)
{
    for (const Unit &unit : Units) {
        if (!text.endsWith(unit.name))
            continue;
        bool isNumber = false;
        const QStringView digits = text.chopped(unit.name.size());
        const double seconds = digits.toDouble(&isNumber) * unit.seconds;
        if (isNumber && digits[0].isDigit() && seconds >= 0 && seconds <= LongestSeconds)
            return {qint64(std::llround(seconds * 1e9)), {}};
        break;
    }
    return {0, Failure{QStringLiteral("\"%1\" is no time, such as 200ms, 1.5s or 2min").arg(text)}};
}
