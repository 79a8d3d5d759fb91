// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "frmEditAction.h"

#include "MdSequenceEdition.h"

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
    Parts().sequences.StoreSend(index, {Name(), Sequence(), EditorTexts()});
}

void frmEditAction::DeleteCurrent()
{
    Parts().sequences.DeleteSendSequence();
}
