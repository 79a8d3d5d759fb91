// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>

/// Writes standard output on a thread of its own, so that a reader who does not read holds up
/// neither the steps nor the lines.
class OutputThread final
{
  public:
    /// Bytes that may wait before lines are to be held back.
    static constexpr qint64 MostBytes = 4 * 1024 * 1024;
    static constexpr std::chrono::seconds MostTimeToEnd{5};

    /// Both are called on the thread.
    struct Calls {
        std::function<void(const QString &cause)> failed; ///< once; nothing more is written
        std::function<void()> roomAgain;
    };

    explicit OutputThread(Calls calls);
    ~OutputThread();
    Q_DISABLE_COPY_MOVE(OutputThread)

    void Write(const QByteArray &bytes);
    bool HasRoom() const;
    /// Waits for what is still to be written, MostTimeToEnd at most. False if that takes longer:
    /// the process must then end without waiting for the thread.
    bool Finish();

  private:
    struct State;

    std::shared_ptr<State> m_state; ///< shared with the thread, which may outlive this object
};
