// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Line.h"
#include "RepeatSchedule.h"

#include <QByteArray>
#include <QList>

#include <mutex>
#include <vector>

class LineJudge;

/// A telegram that is to be sent again and again.
struct RepeatedTelegram {
    QByteArray bytes;
    QByteArray name; ///< of the sequence; empty for none
    RepeatPlan plan;
};

/// How a repeat stands.
struct RepeatState {
    int id = 0;
    RepeatedTelegram telegram;
    qint64 sent = 0;
    qint64 leftOut = 0; ///< whose time had passed, or while one before had not left yet
};

/// What is sent on the first line again and again. The lines' thread keeps the times and sends, so
/// a window that stands still delays nothing. A repeat ends when its count is sent, when one of its
/// telegrams cannot be sent, or when it is ended; other calls may come from any thread.
///
/// A telegram is left out while a whole one still waits to leave: on a line that is too slow for
/// it, what is repeated would else pile up, and go on being sent when it has long been ended.
class LineRepeats final : public TimedWork
{
  public:
    /// Thread, judge and line live longer. That a repeat has ended by itself is told on the lines'
    /// thread.
    LineRepeats(LineThread &lines, LineJudge &judge, Line &lineA, std::function<void()> ended);
    ~LineRepeats() override;
    Q_DISABLE_COPY_MOVE(LineRepeats)

    /// The first one is sent at once. Returns the number by which it can be ended.
    int Begin(const RepeatedTelegram &telegram);
    /// Nothing of it is sent from here on.
    void End(int id);
    void EndAll();

    QList<RepeatState> States() const;

    std::optional<qint64> Due() const override;
    void OnDue(qint64 now) override;

  private:
    struct Running {
        int id;
        RepeatedTelegram telegram;
        RepeatSchedule schedule;
    };

    /// False if it cannot go on.
    bool SendOne(Running &repeat, qint64 now);

    LineThread &m_lines;
    LineJudge &m_judge;
    Line &m_lineA;
    const std::function<void()> m_ended;
    mutable std::mutex m_lock; ///< guards what follows; only the lines' thread changes it
    std::vector<Running> m_running;
    int m_lastId = 0;
};
