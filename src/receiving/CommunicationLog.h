// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Representation.h"

#include <QByteArray>

/// What communication tells the log.
class CommunicationLog
{
  public:
    virtual ~CommunicationLog() = default;

    /// The text that has just been appended to the view of that representation.
    virtual void WriteText(Representation representation, const QByteArray &text) = 0;
    /// The ports have been opened, or could not be.
    virtual void UpdateLogCommands() = 0;
    /// The ports have been closed, or could not be.
    virtual void StopLog() = 0;
};
