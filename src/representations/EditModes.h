// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Representation.h"

#include <QtGlobal>

/// How the sequence editor control numbers its edit modes, which is not the order of the
/// representations.
namespace EditModes
{

constexpr int OfRepresentation(Representation representation)
{
    switch (representation) {
    case Representation::Hex:
        return 2;
    case Representation::Decimal:
        return 1;
    case Representation::Binary:
        return 3;
    default:
        return 0;
    }
}

} // namespace EditModes
