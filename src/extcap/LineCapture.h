// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "ExtcapArguments.h"

class UserLines;

/// Listens to the lines that are asked for, and writes what happens into the named pipe, until its
/// reader goes, a device goes for good, or the program is told to end; only the second is a
/// failure. Needs an application, whose events it handles meanwhile.
Result CaptureLines(const ExtcapArguments &arguments, const UserLines &user);

/// Why a capture filter is refused.
QString NoFilters();
