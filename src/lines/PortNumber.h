// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringView>

constexpr int LeastPortNumber = 1;
constexpr int MostPortNumber = 255;

constexpr bool IsPortNumber(int number)
{
    return number >= LeastPortNumber && number <= MostPortNumber;
}

/// What was typed as a COM number.
struct PortNumber {
    bool legal;   ///< a whole number in these bounds
    qint16 value; ///< that number; else the bound to take its place, the lower one for what is no
                  ///< number
};

/// Blanks around the number and a sign in front of it do not matter.
PortNumber ReadPortNumber(QStringView text);
