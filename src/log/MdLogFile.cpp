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

/// The details name the file and tell what becomes of the log and of communication.
MessagePrompt WritingFailed(Representation form, const Result &result, const QString &path,
                            const QString &consequence)
{
    const QLatin1String name(RowOf(form).caption);
    return CriticalMessage(QStringLiteral("Error while writing the %1 log file - ").arg(name) +
                               result.Cause(),
                           FileName::Shown(path) + u'\n' + consequence);
}

} // namespace

MdLogFile::MdLogFile(const LogParts &parts)
    : m_parts(parts),
      m_writer({[this] { RoomAgain(); },
                [this](const LogSession::Closing &closing) {
                    QMetaObject::invokeMethod(
                        this, [=, this] { TellOfFailedClose(closing); }, Qt::QueuedConnection);
                }})
{
}

void MdLogFile::StartLog()
{
    if (!CanStart())
        return;
    const std::optional<LogNames> names = AskForNames();
    // While the user was asked a port may have gone, or the program may be about to end.
    if (names && CanStart() && OpenOrTell(*names))
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
    std::optional<MessagePrompt> failure;
    if (existing.isEmpty() || start.mayOverwrite)
        failure = Open(names);
    else
        failure = CriticalMessage(
            QStringLiteral("The log was not started, because it would overwrite %1. With "
                           "--overwrite it may.")
                .arg(FileName::Shown(existing.join(QLatin1String(", ")))));
    if (failure) // the lines are about to be read: nothing may stand in between
        m_parts.prompts.ShowNotice(start.path, *failure);
}

bool MdLogFile::OpenOrTell(const LogNames &names)
{
    const std::optional<MessagePrompt> failure = Open(names);
    if (failure)
        m_parts.prompts.ShowMessage(*failure);
    return !failure;
}

QStringList MdLogFile::ExistingFiles(const LogNames &names) const
{
    QStringList existing;
    for (const Representation form : LogSession::FileOrder) {
        const QString path = names.PathOf(form);
        if (m_parts.settings.files[size_t(form)] && m_parts.files.System().Exists(path))
            existing << path;
    }
    return existing;
}

/// All files or none: those that a failed start has made are taken away again.
std::optional<MessagePrompt> MdLogFile::Open(const LogNames &names)
{
    const auto session = std::make_shared<LogSession>(
        m_parts.files, names,
        [this](Representation form, const QString &path, const Result &result) {
            QMetaObject::invokeMethod(
                this, [=, this] { TellOfFailedWrite(form, path, result); }, Qt::QueuedConnection);
        });
    QStringList made;
    for (const Representation form : LogSession::FileOrder) {
        if (!m_parts.settings.files[size_t(form)])
            continue;
        const QString path = names.PathOf(form);
        const bool isNew = !m_parts.files.System().Exists(path);
        const Result opened = session->Open(form);
        if (opened.Failed()) {
            session->Close();
            for (const QString &each : std::as_const(made))
                m_parts.files.System().Remove(each);
            return WritingFailed(form, opened, path,
                                 QStringLiteral("The log was not started. Communication goes on."));
        }
        if (isNew)
            made << path;
    }
    m_names = names;
    m_logState = StateLogging;
    m_writer.Begin(session);
    return {};
}

void MdLogFile::StopLog()
{
    m_writer.End();
    m_logState = StateOff;
    UpdateLogCommands();
}

bool MdLogFile::Finish()
{
    if (WaitUntilWritten())
        return true;
    m_parts.prompts.ShowMessage(
        CriticalMessage(QStringLiteral("The disk of the log files does not answer; "
                                       "%1 bytes of traffic are not written")
                            .arg(m_writer.BytesWaiting())));
    return false;
}

void MdLogFile::UpdateLogCommands()
{
    if (m_armed && CanStart())
        StartArmed(*std::exchange(m_armed, std::nullopt));
    Q_EMIT CommandsChanged(m_logState == StateOff && m_parts.portsOpen(),
                           m_logState == StateLogging);
}

/// Receiving must go on, and the user must be able to stop the log meanwhile.
void MdLogFile::TellOfFailedWrite(Representation form, const QString &path, const Result &result)
{
    m_parts.prompts.ShowNotice(
        path, WritingFailed(form, result, path,
                            QStringLiteral("Communication goes on. What the file has not taken is "
                                           "tried again with what follows, up to 1 MiB of it.")));
}

void MdLogFile::TellOfFailedClose(const LogSession::Closing &closing)
{
    if (!closing.result.Failed())
        return;
    QString details;
    for (const QString &path : closing.failed)
        details += FileName::Shown(path) + u'\n';
    details += QStringLiteral("Not all that was to be logged is in the file.");
    if (m_parts.portsOpen())
        details += QStringLiteral(" Communication goes on.");
    m_parts.prompts.ShowNotice(QStringLiteral("closing ") + closing.failed.first(),
                               CriticalMessage(QStringLiteral("Error while closing a log file - ") +
                                                   closing.result.Cause(),
                                               details));
}
