// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QMargins>

/// Around what stands in a bar of the traffic window, whose list reaches its edges.
inline constexpr QMargins BarMargins(6, 2, 6, 2);
