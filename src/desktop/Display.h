// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Result.h"

#include <QStringList>

/// Fails if no window can be shown, as far as that is known; the cause is a sentence for the user.
/// To be asked before the toolkit starts, which would end the program.
Result CheckDisplay();

/// Whether the user chooses the toolkit's platform on the command line.
bool ChoosesPlatform(const QStringList &arguments);

/// Whether the toolkit will come up on a platform whose windows can be seen; false if the user
/// chooses it on the command line.
bool WillBeSeen(const QStringList &arguments);
