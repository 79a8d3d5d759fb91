// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "frmEditSequence.h"

/// The editor of send sequences; works on the record at CurrentSendIndex.
class frmEditAction final : public frmEditSequence
{
    Q_OBJECT

  public:
    explicit frmEditAction(const SequenceEditorParts &parts, QWidget *parent = nullptr);

  protected:
    int CurrentIndex() const override;
    void SetCurrentIndex(int index) override;
    int Count() const override;
    void ShowFields(int index) override;
    void StoreFields(int index) override;
    void DeleteCurrent() override;
    QString NameNote() const override;
    QString EmptyNote() const override;
    QString DeletionNote(const DeletionEffects &effects) const override;
};
