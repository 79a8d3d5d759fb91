// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ClInputFile.h"

#include <utility>

Result ClInputFile::OpenFile(const QString &path)
{
    CloseFile();
    m_held = m_files.Hold(path);
    if (m_held.isEmpty())
        return OpenFiles::InUse();
    auto content = m_files.System().Read(path, MaxSize);
    if (content.result.Failed())
        CloseFile();
    else
        m_fields = FieldReader(std::move(content.bytes));
    return content.result;
}

void ClInputFile::CloseFile()
{
    m_files.Release(std::exchange(m_held, {}));
    m_fields = FieldReader();
}
