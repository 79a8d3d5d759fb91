// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Result.h"

#include <memory>

class HelpFile;

struct LoadedHelp {
    std::unique_ptr<HelpFile> file; ///< not opened yet; null after a failure
    Result state;
};

/// A help file of the module beside the program, which stays loaded from then on.
LoadedHelp LoadHelpFile();
