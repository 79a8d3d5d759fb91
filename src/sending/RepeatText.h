// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

struct RepeatPlan;
struct RepeatState;

/// "every 10 ms"
QString RepeatText(const RepeatPlan &plan);
/// "every 10 ms: 37 of 1,000 sent, 2 left out"; what there is none of is not told.
QString RepeatText(const RepeatState &state);
