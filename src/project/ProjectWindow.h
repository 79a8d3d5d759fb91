// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>

/// What the project commands need of the main window.
class ProjectWindow
{
  public:
    virtual ~ProjectWindow() = default;

    virtual bool ProjectModified() const = 0;
    virtual void SetProjectModified(bool modified) = 0;
    virtual void SetCaption(const QString &caption) = 0;
    /// Shows the hourglass pointer, or takes it back.
    virtual void SetBusy(bool busy) = 0;
    /// Shows the sequence tables in both lists anew.
    virtual void RefreshLists() = 0;
    /// The entries of the recent projects, at most four, as they are to be read.
    virtual void ShowRecentProjects(const QStringList &projects) = 0;
};
