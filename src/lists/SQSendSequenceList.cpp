// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SQSendSequenceList.h"

SQSendSequenceList::SQSendSequenceList(QWidget *parent)
    : SequenceList(SequenceMark::SendButton, parent)
{
}

void SQSendSequenceList::UseMark(int index)
{
    Q_EMIT SendRequested(index);
}

QKeySequence SQSendSequenceList::MarkKey() const
{
    return Qt::CTRL | Qt::Key_Enter;
}

QString SQSendSequenceList::MarkCaption(int) const
{
    return QStringLiteral("&Send");
}
