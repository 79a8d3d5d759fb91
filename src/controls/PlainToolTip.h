// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// What a tool tip is given to show a text of a stranger as it is: by itself it would take what
/// looks like tags for rich text.
QString PlainToolTip(QStringView text);
