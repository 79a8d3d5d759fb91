// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "CaptureFile.h"
#include "CaptureSettings.h"
#include "UserPrompts.h"

#include <QObject>

#include <array>
#include <map>
#include <mutex>
#include <optional>

struct RunState;

/// What the recording of captures works with; all of it lives longer than MdCaptureFile.
struct CaptureParts {
    CaptureSettings &settings;
    UserPrompts &prompts;
    OpenFiles &files;
    const RunState &run;
    QString program; ///< what makes the captures, such as "Serimonde 1.0"
};

/// The capture that is recorded while it happens, into a file of the user's. It can be asked for
/// while the ports are closed, and then begins when they are opened; it ends when they are closed,
/// when the user says so, or with the program. Neither the lines nor the window wait for the disk.
/// The stream's calls may come on any thread, the rest belongs to the window's.
class MdCaptureFile final : public QObject, public TrafficConsumer
{
    Q_OBJECT

  public:
    explicit MdCaptureFile(const CaptureParts &parts);
    ~MdCaptureFile() override;

    /// Asks the user for a file and records into it; ends what is being recorded.
    void Toggle();
    /// Records into that file from the next opening of the ports on.
    void Arm(const QString &path, bool mayOverwrite);
    /// Whether a capture is recorded, or will be when the ports are open.
    bool IsOn() const { return m_current != 0; }

    void Begin(const TrafficSession &session) override;
    void Take(const TrafficEvent &event) override;
    void End() override;

    /// Waits until all that has happened is with the system; false if that takes too long.
    bool WaitUntilWritten();
    /// At the end of the program: ends the capture, waits for the disk, for so long as
    /// CaptureThread says, and tells the user what is not written by then. False if it hangs.
    bool Finish();

  Q_SIGNALS:
    void Switched(bool on);

  private:
    struct Chosen {
        QString path;
        bool mayOverwrite = false;
    };
    struct Recording {
        QString path;
        bool fromCommandLine = false;
        std::unique_ptr<CaptureThread> thread;
        QString told; ///< what was told of a failure
    };

    std::optional<Chosen> Ask();
    void Start(const Chosen &chosen, bool fromCommandLine);
    void Stop();
    CaptureFile::Calls CallsOf(int number);
    void TellFailure(int number, CaptureFile::Trouble trouble, const Result &result);
    void SetCurrent(int number);

    CaptureParts m_parts;
    std::map<int, Recording> m_recordings; ///< the current one, and those whose file is not closed
    int m_current = 0;                     ///< key in them; 0 while nothing is recorded
    int m_last = 0;

    std::mutex m_lock;                       ///< guards what follows
    CaptureThread *m_thread = nullptr;       ///< of the current one, until the ports are closed
    int m_threadNumber = 0;                  ///< its key
    std::optional<TrafficSession> m_session; ///< of lines, while it runs
    std::array<std::optional<TrafficEvent>, 2> m_modem; ///< by channel, as told last in it
    bool m_begins = false; ///< the current one has to be told what has been told before it
};
