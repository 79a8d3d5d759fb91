// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QtGlobal>

/// When a device that went away is looked for and tried, and when its user is told that it cannot
/// be opened. All times are in milliseconds, now on a clock that only goes forward.
class ReturnPlan final
{
  public:
    static constexpr qint64 LookPause = 50; ///< also where the system tells of no change
    static constexpr qint64 FirstPause = 20;
    static constexpr qint64 LongestPause = 1000;
    static constexpr qint64 Patience = 20'000; ///< before the user is told
    static constexpr qint64 PauseAfterwards = 5000;

    /// Takes what is seen of the device: nothing while it is away, and something else whenever it
    /// is another one or its rights are others. Whether it is to be tried now.
    bool IsDue(const QByteArray &sight, qint64 now);

    /// The try has failed. Whether that is to be told, which is so once for each coming back.
    bool NoteFailure(qint64 now);

    /// How long nothing need be looked at.
    qint64 PauseFrom(qint64 now) const;

  private:
    QByteArray m_sight;
    qint64 m_backSince = 0;
    qint64 m_nextTry = 0;
    qint64 m_pause = FirstPause;
    bool m_told = false;
};
