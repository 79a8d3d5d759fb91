// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// What the system says of one terminal, in a folder of small files.
namespace TerminalFolder
{

/// The first line of a file; empty if there is none.
QString LineIn(const QString &path);

/// Whether there is a port: terminals without hardware behind them have no device, and a built-in
/// port of type 0 is a place where the driver found no chip.
bool IsPort(const QString &terminal);
bool HasHardware(const QString &terminal);

/// The folder of the USB device that the terminal belongs to; empty if it belongs to none.
QString UsbFolder(const QString &terminal);

/// The driver that serves the hardware; empty if the system does not say.
QString Driver(const QString &terminal);

} // namespace TerminalFolder
