// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ByteLook.h"

#include "CodePage1252.h"

#include <array>

namespace
{

using ByteLook::Kind;

constexpr uchar Delete = 0x7F;

struct Control {
    const char *name;
    const char *brief;
};

/// 0 to 31, and Delete.
constexpr std::array<Control, 33> Controls = {{
    {"NUL", "NU"}, {"SOH", "SH"}, {"STX", "SX"}, {"ETX", "EX"}, {"EOT", "ET"}, {"ENQ", "EQ"},
    {"ACK", "AK"}, {"BEL", "BL"}, {"BS", "BS"},  {"HT", "HT"},  {"LF", "LF"},  {"VT", "VT"},
    {"FF", "FF"},  {"CR", "CR"},  {"SO", "SO"},  {"SI", "SI"},  {"DLE", "DL"}, {"DC1", "D1"},
    {"DC2", "D2"}, {"DC3", "D3"}, {"DC4", "D4"}, {"NAK", "NK"}, {"SYN", "SY"}, {"ETB", "EB"},
    {"CAN", "CN"}, {"EM", "EM"},  {"SUB", "SB"}, {"ESC", "EC"}, {"FS", "FS"},  {"GS", "GS"},
    {"RS", "RS"},  {"US", "US"},  {"DEL", "DT"},
}};

Kind KindOfUnit(char16_t unit)
{
    if (unit < u' ' || unit == Delete)
        return Kind::Control;
    if (unit == u' ' || unit == u'\u00A0')
        return Kind::Blank;
    return unit > Delete && unit < u'\u00A0' ? Kind::Empty : Kind::Character;
}

QChar ShapeOfUnit(char16_t unit)
{
    const Kind kind = KindOfUnit(unit);
    if (kind == Kind::Control || kind == Kind::Empty)
        return u'\u25A1';
    return unit == u'\u00AD' ? u'-' : unit;
}

QByteArrayView NamedBy(const char *Control::*name, uchar byte)
{
    if (ByteLook::KindOf(byte) != Kind::Control)
        return {};
    return Controls[byte == Delete ? Controls.size() - 1 : byte].*name;
}

} // namespace

namespace ByteLook
{

Kind KindOf(uchar byte)
{
    return KindOfUnit(CodePage1252::ToUnicode(byte));
}

QChar ShapeOf(uchar byte)
{
    return ShapeOfUnit(CodePage1252::ToUnicode(byte));
}

QString ToShapes(QByteArrayView text)
{
    return WithShapes(CodePage1252::ToUnicode(text));
}

QString WithShapes(QString text)
{
    for (QChar &character : text)
        character = ShapeOfUnit(character.unicode());
    return text;
}

QByteArrayView NameOf(uchar byte)
{
    return NamedBy(&Control::name, byte);
}

QByteArrayView BriefNameOf(uchar byte)
{
    return NamedBy(&Control::brief, byte);
}

QString ToPictures(QByteArrayView text)
{
    constexpr char16_t Pictures = 0x2400;
    constexpr char16_t DeletePicture = 0x2421;
    QString result = CodePage1252::ToUnicode(text);
    for (QChar &character : result) {
        if (KindOfUnit(character.unicode()) == Kind::Control)
            character = character == QChar(Delete) ? DeletePicture
                                                   : char16_t(Pictures + character.unicode());
    }
    return result;
}

} // namespace ByteLook
