// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <optional>

/// Whether a device is one of USB, by whatever name. Nothing is opened.
bool IsAdapter(const QString &device);

/// For how long the adapter may keep bytes until it hands them over, in ms; empty if it does not
/// tell. The folder is where the system describes its terminals.
std::optional<int> AdapterLatency(const QString &device,
                                  const QString &descriptions = QStringLiteral("/sys/class/tty"));
