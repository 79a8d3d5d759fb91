// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Shell.h"

/// A desktop that notes what it is asked for.
class RecordingShell final : public Shell
{
  public:
    QStringList opened;           ///< links
    QStringList started;          ///< programs with their arguments, joined by blanks
    QStringList refused;          ///< links and programs that fail
    QList<ProgramCall> installed; ///< programs for the system's information

    QString Open(const QString &link) override
    {
        opened << link;
        return refused.contains(link) ? QStringLiteral("Refused.") : QString();
    }
    QString Start(const ProgramCall &call) override
    {
        started << (QStringList(call.program) + call.arguments).join(u' ');
        return refused.contains(call.program) ? QStringLiteral("Refused.") : QString();
    }
    QList<ProgramCall> SystemInformationPrograms() const override { return installed; }
};
