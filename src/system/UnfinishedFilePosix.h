// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "FileSystem.h"

#include <QByteArray>

#include <chrono>
#include <utility>

#include <fcntl.h>
#include <sys/types.h>

/// A descriptor that is closed when it goes.
class Descriptor
{
  public:
    static constexpr int None = -1;
    static constexpr mode_t NewFileMode = 0666; ///< less what the user's mask takes away

    explicit Descriptor(int number = None) : m_number(number) {}
    /// Opens without waiting for the other end of a pipe and without making a terminal the
    /// program's own; errno tells why it is not open.
    Descriptor(const QByteArray &name, int flags, mode_t mode = NewFileMode);
    Descriptor(Descriptor &&other) noexcept : m_number(std::exchange(other.m_number, None)) {}
    Descriptor &operator=(Descriptor &&other) noexcept
    {
        std::swap(m_number, other.m_number);
        return *this;
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    ~Descriptor();

    bool IsOpen() const { return m_number != None; }
    int Number() const { return m_number; }

  private:
    int m_number;
};

/// What errno says.
Failure SystemFailure();

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
