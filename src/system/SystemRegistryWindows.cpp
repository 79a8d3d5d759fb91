// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SystemRegistry.h"

#include <QSettings>
#include <QtEndian>

namespace
{

class WindowsRegistry final : public SystemRegistry
{
  public:
    std::optional<RegistryValue> Read(const QString &root, const QString &key,
                                      const QString &name) override
    {
        const QSettings values(root + u'\\' + key, QSettings::NativeFormat);
        const QVariant value = values.value(name);
        if (!value.isValid())
            return std::nullopt;
        if (value.typeId() == QMetaType::QString)
            return RegistryValue{RegistryValue::Type::Text, value.toString().toUtf8()};
        if (value.typeId() != QMetaType::Int)
            return RegistryValue{};
        QByteArray bytes(4, Qt::Uninitialized);
        qToLittleEndian(value.toInt(), bytes.data());
        return RegistryValue{RegistryValue::Type::Number, bytes};
    }
};

} // namespace

std::unique_ptr<SystemRegistry> MakeSystemRegistry()
{
    return std::make_unique<WindowsRegistry>();
}
