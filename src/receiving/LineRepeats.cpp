// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "LineRepeats.h"

#include "LineJudge.h"

#include <algorithm>
#include <utility>

LineRepeats::LineRepeats(LineThread &lines, LineJudge &judge, Line &lineA,
                         std::function<void()> ended)
    : m_lines(lines), m_judge(judge), m_lineA(lineA), m_ended(std::move(ended))
{
}

LineRepeats::~LineRepeats()
{
    m_lines.Schedule(nullptr);
}

int LineRepeats::Begin(const RepeatedTelegram &telegram)
{
    int id = 0;
    m_lines.Do([&] {
        m_lines.Schedule(this);
        const std::lock_guard guard(m_lock);
        id = ++m_lastId;
        m_running.push_back({id, telegram, RepeatSchedule(telegram.plan, m_lineA.Now().monotonic)});
    });
    return id;
}

void LineRepeats::End(int id)
{
    m_lines.Do([&] {
        const std::lock_guard guard(m_lock);
        std::erase_if(m_running, [id](const Running &repeat) { return repeat.id == id; });
    });
}

void LineRepeats::EndAll()
{
    m_lines.Do([this] {
        const std::lock_guard guard(m_lock);
        m_running.clear();
    });
}

QList<RepeatState> LineRepeats::States() const
{
    const std::lock_guard guard(m_lock);
    QList<RepeatState> states;
    for (const Running &repeat : m_running)
        states.append(
            {repeat.id, repeat.telegram, repeat.schedule.Sent(), repeat.schedule.LeftOut()});
    return states;
}

std::optional<qint64> LineRepeats::Due() const
{
    if (m_running.empty())
        return {};
    return std::min_element(m_running.begin(), m_running.end(),
                            [](const Running &left, const Running &right) {
                                return left.schedule.Due() < right.schedule.Due();
                            })
        ->schedule.Due();
}

void LineRepeats::OnDue(qint64 now)
{
    std::vector<int> over;
    for (Running &repeat : m_running) {
        if (repeat.schedule.IsDue(now) && !SendOne(repeat, now))
            over.push_back(repeat.id);
    }
    if (over.empty())
        return;
    for (const int id : over)
        End(id);
    m_ended();
}

bool LineRepeats::SendOne(Running &repeat, qint64 now)
{
    const RepeatedTelegram &telegram = repeat.telegram;
    const bool waits = m_lineA.Waiting() >= std::max<qint64>(telegram.bytes.size(), 1);
    {
        const std::lock_guard guard(m_lock);
        if (waits)
            repeat.schedule.LeaveOut(now);
        else
            repeat.schedule.Send(now);
    }
    if (waits)
        return true;
    if (!m_judge.MaySend() || m_judge.Send(telegram.bytes, telegram.name).Failed())
        return false;
    return !repeat.schedule.Finished();
}
