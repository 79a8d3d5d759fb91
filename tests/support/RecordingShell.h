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

    Result Open(const QString &link) override
    {
        opened << link;
        return refused.contains(link) ? Failure{QStringLiteral("Refused.")} : Result();
    }
    Result Start(const ProgramCall &call) override
    {
        started << (QStringList(call.program) + call.arguments).join(u' ');
        return refused.contains(call.program) ? Failure{QStringLiteral("Refused.")} : Result();
    }
    QList<ProgramCall> SystemInformationPrograms() const override { return installed; }
};
