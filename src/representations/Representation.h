// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

#include <array>

/// The four text forms of bytes, in the order of the view tabs and of the stored settings.
enum class Representation : qint32 { Ascii = 0, Hex = 1, Decimal = 2, Binary = 3 };

constexpr int RepresentationCount = 4;

constexpr std::array<Representation, RepresentationCount> AllRepresentations = {
    Representation::Ascii, Representation::Hex, Representation::Decimal, Representation::Binary};

/// Captions in the order of the enumeration.
constexpr std::array<const char *, RepresentationCount> RepresentationCaptions = {
    "ASCII", "HEX", "Decimal", "Binary"};
