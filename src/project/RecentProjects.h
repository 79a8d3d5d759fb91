// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>

class SettingsStore;

/// The projects that were opened or saved last, without extension, in section "Recent" of the
/// store. Two texts that differ in letter case only are the same project.
namespace RecentProjects
{

constexpr int MaxCount = 4;

/// Place of the project from 1 (latest) to 4; 0 if it is not among them.
int FindRecentProject(const SettingsStore &store, const QString &project);

/// Makes the project the latest one. The store is not flushed.
void UpdateRecentProjects(SettingsStore &store, const QString &project);

/// What the menu shows, at most MaxCount entries: all values of the section in the store's own
/// order. None while there is no latest project.
QStringList ListForMenu(const SettingsStore &store);

} // namespace RecentProjects
