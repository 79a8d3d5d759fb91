// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ResponseExport.h"

#include "ClOutputFile.h"
#include "CsvCell.h"
#include "ResponseScan.h"
#include "ResponseText.h"
#include "TelegramText.h"
#include "WorkProgress.h"

#include <algorithm>
#include <utility>

namespace
{

constexpr int ProgressSteps = 1000;
constexpr qint64 ItemsOfALook = 65'536; ///< reads and writes between two looks at the progress

/// A line for each time.
class ValueLines final : public ResponseConsumer
{
  public:
    void Count(const ResponseKey &) override {}
    void Take(const ResponseKey &key, const ResponseSample &sample) override
    {
        const bool isQuestion = key.kind != ResponseKey::Kind::Detection;
        const char *outcome = !isQuestion           ? "period"
                              : sample.IsAnswered() ? "answered"
                                                    : "unanswered";
        m_text +=
            QByteArray::number(sample.number) + ',' + TelegramText::Time(sample.wall).toLatin1() +
            ',' + CsvCell(ResponseText::Name(key)) + ',' +
            ResponseText::Event(key.kind).toLatin1() + ',' + QByteArray::number(key.channel + 1) +
            ',' + outcome + ',' +
            (sample.IsAnswered() ? TelegramText::Duration(sample.time).toLatin1() : QByteArray()) +
            '\n';
    }

    QByteArray TakeText() { return std::exchange(m_text, {}); }

  private:
    QByteArray m_text = "number,time,sequence,event,channel,outcome,seconds\n";
};

/// Of a thousand.
int ShareRead(const ResponseScan &scan, const TelegramSource &source)
{
    const TelegramSource::Progress progress =
        TelegramSource::ProgressAt(source.Parts(), scan.PartNumber(), scan.Read());
    const double share = double(progress.read) / double(std::max<qint64>(1, progress.whole));
    return int(std::min(1.0, share) * ProgressSteps);
}

} // namespace

Result ResponseExport::WriteTo(OpenFiles &files, const QString &path, WorkProgress &progress) const
{
    ClOutputFile file(files);
    if (Result opened = file.OpenForReplacing(path); opened.Failed())
        return opened;
    progress.Begin(ProgressSteps);
    ResponseScan scan(question.source, question.rule, question.limits);
    ValueLines lines;
    for (bool isEnd = false; !isEnd && progress.Wanted();) {
        isEnd = scan.Advance(lines, ItemsOfALook);
        file.WriteInFile(lines.TakeText());
        if (file.State().Failed())
            return file.State();
        for (int share = ShareRead(scan, *question.source); progress.Done() < share;)
            progress.Step();
    }
    return progress.Settle() ? file.Commit() : Result();
}
