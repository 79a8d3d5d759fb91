// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "FileSystem.h"

#include <chrono>

/// The files of the computer.
class SystemFiles final : public FileSystem
{
  public:
    /// How long another program that is saving the same file is waited for.
    static constexpr std::chrono::milliseconds UsualPatience{1500};

    explicit SystemFiles(std::chrono::milliseconds patience = UsualPatience) : m_patience(patience)
    {
    }

    Created Create(const QString &path) override;
    Created CreateBeside(const QString &path) override;
    Created CreateForUpdate(const QString &path) override;
    void Tidy(const QString &path) override;
    Result Rename(const QString &from, const QString &to) override;
    Opened Open(const QString &path) const override;
    Content Read(const QString &path, qint64 limit) override;
    void Remove(const QString &path) override;
    bool Exists(const QString &path) const override;
    QString CanonicalPath(const QString &path) const override;
    QString AbsolutePath(const QString &path) const override;

  private:
    std::chrono::milliseconds m_patience;
};
