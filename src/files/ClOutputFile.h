// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "OpenFiles.h"

#include <memory>

/// One file that is being written, line by line and piece by piece. A write that fails is ignored
/// where it happens; State tells of it afterwards. A file that is dropped while open is closed.
class ClOutputFile
{
  public:
    explicit ClOutputFile(OpenFiles &files) : m_files(files) {}
    ~ClOutputFile() { CloseFile(); }
    Q_DISABLE_COPY_MOVE(ClOutputFile)

    /// Creates or empties the file, which then grows with every Flush.
    Result OpenFile(const QString &path);
    /// Writes beside the file. The old one stays as it is until Commit; without it nothing remains.
    Result OpenForReplacing(const QString &path);
    /// The same for a file that is read meanwhile, changed and written back: until it is closed no
    /// other program does that. Makes the folder if it is missing.
    Result OpenForUpdate(const QString &path);

    bool IsOpen() const { return m_device != nullptr; }

    /// False if the text is lost: the system takes nothing, and too much is held back already.
    bool WriteInFile(QByteArrayView text);
    /// The same at less cost, for text behind which nobody asks for a zone.
    bool WritePiece(QByteArrayView text);
    /// Blanks to the start of the next zone of 14 columns, count times; none for 0 and below.
    void WriteTabInFile(qint16 count);
    /// CR LF.
    void NextLine();

    /// Hands everything written so far to the system. What it does not take is kept and tried
    /// again with every further write, so that nothing is torn or missing once there is room.
    Result Flush();

    /// How the latest write that was handed to the system went. As long as that failed, every write
    /// is handed on at once. Stays after closing.
    const Result &State() const { return m_state; }

    /// After the latter two: closes the file, which takes the place of the old one if every byte is
    /// safely on the disk. With a failure one of the two is whole and nothing else is left.
    Result Commit();

    /// Hands on what is held back and closes. A failure shows in State only.
    void CloseFile();

  private:
    using Make = FileSystem::Created (FileSystem::*)(const QString &path);

    Result Open(const QString &path, Make make, bool replacing);
    bool KeepForLater(QByteArrayView text);
    Result WriteHeld();
    Result HandOn(QByteArrayView &text);
    Result FinishReplacing();
    void Release();

    OpenFiles &m_files;
    std::unique_ptr<OutputDevice> m_device;
    bool m_replacing = false;
    QString m_held;      ///< name in m_files
    QByteArray m_buffer; ///< written, but not yet taken by the system
    qint64 m_written = 0;
    qint64 m_column = 0; ///< characters since the last line end
    Result m_state;
};
