// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Result.h"

#include <QList>
#include <QString>

#include <optional>

/// The per-user settings store: texts under section and key. Writes take effect at Flush.
class SettingsStore
{
  public:
    virtual ~SettingsStore() = default;

    /// Empty if the store holds no such key.
    virtual std::optional<QString> Read(const QString &section, const QString &key) const = 0;

    struct Entry {
        QString key;
        QString text;
    };
    /// All that the section holds, in the store's own order.
    virtual QList<Entry> ReadSection(const QString &section) const = 0;

    virtual void Write(const QString &section, const QString &key, const QString &text) = 0;

    /// Puts what was written in its place. The cause of a failure names the store; what was written
    /// then waits for the next time.
    virtual Result Flush() = 0;

    /// Where the store is, for messages: its file.
    virtual QString Place() const = 0;
};
