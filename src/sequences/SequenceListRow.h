// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

/// What one row of a sequence list shows, in 8-bit texts.
struct SequenceListRow {
    QByteArray name;
    QByteArray sequence;   ///< as text, in the representation of the lists
    QByteArray answerName; ///< the third value; empty in the send list, which does not show it
    QByteArray comment{};  ///< receive list only
    bool active = true;    ///< receive list only
    QByteArray bytes{};    ///< what the items of an ASCII text stand for; else empty
};
