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
    QString Flush() override;

    /// What keeps the store from being read, naming it and the cause; empty if nothing does.
    QString ReadingFault() const;

  private:
    QSettings m_settings;
};
