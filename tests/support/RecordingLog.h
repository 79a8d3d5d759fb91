// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "CommunicationLog.h"

#include <QStringList>

#include <array>

/// Keeps what would have been logged, and may hand it on to a log.
class RecordingLog final : public CommunicationLog
{
  public:
    std::array<QByteArray, RepresentationCount> texts;
    QStringList calls;
    CommunicationLog *next = nullptr;

    void WriteText(Representation representation, const QByteArray &text) override
    {
        texts[size_t(representation)] += text;
        if (next)
            next->WriteText(representation, text);
    }
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
