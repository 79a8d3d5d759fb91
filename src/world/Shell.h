// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Result.h"

#include <QList>
#include <QString>
#include <QStringList>

class UserPrompts;

/// A program and what it is started with.
struct ProgramCall {
    QString program; ///< a path
    QStringList arguments;

    bool operator==(const ProgramCall &) const = default;
};

/// The desktop: what it opens and starts for the user goes on without this program.
class Shell
{
  public:
    virtual ~Shell() = default;

    /// Opens a link, "mailto:" included, with the program that the desktop has for it.
    virtual Result Open(const QString &link) = 0;

    virtual Result Start(const ProgramCall &call) = 0;

    /// The programs of this desktop that show what the system is made of, installed ones only and
    /// the best first.
    virtual QList<ProgramCall> SystemInformationPrograms() const = 0;
};

/// Opens a link that the user has clicked on, and tells the user if that fails.
void FollowLink(Shell &shell, UserPrompts &prompts, const QString &link);
