// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QFont>
#include <QStringList>

/// The font of all views.
namespace FixedPitchFont
{

/// The best of the installed families, empty if none of the wanted ones is there.
QString ChooseFamily(const QStringList &families);

/// The chosen family at the size of the views; else the system's own fixed-pitch font.
QFont ViewFont();

} // namespace FixedPitchFont
