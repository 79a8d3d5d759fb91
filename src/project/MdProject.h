// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "FileDialogRequest.h"

#include <QString>

class MdCommunication;
class MdSequenceEdition;
class OpenFiles;
class ProjectWindow;
class Result;
class SettingsStore;
class UserPrompts;
struct ProjectState;
struct RunState;
struct UnsavedProject;

/// What the project commands work with; all of it lives longer than MdProject.
struct ProjectParts {
    ProjectState &state;
    MdSequenceEdition &sequences;
    MdCommunication &communication;
    SettingsStore &store;
    UserPrompts &prompts;
    OpenFiles &files;
    const RunState &run;
};

/// The project commands: new, open, save, and the question that guards them. A project is unnamed
/// while it has no folder or no file name.
class MdProject
{
  public:
    explicit MdProject(const ProjectParts &parts) : m_parts(parts) {}

    /// To be called before any command.
    void Attach(ProjectWindow &window) { m_window = &window; }

    /// True: the caller may replace or leave the project. False: the user wants to stay, or what
    /// he wanted saved could not be saved.
    bool AskSaveChanges();

    void NewProject();
    void OpenProject();
    /// The entry as the menu shows it: folder and name without extension.
    void OpenRecentProject(const QString &entry);
    /// A project file that the command line names.
    void OpenFile(const QString &path);

    /// Puts a project that was never saved as it is in the place of the current one, unasked.
    void Restore(const UnsavedProject &project);

    /// Whether there is something to save.
    bool IsModified() const;

    /// True when the project was written.
    bool SaveProject();
    bool SaveProjectAs();

    /// Fills the recent entries of the menu.
    void ShowRecentProjects();

  private:
    struct Names {
        QString folder; ///< with trailing separator
        QString name;   ///< without extension
    };

    static Names Split(const QString &path);
    bool Exists(const QString &path) const;
    FileDialogRequest DialogIn(FileDialogRequest::Purpose purpose, const QString &title) const;
    QString ChooseTarget();
    void LoadChosen(const QString &path);
    void LoadItself(const QString &path);
    void Load(const Names &names, const QString &path);
    bool Save(const Names &names);
    void TellLosses();
    void NameProject(const Names &names);
    void Remember(const Names &names);
    void TellOfUnstorable(const QString &project);
    void ShowFailure(const QString &message);
    void ShowFailure(const Result &result, const QString &path);

    ProjectParts m_parts;
    ProjectWindow *m_window = nullptr;
    QString m_unstorable; ///< project that the user has been told about
};
