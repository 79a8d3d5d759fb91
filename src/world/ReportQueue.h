// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "UserPrompts.h"

#include <QList>
#include <QObject>

/// Shows messages that must not stand inside the work that met the failure: each comes up when
/// the event loop runs next, one at a time. A message equal to one that stands or waits is left
/// out, so a failure that repeats itself opens one box.
class ReportQueue final : public QObject
{
    Q_OBJECT

  public:
    explicit ReportQueue(UserPrompts &prompts) : m_prompts(prompts) {}

    void Post(const MessagePrompt &prompt);

    /// Shows at once what waits. Inside a box that it shows, nothing happens.
    void ShowWaiting();

  private:
    UserPrompts &m_prompts;
    QList<MessagePrompt> m_waiting; ///< the first one stands while m_showing
    bool m_showing = false;
};
