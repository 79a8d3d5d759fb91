// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "BackgroundWork.h"
#include "BookmarkedCopy.h"
#include "CaptureThread.h"
#include "RecordCopy.h"
#include "RecordOffer.h"
#include "RecordSaver.h"
#include "RecordSegments.h"

#include <QObject>

#include <atomic>
#include <functional>

/// The session's record: what has happened on the lines since the ports were first opened, in files
/// that go when the program ends in good order. Written by a thread of its own; neither the lines
/// nor the window ever wait for a disk, but where the user asks for a file.
class MdRecord final : public QObject
{
    Q_OBJECT

  public:
    /// The program is what writes the record, such as "Serimonde 1.0".
    MdRecord(const RecordParts &parts, std::shared_ptr<RecordFolder> folder,
             const QString &program);

    /// What is to be fed with what happens.
    TrafficConsumer &Consumer() { return m_capture; }

    /// The settings have been loaded.
    void ApplySettings();
    /// How much may be kept from now on, in MiB; asks before it takes away what is there. The user
    /// may refuse.
    void ChangeBound(qint32 megabytes);

    /// Has the user choose a file for what has been recorded by then.
    void SaveCapture();
    /// Comments on it, such as bookmarks, asked for when it is saved.
    std::function<QStringList()> Notes = [] { return QStringList(); };
    /// Has the user choose a file for a copy, of a capture of that name. False if there is none:
    /// it failed, or was cancelled.
    bool SaveCopy(const BookmarkedCopy &copy, const QString &name);

    /// Offers what sessions left behind, once.
    void Offer() { m_offer.Offer(); }

    /// As far as it is known now; what others take away is noted soon after.
    RecordState State();
    QString Path() const { return m_segments->Folder().Path(); }
    /// For who reads the record of this session while it is written.
    const RecordSegments &Segments() const { return *m_segments; }
    /// The same for threads that may outlive this.
    std::shared_ptr<const RecordSegments> SharedSegments() const { return m_segments; }

    /// The end comes, or may come, without the user's wish: the record stays. Returns when it is
    /// with the system, or after CaptureThread::MostTimeToEnd.
    void Keep();
    /// The end of the program, after the last event. False if a disk hangs: the process must then
    /// end without waiting for it.
    bool Finish();

  private:
    /// What has been recorded by now.
    struct Source {
        RecordCopy copy;
        Result result;
    };
    Source SourceNow();
    QString MissingText(const RecordState &state) const;
    void TellEnded(const Result &result);

    RecordParts m_parts;
    BackgroundWork m_background;
    std::shared_ptr<RecordSegments> m_segments; ///< shared with threads that may outlive this
    CaptureThread m_capture;
    RecordSaver m_saver;
    RecordOffer m_offer;
    std::shared_ptr<std::atomic<bool>> m_looking; ///< at what others took
    bool m_keep = false;
    bool m_saving = false;
};
