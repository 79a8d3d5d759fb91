// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "MdProject.h"

#include "MdCommunication.h"
#include "MdGetSpecialFolders.h"
#include "MdSequenceEdition.h"
#include "PathParts.h"
#include "ProjectFile.h"
#include "ProjectState.h"
#include "ProjectWindow.h"
#include "RecentProjects.h"
#include "RunState.h"
#include "SettingsStore.h"
#include "UserPrompts.h"

#include <QDir>
#include <QFileInfo>

namespace
{

const QString Extension = QStringLiteral(".sqx");
const QString DialogName = QStringLiteral("dlgProjectFile");
const QString Filter = QStringLiteral("Serimonde Project Files (*.sqx)|*.sqx");

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
    const QString path = m_parts.prompts.ChooseFile({.purpose = FileDialogRequest::Purpose::Open,
                                                     .dialog = DialogName,
                                                     .title = QStringLiteral("Open Project"),
                                                     .filter = Filter,
                                                     .folder = StartFolder()});
    if (!path.isEmpty())
        LoadChosen(path);
}

void MdProject::OpenRecentProject(const QString &entry)
{
    if (!AskSaveChanges())
        return;
    const Names stripped = Split(entry);
    const Names whole = {stripped.folder, PathParts::FileName(entry)};
    const QString path = ProjectFile::PathOf(stripped.folder, stripped.name);
    if (QFileInfo::exists(path))
        Load(stripped, path);
    else if (const QString other = ProjectFile::PathOf(whole.folder, whole.name);
             QFileInfo::exists(other))
        Load(whole, other);
    else
        ShowFailure(QStringLiteral("Could not find project file ") + path);
}

void MdProject::OpenFile(const QString &path)
{
    const QString absolute = QDir::toNativeSeparators(QFileInfo(path).absoluteFilePath());
    const bool found = QFileInfo::exists(absolute);
    LoadChosen(found ? absolute : absolute + Extension);
}

/// The file itself, however its extension is written. Where the rules for project names lead to
/// another file, the project stays unnamed, so that a save asks for its place.
void MdProject::LoadChosen(const QString &path)
{
    const Names names = Split(path);
    const bool isProject = path.endsWith(Extension, Qt::CaseInsensitive);
    if (ProjectFile::PathOf(names.folder, names.name) == path)
        Load(names, path);
    else if (isProject || !QFileInfo::exists(path))
        Load({}, path);
    else
        ShowFailure(Failure{QStringLiteral("The name does not end in ") + Extension, 0,
                            QStringLiteral("Errow while loading the project")},
                    path);
}

bool MdProject::SaveProject()
{
    const ProjectState &state = m_parts.state;
    if (state.ProjectFileName.isEmpty() || state.ProjectDirectory.isEmpty())
        return SaveProjectAs();
    const Names names = {state.ProjectDirectory, state.ProjectFileName};
    if (!Save(names))
        return false;
    Remember(names);
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
    return true;
}

/// Asks for a file until it is one that may be written; empty if the user cancels, or if the
/// program ends meanwhile.
QString MdProject::ChooseTarget()
{
    FileDialogRequest request = {.purpose = FileDialogRequest::Purpose::Save,
                                 .dialog = DialogName,
                                 .title = QStringLiteral("Save Project"),
                                 .filter = Filter,
                                 .folder = StartFolder()};
    for (;;) {
        QString path = m_parts.prompts.ChooseFile(request);
        const Names names = Split(path);
        const QString target = ProjectFile::PathOf(names.folder, names.name);
        if (path.isEmpty() || !QFileInfo::exists(target))
            return path;
        const PromptAnswer answer = m_parts.prompts.ShowMessage(
            {.text = QStringLiteral("%1 already exists. Do you want to replace it?").arg(target),
             .icon = PromptIcon::Exclamation,
             .buttons = PromptButtons::YesNo,
             .defaultAnswer = PromptAnswer::No,
             .caption = request.title});
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

QString MdProject::StartFolder() const
{
    const QString &folder = m_parts.state.ProjectDirectory;
    return folder.isEmpty() ? MdGetSpecialFolders() : folder;
}

/// Replaces the project. After a failure what could be read stays, but without a name, so that a
/// later save cannot put it in the place of the file it came from.
void MdProject::Load(const Names &names, const QString &path)
{
    m_parts.communication.ClosePorts();
    m_window->SetBusy(true);
    const Result loaded = ProjectFile::LoadProject(m_parts.sequences, m_parts.files, path);
    m_window->SetBusy(false);
    NameProject(loaded.Failed() ? Names{} : names);
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

void MdProject::NameProject(const Names &names)
{
    ProjectState &state = m_parts.state;
    state.ProjectDirectory = names.folder;
    state.ProjectFileName = names.name;
    const QString shown = names.name.isEmpty() ? QString() : QStringLiteral(" - ") + names.name;
    m_window->SetCaption(state.ProgramTitle + shown);
}

void MdProject::Remember(const Names &names)
{
    RecentProjects::UpdateRecentProjects(m_parts.store, names.folder + names.name);
    ShowRecentProjects();
    if (const Result stored = m_parts.store.Flush(); stored.Failed())
        ShowFailure(QStringLiteral("The list of recent projects could not be saved. ") +
                    stored.Cause());
}

void MdProject::ShowFailure(const QString &message)
{
    m_parts.prompts.ShowMessage(CriticalMessage(message));
}

/// Of a project file.
void MdProject::ShowFailure(const Result &result, const QString &path)
{
    m_parts.prompts.ShowMessage(CriticalMessage(result.Message(), path + u'\n' + result.Cause()));
}
