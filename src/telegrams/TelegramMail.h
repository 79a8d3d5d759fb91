// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

#include <functional>
#include <mutex>
#include <utility>

/// The way from threads that may outlive an object to that object, on its thread. Shared by all of
/// them.
template <typename Receiver> class TelegramMail final
{
  public:
    explicit TelegramMail(Receiver *receiver) : m_receiver(receiver) {}

    /// What is sent later goes nowhere, and what is on its way as well.
    void Close()
    {
        const std::lock_guard guard(m_lock);
        m_receiver = nullptr;
    }

    void Send(std::function<void(Receiver &)> what)
    {
        const std::lock_guard guard(m_lock);
        if (!m_receiver)
            return;
        QMetaObject::invokeMethod(
            m_receiver, [to = m_receiver, what = std::move(what)] { what(*to); },
            Qt::QueuedConnection);
    }

  private:
    std::mutex m_lock; ///< guards what follows
    Receiver *m_receiver;
};
