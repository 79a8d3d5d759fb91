// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TrafficCopying.h"

#include "FileName.h"
#include "MdGetSpecialFolders.h"
#include "OpenFiles.h"
#include "PathParts.h"
#include "RunState.h"
#include "TelegramBook.h"
#include "TelegramList.h"
#include "TrafficActions.h"
#include "UserPrompts.h"
#include "frmTraffic.h"

#include <QApplication>
#include <QClipboard>
#include <QLocale>
#include <QMenu>

#include <utility>

namespace
{

using Form = TelegramWriter::Form;

const QString CsvEnd = QStringLiteral(".csv");
const QString TextEnd = QStringLiteral(".txt");

/// What the work of copying hands over; shared with its thread.
struct Copied {
    TelegramExport::Copied rows;
    bool wanted = false;
};

} // namespace

TrafficCopying::TrafficCopying(frmTraffic &window, TrafficActions &actions, TrafficCopyParts parts)
    : m_window(window), m_book(window.Book()), m_actions(actions), m_parts(std::move(parts))
{
    actions.On(TrafficCommand::Copy, [this] { Copy(Form::Text); });
    actions.On(TrafficCommand::CopyAsCsv, [this] { Copy(Form::Csv); });
    actions.On(TrafficCommand::CopyAsArray, [this] { Copy(Form::CArray); });
    actions.On(TrafficCommand::SelectAll, [this] { m_window.List().SelectAll(); });
    actions.On(TrafficCommand::ExportAll,
               [this] { Export(QStringLiteral("Export All Rows"), All()); });
    actions.On(TrafficCommand::ExportShown, [this] {
        Export(QStringLiteral("Export Shown Rows"), TelegramExport::All(m_book.View(), Form::Csv));
    });
    actions.On(TrafficCommand::ExportSelected,
               [this] { Export(QStringLiteral("Export Selected Rows"), Selected()); });
    actions.On(TrafficCommand::NewSendSequence, [this] { MakeSequence(m_parts.NewSendSequence); });
    actions.On(TrafficCommand::NewReceiveSequence,
               [this] { MakeSequence(m_parts.NewReceiveSequence); });
    connect(&window.List(), &TelegramList::SelectionChanged, this, &TrafficCopying::ShowState);
    connect(&window.List(), &TelegramList::CurrentChanged, this, &TrafficCopying::ShowState);
    connect(&m_book, &TelegramBook::Changed, this, &TrafficCopying::ShowState);
    connect(&m_book, &TelegramBook::Reset, this, &TrafficCopying::ShowState);
    ShowState();
}

TelegramExport TrafficCopying::All() const
{
    TelegramView view = m_book.View();
    view.matches.reset();
    return TelegramExport::All(view, Form::Csv);
}

TelegramExport TrafficCopying::Selected() const
{
    TelegramExport selected = {m_book.View(), {}};
    for (const TelegramSelection::Range &range : m_window.List().Selection().Ranges())
        selected.ranges.append({range.first, range.last});
    return selected;
}

void TrafficCopying::Copy(TelegramWriter::Form form)
{
    TelegramExport rows = Selected();
    if (rows.ranges.isEmpty())
        return;
    rows.form = form;
    const auto copied = std::make_shared<Copied>();
    const auto work = [rows, copied](WorkProgress &progress) {
        copied->rows = rows.Copy(MostOfAClipboard, progress);
        copied->wanted = progress.Settle();
    };
    if (!m_parts.prompts.DoWork(QStringLiteral("Copying rows"), work)) {
        m_hangs = true;
        return;
    }
    if (copied->wanted && copied->rows.isWhole)
        QApplication::clipboard()->setText(QString::fromUtf8(copied->rows.text));
    else if (copied->wanted)
        m_parts.prompts.ShowMessage(ExclamationMessage(
            QStringLiteral("The selected rows are too many to be copied; \"Export Selected "
                           "Rows...\" writes them into a file.")));
}

void TrafficCopying::Export(const QString &title, TelegramExport rows)
{
    const QString path = ChooseFile(title);
    if (path.isEmpty())
        return;
    rows.form = path.endsWith(TextEnd, Qt::CaseInsensitive) ? Form::Text : Form::Csv;
    const auto result = std::make_shared<Result>();
    const auto work = [rows, path, result, &files = m_parts.files](WorkProgress &progress) {
        *result = rows.WriteTo(files, path, progress);
    };
    if (!m_parts.prompts.DoWork(QStringLiteral("Exporting to ") + FileName::Shown(path), work)) {
        m_hangs = true;
        return;
    }
    if (result->Failed())
        m_parts.prompts.ShowMessage(
            CriticalMessage(QStringLiteral("The rows could not be exported to %1: %2")
                                .arg(FileName::Shown(path), result->Cause())));
}

/// Empty if the user does not want one.
QString TrafficCopying::ChooseFile(const QString &title)
{
    const QString &remembered = m_parts.folder;
    const bool canBeShown = !remembered.isEmpty() && FileName::IsText(remembered);
    FileDialogRequest request = {.purpose = FileDialogRequest::Purpose::Save,
                                 .dialog = QStringLiteral("dlgExportTraffic"),
                                 .title = title,
                                 .filter = QStringLiteral("CSV, or text | *.txt *.csv"),
                                 .folder = canBeShown ? remembered : MdGetSpecialFolders(),
                                 .name = QStringLiteral("traffic.csv")};
    while (!m_parts.run.QuitRequested) {
        QString path = m_parts.prompts.ChooseFile(request);
        if (path.isEmpty())
            break;
        if (!path.endsWith(TextEnd, Qt::CaseInsensitive) &&
            !path.endsWith(CsvEnd, Qt::CaseInsensitive))
            path += CsvEnd;
        request.folder = PathParts::Folder(path);
        request.name = PathParts::FileName(path);
        if (!MayReplace(path, title))
            continue;
        m_parts.folder = request.folder;
        return path;
    }
    return {};
}

bool TrafficCopying::MayReplace(const QString &path, const QString &title)
{
    if (!m_parts.files.System().Exists(path))
        return true;
    return m_parts.prompts.ShowMessage(ReplaceQuestion(path, title)) == PromptAnswer::Yes;
}

/// Of the row in hand.
void TrafficCopying::MakeSequence(const NewSequence &make)
{
    const Telegram *telegram = m_book.Row(m_window.List().Current());
    if (telegram && telegram->HasBytes())
        make(QByteArray(telegram->bytes), m_window);
}

void TrafficCopying::ShowState()
{
    const TelegramList &list = m_window.List();
    const Telegram *telegram = m_book.Row(list.Current());
    const QString noRow =
        list.Selection().IsEmpty() ? QStringLiteral("No row is selected.") : QString();
    const QString noBytes = !telegram              ? QStringLiteral("No row is chosen.")
                            : telegram->HasBytes() ? QString()
                                                   : QStringLiteral("The row has no bytes.");
    const QString maySend =
        m_parts.MaySend()
            ? QString()
            : QStringLiteral("Nothing is sent in the mode \"Monitoring (Receive Only)\".");
    for (const TrafficCommand command :
         {TrafficCommand::Copy, TrafficCommand::CopyAsCsv, TrafficCommand::CopyAsArray,
          TrafficCommand::ExportSelected})
        m_actions.Enable(command, noRow);
    m_actions.Enable(TrafficCommand::NewReceiveSequence, noBytes);
    m_actions.Enable(TrafficCommand::NewSendSequence, maySend.isEmpty() ? noBytes : maySend);
    const QString none =
        m_book.CountOfAll() == 0 ? QStringLiteral("There are no rows.") : QString();
    m_actions.Enable(TrafficCommand::ExportAll, none);
    m_actions.Enable(TrafficCommand::ExportShown, none);
}
