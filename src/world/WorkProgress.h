// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <atomic>

/// How far a long piece of work has come. The work tells it from its own thread, whoever waits for
/// it shows it and may cancel. Work is either cancelled or settled, whichever comes first: settled
/// work hands over its result, and nothing calls that back.
class WorkProgress final
{
  public:
    // For the work.
    void Begin(int steps)
    {
        m_done = 0;
        m_steps = steps;
    }
    void Step() { ++m_done; }
    bool Wanted() const { return m_stage != Stage::Cancelled; }
    /// To be called before the result is handed over; false if the work has been cancelled.
    bool Settle() { return Leave(Stage::Settled); }

    // For those who wait.
    int Steps() const { return m_steps; }
    int Done() const { return m_done; }
    /// False if the work is settled.
    bool Cancel() { return Leave(Stage::Cancelled); }
    bool CanBeCancelled() const { return m_stage == Stage::Open; }

  private:
    enum class Stage { Open, Cancelled, Settled };

    bool Leave(Stage to)
    {
        Stage at = Stage::Open;
        return m_stage.compare_exchange_strong(at, to) || at == to;
    }

    std::atomic<int> m_steps = 0;
    std::atomic<int> m_done = 0;
    std::atomic<Stage> m_stage = Stage::Open;
};
