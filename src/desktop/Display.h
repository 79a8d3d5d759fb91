// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Result.h"

/// Fails if no window can be shown, as far as that is known; the cause is a sentence for the user.
/// To be asked before the toolkit starts, which would end the program.
Result CheckDisplay();
