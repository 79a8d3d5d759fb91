// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "DescriptorPosix.h"

#include <QByteArray>

#include <chrono>

/// The one name beside a target under which a new version of it stands until it is finished. Who
/// has the name holds a lock on the file; one that nobody holds was left behind by a program that
/// was killed, and makes room.
namespace UnfinishedFile
{

/// ".NAME.saving"; one too long for that is made of its hash.
QByteArray NameFor(const QByteArray &target);

/// Makes a file of that name, in its folder, and holds it. Waits for a name that is held, as long
/// as patience says.
Descriptor Create(const QByteArray &name, std::chrono::milliseconds patience, Result &result);

/// Gives a file that was opened without a name that name, and holds it; waits likewise.
Result Name(const Descriptor &nameless, const QByteArray &name, std::chrono::milliseconds patience);

/// Removes the file of that name if nobody holds it. A failure if it stays.
Result RemoveUnheld(const QByteArray &name);

} // namespace UnfinishedFile
