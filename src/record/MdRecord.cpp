// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "MdRecord.h"

#include "Clock.h"
#include "FileName.h"
#include "RecordSettings.h"
#include "RecordText.h"
#include "RunState.h"
#include "UserPrompts.h"

#include <QDeadlineTimer>
#include <QRandomGenerator>
#include <QScopedValueRollback>

#include <utility>

namespace
{

constexpr qint64 BytesOfAMegabyte = 1024 * 1024;

/// Hands on to what others use as well.
class SharedSink final : public CaptureSink
{
  public:
    explicit SharedSink(std::shared_ptr<CaptureSink> sink) : m_sink(std::move(sink)) {}

    Result BeginSection(QByteArrayView head) override { return m_sink->BeginSection(head); }
    Result Write(QByteArrayView packets) override { return m_sink->Write(packets); }
    void Finish() override { m_sink->Finish(); }

  private:
    std::shared_ptr<CaptureSink> m_sink;
};

QString DeletionQuestion(qint64 size, qint32 megabytes)
{
    const QString what =
        megabytes == 0
            ? QStringLiteral("it, and keep nothing from now on?")
            : QStringLiteral("what is more than %1 MiB, the oldest first?").arg(megabytes);
    return QStringLiteral("The record of this session has %1. Do you want to delete %2")
        .arg(RecordText::Size(size), what);
}

/// Why there is no record.
QString EmptyText(const RecordState &state)
{
    if (state.bound == 0)
        return QStringLiteral("the session's record is switched off. Tools, Session Record... "
                              "switches it on.");
    if (state.ended.Failed())
        return QStringLiteral("the session's record cannot be written: ") + state.ended.Cause();
    return QStringLiteral("nothing has been recorded in this session.");
}

/// Of a capture with bookmarks; a copy of a copy has the same.
QString CopyName(const QString &capture)
{
    const QString more = QStringLiteral(" with bookmarks");
    QString base = capture;
    for (const QString &extension : {QStringLiteral(".pcapng"), QStringLiteral(".pcap")}) {
        if (base.endsWith(extension, Qt::CaseInsensitive))
            base.chop(extension.size());
    }
    return (base.endsWith(more) ? base : base + more) + QStringLiteral(".pcapng");
}

/// By its time, so that names are in the order of the sessions.
QString NewSession()
{
    return QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMddhhmmsszzz")) + u'.' +
           QString::number(QRandomGenerator::global()->generate(), 36);
}

} // namespace

MdRecord::MdRecord(const RecordParts &parts, std::shared_ptr<RecordFolder> folder,
                   const QString &program)
    : m_parts(parts),
      m_segments(std::make_shared<RecordSegments>(
          folder, NewSession(),
          [this](const Result &result) {
              QMetaObject::invokeMethod(
                  this, [this, result] { TellEnded(result); }, Qt::QueuedConnection);
          })),
      m_capture(std::make_unique<SharedSink>(m_segments), program),
      m_saver(parts),
      m_offer(parts, m_saver, std::move(folder), m_background),
      m_looking(std::make_shared<std::atomic<bool>>(false))
{
}

void MdRecord::ApplySettings()
{
    m_segments->SetBound(m_parts.settings.MostMegabytes * BytesOfAMegabyte);
}

void MdRecord::ChangeBound(qint32 megabytes)
{
    const qint64 bytes = megabytes * BytesOfAMegabyte;
    if (megabytes == m_parts.settings.MostMegabytes)
        return;
    const RecordState state = m_segments->State();
    if (state.size > bytes &&
        m_parts.prompts.ShowMessage({.text = DeletionQuestion(state.size, megabytes),
                                     .icon = PromptIcon::Exclamation,
                                     .buttons = PromptButtons::YesNo,
                                     .defaultAnswer = PromptAnswer::No}) != PromptAnswer::Yes)
        return;
    m_parts.settings.MostMegabytes = megabytes;
    m_background.Post([segments = m_segments, bytes] { segments->SetBound(bytes); });
}

void MdRecord::SaveCapture()
{
    if (m_saving)
        return;
    const QScopedValueRollback<bool> saving(m_saving, true);
    if (const RecordState state = m_segments->State(); state.since == 0) {
        m_parts.prompts.ShowMessage(
            InformationMessage(QStringLiteral("There is nothing to save: ") + EmptyText(state)));
        return;
    }
    const QStringList paths = m_saver.ChooseFiles(1);
    if (paths.isEmpty() || m_parts.run.QuitRequested)
        return;
    const auto write = [this, notes = Notes()](OpenFiles &files, const QString &path,
                                               WorkProgress &progress) {
        Source source = SourceNow();
        source.copy.notes << notes;
        return source.result.Failed() ? source.result : source.copy.WriteTo(files, path, progress);
    };
    if (!m_saver.Save(paths.first(), write))
        return;
    if (const QString missing = MissingText(m_segments->State()); !missing.isEmpty())
        m_parts.prompts.ShowNotice(
            paths.first(),
            InformationMessage(
                QStringLiteral("%1 was saved. ").arg(FileName::Shown(paths.first())) + missing));
}

bool MdRecord::SaveCopy(const BookmarkedCopy &copy, const QString &name)
{
    if (m_saving)
        return false;
    const QScopedValueRollback<bool> saving(m_saving, true);
    const QStringList paths = m_saver.ChooseFiles(1, CopyName(name));
    const auto write = [copy](OpenFiles &files, const QString &path, WorkProgress &progress) {
        return copy.WriteTo(files, path, progress);
    };
    return !paths.isEmpty() && !m_parts.run.QuitRequested && m_saver.Save(paths.first(), write);
}

/// All that has happened by now; on a thread that may wait for a disk.
MdRecord::Source MdRecord::SourceNow()
{
    if (!m_capture.WaitUntilWritten(CaptureThread::MostTimeToEnd))
        return {{}, Failure{QStringLiteral("The disk of the session's record does not answer")}};
    m_segments->Look();
    Source source;
    for (const RecordSegment &each : m_segments->Segments()) {
        FileSystem::Opened opened = m_segments->Open(each.number);
        if (opened.device)
            source.copy.parts.append({std::move(opened.device), each.size});
    }
    const RecordState state = m_segments->State();
    if (const QString missing = MissingText(state); !missing.isEmpty())
        source.copy.notes << missing;
    const LineTime now = {0, m_parts.clock.Now().toMSecsSinceEpoch() * 1'000'000};
    source.copy.end = LostPackets(state.lost, now);
    if (source.copy.parts.isEmpty())
        source.result = Failure{QStringLiteral("Nothing is left of the session's record")};
    return source;
}

QString MdRecord::MissingText(const RecordState &state) const
{
    QString text;
    if (state.taken > 0) {
        text = QStringLiteral("The record begins at %1: %2 before that are gone, as all records "
                              "together may have %3.")
                   .arg(RecordText::Time(state.since), RecordText::Size(state.taken),
                        RecordText::Size(state.bound));
    }
    if (state.ended.Failed()) {
        text += text.isEmpty() ? QString() : QStringLiteral(" ");
        text += QStringLiteral("The record ended early: %1.").arg(state.ended.Cause());
    }
    return text;
}

void MdRecord::TellEnded(const Result &result)
{
    MessagePrompt prompt = ExclamationMessage(
        QStringLiteral("The session's record ends here, as it cannot be written: ") +
        result.Cause());
    prompt.details = FileName::Shown(Path()) +
                     QStringLiteral("\nCommunication goes on. What has been recorded can still be "
                                    "saved. It is tried again when the ports are opened again.");
    m_parts.prompts.ShowNotice(QStringLiteral("record"), prompt);
}

RecordState MdRecord::State()
{
    if (!m_looking->exchange(true)) {
        m_background.Post([segments = m_segments, looking = m_looking] {
            segments->Look();
            *looking = false;
        });
    }
    return m_segments->State();
}

void MdRecord::Keep()
{
    m_keep = m_keep || !m_parts.run.QuitRequested; // the user may have ended it by hand already
    m_capture.WaitUntilWritten(CaptureThread::MostTimeToEnd);
}

bool MdRecord::Finish()
{
    const QDeadlineTimer deadline(CaptureThread::MostTimeToEnd);
    if (!m_keep)
        m_background.Post([segments = m_segments] { segments->Remove(); });
    m_capture.Close();
    const bool written = m_capture.WaitUntilWritten(CaptureThread::MostTimeToEnd);
    const bool done =
        m_background.WaitUntilDone(std::chrono::milliseconds(deadline.remainingTime()));
    return written && done && !m_saver.Hangs();
}
