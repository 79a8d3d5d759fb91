// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "CommunicationLog.h"
#include "LogSession.h"
#include "LogSettings.h"
#include "LogWriter.h"
#include "UserPrompts.h"

#include <QObject>

#include <functional>
#include <optional>

struct RunState;

/// What the log works with; all of it lives longer than MdLogFile.
struct LogParts {
    LogSettings &settings;
    UserPrompts &prompts;
    OpenFiles &files;
    const RunState &run;
    std::function<bool()> portsOpen; ///< whether communication runs
};

/// The communication log: one text file for each representation that the user wants, written
/// while the ports are open, by a thread of its own. What is written is with the operating system
/// soon after it happened. A write that fails is told and ends nothing.
class MdLogFile final : public QObject, public CommunicationLog
{
    Q_OBJECT

  public:
    /// Values of LogState.
    static constexpr int StateOff = 0;
    static constexpr int StateLogging = 2;

    explicit MdLogFile(const LogParts &parts);

    int LogState() const { return m_logState; }

    /// Asks the user for a file and starts. Nothing happens while the log runs or the ports are
    /// closed.
    void StartLog();

    /// Starts by itself as soon as the ports are open, once, as if the user had chosen this path.
    /// If a file of the log exists then, this is refused unless it may be overwritten.
    void Arm(const QString &path, bool mayOverwrite);

    void Take(const TrafficEvent &event) override { m_writer.Take(event); }
    bool HasRoom() const override { return m_writer.HasRoom(); }
    void UpdateLogCommands() override;
    /// What has happened until now is still written; then the files are closed, and the user is
    /// told if one of them could not take the rest of its text.
    void StopLog() override;

    /// Called when lines that were held back may be read again, on the writer's thread.
    std::function<void()> RoomAgain = [] {};

    /// Waits until all that has happened is with the system; false if that takes too long.
    bool WaitUntilWritten() { return m_writer.WaitUntilWritten(LogWriter::MostTimeToEnd); }
    /// At the end of the program: waits for the disk, for so long as LogWriter says, and tells the
    /// user what is not written by then. False if the disk hangs.
    bool Finish();

  Q_SIGNALS:
    /// Whether logging can be started and stopped now.
    void CommandsChanged(bool canStart, bool canStop);

  private:
    struct ArmedStart {
        QString path;
        bool mayOverwrite;
    };

    bool CanStart() const;
    std::optional<LogNames> AskForNames();
    void StartArmed(const ArmedStart &start);
    QStringList ExistingFiles(const LogNames &names) const;
    bool OpenOrTell(const LogNames &names);
    /// What to tell the user if that fails.
    std::optional<MessagePrompt> Open(const LogNames &names);
    void TellOfFailedWrite(Representation form, const QString &path, const Result &result);
    void TellOfFailedClose(const LogSession::Closing &closing);

    LogParts m_parts;
    LogNames m_names; ///< of the files of the latest log
    int m_logState = StateOff;
    std::optional<ArmedStart> m_armed;
    LogWriter m_writer;
};
