// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "MdReplay.h"

#include "CommConfiguration.h"
#include "CommunicationLog.h"
#include "FileName.h"
#include "FileSystem.h"
#include "MdCommunication.h"
#include "MdGetSpecialFolders.h"
#include "PathParts.h"
#include "PlainText.h"
#include "UserPrompts.h"

#include <chrono>
#include <thread>
#include <utility>

namespace
{

qint64 SteadyNow()
{
    using namespace std::chrono;
    return duration_cast<nanoseconds>(steady_clock::now().time_since_epoch()).count();
}

} // namespace

MdReplay::MdReplay(const ReplayParts &parts) : m_parts(parts) {}

MdReplay::~MdReplay()
{
    Stop();
}

bool MdReplay::Knows(const QString &path) const
{
    const FileSystem::Opened opened = m_parts.files.Open(m_parts.files.AbsolutePath(path));
    return opened.device && CaptureReader::Knows(*opened.device);
}

void MdReplay::Choose()
{
    const QString &folder = m_parts.folder;
    const QString path = m_parts.prompts.ChooseFile(
        {.purpose = FileDialogRequest::Purpose::Open,
         .dialog = QStringLiteral("dlgReplayCapture"),
         .title = QStringLiteral("Replay Capture"),
         .filter = QStringLiteral("Captures | *.pcapng *.pcap"),
         .folder = folder.isEmpty() || !FileName::IsText(folder) ? MdGetSpecialFolders() : folder});
    if (path.isEmpty())
        return;
    m_parts.folder = PathParts::Folder(path);
    Start(path);
}

void MdReplay::Start(const QString &path)
{
    m_path = m_parts.files.AbsolutePath(path);
    if (m_parts.communication.Running()) {
        TellBusy();
        return;
    }
    Drop();
    FileSystem::Opened opened = m_parts.files.Open(m_path);
    if (opened.device)
        Run(std::move(opened.device));
    else
        m_parts.prompts.ShowNotice(
            m_path, CriticalMessage(QStringLiteral("The capture %1 cannot be opened. %2")
                                        .arg(Name(), opened.result.Cause())));
}

/// The thread is left to itself once it is stopped: what it may still wait for is a disk.
void MdReplay::Run(std::unique_ptr<InputDevice> file)
{
    const auto replay = std::make_shared<CaptureReplay>(std::move(file), SteadyNow);
    replay->Tell([this, weak = std::weak_ptr(replay)] {
        QMetaObject::invokeMethod(
            this,
            [this, weak] {
                if (const auto locked = weak.lock())
                    OnPhase(locked);
            },
            Qt::QueuedConnection);
    });
    replay->SetSpeed(m_speed);
    {
        const std::lock_guard guard(m_lock);
        m_replay = replay;
    }
    m_faultTold = m_refusalTold = false;
    Enter(State::Opening);
    std::thread([replay] { replay->Run(); }).detach();
}

void MdReplay::OnPhase(const std::shared_ptr<CaptureReplay> &replay)
{
    if (replay != m_replay)
        return;
    const CaptureReplay::Phase phase = replay->State();
    if (phase == CaptureReplay::Phase::Refused) {
        Drop();
    } else if (m_state == State::Opening && m_parts.communication.Running()) {
        Drop();
        TellBusy();
        return;
    } else if (m_state == State::Opening) {
        m_parts.communication.Start(*this);
    }
    if (phase == CaptureReplay::Phase::Over && m_state == State::Playing) {
        m_parts.communication.ClosePorts();
        Enter(State::AtEnd);
    }
    if (const QString fault = replay->Fault();
        !fault.isEmpty() && !std::exchange(m_faultTold, true))
        TellFault(phase, fault);
}

void MdReplay::TellFault(CaptureReplay::Phase phase, const QString &fault)
{
    m_parts.prompts.ShowNotice(
        m_path,
        phase == CaptureReplay::Phase::Refused
            ? CriticalMessage(QStringLiteral("%1 cannot be replayed. %2").arg(Name(), fault))
            : ExclamationMessage(QStringLiteral("%1 was replayed as far as it can be read. %2.")
                                     .arg(Name(), fault)));
}

void MdReplay::TellBusy()
{
    m_parts.prompts.ShowNotice(
        m_path, ExclamationMessage(
                    QStringLiteral("%1 is not replayed, because communication runs.").arg(Name())));
}

void MdReplay::Stop()
{
    if (m_state == State::Playing)
        m_parts.communication.ClosePorts();
    else
        Drop();
}

/// While it is not played.
void MdReplay::Drop()
{
    if (m_replay)
        m_replay->Stop();
    if (m_state == State::Opening)
        Enter(State::Stopped);
}

void MdReplay::Enter(State state)
{
    m_state = state;
    Q_EMIT Changed();
}

QString MdReplay::Name() const
{
    return PlainText(FileName::Shown(PathParts::FileName(m_path)));
}

CaptureReplay::Position MdReplay::Where() const
{
    return m_replay ? m_replay->Where() : CaptureReplay::Position();
}

qint64 MdReplay::Size() const
{
    return m_replay ? m_replay->Size() : 0;
}

void MdReplay::SetSpeed(ReplaySpeed speed)
{
    m_speed = speed;
    if (m_replay)
        m_replay->SetSpeed(speed);
}

void MdReplay::SetPaused(bool paused)
{
    if (m_replay)
        m_replay->SetPaused(paused);
}

void MdReplay::Skip()
{
    if (m_replay)
        m_replay->Skip();
}

bool MdReplay::Open()
{
    m_parts.comm.replay =
        m_replay->Ports().size() > 1 ? CommMode::MonitorReceiveOnly : CommMode::SendReceive;
    return true;
}

TrafficSession MdReplay::Session() const
{
    return {m_replay->Ports(), true};
}

void MdReplay::Begin()
{
    m_replay->Begin(m_parts.communication.Board(), m_parts.communication.Stream(),
                    [&log = m_parts.log] { return log.HasRoom(); });
    Enter(State::Playing);
}

void MdReplay::End()
{
    m_replay->Stop();
}

bool MdReplay::Close()
{
    m_parts.comm.replay.reset();
    Enter(State::Stopped);
    return true;
}

void MdReplay::Resume()
{
    std::shared_ptr<CaptureReplay> replay;
    {
        const std::lock_guard guard(m_lock);
        replay = m_replay;
    }
    replay->Resume();
}

Result MdReplay::Send(const QByteArray &, const QByteArray &)
{
    const QString cause = QStringLiteral("Nothing is sent while a capture is replayed.");
    if (!std::exchange(m_refusalTold, true))
        m_parts.prompts.ShowNotice(QStringLiteral("replay"), ExclamationMessage(cause));
    return Failure{cause};
}

QString MdReplay::Status() const
{
    return QStringLiteral("Replaying ") + Name();
}
