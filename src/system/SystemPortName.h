// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// What this system itself calls the COM number; empty if it has no such number.
QString SystemPortName(int comNumber);
