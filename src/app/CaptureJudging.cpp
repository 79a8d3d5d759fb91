// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CaptureJudging.h"

#include "CaptureJudge.h"
#include "ClOutputFile.h"
#include "FileName.h"
#include "MdGetSpecialFolders.h"
#include "MdSequenceEdition.h"
#include "PathParts.h"
#include "ProjectState.h"
#include "UserPrompts.h"
#include "frmJudgement.h"

#include <memory>
#include <utility>

namespace
{

const QString Title = QStringLiteral("Judge Capture");

/// What the work hands over; shared with its thread, which may go on when nobody waits for it.
struct Outcome {
    std::shared_ptr<const InputDevice> file;
    std::shared_ptr<Judgement> judgement = std::make_shared<Judgement>();
    Result result;
};

Outcome JudgeFile(const CaptureJudge &judge, const FileSystem &files, const QString &path,
                  WorkProgress &progress)
{
    Outcome outcome;
    FileSystem::Opened opened = files.Open(path);
    outcome.result = opened.result;
    if (outcome.result.Failed())
        return outcome;
    outcome.file = std::move(opened.device);
    CaptureJudge::Judged judged = judge.Judge(*outcome.file, progress);
    outcome.result = judged.result;
    *outcome.judgement = std::move(judged.judgement);
    return outcome;
}

} // namespace

void CaptureJudging::Judge(QWidget &owner)
{
    const QString path = ChooseCapture();
    if (path.isEmpty())
        return;
    m_parts.folder = PathParts::Folder(path);
    Judge(path, owner);
}

void CaptureJudging::Judge(const QString &path, QWidget &owner)
{
    const auto judge = std::make_shared<const CaptureJudge>(m_parts.sequences);
    const auto outcome = std::make_shared<Outcome>();
    const QString name = FileName::Shown(PathParts::FileName(path));
    m_hangs = !m_parts.prompts.DoWork(
        QStringLiteral("Judging ") + name,
        [judge, outcome, path, &files = m_parts.files.System()](WorkProgress &progress) {
            *outcome = JudgeFile(*judge, files, path, progress);
            if (!progress.Settle())
                outcome->judgement->complete = false;
        });
    if (m_hangs)
        return;
    if (outcome->result.Failed()) {
        Tell(QStringLiteral("The capture cannot be judged. "), path, outcome->result);
        return;
    }
    if (!outcome->judgement->complete)
        return;
    delete m_window;
    const QString project =
        m_parts.project.IsNamed() ? FileName::Shown(m_parts.project.ProjectFileName) : QString();
    m_window = new frmJudgement({outcome->judgement,
                                 outcome->file,
                                 {name, project},
                                 [this, path](const QString &report) { SaveReport(path, report); }},
                                &owner);
    m_window->setAttribute(Qt::WA_DeleteOnClose);
    m_window->show();
}

QString CaptureJudging::ChooseCapture() const
{
    const QString &folder = m_parts.folder;
    const bool canBeShown = !folder.isEmpty() && FileName::IsText(folder);
    return m_parts.prompts.ChooseFile({.purpose = FileDialogRequest::Purpose::Open,
                                       .dialog = QStringLiteral("dlgJudgeCapture"),
                                       .title = Title,
                                       .filter = QStringLiteral("Captures | *.pcapng *.pcap"),
                                       .folder = canBeShown ? folder : MdGetSpecialFolders()});
}

void CaptureJudging::SaveReport(const QString &capture, const QString &report)
{
    const QString path = ChooseReport(capture);
    if (path.isEmpty())
        return;
    ClOutputFile file(m_parts.files);
    Result saved = file.OpenForReplacing(path);
    if (!saved.Failed()) {
        file.WriteInFile(report.toUtf8());
        saved = file.Commit();
    }
    if (saved.Failed())
        Tell(QStringLiteral("The report cannot be saved. "), path, saved);
}

/// Empty if the user does not want one.
QString CaptureJudging::ChooseReport(const QString &capture) const
{
    FileDialogRequest request = {.purpose = FileDialogRequest::Purpose::Save,
                                 .dialog = QStringLiteral("dlgSaveReport"),
                                 .title = QStringLiteral("Save Report"),
                                 .filter = QStringLiteral("Texts | *.txt"),
                                 .folder = PathParts::Folder(capture),
                                 .name = PathParts::WithoutExtension(PathParts::FileName(capture)) +
                                         QStringLiteral(" judged.txt")};
    QString path = m_parts.prompts.ChooseFile(request);
    if (path.isEmpty() || !m_parts.files.System().Exists(path))
        return path;
    const PromptAnswer answer = m_parts.prompts.ShowMessage(ReplaceQuestion(path, request.title));
    return answer == PromptAnswer::Yes ? path : QString();
}

void CaptureJudging::Tell(const QString &text, const QString &path, const Result &failed) const
{
    m_parts.prompts.ShowMessage(CriticalMessage(text + failed.Cause(), FileName::Shown(path)));
}
