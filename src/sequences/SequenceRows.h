// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "SequenceListRow.h"

#include <QList>

class MdSequenceEdition;
struct ReceiveSequence;
struct SendSequence;

/// What the two lists show of the sequence tables. The representation of the lists is taken as it
/// is stored; a value without a meaning acts as ASCII.
namespace SequenceRows
{

/// The bytes as one line of text.
QByteArray ListText(qint16 display, QByteArrayView sequence);

SequenceListRow SendRow(const SendSequence &record, qint16 display);
SequenceListRow ReceiveRow(const ReceiveSequence &record, qint16 display);

/// One row for each record in use.
QList<SequenceListRow> SendRows(const MdSequenceEdition &sequences, qint16 display);
QList<SequenceListRow> ReceiveRows(const MdSequenceEdition &sequences, qint16 display);

} // namespace SequenceRows
