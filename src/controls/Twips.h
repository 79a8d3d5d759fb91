// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <algorithm>

/// Twips to a logical pixel.
constexpr int TwipsPerPixel = 15;

/// Where the picture of a dragged splitter stands, in twips: not nearer than limit to either end
/// of the area.
constexpr int DragPosition(int wanted, int limit, int innerLength)
{
    return wanted < limit ? limit : std::min(wanted, innerLength - limit);
}
