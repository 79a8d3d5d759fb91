// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "SettingsStore.h"

#include <QMap>

#include <functional>

/// A settings store that forgets. Keys are written "Section/Key".
class MemoryStore final : public SettingsStore
{
  public:
    QMap<QString, QString> texts;
    int flushes = 0;
    Result flushed; ///< how every flush goes
    std::function<void()> whileFlushing = [] {};

    std::optional<QString> Read(const QString &section, const QString &key) const override
    {
        const auto found = texts.find(section + u'/' + key);
        return found == texts.end() ? std::nullopt : std::optional(*found);
    }
    /// By key.
    QList<Entry> ReadSection(const QString &section) const override
    {
        const QString prefix = section + u'/';
        QList<Entry> entries;
        for (auto text = texts.cbegin(); text != texts.cend(); ++text)
            if (text.key().startsWith(prefix))
                entries.append({text.key().sliced(prefix.size()), *text});
        return entries;
    }
    void Write(const QString &section, const QString &key, const QString &text) override
    {
        texts[section + u'/' + key] = text;
    }
    Result Flush() override
    {
        ++flushes;
        whileFlushing();
        return flushed;
    }
    QString Place() const override { return QStringLiteral("memory.conf"); }
};
