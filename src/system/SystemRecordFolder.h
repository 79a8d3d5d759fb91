// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "RecordFolder.h"

/// A folder of its own in the cache of the user's programs; see PrivateFolder.
class SystemRecordFolder final : public RecordFolder
{
  public:
    /// The folder is made with the first segment.
    explicit SystemRecordFolder(const QString &path = UsualPath()) : m_path(path) {}

    static QString UsualPath();

    Made Make(const Name &name, QByteArrayView first) override;
    QList<Segment> Segments() const override;
    std::unique_ptr<File> Take(const Name &name) override;
    FileSystem::Opened Open(const Name &name) const override;
    std::unique_ptr<Turn> TakeTurn() override;
    QString Path() const override { return m_path; }

  private:
    QString m_path;
};
