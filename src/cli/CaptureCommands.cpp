// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CaptureCommands.h"

#include "CaptureJudge.h"
#include "CaptureTraffic.h"
#include "CommandLine.h"
#include "CsvLines.h"
#include "FileName.h"
#include "JudgementText.h"
#include "MdSequenceEdition.h"
#include "OpenFiles.h"
#include "PathParts.h"
#include "PlainText.h"
#include "ProjectFile.h"
#include "RunReport.h"
#include "SystemFiles.h"
#include "WorkProgress.h"
#include "WriteAll.h"

#include <QFile>
#include <QTextStream>

#include <algorithm>
#include <cstdio>
#include <utility>

namespace
{

/// Rows that are handed to the system at once, in bytes.
constexpr qsizetype MostWaiting = 256 * 1024;

int Fail(QTextStream &errors, int status, const QString &cause)
{
    errors << "serimonde-cli: " << FileName::Shown(cause.simplified()) << Qt::endl;
    return status;
}

/// Standard output, whose reader may go away, or whose disk may be full.
class Output
{
  public:
    Output()
    {
        m_open = m_file.open(::fileno(stdout), QIODevice::WriteOnly | QIODevice::Unbuffered);
    }

    bool Write(const QByteArray &bytes) { return m_open && WriteAll(m_file, bytes); }
    int Fail(QTextStream &errors) const
    {
        return ::Fail(errors, ExitStatus::FileFailed,
                      QStringLiteral("standard output cannot be written: ") + m_file.errorString());
    }

  private:
    QFile m_file;
    bool m_open = false;
};

/// The file of a capture that somebody has named.
std::unique_ptr<InputDevice> Open(const SystemFiles &files, const QString &name, Result &result)
{
    FileSystem::Opened opened = files.Open(files.AbsolutePath(name));
    result = std::move(opened.result);
    return std::move(opened.device);
}

QString Cause(const QString &file, const QString &cause)
{
    return file + QStringLiteral(": ") + cause;
}

/// Whether something was watched for in vain, or nearly came.
bool Misses(const Judgement &judgement)
{
    return std::any_of(judgement.sequences.begin(), judgement.sequences.end(),
                       [](const JudgedSequence &s) { return s.NeverFired() || s.nearMisses > 0; });
}

} // namespace

int CaptureCommands::Judge(const CommandLine &line, QTextStream &errors)
{
    SystemFiles system;
    OpenFiles files(system);
    MdSequenceEdition sequences;
    const Result loaded =
        ProjectFile::LoadProject(sequences, files, system.AbsolutePath(line.project));
    if (loaded.Failed()) {
        return Fail(
            errors, ExitStatus::WrongUsage,
            QStringLiteral("%1: %2. %3").arg(line.project, loaded.Message(), loaded.Cause()));
    }
    sequences.RefreshAnswerNames();
    Result opened;
    const std::unique_ptr<InputDevice> file = Open(system, line.input, opened);
    if (opened.Failed())
        return Fail(errors, ExitStatus::WrongUsage, Cause(line.input, opened.Cause()));
    WorkProgress progress;
    const CaptureJudge::Judged judged = CaptureJudge(sequences).Judge(*file, progress);
    if (judged.result.Failed())
        return Fail(errors, ExitStatus::WrongUsage, Cause(line.input, judged.result.Cause()));
    Output output;
    const JudgementText::Subjects subjects = {FileName::Shown(PathParts::FileName(line.input)),
                                              FileName::Shown(PathParts::FileName(line.project))};
    if (!output.Write(JudgementText::Of(judged.judgement, subjects).toUtf8()))
        return output.Fail(errors);
    if (!judged.judgement.damage.isEmpty())
        return Fail(errors, ExitStatus::StepFailed, Cause(line.input, judged.judgement.damage));
    if (line.strict && Misses(judged.judgement)) {
        return Fail(errors, ExitStatus::StepFailed,
                    QStringLiteral("a watched sequence never fired, or nearly did"));
    }
    return ExitStatus::Passed;
}

int CaptureCommands::Export(const CommandLine &line, QTextStream &errors)
{
    const SystemFiles system;
    Result opened;
    const std::unique_ptr<InputDevice> file = Open(system, line.input, opened);
    if (opened.Failed())
        return Fail(errors, ExitStatus::WrongUsage, Cause(line.input, opened.Cause()));
    CaptureReader reader(*file);
    if (const Result begun = reader.Begin(); begun.Failed())
        return Fail(errors, ExitStatus::WrongUsage, Cause(line.input, begun.Cause()));
    CaptureTraffic traffic(reader);
    CsvLines csv;
    Output output;
    QByteArray rows = CsvLines::Head();
    TrafficEvent event;
    CaptureReader::Step step = traffic.Next(event);
    for (; step == CaptureReader::Step::Packet; step = traffic.Next(event)) {
        csv.Append(rows, event, reader.Ports().value(event.channel).name);
        if (rows.size() < MostWaiting)
            continue;
        if (!output.Write(rows))
            return output.Fail(errors);
        rows.clear();
    }
    if (!output.Write(rows))
        return output.Fail(errors);
    if (step == CaptureReader::Step::Damaged)
        return Fail(errors, ExitStatus::StepFailed, Cause(line.input, reader.Damage().cause));
    return ExitStatus::Passed;
}
