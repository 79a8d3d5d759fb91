// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

#include <memory>
#include <optional>

/// A value as the registry holds it.
struct RegistryValue {
    enum class Type { Text, Number, Other };
    Type type = Type::Other;
    QByteArray bytes; ///< a text in UTF-8, a 32-bit number with its lowest byte first

    bool operator==(const RegistryValue &) const = default;
};

/// The values that all programs of the computer share, by root, key and name. The parts of a key
/// are separated by backslashes on every system; upper and lower case are alike.
class SystemRegistry
{
  public:
    virtual ~SystemRegistry() = default;

    /// Empty if there is no such key or value, or if it may not be read.
    virtual std::optional<RegistryValue> Read(const QString &root, const QString &key,
                                              const QString &name) = 0;
};

/// The registry of this system.
std::unique_ptr<SystemRegistry> MakeSystemRegistry();
