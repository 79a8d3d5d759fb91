// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SequenceDocument.h"

namespace
{

qsizetype SizeOf(const SequenceDocument::Change &step)
{
    return step.removed.size() + step.inserted.size();
}

} // namespace

void SequenceDocument::Reset(const QByteArray &bytes)
{
    m_steps.clear();
    m_done = 0;
    m_held = 0;
    if (bytes != m_bytes)
        Apply(0, QByteArray(m_bytes), bytes);
}

bool SequenceDocument::Replace(qsizetype from, qsizetype length, QByteArrayView with)
{
    Change step{from, m_bytes.mid(from, length), with.toByteArray()};
    if (step.removed == step.inserted)
        return false;
    DropUndone();
    Apply(from, step.removed, step.inserted);
    m_held += SizeOf(step);
    m_steps.push_back(std::move(step));
    m_done = m_steps.size();
    Bound();
    return true;
}

bool SequenceDocument::Amend(QByteArrayView with)
{
    Change &step = m_steps.back();
    if (step.inserted != with)
        Apply(step.from, QByteArray(step.inserted), with.toByteArray());
    m_held += with.size() - step.inserted.size();
    step.inserted = with.toByteArray();
    if (step.inserted != step.removed)
        return true;
    m_held -= SizeOf(step);
    m_steps.pop_back();
    m_done = m_steps.size();
    return false;
}

qsizetype SequenceDocument::Undo()
{
    const Change &step = m_steps[--m_done];
    Apply(step.from, step.inserted, step.removed);
    return step.from + step.removed.size();
}

qsizetype SequenceDocument::Redo()
{
    const Change &step = m_steps[m_done++];
    Apply(step.from, step.removed, step.inserted);
    return step.from + step.inserted.size();
}

void SequenceDocument::Apply(qsizetype from, const QByteArray &removed, const QByteArray &inserted)
{
    m_bytes.replace(from, removed.size(), inserted);
    m_lastChange = {from, removed, inserted};
    ++m_revision;
}

void SequenceDocument::DropUndone()
{
    for (; CanRedo(); m_steps.pop_back())
        m_held -= SizeOf(m_steps.back());
}

void SequenceDocument::Bound()
{
    for (; m_held > HistoryLimit && m_steps.size() > 1; m_steps.pop_front(), --m_done)
        m_held -= SizeOf(m_steps.front());
}
