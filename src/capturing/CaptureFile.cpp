// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CaptureFile.h"

#include "CapturePages.h"

#include <utility>

CaptureFile::CaptureFile(OpenFiles &files, QString path, bool mayOverwrite, Calls calls)
    : m_files(files),
      m_path(std::move(path)),
      m_mayOverwrite(mayOverwrite),
      m_calls(std::move(calls))
{
}

Result CaptureFile::BeginSection(QByteArrayView head)
{
    if (!m_device && !m_over.Failed()) {
        m_over = Open();
        if (m_over.Failed())
            m_calls.failed(Trouble::NotStarted, m_over);
    }
    return Append(head);
}

Result CaptureFile::Write(QByteArrayView packets)
{
    return Append(packets);
}

Result CaptureFile::Open()
{
    FileSystem &system = m_files.System();
    m_held = m_files.Hold(m_path);
    if (m_held.isEmpty())
        return OpenFiles::InUse();
    m_isNew = !system.Exists(m_path);
    if (!m_isNew && !m_mayOverwrite) {
        const Result isFile = system.Open(m_path).result;
        return isFile.Failed() ? isFile
                               : Failure{QStringLiteral("It exists already"), FileAlreadyThere};
    }
    FileSystem::Created created = system.Create(m_path);
    m_device = std::move(created.device);
    return created.result;
}

Result CaptureFile::Append(QByteArrayView bytes)
{
    if (m_over.Failed())
        return m_over;
    Result written = m_torn ? m_device->CutTo(m_size) : Result();
    const QByteArray blocks = CapturePages::Fill(bytes, m_size);
    if (!written.Failed())
        written = HandOn(blocks);
    if (!written.Failed()) {
        m_size += blocks.size();
        return {};
    }
    m_torn = m_device->CutTo(m_size).Failed();
    const bool deleted = m_device->Check().Failed();
    if (deleted)
        m_over = written;
    m_calls.failed(deleted ? Trouble::Ended : Trouble::NotWritten, written);
    return written;
}

Result CaptureFile::HandOn(QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const OutputDevice::Taken taken = m_device->Write(bytes);
        if (taken.result.Failed())
            return taken.result;
        if (taken.count <= 0)
            return Failure{QStringLiteral("The system takes no more bytes")};
        bytes = bytes.sliced(taken.count);
    }
    return {};
}

void CaptureFile::Finish()
{
    if (m_device && !m_over.Failed()) {
        if (const Result state = m_device->Check(); state.Failed())
            m_calls.failed(Trouble::Ended, state);
    }
    Close();
    m_calls.finished();
}

/// A file of ours that holds nothing would be taken for a capture.
void CaptureFile::Close()
{
    if (std::exchange(m_device, nullptr) && m_isNew && m_size == 0)
        m_files.System().Remove(m_path);
    if (!m_held.isEmpty())
        m_files.Release(std::exchange(m_held, {}));
}
