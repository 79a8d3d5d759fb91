// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "MainCommands.h"

#include <QObject>

#include <map>

class QAction;
class QMenuBar;
class QToolBar;
class QWidget;

/// What the user can choose the commands of the main window by, made of the tables of
/// MainCommands. A command is enabled wherever it stands at once.
class MainActions final : public QObject
{
    Q_OBJECT

  public:
    /// The actions belong to the window.
    explicit MainActions(QWidget &window);

    void FillMenus(QMenuBar &bar);
    void FillToolbar(QToolBar &bar);
    /// The commands that have a key and nothing to click.
    void AddKeys();
    /// What stands in the context menu of each view below the view's own entries.
    QList<QAction *> ViewEntries();

    void Enable(Command command, bool enabled);
    bool Enabled(Command command) const;
    /// For an entry that ticks: shows the tick or its absence. Nothing is chosen by it.
    void SetTicked(Command command, bool ticked);

    /// In the entries of the File menu; without any the entries stay as they are.
    void ShowRecentProjects(const QStringList &projects);

  Q_SIGNALS:
    void Chosen(Command command);
    /// A recent project, as it was given to ShowRecentProjects.
    void RecentProjectChosen(const QString &project);

  private:
    QAction *MakeAction(Command command, const QString &text, const char *shortcut);
    QString KeyOf(Command command) const;

    QWidget &m_window;
    std::multimap<Command, QAction *> m_actions;
    QAction *m_recentBar = nullptr; ///< above the recent projects
    QList<QAction *> m_recent;
};
