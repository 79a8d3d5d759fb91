// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// Text of a stranger (a name in a project, a comment in a capture, what a device says of itself)
/// as it may be shown in one line, on a terminal too: control characters, line ends and marks that
/// turn the direction of writing are replaced by pictures, and what is no character by U+FFFD.
QString PlainText(QStringView text);

/// The same for a text of several lines.
QString PlainLines(QStringView text);
