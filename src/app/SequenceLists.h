// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

#include <functional>

class MdCommunication;
class MdSequenceEdition;
class SQReceiveSequenceList;
class SQSendSequenceList;
class UserPrompts;
struct SequenceSettings;

/// What the sequence lists work with; all of it lives longer than SequenceLists.
struct SequenceListParts {
    const SequenceSettings &form;
    MdSequenceEdition &sequences;
    MdCommunication &communication;
    UserPrompts &prompts;
    SQSendSequenceList &ActionList;
    SQReceiveSequenceList &EventList;
};

/// Fills the two lists from the sequence tables and carries out what is asked for in them.
class SequenceLists final : public QObject
{
    Q_OBJECT

  public:
    explicit SequenceLists(const SequenceListParts &parts);

    /// Called when the record at CurrentSendIndex or CurrentReceiveIndex is to be edited.
    std::function<void()> EditSend = [] {};
    std::function<void()> EditReceive = [] {};

    void RefreshActionList();
    /// Derives the answer names anew as well.
    void RefreshEventList();
    void Refresh();

    /// After a record was applied: its row is changed, or added behind the last one. Answer names
    /// follow the send sequences.
    void ShowSendRecord(int index);
    void ShowReceiveRecord(int index);
    /// After a record was deleted.
    void RemoveSendRow(int index);
    void RemoveReceiveRow(int index);

  Q_SIGNALS:
    /// A record was changed from within a list.
    void ProjectChanged();

  private:
    void ConnectActionList();
    void ConnectEventList();
    void Send(int index);
    void Activate(int index, bool active);
    bool HasRoom(int index);
    void EditSendAt(int index);
    void EditReceiveAt(int index);

    SequenceListParts m_parts;
};
