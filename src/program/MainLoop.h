// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

class CommunicationViews;
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

    MainLoop(const RunState &run, const MdCommunication &communication, CommunicationViews &views)
        : m_run(run), m_communication(communication), m_views(views)
    {
    }

    /// Returns when QuitRequested is set.
    void Run();
    /// One pass without its pause; returns the pause that is due, in ms.
    int Pass();

  private:
    const RunState &m_run;
    const MdCommunication &m_communication;
    CommunicationViews &m_views;
};
