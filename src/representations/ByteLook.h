// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArrayView>
#include <QString>

/// What a byte looks like where bytes are shown as ASCII: the one table for views, lists, editors,
/// printouts and assistive programs.
namespace ByteLook
{

enum class Kind {
    Character, ///< the font's glyph; an empty box if the font has none
    Blank,
    Control, ///< a picture with its name
    Empty    ///< an empty box: one of the five codes that stand for nothing
};

Kind KindOf(uchar byte);

/// Whether it breaks lines or moves on to the next stop where a text is laid out.
constexpr bool LaysOut(uchar byte)
{
    return byte == '\t' || byte == '\r' || byte == '\n';
}

/// The character whose glyph shows a byte: a soft hyphen, which has no width of its own, is a
/// hyphen; a control character or an empty code is an empty box.
QChar ShapeOf(uchar byte);
/// One visible character for each byte, for texts that nobody copies.
QString ToShapes(QByteArrayView text);
/// The same for a text that may hold more than the code page.
QString WithShapes(QString text);

/// Name of a control character (0 to 31 and 127), empty for any other byte.
QByteArrayView NameOf(uchar byte);
/// Its two-letter name, for where there is no room.
QByteArrayView BriefNameOf(uchar byte);
/// As Unicode, with the pictures of Unicode for control characters, so one character a byte.
QString ToPictures(QByteArrayView text);

} // namespace ByteLook
