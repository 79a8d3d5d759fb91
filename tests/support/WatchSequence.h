// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "MdSequenceEdition.h"

/// Adds a receive sequence; with an answer if one is given.
inline void WatchSequence(MdSequenceEdition &tables, const QByteArray &sequence,
                          const QByteArray &comment, const QByteArray &answer = {})
{
    if (!answer.isEmpty())
        tables.AddSend({"answer", answer, {}});
    const auto number = qint16(answer.isEmpty() ? 0 : tables.SendCount());
    tables.AddReceive({.Sequence = sequence, .Answer = number, .Comment = comment});
    tables.RefreshAnswerNames();
}
