// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "CommSettings.h"
#include "Result.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QString>

#include <array>
#include <thread>
#include <vector>

/// The simulated instrument: real ports without hardware. In Send/Receive mode one instrument
/// that talks and answers; in the monitoring modes a controller and a meter that talk to each
/// other, the controller heard on channel 0, the meter on channel 1.
///
/// Each channel is a pseudo-terminal pair that lives as long as this object. Nothing is said on
/// a channel before its device has been opened; it may be closed and opened again at will. The
/// instruments run in a thread of their own, which the destructor ends at once.
class DemoInstrument
{
  public:
    explicit DemoInstrument(CommMode mode);
    ~DemoInstrument();
    DemoInstrument(const DemoInstrument &) = delete;
    DemoInstrument &operator=(const DemoInstrument &) = delete;

    /// Device to open for channel 0 or 1; empty if the mode has no such channel, or if there is no
    /// instrument.
    QString DevicePath(int channel) const;

    /// Whether the instrument runs.
    const Result &State() const { return m_state; }

  private:
    /// The instruments' end of one pair. Only the path is read outside the thread.
    struct Line {
        int master = -1;
        QString path;
        bool opened = false; ///< somebody listens at the other end
        QByteArray received; ///< a line that is not complete yet
    };

    Result AddLine();
    void CloseAll();
    void Run();
    bool NoticeListeners();
    void StartConversation();
    void SayWhatIsDue();
    void Say(const Line &line, const QByteArray &bytes);
    void Wait(bool somebodyListens);
    int TimeToNextUtterance() const;
    void Hear(Line &line);
    void TakeIn(Line &line, char byte);
    void Answer(const Line &line, const QByteArray &request);

    const CommMode m_mode;
    Result m_state;
    std::vector<Line> m_lines;
    std::array<int, 2> m_stopPipe{-1, -1}; ///< a closed writing end tells the thread to end
    QElapsedTimer m_sinceOpened;
    std::vector<qint64> m_due; ///< for each utterance, milliseconds of m_sinceOpened
    int m_readings = 0;        ///< sent unasked so far
    std::thread m_thread;
};
