// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Representation.h"
#include "TrafficEvent.h"

#include <array>
#include <deque>
#include <mutex>

class CommunicationViews;
class RichTextModel;
struct DisplaySettings;

/// What is to come into the views: events wait here until the main loop stages them. A window that
/// stands still holds up nothing and fills no memory: what the staging boxes would have trimmed by
/// then goes, and what they would hold stays, to the character.
class ViewFeed final : public TrafficConsumer
{
  public:
    void Take(const TrafficEvent &event) override;

    /// Moves all that waits into the staging boxes.
    void StageInto(CommunicationViews &views, const DisplaySettings &display);

    /// Forgets what waits.
    void Clear();

  private:
    using Lengths = std::array<qint64, RepresentationCount>;

    static Lengths LengthsOf(const TrafficEvent &event);
    static void Extend(RichTextModel &box, Representation representation, const TrafficEvent &event,
                       const DisplaySettings &display);
    void Grow(Representation representation, qint64 by);
    void DropUnseen();

    std::mutex m_lock; ///< guards what follows
    std::deque<TrafficEvent> m_events;
    Lengths m_waiting{}; ///< characters of all events here
    Lengths m_staged{};  ///< what of them the staging boxes would still hold
};
