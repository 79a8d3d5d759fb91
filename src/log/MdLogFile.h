// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "log/CommunicationLog.h"

#include <QObject>

/// The communication log. It cannot be started yet: LogState stays 0, nothing is written and
/// neither of its commands is ever available.
class MdLogFile final : public QObject, public CommunicationLog
{
    Q_OBJECT

  public:
    /// 0: not logging.
    int LogState() const { return 0; }

    void WriteText(Representation, const QByteArray &) override {}
    void UpdateLogCommands() override { Q_EMIT CommandsChanged(false, false); }
    void StopLog() override { UpdateLogCommands(); }

  Q_SIGNALS:
    /// Whether logging can be started and stopped now.
    void CommandsChanged(bool canStart, bool canStop);
};
