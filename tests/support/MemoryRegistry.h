// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "SystemRegistry.h"

#include <QMap>

/// A registry of the test's own. Values are written "Root\Key\Name".
class MemoryRegistry final : public SystemRegistry
{
  public:
    QMap<QString, RegistryValue> values;

    std::optional<RegistryValue> Read(const QString &root, const QString &key,
                                      const QString &name) override
    {
        const auto found = values.find(root + u'\\' + key + u'\\' + name);
        return found == values.end() ? std::nullopt : std::optional(*found);
    }
};
