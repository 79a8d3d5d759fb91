// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "SystemRegistry.h"

#include <QStringList>

class FileSystem;

/// A registry in text files, for systems that have none; docs/registry.md describes them. What is
/// damaged or missing in a file counts as not there.
class TextRegistry final : public SystemRegistry
{
  public:
    /// The first file that holds a value decides. The file system lives longer than this object.
    TextRegistry(FileSystem &files, const QStringList &paths) : m_files(files), m_paths(paths) {}

    std::optional<RegistryValue> Read(const QString &root, const QString &key,
                                      const QString &name) override;

  private:
    FileSystem &m_files;
    QStringList m_paths;
};
