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

    /// Which rows are sent again and again, with how often that is; all others are not. Their mark
    /// stops that.
    void SetRepeating(const QHash<int, QString> &rows) { Model().SetRepeating(rows); }

  Q_SIGNALS:
    void SendRequested(int index);
    void RepeatRequested(int index);
    void StopRequested(int index);

  protected:
    void UseMark(int index) override;
    QKeySequence MarkKey() const override;
    QString MarkCaption(int index) const override;
    void AddOwnEntries(QMenu &menu, int index) override;
};
