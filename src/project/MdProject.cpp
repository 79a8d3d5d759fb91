// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "MdProject.h"

#include "FileName.h"
#include "MdCommunication.h"
#include "MdGetSpecialFolders.h"
#include "MdSequenceEdition.h"
#include "OpenFiles.h"
#include "PathParts.h"
#include "ProjectFile.h"
#include "ProjectLosses.h"
#include "ProjectState.h"
#include "ProjectWindow.h"
#include "RecentProjects.h"
#include "RunState.h"
#include "SettingsStore.h"
#include "UnsavedProject.h"
#include "UserPrompts.h"

#include <utility>

namespace
{

const QString Extension = QStringLiteral(".sqx");
const QString DialogName = QStringLiteral("dlgProjectFile");
const QString Filter = QStringLiteral("Serimonde Project Files (*.sqx)|*.sqx");

bool HasExtension(const QString &path)
{
    return path.endsWith(Extension, Qt::CaseInsensitive);
}

} // namespace

bool MdProject::AskSaveChanges()
{
    if (!m_window->ProjectModified())
        return true;
    const PromptAnswer answer =
        m_parts.prompts.ShowMessage({.text = QStringLiteral("Save changes for this project?"),
                                     .icon = PromptIcon::Question,
                                     .buttons = PromptButtons::YesNoCancel,
                                     .defaultAnswer = PromptAnswer::No,
                                     .caption = m_parts.state.ProgramTitle});
    return answer == PromptAnswer::Yes ? SaveProject() : answer == PromptAnswer::No;
}

void MdProject::NewProject()
{
    if (!AskSaveChanges())
        return;
    m_parts.sequences.ClearProject();
    NameProject({});
    m_window->RefreshLists();
    m_window->SetProjectModified(false);
}

void MdProject::OpenProject()
{
    if (!AskSaveChanges())
        return;
    const QString path = m_parts.prompts.ChooseFile(
        DialogIn(FileDialogRequest::Purpose::Open, QStringLiteral("Open Project")));
    if (!path.isEmpty())
        LoadChosen(path);
}

/// An entry never had an extension, whatever full stops are in it.
void MdProject::OpenRecentProject(const QString &entry)
{
    if (!AskSaveChanges())
        return;
    const Names names = Split(entry + Extension);
    const QString path = ProjectFile::PathOf(names.folder, names.name);
    if (Exists(path))
        Load(names, path);
    else
        ShowFailure(QStringLiteral("Could not find project file ") + FileName::Shown(path));
}

void MdProject::OpenFile(const QString &path)
{
    const QString absolute = m_parts.files.System().AbsolutePath(path);
    LoadItself(Exists(absolute) ? absolute : absolute + Extension);
}

void MdProject::LoadChosen(const QString &path)
{
    const Names names = Split(path);
    if (HasExtension(path) && Exists(path))
        LoadItself(path);
    else
        Load(names, ProjectFile::PathOf(names.folder, names.name));
}

/// The file itself, however its extension is written. Where the rules for project names lead to
/// another file, the project stays unnamed, so that a save asks for its place.
void MdProject::LoadItself(const QString &path)
{
    const Names names = Split(path);
    if (ProjectFile::PathOf(names.folder, names.name) == path)
        Load(names, path);
    else if (HasExtension(path) || !Exists(path))
        Load({}, path);
    else
        ShowFailure(Failure{QStringLiteral("The name does not end in ") + Extension, 0,
                            QStringLiteral("Errow while loading the project")},
                    path);
}

void MdProject::Restore(const UnsavedProject &project)
{
    m_parts.communication.ClosePorts();
    project.PutInto(m_parts.sequences);
    NameProject({project.folder, project.name});
    m_window->RefreshLists();
    m_window->SetProjectModified(true);
}

bool MdProject::IsModified() const
{
    return m_window && m_window->ProjectModified();
}

bool MdProject::SaveProject()
{
    const ProjectState &state = m_parts.state;
    if (!state.IsNamed())
        return SaveProjectAs();
    const Names names = {state.ProjectDirectory, state.ProjectFileName};
    if (!Save(names))
        return false;
    Remember(names);
    TellLosses();
    return true;
}

bool MdProject::SaveProjectAs()
{
    const QString path = ChooseTarget();
    if (path.isEmpty())
        return false;
    const Names names = Split(path);
    if (!Save(names))
        return false;
    Remember(names);
    NameProject(names);
    TellLosses();
    return true;
}

/// Asks for a file until it is one that may be written; empty if the user cancels, or if the
/// program ends meanwhile.
QString MdProject::ChooseTarget()
{
    FileDialogRequest request =
        DialogIn(FileDialogRequest::Purpose::Save, QStringLiteral("Save Project"));
    const QString &current = m_parts.state.ProjectFileName;
    if (m_parts.state.IsNamed() && FileName::IsText(current))
        request.name = current + Extension;
    for (;;) {
        QString path = m_parts.prompts.ChooseFile(request).trimmed();
        if (!path.isEmpty() && !HasExtension(path))
            path += Extension;
        const Names names = Split(path);
        const QString target = ProjectFile::PathOf(names.folder, names.name);
        if (path.isEmpty() || !Exists(target))
            return path;
        const PromptAnswer answer =
            m_parts.prompts.ShowMessage(ReplaceQuestion(target, request.title));
        if (answer == PromptAnswer::Yes)
            return path;
        if (m_parts.run.QuitRequested)
            return {};
        request.folder = names.folder;
        request.name = PathParts::FileName(path);
    }
}

void MdProject::ShowRecentProjects()
{
    m_window->ShowRecentProjects(RecentProjects::ListForMenu(m_parts.store));
}

MdProject::Names MdProject::Split(const QString &path)
{
    return {PathParts::Folder(path), PathParts::WithoutExtension(PathParts::FileName(path))};
}

bool MdProject::Exists(const QString &path) const
{
    return m_parts.files.System().Exists(path);
}

FileDialogRequest MdProject::DialogIn(FileDialogRequest::Purpose purpose,
                                      const QString &title) const
{
    const QString &folder = m_parts.state.ProjectDirectory;
    const bool canBeShown = !folder.isEmpty() && FileName::IsText(folder);
    return {.purpose = purpose,
            .dialog = DialogName,
            .title = title,
            .filter = Filter,
            .folder = canBeShown ? folder : MdGetSpecialFolders()};
}

/// Replaces the project. After a failure what could be read stays, but without a name, so that a
/// later save cannot put it in the place of the file it came from.
void MdProject::Load(const Names &names, const QString &path)
{
    m_parts.communication.ClosePorts();
    m_window->SetBusy(true);
    const Result loaded = ProjectFile::LoadProject(m_parts.sequences, m_parts.files, path);
    m_window->SetBusy(false);
    const QString folder = PathParts::Folder(path);
    NameProject({Exists(folder) ? folder : m_parts.state.ProjectDirectory,
                 loaded.Failed() ? QString() : names.name});
    m_window->RefreshLists();
    const bool anyLeft = m_parts.sequences.SendCount() + m_parts.sequences.ReceiveCount() > 0;
    m_window->SetProjectModified(loaded.Failed() && anyLeft);
    if (loaded.Failed())
        ShowFailure(loaded, path);
    else if (!names.name.isEmpty())
        Remember(names);
}

bool MdProject::Save(const Names &names)
{
    const QString path = ProjectFile::PathOf(names.folder, names.name);
    m_window->SetBusy(true);
    const Result saved = ProjectFile::SaveProject(m_parts.sequences, m_parts.files, path);
    m_window->SetBusy(false);
    if (saved.Failed())
        ShowFailure(saved, path);
    else
        m_window->SetProjectModified(false);
    return !saved.Failed();
}

/// What was saved is in the file whole, but will not all be read again.
void MdProject::TellLosses()
{
    const QString losses = ProjectLosses::OfProject(m_parts.sequences);
    if (!losses.isEmpty())
        m_parts.prompts.ShowMessage(ExclamationMessage(losses));
}

void MdProject::NameProject(const Names &names)
{
    ProjectState &state = m_parts.state;
    state.ProjectDirectory = names.folder;
    state.ProjectFileName = names.name;
    if (!names.folder.isEmpty() && FileName::IsText(names.folder))
        state.LastFolder = names.folder;
    const QString shown = names.name.isEmpty() ? QString() : QStringLiteral(" - ") + names.name;
    m_window->SetCaption(state.ProgramTitle + FileName::Shown(shown));
}

void MdProject::Remember(const Names &names)
{
    const QString project = names.folder + names.name;
    if (!FileName::IsText(project)) {
        TellOfUnstorable(project);
        return;
    }
    RecentProjects::UpdateRecentProjects(m_parts.store, project);
    ShowRecentProjects();
    if (const Result stored = m_parts.store.Flush(); stored.Failed())
        ShowFailure(QStringLiteral("The list of recent projects could not be saved. ") +
                    stored.Cause());
}

/// Once for each project: the user can go on working with it.
void MdProject::TellOfUnstorable(const QString &project)
{
    if (std::exchange(m_unstorable, project) == project)
        return;
    m_parts.prompts.ShowMessage(ExclamationMessage(
        QStringLiteral("The project %1 cannot be kept among the recent projects, because its name "
                       "is not UTF-8. It can be saved, and opened from the command line.")
            .arg(FileName::Shown(project + Extension))));
}

void MdProject::ShowFailure(const QString &message)
{
    m_parts.prompts.ShowMessage(CriticalMessage(message));
}

/// Of a project file.
void MdProject::ShowFailure(const Result &result, const QString &path)
{
    m_parts.prompts.ShowMessage(
        CriticalMessage(result.Message(), FileName::Shown(path) + u'\n' + result.Cause()));
}
