// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SystemFiles.h"
#include "TextRegistry.h"

#include <QDir>

namespace
{

/// The folders of the computer's own configuration, not the user's.
QStringList ConfigurationFolders()
{
    QStringList folders = qEnvironmentVariable("XDG_CONFIG_DIRS").split(u':', Qt::SkipEmptyParts);
    folders.removeIf([](const QString &folder) { return QDir::isRelativePath(folder); });
    if (folders.isEmpty())
        folders << QStringLiteral("/etc/xdg");
    return folders << QStringLiteral("/etc");
}

class SystemTextRegistry final : public SystemRegistry
{
  public:
    std::optional<RegistryValue> Read(const QString &root, const QString &key,
                                      const QString &name) override
    {
        QStringList paths;
        for (const QString &folder : ConfigurationFolders())
            paths << folder + QStringLiteral("/serimonde/registry.conf");
        return TextRegistry(m_files, paths).Read(root, key, name);
    }

  private:
    SystemFiles m_files;
};

} // namespace

std::unique_ptr<SystemRegistry> MakeSystemRegistry()
{
    return std::make_unique<SystemTextRegistry>();
}
