// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "FieldReader.h"
#include "OpenFiles.h"

/// One file that is being read, field by field. It is taken in whole when it is opened, and held
/// until it is closed or dropped.
class ClInputFile
{
  public:
    /// Larger files are refused.
    static constexpr qint64 MaxSize = 64 * 1024 * 1024;

    explicit ClInputFile(OpenFiles &files) : m_files(files) {}
    ~ClInputFile() { CloseFile(); }
    Q_DISABLE_COPY_MOVE(ClInputFile)

    Result OpenFile(const QString &path);
    void CloseFile();

    /// See FieldReader.
    QByteArray ReadInfo() { return m_fields.ReadInfo(); }
    bool EndOfFile() const { return m_fields.EndOfFile(); }
    FieldReader &Fields() { return m_fields; }

  private:
    OpenFiles &m_files;
    QString m_held; ///< name in m_files
    FieldReader m_fields;
};
