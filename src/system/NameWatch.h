// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>

/// Waits for names of files to come, to go, or to lead elsewhere. Used by one thread, but for what
/// is said here. Every system brings its own file for this header.
class NameWatch final
{
  public:
    NameWatch();
    ~NameWatch();
    Q_DISABLE_COPY_MOVE(NameWatch)

    /// The names from now on, with the links that they lead through; to be called anew before one
    /// looks at them after a change, since links and folders come and go.
    void Watch(const QStringList &names);

    /// Returns true when something may have happened to the names, false after that time; and not
    /// much oftener than 200 times a second, whatever happens in their folders.
    bool Wait(qint64 milliseconds);

    /// Ends the waiting, this one and all to come. Any thread.
    void End();

  private:
    int m_changes; ///< descriptors
    int m_end;
    bool m_changed = true;
};
