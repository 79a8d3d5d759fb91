// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "CommunicationLog.h"
#include "TrafficText.h"

#include <QStringList>

#include <array>
#include <atomic>

/// Keeps what would have been logged, and may hand it on to a log.
class RecordingLog final : public CommunicationLog
{
  public:
    std::array<QByteArray, RepresentationCount> texts;
    QStringList calls;
    QList<TrafficEvent> events;          ///< without those about the ports
    QList<TrafficEvent> openings;        ///< those
    std::atomic<bool> hasEvents = false; ///< may be asked while another thread hands them over
    QList<TrafficSession> sessions;
    int sessionsEnded = 0;
    bool hasRoom = true;
    CommunicationLog *next = nullptr;

    void Begin(const TrafficSession &session) override { sessions << session; }
    void End() override { ++sessionsEnded; }
    void Take(const TrafficEvent &event) override
    {
        using Kind = TrafficEvent::Kind;
        (event.kind == Kind::Opened || event.kind == Kind::Closed ? openings : events) << event;
        hasEvents = !events.isEmpty();
        for (const Representation r : AllRepresentations)
            TrafficText::Append(texts[size_t(r)], r, event);
        if (next)
            next->Take(event);
    }
    bool HasRoom() const override { return hasRoom && (!next || next->HasRoom()); }
    void UpdateLogCommands() override
    {
        calls << QStringLiteral("UpdateLogCommands");
        if (next)
            next->UpdateLogCommands();
    }
    void StopLog() override
    {
        calls << QStringLiteral("StopLog");
        if (next)
            next->StopLog();
    }
};
