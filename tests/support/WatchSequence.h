// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "sequences/MdSequenceEdition.h"

/// Adds a receive sequence; with an answer if one is given.
inline void WatchSequence(MdSequenceEdition &tables, const QByteArray &sequence,
                          const QByteArray &comment, const QByteArray &answer = {})
{
    const int index = tables.ReceiveCount();
    tables.EditReceive(index).Sequence = sequence;
    tables.EditReceive(index).Comment = comment;
    tables.SetReceiveCount(index + 1);
    if (answer.isEmpty())
        return;
    tables.EditSend(tables.SendCount()) = {"answer", answer, {}};
    tables.SetSendCount(tables.SendCount() + 1);
    tables.EditReceive(index).Answer = qint16(tables.SendCount());
    tables.RefreshAnswerName(index);
}
