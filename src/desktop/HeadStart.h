// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <future>
#include <thread>

/// What the toolkit does on the way to the first window, begun early on a thread of its own, so
/// that it need not be waited for: the connection to the session's bus, which is asked for
/// assistive technologies where windows can be seen, and reading which fonts there are. Without it
/// the toolkit does the same a little later. It must end before the toolkit does, which gives back
/// what it fetches.
class HeadStart
{
  public:
    /// To be made before the toolkit starts; sets the user's locale. Where no bus runs one is
    /// started, which takes as long as the toolkit itself; it then comes behind the fonts.
    HeadStart(bool seen, bool busRuns);

    /// Loads the faces that the first window shows. To be called when the toolkit has started: the
    /// window would soon wait for the bus.
    void LoadFaces();

  private:
    std::future<void> m_fonts;
    std::jthread m_thread;
};
