// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ClOutputFile.h"

#include <algorithm>
#include <utility>

namespace
{

constexpr qsizetype BufferSize = 64 * 1024;
/// What is kept for better times. Texts beyond that are lost, each of them whole.
constexpr qsizetype MaxHeldBack = 1024 * 1024;
constexpr int ZoneWidth = 14;

/// Place of the last CR or LF, -1 if there is none.
qsizetype LastLineEnd(QByteArrayView text)
{
    return std::max(text.lastIndexOf('\n'), text.lastIndexOf('\r'));
}

} // namespace

Result ClOutputFile::OpenFile(const QString &path)
{
    return Open(path, &FileSystem::Create, false);
}

Result ClOutputFile::OpenForReplacing(const QString &path)
{
    return Open(path, &FileSystem::CreateBeside, true);
}

Result ClOutputFile::OpenForUpdate(const QString &path)
{
    return Open(path, &FileSystem::CreateForUpdate, true);
}

Result ClOutputFile::Open(const QString &path, Make make, bool replacing)
{
    CloseFile();
    m_state = {};
    m_written = 0;
    m_column = 0;
    m_held = m_files.Hold(path);
    if (m_held.isEmpty())
        return m_state = OpenFiles::InUse();
    auto created = (m_files.System().*make)(path);
    m_device = std::move(created.device);
    m_replacing = replacing;
    m_state = created.result;
    if (m_state.Failed())
        Release();
    return m_state;
}

bool ClOutputFile::WriteInFile(QByteArrayView text)
{
    const qsizetype lineEnd = LastLineEnd(text);
    m_column = lineEnd < 0 ? m_column + text.size() : text.size() - lineEnd - 1;
    return WritePiece(text);
}

bool ClOutputFile::WritePiece(QByteArrayView text)
{
    if (!IsOpen())
        return false;
    m_written += text.size();
    if (m_buffer.isEmpty() && text.size() >= BufferSize) {
        m_state = HandOn(text);
        m_buffer += text;
        return true;
    }
    const bool kept = KeepForLater(text);
    if (m_state.Failed() || m_buffer.size() >= BufferSize)
        Flush().Ignore(); // it stays in State
    return kept;
}

void ClOutputFile::WriteTabInFile(qint16 count)
{
    if (count < 1)
        return;
    const qint64 firstBlanks = ZoneWidth - m_column % ZoneWidth;
    WriteInFile(QByteArray(firstBlanks + qint64(ZoneWidth) * (count - 1), ' '));
}

void ClOutputFile::NextLine()
{
    WriteInFile("\r\n");
}

bool ClOutputFile::KeepForLater(QByteArrayView text)
{
    if (m_buffer.size() + text.size() > MaxHeldBack && Flush().Failed())
        return false;
    m_buffer += text;
    return true;
}

Result ClOutputFile::Flush()
{
    if (IsOpen() && !m_buffer.isEmpty())
        m_state = WriteHeld();
    return m_state;
}

Result ClOutputFile::WriteHeld()
{
    QByteArrayView left = m_buffer;
    Result written = HandOn(left);
    m_buffer.remove(0, m_buffer.size() - left.size());
    return written;
}

/// What the system does not take is left of the text.
Result ClOutputFile::HandOn(QByteArrayView &text)
{
    Result written;
    while (!written.Failed() && !text.isEmpty()) {
        auto taken = m_device->Write(text);
        text = text.sliced(taken.count);
        written = std::move(taken.result);
        if (!written.Failed() && taken.count <= 0)
            written = Failure{QStringLiteral("The system takes no more bytes")};
    }
    return written;
}

Result ClOutputFile::Commit()
{
    if (!IsOpen() || !m_replacing)
        return Failure{QStringLiteral("The file is not open for replacing")};
    m_state = FinishReplacing();
    Release();
    return m_state;
}

Result ClOutputFile::FinishReplacing()
{
    if (Result written = WriteHeld(); written.Failed())
        return written;
    if (Result synced = m_device->Sync(); synced.Failed())
        return synced;
    if (m_device->Size() != m_written)
        return Failure{QStringLiteral("The file does not hold all that was written")};
    return m_device->TakePlace();
}

void ClOutputFile::CloseFile()
{
    if (!IsOpen())
        return;
    if (!m_replacing && !Flush().Failed())
        m_state = m_device->Check();
    Release();
}

void ClOutputFile::Release()
{
    m_device.reset();
    m_buffer.clear();
    m_files.Release(std::exchange(m_held, {}));
}
