// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "RecordOffer.h"

#include "BackgroundWork.h"
#include "RecordText.h"
#include "RunState.h"
#include "UserPrompts.h"

#include <algorithm>
#include <utility>

namespace
{

MessagePrompt QuestionOf(const QList<std::shared_ptr<LeftRecord>> &left)
{
    qint64 size = 0;
    qint64 begins = left.first()->Begins();
    qint64 ends = 0;
    for (const std::shared_ptr<LeftRecord> &each : left) {
        size += each->Size();
        begins = std::min(begins, each->Begins());
        ends = std::max(ends, each->Ends());
    }
    const QString what =
        QStringLiteral("%1, from %2 to %3")
            .arg(RecordText::Size(size), RecordText::Time(begins), RecordText::Time(ends));
    const QString how =
        left.size() == 1
            ? QStringLiteral("It has %1.").arg(what)
            : QStringLiteral("%1 sessions are left, together %2. Each becomes a file of its own.")
                  .arg(left.size())
                  .arg(what);
    const QString them = left.size() == 1 ? QStringLiteral("it") : QStringLiteral("them");
    return {.text = QStringLiteral("The last session ended unexpectedly. Save its capture?"),
            .icon = PromptIcon::Question,
            .buttons = PromptButtons::YesNoCancel,
            .defaultAnswer = PromptAnswer::Yes,
            .note = how + QStringLiteral(" Choose 'No' to delete %1, 'Cancel' to be asked again at "
                                         "the next start.")
                              .arg(them)};
}

} // namespace

RecordOffer::RecordOffer(const RecordParts &parts, RecordSaver &saver,
                         std::shared_ptr<RecordFolder> folder, BackgroundWork &background)
    : m_parts(parts), m_saver(saver), m_folder(std::move(folder)), m_background(background)
{
}

void RecordOffer::Offer()
{
    m_background.Post([this, folder = m_folder] {
        const Records left = LeftRecord::TakeAll(folder);
        if (!left.isEmpty())
            QMetaObject::invokeMethod(
                this, [this, left] { Ask(left); }, Qt::QueuedConnection);
    });
}

void RecordOffer::Ask(const Records &left)
{
    if (m_parts.run.QuitRequested)
        return;
    m_parts.prompts.Ask(QuestionOf(left),
                        [this, left](PromptAnswer answer) { Answer(answer, left); });
}

void RecordOffer::Answer(PromptAnswer answer, const Records &left)
{
    if (answer == PromptAnswer::Yes)
        Save(left);
    if (answer != PromptAnswer::No)
        return;
    for (const std::shared_ptr<LeftRecord> &each : left)
        Remove(each);
}

/// What is not saved stays for the next start.
void RecordOffer::Save(const Records &left)
{
    const QStringList paths = m_saver.ChooseFiles(int(left.size()));
    for (qsizetype i = 0; i < paths.size(); ++i) {
        const auto write = [record = left[i]](OpenFiles &files, const QString &path,
                                              WorkProgress &progress) {
            return record->Copy().WriteTo(files, path, progress);
        };
        if (!m_saver.Save(paths[i], write))
            return;
        Remove(left[i]);
    }
}

void RecordOffer::Remove(const std::shared_ptr<LeftRecord> &record)
{
    m_background.Post([record] { record->Remove(); });
}
