// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "sequences/frmEditAction.h"

#include "sequences/MdSequenceEdition.h"

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
    const SendSequence record =
        index < MdSequenceEdition::Capacity ? Parts().sequences.SendAt(index) : SendSequence{};
    ShowNameAndSequence(record.Name, record.Sequence);
}

void frmEditAction::StoreFields(int index)
{
    MdSequenceEdition &sequences = Parts().sequences;
    sequences.EditSend(index) = {Name(), Sequence(), EditorTexts()};
    if (index >= sequences.SendCount())
        sequences.SetSendCount(index + 1);
}

void frmEditAction::DeleteCurrent()
{
    Parts().sequences.DeleteSendSequence();
}
