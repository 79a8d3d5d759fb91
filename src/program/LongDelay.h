// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <chrono>
#include <functional>

class QObject;

/// Calls the function once when so much time has passed, unless the context has gone by then. A
/// timer of the toolkit alone would end after 24.8 days.
void CallAfter(std::chrono::milliseconds delay, QObject *context,
               const std::function<void()> &call);
