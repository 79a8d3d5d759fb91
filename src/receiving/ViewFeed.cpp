// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ViewFeed.h"

#include "CommunicationViews.h"
#include "DisplaySettings.h"
#include "TrafficText.h"

#include <algorithm>
#include <utility>

ViewFeed::Lengths ViewFeed::LengthsOf(const TrafficEvent &event)
{
    Lengths lengths{};
    for (const Representation r : AllRepresentations) {
        lengths[size_t(r)] =
            event.stamp.size() + TrafficText::BytesLength(r, event) + event.comment.size();
    }
    return lengths;
}

/// One append to a staging box, as RichTextModel trims it.
void ViewFeed::Grow(Representation representation, qint64 by)
{
    qint64 &length = m_staged[size_t(representation)];
    length = RichTextModel::LengthAfterAppend(length, by);
}

void ViewFeed::Take(const TrafficEvent &event)
{
    if (!TrafficText::IsShown(event))
        return;
    const std::lock_guard guard(m_lock);
    const Lengths lengths = LengthsOf(event);
    for (const Representation r : AllRepresentations) {
        m_waiting[size_t(r)] += lengths[size_t(r)];
        for (const qint64 part :
             {qint64(event.stamp.size()), qint64(TrafficText::BytesLength(r, event)),
              qint64(event.comment.size())}) {
            if (part > 0)
                Grow(r, part);
        }
    }
    m_events.push_back(event);
    DropUnseen();
    CallIfFed();
}

void ViewFeed::CallOnceFed(std::function<void()> call)
{
    const std::lock_guard guard(m_lock);
    m_call = std::move(call);
    CallIfFed();
}

void ViewFeed::CallIfFed()
{
    if (m_call && !m_events.empty())
        std::exchange(m_call, {})();
}

void ViewFeed::DropUnseen()
{
    while (!m_events.empty()) {
        const Lengths lengths = LengthsOf(m_events.front());
        for (size_t r = 0; r < lengths.size(); ++r) {
            if (m_waiting[r] - lengths[r] < m_staged[r])
                return;
        }
        for (size_t r = 0; r < lengths.size(); ++r)
            m_waiting[r] -= lengths[r];
        m_events.pop_front();
    }
}

void ViewFeed::Clear()
{
    const std::lock_guard guard(m_lock);
    m_events.clear();
    m_waiting = m_staged = {};
}

void ViewFeed::StageInto(CommunicationViews &views, const DisplaySettings &display)
{
    std::deque<TrafficEvent> events;
    Lengths waiting;
    Lengths staged;
    {
        const std::lock_guard guard(m_lock);
        events.swap(m_events);
        waiting = std::exchange(m_waiting, {});
        staged = std::exchange(m_staged, {});
    }
    if (events.empty())
        return;
    for (const Representation r : AllRepresentations) {
        RichTextModel &box = views.StagingBox(r);
        const qint64 kept = box.Length() + staged[size_t(r)];
        qint64 unseen = waiting[size_t(r)] - kept; // of the oldest, which need not be made
        for (const TrafficEvent &event : events) {
            unseen -= LengthsOf(event)[size_t(r)];
            if (unseen < 0)
                Extend(box, r, event, display);
        }
        box.KeepLast(kept);
    }
}

void ViewFeed::Extend(RichTextModel &box, Representation representation, const TrafficEvent &event,
                      const DisplaySettings &display)
{
    const TextStyle &comments = display.styles[StyleIndex::Comment];
    box.Extend(event.stamp, comments);
    box.Extend(ViewText(representation, event.bytes), display.styles[size_t(event.direction)]);
    if (representation == Representation::Ascii)
        box.NoteZeros(event.bytes);
    box.Extend(event.comment, comments);
}
