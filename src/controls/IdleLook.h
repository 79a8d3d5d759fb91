// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

class QWidget;

/// For a control that has no effect as things stand: it looks disabled, and its tool tip and its
/// description say why. It can be used nevertheless, so that its value can be changed and the
/// keyboard reaches the explanation. An empty text takes all of it back.
void LookIdle(QWidget &control, const QString &why);
