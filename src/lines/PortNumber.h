// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

constexpr int LeastPortNumber = 1;
constexpr int MostPortNumber = 255;

constexpr bool IsPortNumber(int number)
{
    return number >= LeastPortNumber && number <= MostPortNumber;
}

/// What was typed as a COM number.
struct PortNumber {
    bool legal;   ///< a number from 1 to 255
    qint16 value; ///< that number, halves to the even neighbour: 12.5 is COM12. Else the one to
                  ///< take its place: 255 for what is too large, 1
};

/// A number with a point or an exponent, if need be. Blanks around it do not matter.
PortNumber ReadPortNumber(const QString &text);
