// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SequenceRows.h"

#include "MdSequenceEdition.h"
#include "Representation.h"

namespace SequenceRows
{

QByteArray ListText(qint16 display, QByteArrayView sequence)
{
    return RowOf(RepresentationOf(display, Representation::Ascii)).toList(sequence);
}

SequenceListRow SendRow(const SendSequence &record, qint16 display)
{
    return {record.Name, ListText(display, record.Sequence), QByteArray()};
}

SequenceListRow ReceiveRow(const ReceiveSequence &record, qint16 display)
{
    return {record.Name, ListText(display, record.Sequence), record.AnswerName, record.Comment,
            record.Active == 1};
}

QList<SequenceListRow> SendRows(const MdSequenceEdition &sequences, qint16 display)
{
    QList<SequenceListRow> rows;
    rows.reserve(sequences.SendCount());
    for (int i = 0; i < sequences.SendCount(); ++i)
        rows << SendRow(sequences.SendAt(i), display);
    return rows;
}

QList<SequenceListRow> ReceiveRows(const MdSequenceEdition &sequences, qint16 display)
{
    QList<SequenceListRow> rows;
    rows.reserve(sequences.ReceiveCount());
    for (int i = 0; i < sequences.ReceiveCount(); ++i)
        rows << ReceiveRow(sequences.ReceiveAt(i), display);
    return rows;
}

} // namespace SequenceRows
