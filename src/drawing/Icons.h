// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QIcon>

/// The program's own icons, which are built in.
namespace Icons
{

/// The icon of that name: a drawing under drawing/icons, or "about", the program's own for the
/// about box.
QIcon Named(const char *name);

} // namespace Icons
