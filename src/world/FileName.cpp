// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "FileName.h"

#include "PlainText.h"

#include <QStringDecoder>

namespace
{

/// Added to a byte that is no UTF-8.
constexpr char16_t ByteMark = 0xDC00;

bool IsByte(QChar c)
{
    return c >= QChar(ByteMark + 0x80) && c <= QChar(ByteMark + 0xFF);
}

/// Bytes of the character in front; 0 if there is none.
qsizetype CharacterLength(QByteArrayView bytes)
{
    for (qsizetype length = 1; length <= qMin(bytes.size(), 4); ++length) {
        if (bytes.first(length).isValidUtf8())
            return length;
    }
    return 0;
}

/// Units of the character at that place: 2 for one beyond the first 65,536.
qsizetype UnitsAt(const QString &text, qsizetype place)
{
    const bool isPair = text[place].isHighSurrogate() && place + 1 < text.size() &&
                        text[place + 1].isLowSurrogate();
    return isPair ? 2 : 1;
}

QString AsHex(QByteArrayView bytes)
{
    QString text;
    for (const char byte : bytes)
        text += QLatin1String("\\x") + QString::fromLatin1(QByteArray(1, byte).toHex().toUpper());
    return text;
}

} // namespace

namespace FileName
{

QString Decode(QByteArrayView bytes)
{
    // A name is no text file: a byte order mark in front belongs to it.
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
    QString name;
    while (!bytes.isEmpty()) {
        const qsizetype length = CharacterLength(bytes);
        if (length > 0)
            name += QString(utf8(bytes.first(length)));
        else
            name += QChar(ByteMark + uchar(bytes.front()));
        bytes = bytes.sliced(qMax(length, 1));
    }
    return name;
}

QByteArray Encode(const QString &name)
{
    QByteArray bytes;
    for (qsizetype place = 0, units = 0; place < name.size(); place += units) {
        const QChar c = name[place];
        units = UnitsAt(name, place);
        if (IsByte(c))
            bytes += char(c.unicode() - ByteMark);
        else if (c.isNull() || (c.isSurrogate() && units == 1))
            return {};
        else
            bytes += name.mid(place, units).toUtf8();
    }
    return bytes;
}

bool IsText(const QString &name)
{
    return name.isValidUtf16() && !name.contains(QChar::Null);
}

QString Shown(const QString &name)
{
    QString shown;
    for (qsizetype place = 0, units = 0; place < name.size(); place += units) {
        const QChar c = name[place];
        units = UnitsAt(name, place);
        const QString character = name.mid(place, units);
        const bool isSeen = IsText(character) && c != QChar::ReplacementCharacter &&
                            PlainText(character) == character;
        if (isSeen)
            shown += character;
        else
            shown += AsHex(IsByte(c) ? Encode(character) : character.toUtf8());
    }
    return shown;
}

} // namespace FileName
