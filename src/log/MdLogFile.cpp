// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "MdLogFile.h"

#include "FileName.h"
#include "MdGetSpecialFolders.h"
#include "PathParts.h"
#include "RunState.h"
#include "UserPrompts.h"

#include <utility>

namespace
{

using namespace FileDialogFlags;

/// What chooses a log asks for. There is one base name, which is never a file itself, so neither
/// several files nor a prompt before a new one have a meaning here.
constexpr quint32 DialogFlags =
    HideReadOnly | AllowMultiselect | PathMustExist | CreatePrompt | Explorer | LongNames;
static_assert(DialogFlags == 0x282A04);

MessagePrompt OverwriteQuestion()
{
    return {.text = QStringLiteral(
                "The is already a file with the same name for at least one log file "
                "representation (ASCII, HEX, decimal or binary). Do you want to overwrite the "
                "file(s)?"),
            .icon = PromptIcon::Exclamation,
            .buttons = PromptButtons::YesNo,
            .defaultAnswer = PromptAnswer::No};
}

MessagePrompt WritingFailed(const LogForm &form, const FileFailure &failure)
{
    return CriticalMessage(
        QStringLiteral("Error while writing the %1 log file - ").arg(form.Name()) +
        failure.description);
}

} // namespace

MdLogFile::MdLogFile(const LogParts &parts)
    : m_parts(parts),
      m_outputs{{ClOutputFile(parts.files), ClOutputFile(parts.files), ClOutputFile(parts.files),
                 ClOutputFile(parts.files)}}
{
}

void MdLogFile::StartLog()
{
    if (!CanStart())
        return;
    const std::optional<LogNames> names = AskForNames();
    // While the user was asked a port may have gone, or the program may be about to end.
    if (names && CanStart() && Open(*names))
        m_parts.settings.Folder = names->folder;
    UpdateLogCommands();
}

bool MdLogFile::CanStart() const
{
    return m_logState == StateOff && m_parts.portsOpen() && !m_parts.run.QuitRequested;
}

/// Asks until the files may be written; nothing if the user cancels or logging cannot start any
/// more.
std::optional<LogNames> MdLogFile::AskForNames()
{
    const QString &remembered = m_parts.settings.Folder;
    FileDialogRequest request = {.purpose = FileDialogRequest::Purpose::Save,
                                 .dialog = QStringLiteral("dlgLogFile"),
                                 .title = QStringLiteral("Save Log file as ..."),
                                 .filter = QStringLiteral("log file | *.txt"),
                                 .folder =
                                     remembered.isEmpty() ? MdGetSpecialFolders() : remembered,
                                 .flags = DialogFlags};
    while (CanStart()) {
        const QString path = m_parts.prompts.ChooseFile(request);
        if (path.isEmpty())
            return {};
        LogNames names = LogNames::Of(path);
        if (ExistingFiles(names).isEmpty() ||
            m_parts.prompts.ShowMessage(OverwriteQuestion()) == PromptAnswer::Yes)
            return names;
        request.folder = names.folder;
        request.name = PathParts::FileName(path);
    }
    return {};
}

void MdLogFile::Arm(const QString &path, bool mayOverwrite)
{
    m_armed = {m_parts.files.System().AbsolutePath(path), mayOverwrite};
}

void MdLogFile::StartArmed(const ArmedStart &start)
{
    const LogNames names = LogNames::Of(start.path);
    const QStringList existing = ExistingFiles(names);
    if (existing.isEmpty() || start.mayOverwrite)
        Open(names);
    else
        m_parts.prompts.ShowMessage(CriticalMessage(
            QStringLiteral("The log was not started, because it would overwrite %1. With "
                           "--overwrite it may.")
                .arg(FileName::Shown(existing.join(QLatin1String(", "))))));
}

QStringList MdLogFile::ExistingFiles(const LogNames &names) const
{
    QStringList existing;
    for (const LogForm &form : LogForms) {
        const QString path = names.PathOf(form);
        if (m_parts.settings.*form.flag && m_parts.files.System().Exists(path))
            existing << path;
    }
    return existing;
}

/// All files or none: those that a failed start has made are taken away again.
bool MdLogFile::Open(const LogNames &names)
{
    QStringList made;
    for (const LogForm &form : LogForms) {
        if (!(m_parts.settings.*form.flag))
            continue;
        const QString path = names.PathOf(form);
        const bool isNew = !m_parts.files.System().Exists(path);
        const FileResult failure = FileOf(form.representation).OpenFile(path);
        if (failure) {
            Close();
            for (const QString &each : std::as_const(made))
                m_parts.files.System().Remove(each);
            m_parts.prompts.ShowMessage(WritingFailed(form, *failure));
            return false;
        }
        if (isNew)
            made << path;
    }
    m_names = names;
    m_logState = StateLogging;
    return true;
}

/// What was opened is closed, whatever the flags say by now. Returns the first failure.
FileResult MdLogFile::Close()
{
    FileResult failure;
    for (const LogForm &form : LogForms) {
        ClOutputFile &file = FileOf(form.representation);
        if (!file.IsOpen())
            continue;
        file.CloseFile();
        if (!failure)
            failure = file.Failure();
    }
    m_logState = StateOff;
    return failure;
}

void MdLogFile::StopLog()
{
    const FileResult failure = Close();
    UpdateLogCommands();
    if (failure) {
        m_parts.prompts.ShowMessage(CriticalMessage(
            QStringLiteral("Error while closing a log file - ") + failure->description));
    }
}

void MdLogFile::UpdateLogCommands()
{
    if (m_armed && CanStart())
        StartArmed(*std::exchange(m_armed, std::nullopt));
    Q_EMIT CommandsChanged(m_logState == StateOff && m_parts.portsOpen(),
                           m_logState == StateLogging);
}

/// The flush is posted while events are being handled, so it comes right after them, whichever
/// event loop runs.
void MdLogFile::WriteText(Representation representation, const QByteArray &text)
{
    ClOutputFile &file = FileOf(representation);
    if (!file.IsOpen())
        return;
    file.WriteInFile(text);
    if (file.Failure())
        TellOfFailedWrite(FormOf(representation));
    if (!std::exchange(m_flushUnderWay, true))
        QMetaObject::invokeMethod(this, &MdLogFile::FlushBurst, Qt::QueuedConnection);
}

void MdLogFile::FlushBurst()
{
    m_flushUnderWay = false;
    for (const LogForm &form : LogForms) {
        ClOutputFile &file = FileOf(form.representation);
        if (!file.IsOpen())
            continue;
        const bool toldAlready = file.Failure().has_value(); // with the write that failed
        if (file.Flush() && !toldAlready)
            TellOfFailedWrite(form);
    }
}

/// Receiving must go on, and the user must be able to stop the log meanwhile.
void MdLogFile::TellOfFailedWrite(const LogForm &form)
{
    m_parts.prompts.ShowNotice(m_names.PathOf(form),
                               WritingFailed(form, *FileOf(form.representation).Failure()));
}
