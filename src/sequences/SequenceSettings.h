// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

/// How sequences are shown in lists and on paper.
struct SequenceSettings {
    qint16 Display = 0; ///< Representation of the sequence lists; other values act as ASCII
};
