// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "ReceiveSequence.h"
#include "SendSequence.h"

#include <QString>

#include <functional>
#include <memory>
#include <vector>

/// The project's two sequence tables. Records 0 to count - 1 are in use, the record behind them
/// is kept empty; a record's index is its line in its list, and what an answer refers to.
class MdSequenceEdition
{
  public:
    /// Records of each table; indexes outside 0 to Capacity - 1 must not be asked for.
    static constexpr int Capacity = 1025;

    /// What the user is told who wants to add to a full table.
    static QString FullTableText();

    MdSequenceEdition() : m_send(Capacity), m_receive(Capacity) {}
    Q_DISABLE_COPY_MOVE(MdSequenceEdition)

    int SendCount() const { return m_sendCount; }
    int ReceiveCount() const { return m_receiveCount; }

    const SendSequence &SendAt(int index) const { return m_send[size_t(index)]; }
    const ReceiveSequence &ReceiveAt(int index) const { return m_receive[size_t(index)]; }

    /// Adds a record behind the last one; false if the table is full.
    bool AddSend(const SendSequence &record);
    bool AddReceive(const ReceiveSequence &record);
    /// Puts a record into its place; behind the last one, that adds it.
    void StoreSend(int index, const SendSequence &record);
    void StoreReceive(int index, const ReceiveSequence &record);
    /// A record of a project file: goes to the place that the file names, and counts as one more,
    /// wherever that is.
    void LoadSend(int index, const SendSequence &record);
    void LoadReceive(int index, const ReceiveSequence &record);

    /// Lets a function change one record.
    template <typename Edit> void ChangeSend(int index, Edit edit)
    {
        const Change change(*this);
        edit(EditSend(index));
    }
    template <typename Edit> void ChangeReceive(int index, Edit edit)
    {
        const Change change(*this);
        edit(EditReceive(index));
    }

    /// While one lives, all changes are one: whoever watches the tables hears of them at its end.
    class Change
    {
      public:
        explicit Change(MdSequenceEdition &tables) : m_tables(tables) { ++m_tables.m_changes; }
        ~Change() { m_tables.EndChange(); }
        Q_DISABLE_COPY_MOVE(Change)

      private:
        MdSequenceEdition &m_tables;
    };

    /// Calls the function after every change, before the procedure that made it returns, as long as
    /// what is returned lives.
    [[nodiscard]] std::shared_ptr<void> Watch(std::function<void()> changed);

    /// Grows whenever a record or a count may have changed.
    quint64 Revision() const { return m_revision; }

    /// Empties both tables. Comments, their log flags and the editors' texts stay in the records.
    void ClearProject();

    /// Deletes the record at CurrentSendIndex; answers are not renumbered.
    void DeleteSendSequence();
    /// Deletes the record at CurrentReceiveIndex. The Active flags stay with their places; the
    /// place that becomes empty is active.
    void DeleteReceiveSequence();

    /// Sets Active to 1 in every record of the table, in use or not.
    void ActivateAll();

    /// Derives AnswerName of every record in use from its Answer; one outside the table names
    /// nothing. To be called where the lists are shown anew; a program without them calls it once
    /// a project is loaded. Detection answers only with a sequence that has a name here.
    void RefreshAnswerNames();
    /// The same for one record.
    void RefreshAnswerName(int receiveIndex);

    /// The send sequence that an Answer refers to, null if it is outside the table.
    const SendSequence *AnswerOf(const ReceiveSequence &record) const;

    /// What the editors work on; equal to the count while a new sequence is being defined.
    int CurrentSendIndex = 0;
    int CurrentReceiveIndex = 0;

  private:
    SendSequence &EditSend(int index);
    ReceiveSequence &EditReceive(int index);
    void EndChange();
    void SetSendCount(int count);
    void SetReceiveCount(int count);

    std::vector<SendSequence> m_send;
    std::vector<ReceiveSequence> m_receive;
    int m_sendCount = 0;
    int m_receiveCount = 0;
    quint64 m_revision = 0;
    quint64 m_toldRevision = 0; ///< of which the watchers have heard
    int m_changes = 0;          ///< those under way, one in another
    std::vector<std::weak_ptr<std::function<void()>>> m_watchers;
};
