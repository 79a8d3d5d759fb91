// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QByteArrayView>

/// The conversions from bytes to text. A byte sequence and every 8-bit text is a QByteArray, one
/// byte per character. None of them fails; no bytes give an empty text.
namespace Common_Function
{

/// Stands for a byte that the ASCII forms cannot show: 0 in the view, 0 to 31 in lists.
constexpr char HiddenByteMark = '\x81';

/// Eight binary digits, most significant bit first.
QByteArray ByteToBinary(char byte);

/// List forms, for one line of a list, an editor or a printout: items joined by " | ".
QByteArray SeqToAsciiList(QByteArrayView seq);
QByteArray SeqToHexList(QByteArrayView seq);
QByteArray SeqToDecimalList(QByteArrayView seq);
QByteArray SeqToBinaryList(QByteArrayView seq);

/// Search forms, as the sequence stands in a view: items joined by one blank. In ASCII a sequence
/// is searched as it is.
QByteArray SeqAsItIs(QByteArrayView seq);
QByteArray SeqToHexText(QByteArrayView seq);
QByteArray SeqToDecimalText(QByteArrayView seq);
QByteArray SeqToBinaryText(QByteArrayView seq);

/// View forms, what a chunk of traffic adds to the view and to the log of a representation, behind
/// a text that stands already. Every item is followed by a blank; ASCII has no separators and
/// changes byte 0 only.
void AppendAsciiView(QByteArray &text, QByteArrayView seq);
void AppendHexView(QByteArray &text, QByteArrayView seq);
void AppendDecimalView(QByteArray &text, QByteArrayView seq);
void AppendBinaryView(QByteArray &text, QByteArrayView seq);

} // namespace Common_Function
