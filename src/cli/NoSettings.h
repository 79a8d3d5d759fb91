// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "SettingsStore.h"

/// No settings: what a run does is said by its command line alone.
class NoSettings final : public SettingsStore
{
  public:
    std::optional<QString> Read(const QString &, const QString &) const override { return {}; }
    QList<Entry> ReadSection(const QString &) const override { return {}; }
    void Write(const QString &, const QString &, const QString &) override {}
    Result Flush() override { return {}; }
    QString Place() const override { return {}; }
};
