// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SQReceiveSequenceList.h"

#include "SequenceListAccessible.h"

SQReceiveSequenceList::SQReceiveSequenceList(QWidget *parent)
    : SequenceList(SequenceMark::ActiveBox, parent)
{
}

void SQReceiveSequenceList::SetActive(int index, bool active)
{
    SequenceListRow row = RowAt(index);
    row.active = active;
    ModifyRow(index, row);
    SequenceListAccessible::TellTick(*this, index);
}

void SQReceiveSequenceList::UseMark(int index)
{
    Q_EMIT ActivationRequested(index, !RowAt(index).active);
}

QKeySequence SQReceiveSequenceList::MarkKey() const
{
    return Qt::Key_Space;
}

QString SQReceiveSequenceList::MarkCaption(int index) const
{
    return RowAt(index).active ? QStringLiteral("De&activate") : QStringLiteral("&Activate");
}
