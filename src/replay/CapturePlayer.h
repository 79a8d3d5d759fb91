// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "LineJudge.h"
#include "TrafficEvent.h"

#include <QList>

/// Lets what a capture tells of happen as if its lines were there: what was received is judged
/// anew by what is watched for now, what was sent is shown as it was. Nothing is ever sent.
class CapturePlayer final
{
  public:
    /// The ports by channel. Board and stream live longer than the player.
    CapturePlayer(const WatchBoard &board, TrafficStream &stream, const QList<TrafficPort> &ports);

    /// Events of a capture, in its order.
    void Play(TrafficEvent event);

  private:
    TrafficStream &m_stream;
    LineJudge m_judge;
};
