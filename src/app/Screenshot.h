// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

class OpenFiles;
class QWidget;
class UserPrompts;

/// Writes the widget as it looks now into a PNG file, which it replaces whole or not at all; tells
/// the user if that fails.
void WriteScreenshot(QWidget &widget, const QString &path, OpenFiles &files, UserPrompts &prompts);
