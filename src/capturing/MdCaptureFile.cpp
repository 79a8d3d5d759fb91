// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "MdCaptureFile.h"

#include "FileName.h"
#include "MdGetSpecialFolders.h"
#include "PathParts.h"
#include "RunState.h"

#include <utility>

namespace
{

using namespace FileDialogFlags;
using Trouble = CaptureFile::Trouble;

/// What becomes of capture and communication, by CaptureFile::Trouble.
constexpr std::array<const char *, 3> Consequences = {
    "The capture was not started. Communication goes on.",
    "Communication goes on, and so does the capture, as soon as the disk takes more; it then says "
    "how much is missing.",
    "The capture has ended. Communication goes on."};

MessagePrompt FailureMessage(Trouble trouble, const Result &result, const QString &path)
{
    return CriticalMessage(QStringLiteral("Error while writing the capture - ") + result.Cause(),
                           FileName::Shown(path) + u'\n' +
                               QLatin1String(Consequences[size_t(trouble)]));
}

/// Nobody was there to be asked.
MessagePrompt RefusedMessage(const QString &path)
{
    return CriticalMessage(QStringLiteral("The capture was not started, because it would overwrite "
                                          "%1. With --overwrite it may.")
                               .arg(FileName::Shown(path)));
}

} // namespace

MdCaptureFile::MdCaptureFile(const CaptureParts &parts) : m_parts(parts) {}

MdCaptureFile::~MdCaptureFile() = default;

void MdCaptureFile::Toggle()
{
    if (IsOn()) {
        Stop();
        return;
    }
    // While the user was asked the program may have come to its end.
    const std::optional<Chosen> chosen = Ask();
    if (!chosen || m_parts.run.QuitRequested) {
        Q_EMIT Switched(false); // the click has made a tick of it
        return;
    }
    m_parts.settings.Folder = PathParts::Folder(chosen->path);
    Start(*chosen, false);
}

void MdCaptureFile::Arm(const QString &path, bool mayOverwrite)
{
    Start({m_parts.files.System().AbsolutePath(path), mayOverwrite}, true);
}

/// Asks until the file may be written; nothing if the user cancels.
std::optional<MdCaptureFile::Chosen> MdCaptureFile::Ask()
{
    const QString &remembered = m_parts.settings.Folder;
    FileDialogRequest request = {.purpose = FileDialogRequest::Purpose::Save,
                                 .dialog = QStringLiteral("dlgCaptureFile"),
                                 .title = QStringLiteral("Record Capture"),
                                 .filter = QStringLiteral("Captures | *.pcapng"),
                                 .folder =
                                     remembered.isEmpty() ? MdGetSpecialFolders() : remembered,
                                 .flags = HideReadOnly | PathMustExist | Explorer | LongNames};
    while (!m_parts.run.QuitRequested) {
        const QString path = m_parts.prompts.ChooseFile(request);
        if (path.isEmpty())
            break;
        const bool exists = m_parts.files.System().Exists(path);
        if (!exists || m_parts.prompts.ShowMessage(ReplaceQuestion(path)) == PromptAnswer::Yes)
            return Chosen{path, exists};
        request.folder = PathParts::Folder(path);
        request.name = PathParts::FileName(path);
    }
    return {};
}

void MdCaptureFile::Start(const Chosen &chosen, bool fromCommandLine)
{
    const int number = ++m_last;
    Recording &recording = m_recordings[number];
    recording.path = chosen.path;
    recording.fromCommandLine = fromCommandLine;
    recording.thread = std::make_unique<CaptureThread>(
        std::make_unique<CaptureFile>(m_parts.files, chosen.path, chosen.mayOverwrite,
                                      CallsOf(number)),
        m_parts.program);
    {
        const std::lock_guard guard(m_lock);
        m_thread = recording.thread.get();
        m_threadNumber = number;
        m_begins = m_session.has_value();
        if (m_session)
            m_thread->Begin(*m_session);
    }
    SetCurrent(number);
}

/// What has happened until now is still written.
void MdCaptureFile::Stop()
{
    {
        const std::lock_guard guard(m_lock);
        m_thread = nullptr;
    }
    if (const auto current = m_recordings.find(m_current); current != m_recordings.end())
        current->second.thread->Close();
    SetCurrent(0);
}

void MdCaptureFile::SetCurrent(int number)
{
    m_current = number;
    Q_EMIT Switched(IsOn());
}

/// They come on the thread that writes and are handled on the window's. A thread that has finished
/// keeps nobody waiting as it goes.
CaptureFile::Calls MdCaptureFile::CallsOf(int number)
{
    return {[this, number](Trouble trouble, const Result &result) {
                QMetaObject::invokeMethod(
                    this, [=, this] { TellFailure(number, trouble, result); },
                    Qt::QueuedConnection);
            },
            [this, number] {
                QMetaObject::invokeMethod(
                    this, [=, this] { m_recordings.erase(number); }, Qt::QueuedConnection);
            }};
}

/// Each cause once: a disk that is full tells so with every packet.
void MdCaptureFile::TellFailure(int number, Trouble trouble, const Result &result)
{
    const auto found = m_recordings.find(number);
    if (found == m_recordings.end())
        return;
    Recording &recording = found->second;
    if (trouble != Trouble::NotWritten && number == m_current)
        Stop();
    if (std::exchange(recording.told, result.Cause()) == result.Cause())
        return;
    const bool refused = result.Number() == FileAlreadyThere && recording.fromCommandLine;
    m_parts.prompts.ShowNotice(recording.path,
                               refused ? RefusedMessage(recording.path)
                                       : FailureMessage(trouble, result, recording.path));
}

void MdCaptureFile::Begin(const TrafficSession &session)
{
    const std::lock_guard guard(m_lock);
    m_session.reset();
    m_modem = {};
    m_begins = false;
    if (!session.replay)
        m_session = session;
    if (m_thread)
        m_thread->Begin(session);
}

void MdCaptureFile::Take(const TrafficEvent &event)
{
    const std::lock_guard guard(m_lock);
    if (m_thread && std::exchange(m_begins, false)) {
        for (std::optional<TrafficEvent> &modem : m_modem) {
            if (!modem)
                continue;
            modem->time = event.time;
            m_thread->Take(*modem);
        }
    }
    if (event.kind == TrafficEvent::Kind::ModemLines)
        m_modem[size_t(event.channel)] = event;
    if (m_thread)
        m_thread->Take(event);
}

/// A replay leaves a capture that waits for the ports as it is.
void MdCaptureFile::End()
{
    const std::lock_guard guard(m_lock);
    const bool ended = m_session.has_value();
    m_session.reset();
    if (!m_thread || !ended)
        return;
    std::exchange(m_thread, nullptr)->Close();
    QMetaObject::invokeMethod(
        this,
        [this, number = m_threadNumber] {
            if (m_current == number)
                SetCurrent(0);
        },
        Qt::QueuedConnection);
}

bool MdCaptureFile::WaitUntilWritten()
{
    bool written = true;
    for (const auto &[number, recording] : m_recordings)
        written = recording.thread->WaitUntilWritten(CaptureThread::MostTimeToEnd) && written;
    return written;
}

bool MdCaptureFile::Finish()
{
    Stop();
    if (WaitUntilWritten())
        return true;
    m_parts.prompts.ShowMessage(CriticalMessage(
        QStringLiteral("The disk of the capture does not answer; the end of it is not written")));
    return false;
}
