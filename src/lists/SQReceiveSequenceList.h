// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "SequenceList.h"

/// The list of the receive sequences: check box, name, sequence, name of the answer. A click on a
/// check box only asks; whoever stores the value shows it with SetActive.
class SQReceiveSequenceList final : public SequenceList
{
    Q_OBJECT

  public:
    explicit SQReceiveSequenceList(QWidget *parent = nullptr);

    /// Shows the tick or its absence. Nothing happens for an index outside the rows.
    void SetActive(int index, bool active);

  Q_SIGNALS:
    void ActivationRequested(int index, bool active);

  protected:
    void UseMark(int index) override;
    QKeySequence MarkKey() const override;
    QString MarkCaption(int index) const override;
};
