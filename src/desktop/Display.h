// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// Why no window can be shown, in a sentence for the user; empty if nothing is known to be in
/// the way. To be asked before the toolkit starts, which would end the program.
QString DisplayFault();
