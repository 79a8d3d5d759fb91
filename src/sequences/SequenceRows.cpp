// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SequenceRows.h"

#include "MdSequenceEdition.h"
#include "Representation.h"

namespace
{

Representation RepresentationOfLists(qint16 display)
{
    return RepresentationOf(display, Representation::Ascii);
}

SequenceListRow WithBytes(SequenceListRow row, const QByteArray &sequence, qint16 display)
{
    if (RepresentationOfLists(display) == Representation::Ascii)
        row.bytes = sequence;
    return row;
}

} // namespace

namespace SequenceRows
{

QByteArray ListText(qint16 display, QByteArrayView sequence)
{
    return RowOf(RepresentationOfLists(display)).toList(sequence);
}

SequenceListRow SendRow(const SendSequence &record, qint16 display)
{
    return WithBytes({record.Name, ListText(display, record.Sequence), QByteArray()},
                     record.Sequence, display);
}

SequenceListRow ReceiveRow(const ReceiveSequence &record, qint16 display)
{
    return WithBytes({record.Name, ListText(display, record.Sequence), record.AnswerName,
                      record.Comment, record.Active == 1},
                     record.Sequence, display);
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
