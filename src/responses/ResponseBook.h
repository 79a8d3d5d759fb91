// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "ResponseQuestion.h"
#include "ResponseStatistics.h"

#include <QObject>
#include <QTimer>

#include <memory>
#include <optional>

class BackgroundWork;
template <typename Receiver> class TelegramMail;

/// Counts who answers whom, and how soon, in a source that may grow. It reads on a thread of its
/// own, which a disk may hold up without anybody else having to wait.
class ResponseBook final : public QObject
{
    Q_OBJECT

  public:
    ResponseBook();
    /// Waits for nothing.
    ~ResponseBook() override;

    /// Counts all anew. What has gone from the source by now is not counted any more.
    void Show(const ResponseQuestion &question);
    const ResponseQuestion &Question() const { return m_question; }
    /// Whether what comes is counted at once; else when it is followed again.
    void Follow(bool follows);
    /// Of which there is a picture.
    void Choose(const std::optional<ResponseKey> &key);

    /// What has been counted by now.
    struct Report {
        QList<ResponseRow> rows;
        std::optional<ResponsePicture> picture; ///< of the one chosen, if that was counted
        bool twoChannels = false;
        qint64 read = 0;      ///< bytes of the source
        qint64 whole = 0;     ///< of these there are
        bool isWhole = false; ///< all that was there has been read once
    };
    const Report &Told() const { return m_report; }

  Q_SIGNALS:
    /// Some 4 times a second at most.
    void Changed();

  private:
    struct Worker;

    void Work();
    void Take(Report report);

    ResponseQuestion m_question;
    std::optional<ResponseKey> m_chosen;
    Report m_report;
    int m_version = 0;
    bool m_isWorking = false;
    QTimer m_timer;
    std::shared_ptr<Worker> m_worker;         ///< null without a source
    std::unique_ptr<BackgroundWork> m_thread; ///< another for each source: a disk may hold it up
    std::shared_ptr<TelegramMail<ResponseBook>> m_mail;
};
