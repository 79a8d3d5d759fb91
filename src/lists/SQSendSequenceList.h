// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "SequenceList.h"

/// The list of the send sequences: send button, name, sequence.
class SQSendSequenceList final : public SequenceList
{
    Q_OBJECT

  public:
    explicit SQSendSequenceList(QWidget *parent = nullptr);

  Q_SIGNALS:
    void SendRequested(int index);

  protected:
    void UseMark(int index) override;
    QKeySequence MarkKey() const override;
    QString MarkCaption(int index) const override;
};
