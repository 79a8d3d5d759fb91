// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TrafficExporting.h"

#include "FileName.h"
#include "MdGetSpecialFolders.h"
#include "OpenFiles.h"
#include "PathParts.h"
#include "RunState.h"
#include "UserPrompts.h"

#include <algorithm>
#include <memory>

void TrafficExporting::Export(const Request &request, const Write &write)
{
    const QString path = ChooseFile(request);
    if (path.isEmpty())
        return;
    const auto result = std::make_shared<Result>();
    const auto work = [write, path, result, &files = m_parts.files](WorkProgress &progress) {
        *result = write(files, path, progress);
    };
    if (!m_parts.prompts.DoWork(QStringLiteral("Exporting to ") + FileName::Shown(path), work)) {
        m_hangs = true;
        return;
    }
    if (result->Failed())
        m_parts.prompts.ShowMessage(
            CriticalMessage(QStringLiteral("%1 could not be exported to %2: %3")
                                .arg(request.what, FileName::Shown(path), result->Cause())));
}

/// Empty if the user does not want one.
QString TrafficExporting::ChooseFile(const Request &request)
{
    const QString &remembered = m_parts.folder;
    const bool canBeShown = !remembered.isEmpty() && FileName::IsText(remembered);
    FileDialogRequest dialog = {.purpose = FileDialogRequest::Purpose::Save,
                                .dialog = QStringLiteral("dlgExportTraffic"),
                                .title = request.title,
                                .filter = request.filter,
                                .folder = canBeShown ? remembered : MdGetSpecialFolders(),
                                .name = request.name};
    while (!m_parts.run.QuitRequested) {
        QString path = m_parts.prompts.ChooseFile(dialog);
        if (path.isEmpty())
            break;
        const bool hasEnding = std::any_of(
            request.endings.begin(), request.endings.end(),
            [&path](const QString &end) { return path.endsWith(end, Qt::CaseInsensitive); });
        if (!hasEnding)
            path += request.endings.first();
        dialog.folder = PathParts::Folder(path);
        dialog.name = PathParts::FileName(path);
        if (!MayReplace(path, request.title))
            continue;
        m_parts.folder = dialog.folder;
        return path;
    }
    return {};
}

bool TrafficExporting::MayReplace(const QString &path, const QString &title)
{
    if (!m_parts.files.System().Exists(path))
        return true;
    return m_parts.prompts.ShowMessage(ReplaceQuestion(path, title)) == PromptAnswer::Yes;
}
