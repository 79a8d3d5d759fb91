// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <future>
#include <thread>

/// What the toolkit does on the way to the first window, begun early on threads of their own, so
/// that it need not be waited for. Without it the toolkit does the same a little later. The threads
/// must have ended before the toolkit does, which gives back what they fetch.
namespace HeadStart
{

/// Reads which fonts there are; ready when that is done. To be called before the toolkit starts;
/// sets the user's locale.
[[nodiscard]] std::shared_future<void> Fonts();

/// Connects to the session's bus, which is asked for assistive technologies on the platforms that
/// show windows: where there is no bus yet, one is started, and that takes as long as the toolkit
/// itself. It begins behind something else, so that no more than one processor is taken.
[[nodiscard]] std::jthread SessionBus(const std::shared_future<void> &behind);

/// Loads the faces that the first window shows. To be called when the toolkit has started: the
/// window would soon wait for the bus.
void Faces();

} // namespace HeadStart
