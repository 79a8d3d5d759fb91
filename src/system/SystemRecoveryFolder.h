// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "RecoveryFolder.h"

/// A folder of its own among the states of the user's programs; see PrivateFolder.
class SystemRecoveryFolder final : public RecoveryFolder
{
  public:
    /// The folder is made when something is first kept.
    explicit SystemRecoveryFolder(const QString &path = UsualPath()) : m_path(path) {}

    /// "serimonde" among the states that programs keep for this user.
    static QString UsualPath();

    Kept Keep(QByteArrayView content) override;
    QStringList Names() const override;
    std::unique_ptr<File> Take(const QString &name) override;

  private:
    QString m_path;
};
