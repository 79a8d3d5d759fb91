// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

/// How the system shares a processor out among ordinary threads: by turns, whose length a thread
/// may choose without any permission. One that was waiting for something and has shorter turns is
/// put in front of what is running; with longer ones it lets such a thread go first. All get the
/// same time in the end. Of the calling thread, and of those that it starts; false on a system that
/// is too old.
namespace ThreadTurns
{

/// For what others wait for.
bool TakeShort();
/// For what takes its time, such as a window that paints: the kernel's own workers, which hand over
/// what a line receives, would otherwise wait behind it, a millisecond and more.
bool TakeLong();
/// As the system gives them.
bool TakeUsual();

} // namespace ThreadTurns
