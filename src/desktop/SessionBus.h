// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Result.h"

struct SessionBus {
    bool runs = false; ///< and answers; false as well if that is not known
    Result state;      ///< fails if it is there and does not answer
};

/// Asks the session's bus for a word, and waits for it a second at most. The toolkit would wait
/// half a minute, before the first window comes, for a bus that accepts connections and answers
/// nobody. It is then told that there is no bus, and the failure says so; a bus that is not there
/// is none. To be called before the toolkit starts, while there are no other threads.
[[nodiscard]] SessionBus AskSessionBus();
