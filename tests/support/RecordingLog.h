// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "CommunicationLog.h"
#include "TrafficText.h"

#include <QStringList>

#include <array>

/// Keeps what would have been logged, and may hand it on to a log.
class RecordingLog final : public CommunicationLog
{
  public:
    std::array<QByteArray, RepresentationCount> texts;
    QStringList calls;
    QList<TrafficEvent> events;
    bool hasRoom = true;
    CommunicationLog *next = nullptr;

    void Take(const TrafficEvent &event) override
    {
        events << event;
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
