// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SequenceLists.h"

#include "MdCommunication.h"
#include "MdSequenceEdition.h"
#include "SQReceiveSequenceList.h"
#include "SQSendSequenceList.h"
#include "SequenceRows.h"
#include "SequenceSettings.h"
#include "UserPrompts.h"

namespace
{

template <typename Record> bool IsEmpty(const Record &record)
{
    return record.Name.isEmpty() && record.Sequence.isEmpty();
}

} // namespace

SequenceLists::SequenceLists(const SequenceListParts &parts) : m_parts(parts)
{
    ConnectActionList();
    ConnectEventList();
    Refresh();
}

void SequenceLists::Refresh()
{
    RefreshActionList();
    RefreshEventList();
}

void SequenceLists::RefreshActionList()
{
    m_parts.ActionList.SetRows(SequenceRows::SendRows(m_parts.sequences, m_parts.form.Display));
}

/// The send sequences may have other names now.
void SequenceLists::RefreshEventList()
{
    m_parts.sequences.RefreshAnswerNames();
    m_parts.EventList.SetRows(SequenceRows::ReceiveRows(m_parts.sequences, m_parts.form.Display));
}

void SequenceLists::ConnectActionList()
{
    const auto *list = &m_parts.ActionList;
    connect(list, &SQSendSequenceList::SendRequested, this, &SequenceLists::Send);
    connect(list, &SequenceList::EditRequested, this, &SequenceLists::EditSendAt);
    connect(list, &SequenceList::EmptyRowRequested, this, [this](int index) {
        if (HasRoom(index) && IsEmpty(m_parts.sequences.SendAt(index)))
            EditSendAt(index);
    });
}

void SequenceLists::ConnectEventList()
{
    const auto *list = &m_parts.EventList;
    connect(list, &SQReceiveSequenceList::ActivationRequested, this, &SequenceLists::Activate);
    connect(list, &SequenceList::EditRequested, this, &SequenceLists::EditReceiveAt);
    connect(list, &SequenceList::EmptyRowRequested, this, [this](int index) {
        if (HasRoom(index) && IsEmpty(m_parts.sequences.ReceiveAt(index)))
            EditReceiveAt(index);
    });
}

/// Behind a full table there is no record for the empty row; the user is told.
bool SequenceLists::HasRoom(int index)
{
    if (index < MdSequenceEdition::Capacity)
        return true;
    m_parts.prompts.ShowMessage(ExclamationMessage(MdSequenceEdition::FullTableText()));
    return false;
}

void SequenceLists::Send(int index)
{
    // A copy: starting communication may show a message, and the project may change meanwhile.
    const SendSequence record = m_parts.sequences.SendAt(index);
    m_parts.communication.Transmit(record.Sequence, record.Name);
}

void SequenceLists::ShowSendRecord(int index)
{
    const SequenceListRow row =
        SequenceRows::SendRow(m_parts.sequences.SendAt(index), m_parts.form.Display);
    if (index < m_parts.ActionList.Count())
        m_parts.ActionList.ModifyRow(index, row);
    else
        m_parts.ActionList.AddRow(row);
    RefreshEventList();
}

void SequenceLists::RemoveSendRow(int index)
{
    m_parts.ActionList.DeleteRow(index);
    RefreshEventList();
}

void SequenceLists::ShowReceiveRecord(int index)
{
    const SequenceListRow row =
        SequenceRows::ReceiveRow(m_parts.sequences.ReceiveAt(index), m_parts.form.Display);
    if (index < m_parts.EventList.Count())
        m_parts.EventList.ModifyRow(index, row);
    else
        m_parts.EventList.AddRow(row);
}

void SequenceLists::RemoveReceiveRow(int index)
{
    // The ticks stay with their places, so the rows behind have other ones now.
    m_parts.EventList.DeleteRow(index);
    RefreshEventList();
}

void SequenceLists::EditSendAt(int index)
{
    m_parts.sequences.CurrentSendIndex = index;
    EditSend();
}

void SequenceLists::EditReceiveAt(int index)
{
    m_parts.sequences.CurrentReceiveIndex = index;
    EditReceive();
}

void SequenceLists::Activate(int index, bool active)
{
    const qint16 value = active ? 1 : 0;
    if (m_parts.sequences.ReceiveAt(index).Active == value)
        return;
    m_parts.sequences.ChangeReceive(index,
                                    [value](ReceiveSequence &record) { record.Active = value; });
    m_parts.EventList.SetActive(index, active);
    Q_EMIT ProjectChanged();
}
