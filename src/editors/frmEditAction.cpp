// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "frmEditAction.h"

#include "DeletionEffects.h"
#include "MdSequenceEdition.h"
#include "ProjectLosses.h"

frmEditAction::frmEditAction(const SequenceEditorParts &parts, QWidget *parent)
    : frmEditSequence({"frmEditAction", "Edit Send Sequence", "lblActionID", "txtActionName",
                       "1 - Name", "AXEditAction"},
                      parts, parent)
{
    ShowFirst();
}

int frmEditAction::CurrentIndex() const
{
    return Parts().sequences.CurrentSendIndex;
}

void frmEditAction::SetCurrentIndex(int index)
{
    Parts().sequences.CurrentSendIndex = index;
}

int frmEditAction::Count() const
{
    return Parts().sequences.SendCount();
}

void frmEditAction::ShowFields(int index)
{
    const SendSequence record = index < Count() ? Parts().sequences.SendAt(index) : SendSequence{};
    ShowNameAndSequence(record.Name, record.Sequence);
}

void frmEditAction::StoreFields(int index)
{
    Parts().sequences.StoreSend(index, {Name(), Sequence(), EditorTexts()});
}

void frmEditAction::DeleteCurrent()
{
    Parts().sequences.DeleteSendSequence();
}

QString frmEditAction::NameNote() const
{
    return ProjectLosses::OfName(SendSequence{Name(), Sequence(), {}});
}

QString frmEditAction::EmptyNote() const
{
    return QStringLiteral("Without bytes, this sequence is one byte 0 once the saved project is "
                          "opened again.");
}

QString frmEditAction::DeletionNote(const DeletionEffects &effects) const
{
    return effects.OnAnswers();
}
