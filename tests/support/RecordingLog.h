// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "log/CommunicationLog.h"

#include <QStringList>

#include <array>

/// Keeps what would have been logged.
class RecordingLog final : public CommunicationLog
{
  public:
    std::array<QByteArray, RepresentationCount> texts;
    QStringList calls;

    void WriteText(Representation representation, const QByteArray &text) override
    {
        texts[size_t(representation)] += text;
    }
    void UpdateLogCommands() override { calls << QStringLiteral("UpdateLogCommands"); }
    void StopLog() override { calls << QStringLiteral("StopLog"); }
};
