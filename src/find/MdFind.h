// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Representation.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <optional>

class CommunicationViews;
class MdSequenceEdition;
class UserPrompts;

/// What can be searched for, in the order of the find dialog's tabs.
enum class FindKind : qint32 { Send = 0, Receive = 1, Defined = 2 };

constexpr int FindKindCount = 3;

/// The search for a sequence in the view that is shown, and what the find dialog was left with,
/// as long as the program runs. Where the next search begins is CaretPosition of the views.
class MdFind
{
  public:
    /// Of the dialog and of the boxes that end a search; spelled so from the beginning.
    static QString Caption() { return QStringLiteral("Find Senquence"); }

    /// All of it lives longer than the search.
    MdFind(const MdSequenceEdition &sequences, CommunicationViews &views, UserPrompts &prompts);

    FindKind FindTab = FindKind::Send;
    qint16 FindSendIndex = 0;    ///< 0 none, n the send sequence n - 1
    qint16 FindReceiveIndex = 0; ///< likewise
    QByteArray FindDefinedSequence;
    /// Of the defined sequence; the dialog opens with that of the view.
    Representation FindEditMode = Representation::Ascii;

    /// The view that is searched.
    Representation ShownView() const;

    /// The sequence of an entry of one of the two lists, 0 being the entry for none; nothing if
    /// the project has no such sequence.
    std::optional<QByteArray> SequenceAt(FindKind list, int index) const;

    /// What the dialog was left to search for; nothing if no sequence is chosen there, or none
    /// that the project still has.
    std::optional<QByteArray> ChosenSequence() const;

    /// Looks for the next occurrence. A hit is selected in the shown view, and the next search
    /// begins one character behind its start. Without one the user is told that the search is
    /// finished, and whether there is a hit above, and the next begins at the top. Returns whether
    /// there was a hit.
    bool FindNext(FindKind kind, QByteArrayView sequence);

  private:
    const MdSequenceEdition &m_sequences;
    CommunicationViews &m_views;
    UserPrompts &m_prompts;
};
