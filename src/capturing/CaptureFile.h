// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "CaptureThread.h"
#include "OpenFiles.h"

#include <functional>
#include <memory>

/// A capture as a file of the user's. The file is made when the capture begins, and holds whole
/// packets whatever the disk does: what it takes a part of only is cut off again. Until the disk
/// has room again nothing is written, and CaptureThread counts what is missing.
class CaptureFile final : public CaptureSink
{
  public:
    enum class Trouble {
        NotStarted, ///< there is no file, and nothing is tried again
        NotWritten, ///< for now
        Ended       ///< what is written reaches nobody any more
    };

    /// Called on the thread that writes.
    struct Calls {
        std::function<void(Trouble trouble, const Result &result)> failed;
        std::function<void()> finished; ///< the file is closed, if there ever was one
    };

    /// A file that is there already is refused unless it may be overwritten.
    CaptureFile(OpenFiles &files, QString path, bool mayOverwrite, Calls calls);
    ~CaptureFile() override { Close(); }
    Q_DISABLE_COPY_MOVE(CaptureFile)

    Result BeginSection(QByteArrayView head) override;
    Result Write(QByteArrayView packets) override;
    void Finish() override;

  private:
    Result Open();
    Result Append(QByteArrayView bytes);
    Result HandOn(QByteArrayView bytes);
    void Close();

    OpenFiles &m_files;
    const QString m_path;
    const bool m_mayOverwrite;
    const Calls m_calls;
    std::unique_ptr<OutputDevice> m_device;
    QString m_held; ///< name in m_files
    bool m_isNew = false;
    Result m_over;       ///< failed: nothing is written any more
    qint64 m_size = 0;   ///< of the whole packets in the file
    bool m_torn = false; ///< more than those may be in it
};
