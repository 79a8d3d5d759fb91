// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Common_Function.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QStringView>
#include <QtGlobal>

#include <algorithm>
#include <array>

/// The text forms of bytes, in the order of the view tabs and of the stored settings.
enum class Representation : qint32 { Ascii = 0, Hex = 1, Decimal = 2, Binary = 3 };

/// How an item is typed, and read from a text that came from elsewhere.
struct ItemForm {
    int base = 256;           ///< of its digits; 256: an item is the byte's own character
    int width = 1;            ///< characters of a whole item
    const char *allowed = ""; ///< "HEX takes ...": what can be typed
    const char *meaning = ""; ///< what an item is, as words behind "is not"
    std::array<QStringView, 3> prefixes{}; ///< what may mark an item, in small letters
    char16_t suffix = 0;                   ///< likewise, a small letter
};

/// All that the program knows of one representation.
struct RepresentationRow {
    Representation representation;
    const char *caption;
    const char *viewName;   ///< object names: the view of the communication window,
    const char *optionName; ///< the edit mode's option button,
    const char *logBoxName; ///< the check box of the log file
    const char *logSuffix;  ///< what the name of its log file ends in
    /// Its number in the sequence editor control, whose order is also that of a log's files.
    int editMode;
    ItemForm item;
    QByteArray (*toList)(QByteArrayView); ///< one line of a list or a printout
    QByteArray (*toText)(QByteArrayView); ///< as typed and as searched in a view
    /// Appends what a chunk of traffic adds to view and log.
    void (*appendView)(QByteArray &, QByteArrayView);
};

/// A representation is a row of this table.
inline constexpr std::array RepresentationRows = {
    RepresentationRow{.representation = Representation::Ascii,
                      .caption = "ASCII",
                      .viewName = "txtASCII",
                      .optionName = "OptionAscii",
                      .logBoxName = "CheckLogInAscii",
                      .logSuffix = "_asc",
                      .editMode = 0,
                      .item = {},
                      .toList = Common_Function::SeqToAsciiList,
                      .toText = Common_Function::SeqAsItIs,
                      .appendView = Common_Function::AppendAsciiView},
    RepresentationRow{.representation = Representation::Hex,
                      .caption = "HEX",
                      .viewName = "txtHexa",
                      .optionName = "OptionHexa",
                      .logBoxName = "CheckLogInHexadecimal",
                      .logSuffix = "_hex",
                      .editMode = 2,
                      .item = {.base = 16,
                               .width = 2,
                               .allowed = "HEX takes the digits 0 to 9 and A to F.",
                               .meaning = "a HEX byte: one or two of the digits 0 to 9 and A to F",
                               .prefixes = {u"0x", u"\\x", u"$"},
                               .suffix = u'h'},
                      .toList = Common_Function::SeqToHexList,
                      .toText = Common_Function::SeqToHexText,
                      .appendView = Common_Function::AppendHexView},
    RepresentationRow{.representation = Representation::Decimal,
                      .caption = "Decimal",
                      .viewName = "txtDeci",
                      .optionName = "OptionDecimal",
                      .logBoxName = "CheckLogInDecimal",
                      .logSuffix = "_dec",
                      .editMode = 1,
                      .item = {.base = 10,
                               .width = 3,
                               .allowed = "Decimal takes the digits 0 to 9, in values up to 255.",
                               .meaning = "a decimal byte: one to three digits, 0 to 255",
                               .prefixes = {},
                               .suffix = u'd'},
                      .toList = Common_Function::SeqToDecimalList,
                      .toText = Common_Function::SeqToDecimalText,
                      .appendView = Common_Function::AppendDecimalView},
    RepresentationRow{.representation = Representation::Binary,
                      .caption = "Binary",
                      .viewName = "txtBin",
                      .optionName = "OptionBinary",
                      .logBoxName = "CheckLogInBinary",
                      .logSuffix = "_bin",
                      .editMode = 3,
                      .item = {.base = 2,
                               .width = 8,
                               .allowed = "Binary takes the digits 0 and 1.",
                               .meaning = "a binary byte: one to eight of the digits 0 and 1",
                               .prefixes = {u"0b"},
                               .suffix = u'b'},
                      .toList = Common_Function::SeqToBinaryList,
                      .toText = Common_Function::SeqToBinaryText,
                      .appendView = Common_Function::AppendBinaryView},
};

constexpr int RepresentationCount = int(RepresentationRows.size());

constexpr const RepresentationRow &RowOf(Representation representation)
{
    return RepresentationRows[size_t(representation)];
}

/// What bytes add to the view and to the log.
inline QByteArray ViewText(Representation representation, QByteArrayView bytes)
{
    QByteArray text;
    RowOf(representation).appendView(text, bytes);
    return text;
}

/// Characters that one byte adds there: an item of digits is followed by a blank.
constexpr qsizetype ViewWidth(Representation representation)
{
    const ItemForm &item = RowOf(representation).item;
    return item.base == 256 ? item.width : item.width + 1;
}

namespace RepresentationOrder
{

constexpr std::array<Representation, RepresentationCount> OfRows()
{
    std::array<Representation, RepresentationCount> order{};
    for (size_t i = 0; i < order.size(); ++i)
        order[i] = RepresentationRows[i].representation;
    return order;
}

constexpr std::array<Representation, RepresentationCount> OfEditModes()
{
    auto order = OfRows();
    std::sort(order.begin(), order.end(), [](Representation left, Representation right) {
        return RowOf(left).editMode < RowOf(right).editMode;
    });
    return order;
}

/// Whether rows stand at the place, and edit modes are the numbers, that others look them up by.
constexpr bool IsWhole()
{
    bool whole = true;
    for (size_t i = 0; i < RepresentationRows.size(); ++i) {
        whole =
            whole && OfRows()[i] == Representation(i) && RowOf(OfEditModes()[i]).editMode == int(i);
    }
    return whole;
}

static_assert(IsWhole());

} // namespace RepresentationOrder

/// In the order of the enumeration.
constexpr auto AllRepresentations = RepresentationOrder::OfRows();
/// By edit mode of the sequence editor control.
constexpr auto RepresentationsByEditMode = RepresentationOrder::OfEditModes();

/// Whether a stored or shown number stands for a representation.
constexpr bool IsRepresentation(int number)
{
    return number >= 0 && number < RepresentationCount;
}

/// The representation of a number, another one for a number without a meaning.
constexpr Representation RepresentationOf(int number, Representation other)
{
    return IsRepresentation(number) ? Representation(number) : other;
}
