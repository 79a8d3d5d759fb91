// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "FileSystem.h"

/// Bytes under a file name, for a reader that takes nothing else. No disk has a part in it.
class MemoryFile
{
  public:
    explicit MemoryFile(const QByteArray &bytes);
    ~MemoryFile();
    Q_DISABLE_COPY_MOVE(MemoryFile)

    /// Valid while this lives. To a reader that remembers files by name and time it is always new.
    QString Path() const;
    /// Whether there is such a file.
    const Result &State() const { return m_state; }

  private:
    int m_descriptor;
    Result m_state;
};
