// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringView>

constexpr int LeastPortNumber = 1;
constexpr int MostPortNumber = 255;

/// What was typed as a COM number.
struct PortNumber {
    bool legal;   ///< a whole number from 1 to 255
    qint16 value; ///< that number; else the one to take its place: 255 for what is too large, 1
};

/// Blanks around the number and a sign in front of it do not matter.
PortNumber ReadPortNumber(QStringView text);
