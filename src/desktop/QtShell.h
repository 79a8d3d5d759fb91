// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Shell.h"

/// The desktop that the program runs on.
class QtShell final : public Shell
{
  public:
    QString Open(const QString &link) override;
    QString Start(const ProgramCall &call) override;
    QList<ProgramCall> SystemInformationPrograms() const override;
};
