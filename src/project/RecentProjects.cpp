// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "RecentProjects.h"

#include "SettingsStore.h"

#include <algorithm>

namespace
{

const QString Section = QStringLiteral("Recent");

QString KeyOf(int place)
{
    return QStringLiteral("RecentProject%1").arg(place);
}

QString EntryAt(const SettingsStore &store, int place)
{
    return store.Read(Section, KeyOf(place)).value_or(QString());
}

void SetEntry(SettingsStore &store, int place, const QString &project)
{
    store.Write(Section, KeyOf(place), project);
}

} // namespace

namespace RecentProjects
{

int FindRecentProject(const SettingsStore &store, const QString &project)
{
    const QString wanted = project.toLower();
    for (int place = MaxCount; place >= 1; --place) {
        if (EntryAt(store, place).toLower() == wanted)
            return place;
    }
    return 0;
}

void UpdateRecentProjects(SettingsStore &store, const QString &project)
{
    const int found = FindRecentProject(store, project);
    const int freed = found == 0 ? MaxCount : found;
    for (int place = freed - 1; place >= 1; --place) {
        const QString entry = EntryAt(store, place);
        // The places of a project that moves up are closed, empty ones too.
        if (found != 0 || !entry.isEmpty())
            SetEntry(store, place + 1, entry);
    }
    SetEntry(store, 1, project);
}

QStringList ListForMenu(const SettingsStore &store)
{
    if (EntryAt(store, 1).isEmpty())
        return {};
    QStringList projects;
    for (const SettingsStore::Entry &entry : store.ReadSection(Section))
        projects << entry.text;
    return projects.first(std::min<qsizetype>(projects.size(), MaxCount));
}

} // namespace RecentProjects
