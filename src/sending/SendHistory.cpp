// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SendHistory.h"

void SendHistory::Add(const QByteArray &bytes)
{
    m_sent.removeOne(bytes);
    if (m_sent.size() == Most)
        m_sent.removeFirst();
    m_sent << bytes;
    m_place = m_sent.size();
    m_typed.clear();
}

std::optional<QByteArray> SendHistory::Earlier(const QByteArray &shown)
{
    if (m_place == 0)
        return {};
    if (m_place == m_sent.size())
        m_typed = shown;
    --m_place;
    // What was sent last is often still there.
    if (m_sent[m_place] == shown && m_place > 0)
        --m_place;
    return m_sent[m_place];
}

std::optional<QByteArray> SendHistory::Later()
{
    if (m_place == m_sent.size())
        return {};
    ++m_place;
    return m_place == m_sent.size() ? m_typed : m_sent[m_place];
}
