// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QIcon>

/// The program's own icons, which are built in.
namespace Icons
{

/// The icon of that name; every drawing under drawing/icons is one.
QIcon Named(const char *name);

} // namespace Icons
