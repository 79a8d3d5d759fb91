// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Representation.h"

#include <QByteArray>

#include <array>

/// The texts of a sequence, one for each representation, as its editor showed them last.
using EditorTextArray = std::array<QByteArray, RepresentationCount>;

/// Bytes that go out on demand or as an automatic answer.
struct SendSequence {
    QByteArray Name{};
    QByteArray Sequence{}; ///< every byte stands for itself, 0 included
    EditorTextArray EditorTexts{};
};
