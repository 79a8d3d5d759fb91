// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

class QAccessibleInterface;
class QObject;
class QString;

/// What assistive programs learn of this folder's controls, and of windows that are no dialogs,
/// which the toolkit tells as nameless containers.
namespace ControlAccessible
{

/// Factory for QAccessible::installFactory.
QAccessibleInterface *Create(const QString &className, QObject *object);

} // namespace ControlAccessible
