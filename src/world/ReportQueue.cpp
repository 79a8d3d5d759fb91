// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ReportQueue.h"

void ReportQueue::Post(const MessagePrompt &prompt)
{
    if (m_waiting.contains(prompt))
        return;
    m_waiting.append(prompt);
    QMetaObject::invokeMethod(this, &ReportQueue::ShowWaiting, Qt::QueuedConnection);
}

void ReportQueue::ShowWaiting()
{
    if (m_showing)
        return;
    m_showing = true;
    while (!m_waiting.isEmpty()) {
        // A copy: more may be posted while the box stands.
        const MessagePrompt prompt = m_waiting.first();
        m_prompts.ShowMessage(prompt);
        m_waiting.removeFirst();
    }
    m_showing = false;
}
