// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ProjectRecovery.h"

#include "FileName.h"
#include "MdProject.h"
#include "RunState.h"
#include "UnsavedProject.h"
#include "UserPrompts.h"

#include <QLocale>

#include <utility>

namespace
{

MessagePrompt OfferOf(const UnsavedProject &project, const QDateTime &written)
{
    const QString named = project.name.isEmpty()
                              ? QStringLiteral("a project without a name")
                              : QStringLiteral("the project ") + FileName::Shown(project.name);
    return {.text = QStringLiteral("On %1 Serimonde was ended while %2 had changes that were not "
                                   "saved.\n\nDo you want to have it back with these changes? "
                                   "(Choose 'No' to discard them, 'Cancel' to be asked again at "
                                   "the next start.)")
                        .arg(QLocale::system().toString(written, QLocale::ShortFormat), named),
            .icon = PromptIcon::Question,
            .buttons = PromptButtons::YesNoCancel,
            .defaultAnswer = PromptAnswer::Yes};
}

} // namespace

void ProjectRecovery::Keep()
{
    if (m_parts.run.QuitRequested || !m_parts.project.IsModified())
        return;
    const QByteArray text = UnsavedProject::Of(m_parts.sequences, m_parts.state).ToText();
    if (m_file && text == m_text)
        return;
    RecoveryFolder::Kept kept = m_parts.folder.Keep(text);
    if (kept.result.Failed()) {
        TellFailure(QStringLiteral("The changes of the project could not be kept."),
                    kept.result.Cause());
        return;
    }
    if (m_file)
        m_file->Remove();
    m_file = std::move(kept.file);
    m_text = text;
    RemoveOthersOf(text);
}

void ProjectRecovery::Drop()
{
    if (m_file)
        m_file->Remove();
    m_file.reset();
    m_restored = false;
}

void ProjectRecovery::GoOn()
{
    if (!m_restored)
        Drop();
}

/// A program that is started and ended again and again must not leave the same behind each time.
void ProjectRecovery::RemoveOthersOf(const QByteArray &text)
{
    for (const QString &name : m_parts.folder.Names()) {
        const auto file = m_parts.folder.Take(name);
        if (file && file->Read().bytes == text)
            file->Remove();
    }
}

void ProjectRecovery::Offer(const std::function<void()> &settled)
{
    m_settled = settled;
    OfferNext();
}

void ProjectRecovery::OfferNext()
{
    for (const QString &name : m_parts.folder.Names()) {
        // Shared, because what is called later must be copyable.
        const auto file =
            std::make_shared<std::unique_ptr<RecoveryFolder::File>>(m_parts.folder.Take(name));
        if (!*file)
            continue;
        const FileSystem::Content content = (*file)->Read();
        const auto project = UnsavedProject::FromText(content.bytes);
        if (!project) {
            TellFailure((*file)->Path() + QStringLiteral(" holds changes of a project, which "
                                                         "cannot be read."),
                        content.result.Cause());
            continue;
        }
        m_parts.prompts.Ask(OfferOf(*project, (*file)->Written()),
                            [this, file, project = *project](PromptAnswer answer) {
                                Answer(answer, project, std::move(*file));
                            });
        return;
    }
    m_settled();
}

/// A file that the user has back stays until the project is saved or given up.
void ProjectRecovery::Answer(PromptAnswer answer, const UnsavedProject &project,
                             std::unique_ptr<RecoveryFolder::File> file)
{
    if (answer == PromptAnswer::No) {
        file->Remove();
        OfferNext();
        return;
    }
    if (answer == PromptAnswer::Yes && m_parts.project.AskSaveChanges()) {
        Drop();
        m_parts.project.Restore(project);
        m_file = std::move(file);
        m_text.clear(); // what it holds may have another form
        m_restored = true;
    }
    m_settled();
}

void ProjectRecovery::TellFailure(const QString &what, const QString &cause)
{
    m_parts.prompts.ShowNotice(what, ExclamationMessage((what + u' ' + cause).trimmed()));
}
