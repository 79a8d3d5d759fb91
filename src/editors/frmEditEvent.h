// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "frmEditSequence.h"

class QCheckBox;
class QComboBox;
class QuietLine;
struct ReceiveSequence;

/// The editor of receive sequences; works on the record at CurrentReceiveIndex. It also sets what
/// happens on detection: the answer and the comment.
class frmEditEvent final : public frmEditSequence
{
    Q_OBJECT

  public:
    explicit frmEditEvent(const SequenceEditorParts &parts, QWidget *parent = nullptr);

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
    void ShowNotes() override;

  private:
    QWidget *MakeAnswerPage();
    QWidget *MakeCommentPage();
    QWidget *MakeMessagePage();
    void MakeAction();
    void FillAnswers();
    ReceiveSequence Stored(int index) const;
    ReceiveSequence Changed() const;

    QComboBox *ComboAnswer;
    CodePageEdit *TxtComment;
    QuietLine *m_commentNote;
    QCheckBox *ChkInsertCminEM;
};
