// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "SettingsStore.h"

#include <QSettings>

/// The per-user store of the system, under "Serimonde".
class QtSettingsStore final : public SettingsStore
{
  public:
    QtSettingsStore();

    std::optional<QString> Read(const QString &section, const QString &key) const override;
    QList<Entry> ReadSection(const QString &section) const override;
    void Write(const QString &section, const QString &key, const QString &text) override;
    Result Flush() override;

    /// Whether the store could be read; the cause of a failure names its file.
    Result CheckReading() const;

  private:
    QSettings m_settings;
};
