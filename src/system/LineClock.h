// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Line.h"

/// Reads both clocks of the machine.
LineTime LineNow();

/// Nanoseconds since the machine started, its sleep included.
qint64 MonotonicNow();
