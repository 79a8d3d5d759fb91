// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <deque>

/// A byte sequence with its history. The history holds at most HistoryLimit bytes, the last step
/// always; the oldest steps go first.
class SequenceDocument final
{
  public:
    static constexpr qsizetype HistoryLimit = 16 * 1024 * 1024;

    struct Change {
        qsizetype from = 0;
        QByteArray removed;
        QByteArray inserted;
    };

    const QByteArray &Bytes() const { return m_bytes; }
    /// Grows with every change of the bytes.
    quint64 Revision() const { return m_revision; }
    /// What the latest change of the bytes did, undo and redo included.
    const Change &LastChange() const { return m_lastChange; }

    /// Other bytes without a history.
    void Reset(const QByteArray &bytes);

    /// One step: puts bytes in the place of length bytes. Tells whether there is such a step; none
    /// is made if that changes nothing.
    bool Replace(qsizetype from, qsizetype length, QByteArrayView with);
    /// Changes what the last step has put in. Tells whether the step is still there; it goes if it
    /// changes nothing any more. Nothing may have been undone since that step.
    bool Amend(QByteArrayView with);

    bool CanUndo() const { return m_done > 0; }
    bool CanRedo() const { return m_done < m_steps.size(); }
    /// They return the place behind what has come back, and need a step to work on.
    qsizetype Undo();
    qsizetype Redo();

  private:
    void Apply(qsizetype from, const QByteArray &removed, const QByteArray &inserted);
    void DropUndone();
    void Bound();

    QByteArray m_bytes;
    std::deque<Change> m_steps;
    size_t m_done = 0;    ///< steps before this one are done, the others are undone
    qsizetype m_held = 0; ///< bytes in the steps
    quint64 m_revision = 0;
    Change m_lastChange;
};
