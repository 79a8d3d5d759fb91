// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Representation.h"
#include "TrafficEvent.h"

#include <array>
#include <deque>
#include <functional>
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

    /// Has the call made once, as soon as something waits, on the thread that it comes on; at once
    /// if something does already. An empty one takes back the one before, which is then not made
    /// any more. It must not use the feed.
    void CallOnceFed(std::function<void()> call);

  private:
    using Lengths = std::array<qint64, RepresentationCount>;

    static Lengths LengthsOf(const TrafficEvent &event);
    static void Extend(RichTextModel &box, Representation representation, const TrafficEvent &event,
                       const DisplaySettings &display);
    void Grow(Representation representation, qint64 by);
    void DropUnseen();
    void CallIfFed();

    std::mutex m_lock; ///< guards what follows
    std::function<void()> m_call;
    std::deque<TrafficEvent> m_events;
    Lengths m_waiting{}; ///< characters of all events here
    Lengths m_staged{};  ///< what of them the staging boxes would still hold
};
