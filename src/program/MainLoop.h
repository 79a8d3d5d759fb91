// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

class MdCommunication;
struct RunState;

/// The program's beat. Each pass moves the staged text into the views while communication runs
/// and then pauses; a pause lets window and port events come at once.
class MainLoop
{
  public:
    /// Pauses in ms.
    static constexpr int RunningPause = 10;
    static constexpr int StoppedPause = 100;

    MainLoop(const RunState &run, MdCommunication &communication)
        : m_run(run), m_communication(communication)
    {
    }

    /// Returns when QuitRequested is set.
    void Run();
    /// One pass without its pause; returns the pause that is due, in ms.
    int Pass();

  private:
    const RunState &m_run;
    MdCommunication &m_communication;
};
