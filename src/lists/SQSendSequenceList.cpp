// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SQSendSequenceList.h"

#include <QMenu>

SQSendSequenceList::SQSendSequenceList(QWidget *parent)
    : SequenceList(SequenceMark::SendButton, parent)
{
}

void SQSendSequenceList::UseMark(int index)
{
    if (Model().Repeats(index))
        Q_EMIT StopRequested(index);
    else
        Q_EMIT SendRequested(index);
}

QKeySequence SQSendSequenceList::MarkKey() const
{
    return Qt::CTRL | Qt::Key_Enter;
}

QString SQSendSequenceList::MarkCaption(int index) const
{
    return Model().Repeats(index) ? QStringLiteral("&Stop Repeating") : QStringLiteral("&Send");
}

void SQSendSequenceList::AddOwnEntries(QMenu &menu, int index)
{
    if (Model().Repeats(index))
        return;
    QAction *repeat = menu.addAction(QStringLiteral("&Repeat..."));
    repeat->setObjectName(QStringLiteral("mnuRepeat"));
    connect(repeat, &QAction::triggered, this, [this, index] {
        if (index < Count())
            Q_EMIT RepeatRequested(index);
    });
}
