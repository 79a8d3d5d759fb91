// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/SettingsStore.h"

#include <QMap>
#include <QString>

#include <utility>

/// A settings store in memory, filled by the test.
class ScriptedSettingsStore final : public SettingsStore
{
  public:
    std::optional<QString> Read(const QString &section, const QString &key) const override
    {
        const auto entry = m_texts.constFind({section, key});
        return entry == m_texts.constEnd() ? std::nullopt : std::optional(*entry);
    }
    QList<Entry> ReadSection(const QString &section) const override
    {
        QList<Entry> entries;
        for (auto text = m_texts.cbegin(); text != m_texts.cend(); ++text)
            if (text.key().first == section)
                entries.append({text.key().second, *text});
        return entries;
    }
    void Write(const QString &section, const QString &key, const QString &text) override
    {
        m_texts[{section, key}] = text;
    }
    QString Flush() override { return {}; }

  private:
    QMap<std::pair<QString, QString>, QString> m_texts;
};
