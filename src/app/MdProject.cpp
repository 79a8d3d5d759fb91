// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "app/MdProject.h"

#include "about/MdGetSpecialFolders.h"
#include "app/ProjectWindow.h"
#include "comm/MdCommunication.h"
#include "platform/SettingsStore.h"
#include "platform/UserPrompts.h"
#include "project/PathParts.h"
#include "project/ProjectFile.h"
#include "project/RecentProjects.h"
#include "project/SettingsRecord.h"
#include "sequences/MdSequenceEdition.h"

#include <QDir>
#include <QFileInfo>

namespace
{

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
                                     .caption = m_parts.settings.ProgramTitle});
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
                                                     .title = QStringLiteral("Open Project"),
                                                     .filter = Filter,
                                                     .folder = StartFolder()});
    if (!path.isEmpty())
        Load(Split(path));
}

void MdProject::OpenRecentProject(const QString &entry)
{
    if (!AskSaveChanges())
        return;
    const Names stripped = Split(entry);
    const Names whole = {stripped.folder, PathParts::FileName(entry)};
    const QString path = ProjectFile::PathOf(stripped.folder, stripped.name);
    if (QFileInfo::exists(path))
        Load(stripped);
    else if (QFileInfo::exists(ProjectFile::PathOf(whole.folder, whole.name)))
        Load(whole);
    else
        ShowFailure(QStringLiteral("Could not find project file ") + path);
}

void MdProject::OpenFile(const QString &path)
{
    const QFileInfo file(path);
    const QString absolute = QDir::toNativeSeparators(file.absoluteFilePath());
    Load(Split(absolute));
}

bool MdProject::SaveProject()
{
    const SettingsRecord &settings = m_parts.settings;
    if (settings.ProjectFileName.isEmpty() || settings.ProjectDirectory.isEmpty())
        return SaveProjectAs();
    const Names names = {settings.ProjectDirectory, settings.ProjectFileName};
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

/// Asks for a file until it is one that may be written; empty if the user cancels.
QString MdProject::ChooseTarget()
{
    for (;;) {
        const QString path =
            m_parts.prompts.ChooseFile({.purpose = FileDialogRequest::Purpose::Save,
                                        .title = QStringLiteral("Save Project"),
                                        .filter = Filter,
                                        .folder = StartFolder()});
        if (path.isEmpty())
            return {};
        const Names names = Split(path);
        const QString target = ProjectFile::PathOf(names.folder, names.name);
        if (!QFileInfo::exists(target))
            return path;
        const PromptAnswer answer = m_parts.prompts.ShowMessage(
            {.text = QStringLiteral("%1 already exists. Do you want to replace it?").arg(target),
             .icon = PromptIcon::Exclamation,
             .buttons = PromptButtons::YesNo,
             .defaultAnswer = PromptAnswer::No,
             .caption = QStringLiteral("Save Project")});
        if (answer == PromptAnswer::Yes)
            return path;
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
    const QString &folder = m_parts.settings.ProjectDirectory;
    return folder.isEmpty() ? MdGetSpecialFolders() : folder;
}

/// Replaces the project. After a failure what could be read stays, but without a name, so that a
/// later save cannot put it in the place of the file it came from.
void MdProject::Load(const Names &names)
{
    m_parts.communication.ClosePorts();
    const auto failure = ProjectFile::LoadProject(m_parts.sequences, m_parts.files,
                                                  ProjectFile::PathOf(names.folder, names.name));
    NameProject(failure ? Names{} : names);
    m_window->RefreshLists();
    const bool anyLeft = m_parts.sequences.SendCount() + m_parts.sequences.ReceiveCount() > 0;
    m_window->SetProjectModified(failure && anyLeft);
    if (failure)
        ShowFailure(failure->message);
    else
        Remember(names);
}

bool MdProject::Save(const Names &names)
{
    const auto failure = ProjectFile::SaveProject(m_parts.sequences, m_parts.files,
                                                  ProjectFile::PathOf(names.folder, names.name));
    if (failure)
        ShowFailure(failure->message);
    else
        m_window->SetProjectModified(false);
    return !failure;
}

void MdProject::NameProject(const Names &names)
{
    SettingsRecord &settings = m_parts.settings;
    settings.ProjectDirectory = names.folder;
    settings.ProjectFileName = names.name;
    const QString shown = names.name.isEmpty() ? QString() : QStringLiteral(" - ") + names.name;
    m_window->SetCaption(settings.ProgramTitle + shown);
}

void MdProject::Remember(const Names &names)
{
    RecentProjects::UpdateRecentProjects(m_parts.store, names.folder + names.name);
    m_parts.store.Flush();
    ShowRecentProjects();
}

void MdProject::ShowFailure(const QString &message)
{
    m_parts.prompts.ShowMessage(CriticalMessage(message));
}
