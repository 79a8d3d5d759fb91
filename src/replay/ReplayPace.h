// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

#include <optional>

enum class ReplaySpeed { Own, TenTimes, AtOnce };

/// When it is the turn of what a capture tells of. All times are in nanoseconds: "now" on a clock
/// that is never set, "captured" as the capture has them. What is wild in those of a capture waits
/// for nobody: a step back counts as none, and so does most of a silence of days.
class ReplayPace final
{
  public:
    /// Of a longer silence so much is left.
    static constexpr qint64 LongestSilence = qint64(24) * 3600 * 1'000'000'000;
    /// Who comes later than this, because somebody has held it up, does not hurry after it.
    static constexpr qint64 MostToCatchUp = 500'000'000;

    explicit ReplayPace(qint64 now) : m_since(now) {}

    ReplaySpeed Speed() const { return m_speed; }
    void SetSpeed(ReplaySpeed speed, qint64 now);
    bool Paused() const { return m_paused; }
    void SetPaused(bool paused, qint64 now);

    /// What comes next, behind what came last.
    void Expect(qint64 captured);
    /// How long until its turn; 0 if it is now, nothing while the pace is paused.
    std::optional<qint64> UntilDue(qint64 now) const;
    /// It has its turn, be it due or not.
    void Reach(qint64 now);

    /// How much of the capture's time has gone by since its beginning.
    qint64 Played(qint64 now) const;

  private:
    qint64 Factor() const { return m_speed == ReplaySpeed::TenTimes ? 10 : 1; }
    void Hold(qint64 now);

    ReplaySpeed m_speed = ReplaySpeed::Own;
    bool m_paused = false;
    std::optional<qint64> m_captured; ///< of what is expected
    qint64 m_due = 0;                 ///< its turn, in the time that Played counts
    qint64 m_place = 0;               ///< what Played was
    qint64 m_since;                   ///< at that moment
};
