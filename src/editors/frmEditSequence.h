// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "SendSequence.h"
#include "SequenceEditorParts.h"
#include "SequenceText.h"

#include <QDialog>

#include <optional>

class CodePageEdit;
class DeletionEffects;
class EditModeOptions;
class QGroupBox;
class QLabel;
class QPushButton;
class QuietLine;
class QVBoxLayout;
class SQEditSequence;

/// What both sequence editors are: a dialog that steps through the records of one table, changes,
/// adds and deletes them. It works on the table itself; "Apply" being enabled is its only mark of
/// a change.
class frmEditSequence : public QDialog
{
    Q_OBJECT

  public:
    /// "OK" and the ways out: Cancel and the frame leave without asking.
    void accept() override;

    /// Bytes for the record that is shown, as if the user had typed them.
    void Propose(const QByteArray &sequence);

  protected:
    /// The names that the two editors give to what they share.
    struct Names {
        const char *form;
        const char *caption;
        const char *index;
        const char *name;
        const char *nameCaption;
        const char *sequence;
    };

    frmEditSequence(const Names &names, const SequenceEditorParts &parts, QWidget *parent);

    /// Shows the current record; to be called at the end of the derived constructor.
    void ShowFirst();

    virtual int CurrentIndex() const = 0;
    virtual void SetCurrentIndex(int index) = 0;
    virtual int Count() const = 0;
    virtual void ShowFields(int index) = 0;
    /// Stores the fields into the current record; adds it if it is behind the last.
    virtual void StoreFields(int index) = 0;
    virtual void DeleteCurrent() = 0;
    /// What the project file does not keep of the fields as they are; empty if it keeps all.
    virtual QString NameNote() const = 0;
    virtual QString EmptyNote() const = 0;
    /// What a deletion has changed about other sequences; empty for nothing.
    virtual QString DeletionNote(const DeletionEffects &effects) const = 0;

    const SequenceEditorParts &Parts() const { return m_parts; }
    void ShowNameAndSequence(const QByteArray &name, const QByteArray &sequence);
    QByteArray Name() const;
    QByteArray Sequence() const;
    EditorTextArray EditorTexts() const;
    /// The place for further fields, above the buttons.
    QVBoxLayout *FurtherFields() const { return m_further; }
    void NoteChange();
    /// Lets the quiet lines tell about the fields as they are.
    virtual void ShowNotes();

  private:
    void MakeFields(const Names &names);
    QGroupBox *MakeDefinition(const Names &names);
    void MakeButtons();

    void ShowRecord(int index);
    void UpdateButtons();
    std::optional<SequenceText::Mistaken> Mistaken() const;
    void Convert();
    void LeaveRecord();
    void Step(int by);
    bool Apply();
    void ApplyAndStay();
    void ApplyAndLeave();
    void Delete();

    SequenceEditorParts m_parts;
    QVBoxLayout *m_further;
    QLabel *m_index;
    CodePageEdit *m_name;
    QuietLine *m_nameNote;
    SQEditSequence *m_sequence;
    QuietLine *m_sequenceNote;
    EditModeOptions *m_modes;
    QPushButton *cmdConvert;
    QPushButton *cmdBack;
    QPushButton *cmdForward;
    QPushButton *cmdOK;
    QPushButton *CmdCancel;
    QPushButton *cmdApply;
    QPushButton *cmdDelete;
};
