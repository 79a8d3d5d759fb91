// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TelegramExport.h"

#include "ClOutputFile.h"
#include "WorkProgress.h"

namespace
{

constexpr int ProgressSteps = 1000;
constexpr qsizetype BytesOfAWrite = 256 * 1024;

} // namespace

TelegramExport TelegramExport::All(const TelegramView &view, TelegramWriter::Form form)
{
    const auto [first, end] = view.Rows();
    return {view, {{first, end - 1}}, form};
}

/// Hands on the rows, many at once, until that does not want more.
void TelegramExport::Walk(WorkProgress &progress,
                          const std::function<bool(const QByteArray &)> &take) const
{
    qint64 whole = 0;
    for (const Range &range : ranges)
        whole += range.last - range.first + 1;
    progress.Begin(ProgressSteps);
    TelegramWriter writer(form);
    TelegramReading reading(view);
    QByteArray text = writer.Head();
    qint64 done = 0;
    bool isWanted = true;
    for (const Range &range : ranges) {
        reading.Visit(range.first, range.last + 1, [&](qint64, const Telegram &telegram) {
            text += writer.Row(telegram);
            ++done;
            while (progress.Done() < int(double(done) / double(whole) * ProgressSteps))
                progress.Step();
            if (text.size() >= BytesOfAWrite) {
                isWanted = take(text);
                text.resize(0);
            }
            isWanted = isWanted && progress.Wanted();
            return isWanted;
        });
    }
    if (isWanted)
        take(text);
}

Result TelegramExport::WriteTo(OpenFiles &files, const QString &path, WorkProgress &progress) const
{
    ClOutputFile file(files);
    if (Result opened = file.OpenForReplacing(path); opened.Failed())
        return opened;
    Walk(progress, [&file](const QByteArray &text) {
        file.WriteInFile(text);
        return !file.State().Failed();
    });
    if (file.State().Failed())
        return file.State();
    return progress.Settle() ? file.Commit() : Result();
}

TelegramExport::Copied TelegramExport::Copy(qsizetype most, WorkProgress &progress) const
{
    Copied copied;
    Walk(progress, [&](const QByteArray &text) {
        copied.isWhole = copied.text.size() + text.size() <= most;
        QByteArrayView fits = text;
        if (!copied.isWhole) {
            fits = fits.first(most - copied.text.size());
            fits = fits.first(fits.lastIndexOf('\n') + 1);
        }
        copied.text += fits;
        return copied.isWhole;
    });
    return copied;
}
