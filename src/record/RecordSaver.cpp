// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "RecordSaver.h"

#include "Clock.h"
#include "FileName.h"
#include "MdGetSpecialFolders.h"
#include "OpenFiles.h"
#include "PathParts.h"
#include "RunState.h"
#include "UserPrompts.h"

namespace
{

const QString Extension = QStringLiteral(".pcapng");
const QString Title = QStringLiteral("Save Capture");

QStringList Numbered(const QString &path, int count)
{
    if (count == 1)
        return {path};
    const QString base = path.chopped(Extension.size());
    QStringList paths;
    for (int number = 1; number <= count; ++number)
        paths << base + u'-' + QString::number(number) + Extension;
    return paths;
}

} // namespace

QStringList RecordSaver::ChooseFiles(int count, const QString &name)
{
    const QString &remembered = m_parts.folder;
    FileDialogRequest request = {
        .purpose = FileDialogRequest::Purpose::Save,
        .dialog = QStringLiteral("dlgSaveCapture"),
        .title = Title,
        .filter = QStringLiteral("Captures | *") + Extension,
        .folder = remembered.isEmpty() ? MdGetSpecialFolders() : remembered,
        .name = name.isEmpty()
                    ? m_parts.clock.Now().toString(QStringLiteral("'capture-'yyyyMMdd-hhmmss")) +
                          Extension
                    : name};
    while (!m_parts.run.QuitRequested) {
        QString path = m_parts.prompts.ChooseFile(request).trimmed();
        if (path.isEmpty())
            break;
        if (!path.endsWith(Extension, Qt::CaseInsensitive))
            path += Extension;
        QStringList paths = Numbered(path, count);
        request.folder = PathParts::Folder(path);
        request.name = PathParts::FileName(path);
        if (!MayReplace(paths))
            continue;
        m_parts.folder = request.folder;
        return paths;
    }
    return {};
}

bool RecordSaver::MayReplace(const QStringList &paths)
{
    for (const QString &path : paths) {
        if (!m_parts.files.System().Exists(path))
            continue;
        const PromptAnswer answer = m_parts.prompts.ShowMessage(ReplaceQuestion(path, Title));
        if (answer != PromptAnswer::Yes)
            return false;
    }
    return true;
}

/// The work shares what it leaves: it may go on when the program has ended.
bool RecordSaver::Save(const QString &path, const Write &write)
{
    struct Outcome {
        Result result;
        bool saved = false;
    };
    const auto outcome = std::make_shared<Outcome>();
    const auto work = [path, write, outcome, &files = m_parts.files](WorkProgress &progress) {
        outcome->result = write(files, path, progress);
        outcome->saved = !outcome->result.Failed() && progress.Wanted();
    };
    if (!m_parts.prompts.DoWork(QStringLiteral("Saving ") + FileName::Shown(path), work)) {
        m_hangs = true;
        return false;
    }
    if (outcome->result.Failed()) {
        m_parts.prompts.ShowMessage(
            CriticalMessage(QStringLiteral("The capture %1 could not be saved: %2")
                                .arg(FileName::Shown(path), outcome->result.Cause())));
    }
    return outcome->saved;
}
