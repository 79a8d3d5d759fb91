// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

/// Code page 1252, the border between 8-bit texts and the screen. Its five empty codes (81, 8D,
/// 8F, 90, 9D) map to the code points of the same number, so all 256 values survive both ways.
namespace CodePage1252
{

char16_t ToUnicode(uchar byte);
QString ToUnicode(QByteArrayView text);

struct Encoded {
    QByteArray bytes;
    /// Index of the first UTF-16 unit that the code page lacks, -1 if it has them all.
    qsizetype firstForeign = -1;
};

/// Encodes up to the first character that the code page lacks.
Encoded FromUnicode(QStringView text);
/// Tells the user which character, the one at firstForeign, cannot be taken.
QString RefusalOf(QStringView text, qsizetype firstForeign);

/// Lower-case form of a letter of the code page; every other byte as it is.
uchar ToLower(uchar byte);

} // namespace CodePage1252
