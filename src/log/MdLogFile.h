// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "ClOutputFile.h"
#include "CommunicationLog.h"
#include "LogNames.h"
#include "LogSettings.h"

#include <QObject>

#include <functional>
#include <optional>

class UserPrompts;
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
/// while the ports are open. What is written is with the operating system as soon as the events
/// that brought it have been handled. A write that fails is told and ends nothing.
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

    void WriteText(Representation representation, const QByteArray &text) override;
    void UpdateLogCommands() override;
    /// Closes all files; tells if one could not take the rest of its text.
    void StopLog() override;

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
    bool Open(const LogNames &names);
    struct Closing {
        Result result;      ///< the first failure
        QStringList failed; ///< paths of all files that failed
    };
    Closing Close();
    void FlushBurst();
    void TellOfFailedWrite(Representation form);
    ClOutputFile &FileOf(Representation r) { return m_outputs[size_t(r)]; }

    LogParts m_parts;
    std::array<ClOutputFile, RepresentationCount> m_outputs; ///< by representation
    LogNames m_names;                                        ///< of the files that are open
    int m_logState = StateOff;
    bool m_flushUnderWay = false;
    std::optional<ArmedStart> m_armed;
};
