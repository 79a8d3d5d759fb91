// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

/// How far the program's run has come. The main loop ends it; whoever waits for the user asks it
/// whether waiting still makes sense.
struct RunState {
    bool QuitRequested = false; ///< the main window is really going away
};
