// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Representation.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringView>

#include <optional>

/// How a byte sequence is written by hand. In ASCII a byte is one character; in the other forms it
/// is an item of two (HEX), three (Decimal) or eight (Binary) digits.
namespace SequenceText
{

/// Digits of a whole item.
int ItemWidth(Representation form);
/// From one item's begin to the next one's: the blank between items counts.
int ItemPitch(Representation form);

/// What an editor shows of a sequence: ASCII is the bytes themselves, other items are separated by
/// one blank.
QByteArray Of(QByteArrayView sequence, Representation form);
/// The whole item of one byte.
QByteArray Item(uchar byte, Representation form);

/// -1 for what is no digit of the form.
int DigitValue(char16_t character, Representation form);
/// Value of digits of the form; the value of three decimal digits may be above 255.
int ValueOf(QByteArrayView digits, Representation form);

/// Blanks and line breaks of any kind, comma and vertical bar.
bool IsSeparator(char16_t character);

/// "HEX takes ...": tells which digits can be typed.
QString AllowedDigits(Representation form);

struct Parsed {
    QByteArray bytes;
    /// Why the text cannot be read, naming its first wrong item; empty if it can.
    QString refusal;
};

/// Reads a text that came from elsewhere. In ASCII every character is a byte, line breaks as they
/// stand. In the other forms:
///  - any number of separators, or nothing, stands between items; without separators the digits
///    are cut into whole items, so "0D0A" is two bytes and "0D0" cannot be read;
///  - an item that stands alone may have fewer digits: "D" is 0D, "7" is 007;
///  - HEX items may be marked as in data sheets and programs: 0x0D, \x0D, $0D, 0Dh, and 0FFh with
///    the zero that assemblers ask for; Decimal 13d; Binary 0b1101, 1101b;
///  - letters may be of either case.
Parsed Parse(QStringView text, Representation form);

/// Items of a form with digits that stand where each character is a byte.
struct Mistaken {
    Representation form;
    QByteArray bytes; ///< what the items mean
};

/// What was probably meant by a sequence of ASCII characters: nothing unless all of it are items
/// with separators between them, each with all its digits. Two such items are enough, but three if
/// none has a digit 0 to 9 ("be ad" are words), and four if there are control characters, such as
/// the CR behind a command with two numbers.
std::optional<Mistaken> ItemsIn(QByteArrayView ascii);

} // namespace SequenceText
