// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

class MdCommunication;
struct RunState;

/// The program's beat. Each pass moves the staged text into the views while communication runs
/// and then pauses; a pause lets window and port events come at once. While nothing happens on the
/// lines it rests, and goes on as soon as something does.
class MainLoop
{
  public:
    /// Pauses in ms. A rest looks as often as a loop that is stopped whether it is to go on.
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
    bool Rest();

    const RunState &m_run;
    MdCommunication &m_communication;
};
