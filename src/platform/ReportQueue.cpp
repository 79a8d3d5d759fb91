// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "platform/ReportQueue.h"

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
        m_prompts.ShowMessage(m_waiting.first());
        m_waiting.removeFirst();
    }
    m_showing = false;
}
