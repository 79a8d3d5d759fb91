// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "frmEditSequence.h"

#include "CodePageEdit.h"
#include "DeletionEffects.h"
#include "EditModeOptions.h"
#include "MdSequenceEdition.h"
#include "NamedButton.h"
#include "QuietLine.h"
#include "ReadingOrder.h"
#include "SQEditSequence.h"
#include "ScrollPage.h"
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
      m_nameNote(new QuietLine(*m_name, this)),
      m_sequence(new SQEditSequence(this)),
      m_sequenceNote(new QuietLine(*m_sequence, this)),
      m_modes(new EditModeOptions(*m_sequence, this)),
      cmdConvert(NamedButton("cmdConvert", "", this)),
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
    m_sequence->setObjectName(Text(names.sequence));
    m_sequence->setAccessibleName(QStringLiteral("Sequence"));
    m_sequence->setMinimumSize(420, 80);
    if (m_parts.checksum)
        m_sequence->KeepChecksumRule(*m_parts.checksum);
    m_sequenceNote->setObjectName(Text(names.sequence) + QStringLiteral("Note"));
    m_modes->PlaceBehind(*m_name);
    setTabOrder(m_sequence, cmdConvert);

    auto *fields = new QWidget;
    auto *page = new QVBoxLayout(fields);
    page->setContentsMargins(0, 0, 0, 0);
    page->addWidget(MakeDefinition(names), 1);
    page->addLayout(m_further);
    (new QVBoxLayout(this))->addWidget(new ScrollPage(fields), 1);

    connect(m_name, &QLineEdit::textChanged, this, &frmEditSequence::NoteChange);
    connect(m_sequence, &SQEditSequence::Changed, this, &frmEditSequence::NoteChange);
    connect(m_modes, &EditModeOptions::ModeChosen, this, [this](Representation mode) {
        m_parts.mode = mode;
        ShowNotes();
    });
    connect(cmdConvert, &QPushButton::clicked, this, &frmEditSequence::Convert);
}

QGroupBox *frmEditSequence::MakeDefinition(const Names &names)
{
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
    column->addWidget(m_modes);
    column->addWidget(m_sequence, 1);
    auto *note = new QHBoxLayout;
    note->addStrut(cmdConvert->sizeHint().height());
    note->addWidget(m_sequenceNote, 1, Qt::AlignTop);
    note->addWidget(cmdConvert, 0, Qt::AlignTop);
    column->addLayout(note);
    return frame;
}

void frmEditSequence::MakeButtons()
{
    cmdOK->setDefault(true);
    ReadInOrder({cmdBack, cmdForward, cmdDelete, cmdOK, CmdCancel, cmdApply});
    auto *row = new QHBoxLayout;
    for (QPushButton *button : {cmdBack, cmdForward, cmdDelete})
        row->addWidget(LetNarrow(button));
    row->addStretch();
    for (QPushButton *button : {cmdOK, CmdCancel, cmdApply})
        row->addWidget(LetNarrow(button));
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
    ShowNotes();
    cmdApply->setEnabled(false);
    UpdateButtons();
}

void frmEditSequence::ShowNameAndSequence(const QByteArray &name, const QByteArray &sequence)
{
    m_name->SetText(name);
    m_sequence->SetSequence(sequence);
}

void frmEditSequence::Propose(const QByteArray &sequence)
{
    m_sequence->Replace(sequence);
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
    ShowNotes();
}

void frmEditSequence::ShowNotes()
{
    m_nameNote->Say(NameNote());
    const std::optional<SequenceText::Mistaken> items = Mistaken();
    cmdConvert->setVisible(items.has_value());
    // A new sequence has no bytes to begin with, and one without a name, too, will not be stored.
    const bool empty = Sequence().isEmpty() && !Name().isEmpty() && CurrentIndex() < Count();
    if (!items)
        return m_sequenceNote->Say(empty ? EmptyNote() : QString());
    const QString form = Text(RowOf(items->form).caption);
    cmdConvert->setText(QStringLiteral("&Convert to ") + form);
    m_sequenceNote->Say(
        QStringLiteral("%1 characters; as %2 this would be %3 bytes")
            .arg(QString::number(Sequence().size()), form, QString::number(items->bytes.size())));
}

/// What the characters read as, while they are taken for characters.
std::optional<SequenceText::Mistaken> frmEditSequence::Mistaken() const
{
    return m_parts.mode == Representation::Ascii ? SequenceText::ItemsIn(Sequence()) : std::nullopt;
}

/// The characters become the bytes that they tell. Undoing that brings the characters back.
void frmEditSequence::Convert()
{
    const std::optional<SequenceText::Mistaken> items = Mistaken();
    if (!items)
        return;
    m_sequence->setFocus(); // the button goes
    m_sequence->Replace(items->bytes);
    m_modes->Choose(items->form);
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
        ApplyAndLeave();
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

/// A record without name and bytes does not come into the table. False if the user has emptied one
/// that is there: it is as before.
bool frmEditSequence::Apply()
{
    const int index = CurrentIndex();
    if (Name().isEmpty() && Sequence().isEmpty())
        return index >= Count();
    StoreFields(index);
    m_parts.RecordApplied(index);
    return true;
}

void frmEditSequence::ApplyAndStay()
{
    if (!Apply()) {
        ShowRecord(CurrentIndex());
        m_sequenceNote->Say(QStringLiteral("Not stored, as name and bytes were empty. This is the "
                                           "stored sequence; Delete Sequence deletes it."));
        return;
    }
    ShowNotes();
    cmdApply->setEnabled(false);
    UpdateButtons();
}

void frmEditSequence::ApplyAndLeave()
{
    if (!Apply())
        m_parts.prompts.ShowMessage({.text = QStringLiteral("Not stored; use Delete Sequence"),
                                     .icon = PromptIcon::Exclamation,
                                     .caption = windowTitle()});
}

void frmEditSequence::accept()
{
    if (cmdApply->isEnabled())
        ApplyAndLeave();
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
    const DeletionEffects effects(m_parts.sequences);
    DeleteCurrent();
    m_parts.RecordDeleted(index);
    ShowRecord(index);
    const QString note = DeletionNote(effects);
    if (!note.isEmpty())
        m_parts.prompts.ShowMessage(
            {.text = note, .icon = PromptIcon::Information, .caption = windowTitle()});
}
