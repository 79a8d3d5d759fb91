// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

/// How the views show what they hold.
struct ViewSettings {
    /// Control characters are painted as small pictures in the ASCII view, CR and LF included.
    bool ControlCharacters = true;
};
