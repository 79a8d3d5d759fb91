// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SequenceText.h"

#include "CodePage1252.h"

#include <algorithm>
#include <array>

namespace
{

/// Reads one run of characters without separators: items side by side, each maybe marked.
class TokenReader final
{
  public:
    TokenReader(QStringView token, Representation representation)
        : m_token(token), m_representation(representation), m_form(RowOf(representation).item)
    {
    }

    /// Appends the bytes as far as they can be read; false at the first wrong item.
    bool AppendTo(QByteArray &bytes)
    {
        bool delimited = true;
        while (m_at < m_token.size()) {
            m_itemStart = m_at;
            delimited = SkipPrefix() || delimited;
            SkipMarkedZero();
            const QByteArray digits = TakeDigits();
            const bool readable = digits.size() == m_form.width || delimited;
            const int value = SequenceText::ValueOf(digits, m_representation);
            if (digits.isEmpty() || !readable || value > 255)
                return false;
            bytes.append(char(value));
            delimited = SkipSuffix();
        }
        return true;
    }

    /// The item at which reading ended is named by its whole run if that is short.
    bool IsShort() const { return m_token.size() <= EnoughToName; }
    QString WrongItem() const
    {
        const QStringView named = IsShort() ? m_token : m_token.sliced(m_itemStart);
        return named.size() <= EnoughToName ? named.toString()
                                            : named.first(EnoughToName).toString() + u'\u2026';
    }

  private:
    static constexpr qsizetype EnoughToName = 16;

    /// As many as matter: at most one more than an item has.
    qsizetype DigitsAt(qsizetype at) const
    {
        qsizetype end = at;
        while (end < qMin(m_token.size(), at + m_form.width + 1) &&
               SequenceText::DigitValue(m_token[end].unicode(), m_representation) >= 0)
            ++end;
        return end - at;
    }

    bool SkipPrefix()
    {
        for (const QStringView prefix : m_form.prefixes) {
            const QStringView rest = m_token.sliced(m_at);
            if (prefix.isEmpty() || !rest.startsWith(prefix, Qt::CaseInsensitive) ||
                DigitsAt(m_at + prefix.size()) == 0)
                continue;
            m_at += prefix.size();
            return true;
        }
        return false;
    }

    /// 0FFh: the first zero only makes it a number.
    void SkipMarkedZero()
    {
        if (DigitsAt(m_at) == m_form.width + 1 && m_token[m_at] == u'0' &&
            IsSuffix(m_at + m_form.width + 1))
            ++m_at;
    }

    QByteArray TakeDigits()
    {
        const QStringView digits =
            m_token.sliced(m_at, qMin<qsizetype>(DigitsAt(m_at), m_form.width));
        m_at += digits.size();
        return digits.toLatin1();
    }

    bool IsSuffix(qsizetype at) const
    {
        return at < m_token.size() && m_token[at].toLower() == m_form.suffix;
    }

    bool SkipSuffix()
    {
        const bool there = IsSuffix(m_at);
        m_at += there ? 1 : 0;
        return there;
    }

    QStringView m_token;
    Representation m_representation;
    const ItemForm &m_form;
    qsizetype m_at = 0;
    qsizetype m_itemStart = 0;
};

SequenceText::Parsed ParseAscii(QStringView text)
{
    const CodePage1252::Encoded encoded = CodePage1252::FromUnicode(text);
    if (encoded.firstForeign >= 0)
        return {{}, CodePage1252::RefusalOf(text, encoded.firstForeign)};
    return {encoded.bytes, {}};
}

qsizetype TokenEnd(QStringView text, qsizetype at)
{
    while (at < text.size() && !SequenceText::IsSeparator(text[at].unicode()))
        ++at;
    return at;
}

/// As far as its length tells; an item that is longer has a mark.
bool HasAllDigits(QStringView token, Representation form)
{
    const int width = SequenceText::ItemWidth(form);
    return token.size() > width ||
           (token.size() == width && std::all_of(token.begin(), token.end(), [form](QChar digit) {
                return SequenceText::DigitValue(digit.unicode(), form) >= 0;
            }));
}

/// Tokens, -1 if one has too few digits.
qsizetype WholeItems(QStringView text, Representation form)
{
    qsizetype items = 0;
    for (qsizetype at = 0; at < text.size();) {
        const qsizetype end = TokenEnd(text, at);
        if (end > at && !HasAllDigits(text.sliced(at, end - at), form))
            return -1;
        items += end > at ? 1 : 0;
        at = end + 1;
    }
    return items;
}

/// How many items rule out that a text means its characters.
qsizetype ConvincingItems(QByteArrayView ascii)
{
    const auto isControl = [](char byte) { return uchar(byte) < ' '; };
    const auto isDigit = [](char byte) { return byte >= '0' && byte <= '9'; };
    if (std::any_of(ascii.begin(), ascii.end(), isControl))
        return 4;
    return std::any_of(ascii.begin(), ascii.end(), isDigit) ? 2 : 3;
}

} // namespace

namespace SequenceText
{

int ItemWidth(Representation form)
{
    return RowOf(form).item.width;
}

int ItemPitch(Representation form)
{
    return form == Representation::Ascii ? 1 : ItemWidth(form) + 1;
}

QByteArray Of(QByteArrayView sequence, Representation form)
{
    return RowOf(form).toText(sequence);
}

QByteArray Item(uchar byte, Representation form)
{
    const char value = char(byte);
    return Of(QByteArrayView(&value, 1), form);
}

int DigitValue(char16_t character, Representation form)
{
    int value = -1;
    if (character >= u'0' && character <= u'9')
        value = character - u'0';
    else if (character >= u'A' && character <= u'F')
        value = character - u'A' + 10;
    else if (character >= u'a' && character <= u'f')
        value = character - u'a' + 10;
    return value < RowOf(form).item.base ? value : -1;
}

int ValueOf(QByteArrayView digits, Representation form)
{
    int value = 0;
    for (const char digit : digits)
        value = value * RowOf(form).item.base + DigitValue(uchar(digit), form);
    return value;
}

bool IsSeparator(char16_t character)
{
    return character == u',' || character == u'|' || QChar::isSpace(character);
}

QString AllowedDigits(Representation form)
{
    return QString::fromLatin1(RowOf(form).item.allowed);
}

Parsed Parse(QStringView text, Representation form)
{
    if (form == Representation::Ascii)
        return ParseAscii(text);
    Parsed result;
    for (qsizetype at = 0; at < text.size();) {
        const qsizetype end = TokenEnd(text, at);
        TokenReader token(text.sliced(at, end - at), form);
        const qsizetype before = result.bytes.size();
        if (!token.AppendTo(result.bytes)) {
            const qsizetype readable = token.IsShort() ? before : result.bytes.size();
            const QString meaning = QString::fromLatin1(RowOf(form).item.meaning);
            return {{},
                    QStringLiteral("Item %1, \"%2\", is not %3.")
                        .arg(QString::number(readable + 1), token.WrongItem(), meaning)};
        }
        at = end + 1;
    }
    return result;
}

std::optional<Mistaken> ItemsIn(QByteArrayView ascii)
{
    const QString text = CodePage1252::ToUnicode(ascii);
    const qsizetype convincing = ConvincingItems(ascii);
    for (const Representation form : AllRepresentations) {
        const qsizetype items = form == Representation::Ascii ? 0 : WholeItems(text, form);
        if (items < convincing)
            continue;
        const Parsed parsed = Parse(text, form);
        if (parsed.refusal.isEmpty() && parsed.bytes.size() == items)
            return Mistaken{form, parsed.bytes};
    }
    return std::nullopt;
}

} // namespace SequenceText
