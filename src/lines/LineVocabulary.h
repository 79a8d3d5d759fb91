// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QtGlobal>

#include <array>

/// The parities and stop bits, by their places in the tables below.
enum class LineParity { Even, Mark, None, Odd, Space };
enum class LineStopBits { One, OneAndHalf, Two };

/// What a line can be set to. A row's place is its stored index, so none may change its place.
namespace LineVocabulary
{

/// There is no 4800 between 2400 and 9600.
inline constexpr std::array Speeds = {110,   300,   600,   1200,  2400,   9600,   14400, 19200,
                                      28800, 38400, 56000, 57600, 115200, 128000, 256000};

struct ParityRow {
    char letter; ///< in a settings text
    const char *name;
};

inline constexpr std::array Parities = {ParityRow{'E', "Even"}, ParityRow{'M', "Mark"},
                                        ParityRow{'N', "None"}, ParityRow{'O', "Odd"},
                                        ParityRow{'S', "Space"}};

inline constexpr std::array DataBits = {4, 5, 6, 7, 8};

inline constexpr std::array StopBits = {"1", "1.5", "2"};

static_assert(int(LineParity::Space) + 1 == int(Parities.size()));
static_assert(int(LineStopBits::Two) + 1 == int(StopBits.size()));

} // namespace LineVocabulary

/// Table sizes, for lists that show the tables in index order.
constexpr int SpeedCount = int(LineVocabulary::Speeds.size());
constexpr int ParityCount = int(LineVocabulary::Parities.size());
constexpr int DataBitsCount = int(LineVocabulary::DataBits.size());
constexpr int StopBitsCount = int(LineVocabulary::StopBits.size());

/// Table look-ups; an index outside the table gives the empty text.
QString SpeedText(qint32 index);
QString ParityText(qint32 index);
QString ParityLetter(qint32 index);
QString DataBitsText(qint32 index);
QString StopBitsText(qint32 index);
