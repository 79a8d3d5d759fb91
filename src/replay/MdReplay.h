// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "CaptureReplay.h"
#include "TrafficSource.h"

#include <QObject>

#include <memory>
#include <mutex>

class CommunicationLog;
class FileSystem;
class MdCommunication;
class UserPrompts;
struct CommConfiguration;

/// What a replay works with; all of it lives longer than MdReplay.
struct ReplayParts {
    MdCommunication &communication;
    CommConfiguration &comm;
    CommunicationLog &log;
    UserPrompts &prompts;
    FileSystem &files;
    QString &folder; ///< of captures, with trailing separator; empty before the first one
};

/// Replays captures: stands in for the ports while communication runs on one, in the mode that the
/// capture has. What happens is judged, shown and logged as if the lines were there, and nothing
/// is sent. At its end communication is stopped.
class MdReplay final : public QObject, private TrafficSource
{
    Q_OBJECT

  public:
    enum class State { None, Opening, Playing, AtEnd, Stopped };

    explicit MdReplay(const ReplayParts &parts);
    ~MdReplay() override;
    Q_DISABLE_COPY_MOVE(MdReplay)

    /// Whether the file is a capture, by its content.
    bool Knows(const QString &path) const;

    /// Lets the user choose a capture, and starts.
    void Choose();
    /// Starts as soon as the capture is open; what is wrong with it is told. While communication
    /// runs, that is told and nothing happens.
    void Start(const QString &path);
    /// From the beginning.
    void Again() { Start(m_path); }
    /// Ends it, wherever it stands.
    void Stop();

    State Stands() const { return m_state; }
    /// Of the file, for one line of text.
    QString Name() const;
    CaptureReplay::Position Where() const;
    /// Of the file, in bytes.
    qint64 Size() const;

    ReplaySpeed Speed() const { return m_speed; }
    void SetSpeed(ReplaySpeed speed);
    void SetPaused(bool paused);
    /// Does not wait for what comes next.
    void Skip();

  Q_SIGNALS:
    /// It stands otherwise now.
    void Changed();

  private:
    bool Open() override;
    TrafficSession Session() const override;
    void Begin() override;
    void End() override;
    bool Close() override;
    void Resume() override;
    Result Send(const QByteArray &bytes, const QByteArray &name) override;
    QString Status() const override;

    void Run(std::unique_ptr<InputDevice> file);
    void OnPhase(const std::shared_ptr<CaptureReplay> &replay);
    void Enter(State state);
    void TellFault(CaptureReplay::Phase phase, const QString &fault);
    void TellBusy();
    void Drop();

    const ReplayParts m_parts;
    State m_state = State::None;
    QString m_path;
    ReplaySpeed m_speed = ReplaySpeed::Own;
    bool m_faultTold = false;   ///< of the capture
    bool m_refusalTold = false; ///< that nothing is sent

    mutable std::mutex m_lock; ///< guards what follows, which only the window's thread changes
    std::shared_ptr<CaptureReplay> m_replay; ///< the latest; shared with its thread
};
