// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "FileSystem.h"

/// The files of the computer.
class SystemFiles final : public FileSystem
{
  public:
    Created Create(const QString &path) override;
    Created CreateBeside(const QString &path) override;
    Content Read(const QString &path, qint64 limit) override;
    void Remove(const QString &path) override;
    bool Exists(const QString &path) const override;
    QString CanonicalPath(const QString &path) const override;
    QString AbsolutePath(const QString &path) const override;
};
