// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Shell.h"

/// The desktop that the program runs on.
class QtShell final : public Shell
{
  public:
    Result Open(const QString &link) override;
    Result Start(const ProgramCall &call) override;
    QList<ProgramCall> SystemInformationPrograms() const override;
};
