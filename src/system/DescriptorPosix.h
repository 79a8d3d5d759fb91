// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "FileSystem.h"

#include <QByteArray>

#include <memory>
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

/// Has this thread told of a broken pipe by errno alone; the system would end the program.
void BlockBrokenPipes();

/// What errno says.
Failure SystemFailure();

/// Locks the file for this program until its descriptor is closed, however the program ends.
/// False, with errno set, if another program has it or the system has no locks.
bool Lock(const Descriptor &file);

/// Whether the name in the folder still is the file's, which it is not once the file has been
/// renamed, removed or replaced. The folder may be AT_FDCWD.
bool IsNameOf(int folder, const QByteArray &name, const Descriptor &file);

/// A regular file, for reading piece by piece.
std::unique_ptr<InputDevice> InputFrom(Descriptor file);

/// Everything from the file's start to its end; fails if that is more than limit bytes.
FileSystem::Content ReadAll(const Descriptor &file, qint64 limit);
