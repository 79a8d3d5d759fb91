// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "frmEditSequence.h"

#include "CodePageEdit.h"
#include "EditModeOptions.h"
#include "FileCut.h"
#include "MdSequenceEdition.h"
#include "NamedButton.h"
#include "SQEditSequence.h"
#include "UserPrompts.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace
{

QString Text(const char *latin)
{
    return QString::fromLatin1(latin);
}

} // namespace

frmEditSequence::frmEditSequence(const Names &names, const SequenceEditorParts &parts,
                                 QWidget *parent)
    : QDialog(parent),
      m_parts(parts),
      m_further(new QVBoxLayout),
      m_index(new QLabel(this)),
      m_name(new CodePageEdit(this)),
      m_nameNote(new QLabel(this)),
      m_sequence(new SQEditSequence(this)),
      m_modes(new EditModeOptions(*m_sequence, this)),
      cmdBack(NamedButton("cmdBack", "&Back", this)),
      cmdForward(NamedButton("cmdForward", "&Forward", this)),
      cmdOK(NamedButton("cmdOK", "OK", this)),
      CmdCancel(NamedButton("CmdCancel", "Cancel", this)),
      cmdApply(NamedButton("cmdApply", "Apply", this)),
      cmdDelete(NamedButton("cmdDelete", "Delete Sequence", this))
{
    setObjectName(Text(names.form));
    setWindowTitle(Text(names.caption));
    MakeFields(names);
    MakeButtons();
}

void frmEditSequence::MakeFields(const Names &names)
{
    m_index->setObjectName(Text(names.index));
    m_name->setObjectName(Text(names.name));
    m_name->setAccessibleName(QStringLiteral("Name"));
    m_nameNote->setObjectName(Text(names.name) + QStringLiteral("Note"));
    m_nameNote->setWordWrap(true);
    m_nameNote->hide();
    m_sequence->setObjectName(Text(names.sequence));
    m_sequence->setAccessibleName(QStringLiteral("Sequence"));
    m_sequence->setMinimumSize(420, 120);

    auto *captionOfIndex = new QLabel(QStringLiteral("Index"));
    captionOfIndex->setObjectName(QStringLiteral("Label4"));
    auto *captionOfName = new QLabel(Text(names.nameCaption));
    captionOfName->setBuddy(m_name);
    auto *top = new QHBoxLayout;
    top->addWidget(captionOfIndex);
    top->addWidget(m_index);
    top->addStretch();

    auto *frame = new QGroupBox(QStringLiteral("Sequence Definition"));
    auto *column = new QVBoxLayout(frame);
    column->addLayout(top);
    column->addWidget(captionOfName);
    column->addWidget(m_name);
    column->addWidget(m_nameNote);
    column->addWidget(new QLabel(QStringLiteral("2 - Sequence")));
    column->addWidget(m_sequence, 1);
    column->addWidget(m_modes);

    auto *page = new QVBoxLayout(this);
    page->addWidget(frame, 1);
    page->addLayout(m_further);

    connect(m_name, &QLineEdit::textChanged, this, [this] {
        const QString note = FileCut::OfName(m_name->Text());
        m_nameNote->setText(note);
        m_nameNote->setVisible(!note.isEmpty());
        NoteChange();
    });
    connect(m_sequence, &SQEditSequence::Changed, this, &frmEditSequence::NoteChange);
    connect(m_modes, &EditModeOptions::ModeChosen, this,
            [this](Representation mode) { m_parts.mode = mode; });
}

void frmEditSequence::MakeButtons()
{
    cmdOK->setDefault(true);
    auto *row = new QHBoxLayout;
    for (QPushButton *button : {cmdBack, cmdForward, cmdDelete})
        row->addWidget(button);
    row->addStretch();
    for (QPushButton *button : {cmdOK, CmdCancel, cmdApply})
        row->addWidget(button);
    setTabOrder(cmdForward, cmdDelete);
    setTabOrder(cmdDelete, cmdOK);
    static_cast<QVBoxLayout *>(layout())->addLayout(row);

    connect(cmdBack, &QPushButton::clicked, this, [this] { Step(-1); });
    connect(cmdForward, &QPushButton::clicked, this, [this] { Step(1); });
    connect(cmdDelete, &QPushButton::clicked, this, &frmEditSequence::Delete);
    connect(cmdOK, &QPushButton::clicked, this, &frmEditSequence::accept);
    connect(CmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(cmdApply, &QPushButton::clicked, this, &frmEditSequence::ApplyAndStay);
}

void frmEditSequence::ShowFirst()
{
    m_modes->Choose(m_parts.mode);
    ShowRecord(CurrentIndex());
    m_name->setFocus();
}

void frmEditSequence::ShowRecord(int index)
{
    m_index->setText(QString::number(index));
    ShowFields(index);
    cmdApply->setEnabled(false);
    UpdateButtons();
}

void frmEditSequence::ShowNameAndSequence(const QByteArray &name, const QByteArray &sequence)
{
    m_name->SetText(name);
    m_sequence->SetSequence(sequence);
}

void frmEditSequence::UpdateButtons()
{
    const int index = CurrentIndex();
    cmdDelete->setEnabled(index < Count());
    cmdBack->setEnabled(index != 0);
    cmdForward->setEnabled(index < Count());
}

QByteArray frmEditSequence::Name() const
{
    return m_name->Text();
}

QByteArray frmEditSequence::Sequence() const
{
    return m_sequence->Sequence();
}

EditorTextArray frmEditSequence::EditorTexts() const
{
    EditorTextArray texts;
    for (const Representation r : AllRepresentations)
        texts[size_t(r)] = m_sequence->Text(r);
    return texts;
}

void frmEditSequence::NoteChange()
{
    cmdApply->setEnabled(true);
}

/// Asks whether a change is to be kept before another record is shown.
void frmEditSequence::LeaveRecord()
{
    if (!cmdApply->isEnabled())
        return;
    const PromptAnswer answer = m_parts.prompts.ShowMessage(
        {.text = QStringLiteral("The current sequence has been modified. Do you want to apply the "
                                "new sequence? (Choose 'No' to discard the changes.)"),
         .icon = PromptIcon::Exclamation,
         .buttons = PromptButtons::YesNo,
         .defaultAnswer = PromptAnswer::Yes,
         .caption = windowTitle()});
    if (answer == PromptAnswer::Yes)
        Apply();
}

void frmEditSequence::Step(int by)
{
    LeaveRecord();
    const int index = CurrentIndex() + by;
    if (index < 0 || index > Count())
        return;
    if (index >= MdSequenceEdition::Capacity) {
        m_parts.prompts.ShowMessage(ExclamationMessage(MdSequenceEdition::FullTableText()));
        ShowRecord(CurrentIndex());
        return;
    }
    SetCurrentIndex(index);
    ShowRecord(index);
}

/// A record without name and bytes does not come into the table.
void frmEditSequence::Apply()
{
    if (Name().isEmpty() && Sequence().isEmpty())
        return;
    const int index = CurrentIndex();
    StoreFields(index);
    m_parts.RecordApplied(index);
}

void frmEditSequence::ApplyAndStay()
{
    Apply();
    cmdApply->setEnabled(false);
    UpdateButtons();
}

void frmEditSequence::accept()
{
    if (cmdApply->isEnabled())
        Apply();
    QDialog::accept();
}

void frmEditSequence::Delete()
{
    const PromptAnswer answer = m_parts.prompts.ShowMessage(
        {.text = QStringLiteral("Deleting a sequence cannot be undone. Are you sure to delete this "
                                "sequence?"),
         .icon = PromptIcon::Exclamation,
         .buttons = PromptButtons::OkCancel,
         .defaultAnswer = PromptAnswer::Ok,
         .caption = windowTitle()});
    if (answer != PromptAnswer::Ok)
        return;
    const int index = CurrentIndex();
    DeleteCurrent();
    m_parts.RecordDeleted(index);
    ShowRecord(index);
}
