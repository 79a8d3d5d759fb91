// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <thread>

/// What the toolkit does on the way to the first window, begun early on threads of their own, so
/// that it need not be waited for. Without it the toolkit does the same a little later. The threads
/// must have ended before the toolkit does, which gives back what they fetch.
namespace HeadStart
{

/// Reads which fonts there are. To be called before the toolkit starts; sets the user's locale.
[[nodiscard]] std::jthread Fonts();

/// Connects to the session's bus, which is asked for assistive technologies. To be called as soon
/// as the toolkit has started.
[[nodiscard]] std::jthread SessionBus();

/// Loads the faces that the first window shows. To be called in between: the window would soon wait
/// for the bus, which takes its time where there is none yet.
void Faces();

} // namespace HeadStart
