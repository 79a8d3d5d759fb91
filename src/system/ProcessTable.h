// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "PortFacts.h"

/// The processes of this machine, as the system tells of them in a folder. Every system brings its
/// own file for this header.
class ProcessTable
{
  public:
    explicit ProcessTable(const QString &folder = QStringLiteral("/proc")) : m_folder(folder) {}

    /// A process by its number, with its name where the system tells it.
    PortUser Named(qint64 process) const;

    struct Users {
        QList<PortUser> users{};    ///< have the device open
        QList<PortUser> otherEnd{}; ///< have the other end of the pseudo-terminal
        int hidden = 0;             ///< processes into which this user may not look
    };
    /// By the one name of the device.
    Users UsersOf(const QString &device) const;

    /// A program that runs; nothing if it does not.
    std::optional<PortUser> Find(const QString &program) const;
    /// A program that asks for a login on the terminal, which has a name such as "ttyS0" and a
    /// number as processes tell it.
    std::optional<PortUser> LoginOn(const QString &terminal, quint64 number) const;

    /// The words that the kernel was started with.
    QStringList KernelWords() const;

  private:
    QByteArray Told(const QString &what) const;
    QStringList Processes() const;

    QString m_folder;
};
