// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TrafficCopying.h"

#include "TelegramBook.h"
#include "TelegramList.h"
#include "TrafficActions.h"
#include "TrafficExporting.h"
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

TrafficCopying::TrafficCopying(frmTraffic &window, TrafficActions &actions,
                               TrafficExporting &exporting, TrafficCopyParts parts)
    : m_window(window),
      m_book(window.Book()),
      m_actions(actions),
      m_exporting(exporting),
      m_parts(std::move(parts))
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
    UserPrompts &prompts = m_exporting.Parts().prompts;
    if (!prompts.DoWork(QStringLiteral("Copying rows"), work)) {
        m_exporting.TakeHanging();
        return;
    }
    if (copied->wanted && copied->rows.isWhole)
        QApplication::clipboard()->setText(QString::fromUtf8(copied->rows.text));
    else if (copied->wanted)
        prompts.ShowMessage(ExclamationMessage(
            QStringLiteral("The selected rows are too many to be copied; \"Export Selected "
                           "Rows...\" writes them into a file.")));
}

void TrafficCopying::Export(const QString &title, TelegramExport rows)
{
    m_exporting.Export(
        {.title = title,
         .what = QStringLiteral("The rows"),
         .filter = QStringLiteral("CSV, or text | *.txt *.csv"),
         .name = QStringLiteral("traffic.csv"),
         .endings = {CsvEnd, TextEnd}},
        [rows](OpenFiles &files, const QString &path, WorkProgress &progress) mutable {
            rows.form = path.endsWith(TextEnd, Qt::CaseInsensitive) ? Form::Text : Form::Csv;
            return rows.WriteTo(files, path, progress);
        });
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
