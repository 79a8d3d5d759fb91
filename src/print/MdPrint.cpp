// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "MdPrint.h"

#include "Clock.h"
#include "CommunicationViews.h"
#include "DisplaySettings.h"
#include "FileName.h"
#include "MdGetSpecialFolders.h"
#include "MdSequenceEdition.h"
#include "PrintSettings.h"
#include "ProjectPrintout.h"
#include "ProjectState.h"
#include "SequenceSettings.h"
#include "UserPrompts.h"

#include <QScopedValueRollback>

#include <memory>

namespace
{

/// The hourglass pointer, for as long as this lives.
class Hourglass
{
  public:
    explicit Hourglass(const std::function<void(bool)> &setBusy) : m_setBusy(setBusy)
    {
        m_setBusy(true);
    }
    ~Hourglass() { m_setBusy(false); }
    Q_DISABLE_COPY_MOVE(Hourglass)

  private:
    const std::function<void(bool)> &m_setBusy;
};

std::shared_ptr<const RichTextModel> CopyOf(const RichTextModel &model, qint64 from, qint64 to)
{
    auto copy = std::make_shared<RichTextModel>();
    while (from < to) {
        const RichTextModel::StyleRun &run = model.RunAt(from);
        const qint64 end = qMin(run.end, to);
        copy->Extend(model.Bytes().sliced(from - model.Begin(), end - from), run.style);
        from = end;
    }
    return copy;
}

} // namespace

void MdPrint::PrintCommunication()
{
    const Representation shown = m_parts.views.DisplayedRepresentation;
    if (!IsRepresentation(int(shown)) || m_printing)
        return;
    const QString name = QString::fromLatin1(RowOf(shown).caption);
    PrintDialogRequest request = {
        .document = Titled(QStringLiteral("Communication")),
        .flags = PrintFlags::ReturnDevice | PrintFlags::NoPageNumbers,
        .pdfPath = PdfPath(QStringLiteral("communication ") + name),
        .marginText = m_parts.settings.MarginText,
    };
    if (m_parts.views.View(shown).HasSelection())
        request.flags |= PrintFlags::Selection;
    const auto choice = m_parts.prompts.ChoosePrinter(request);
    if (!choice)
        return;

    m_parts.settings.MarginText = choice->marginText;
    const Result printed =
        Print(request.document,
              [&output = m_parts.output, printout = CopyOfView(*choice), choice = *choice](
                  WorkProgress &progress) { return output.PrintView(printout, choice, progress); });
    // Whoever wanted paper sees that none comes; a missing file would pass for one that is there.
    if (printed.Failed() && !choice->pdfPath.isEmpty())
        ShowFailure(printed);
}

/// Of what is to be printed; the view goes on meanwhile.
ViewPrintout MdPrint::CopyOfView(const PrinterChoice &choice) const
{
    const Representation shown = m_parts.views.DisplayedRepresentation;
    const RichTextModel &view = m_parts.views.View(shown);
    const bool selection = choice.selectionOnly && view.HasSelection();
    ViewPrintout printout = {
        .text = CopyOf(view, selection ? view.SelectionStart() : view.Begin(),
                       selection ? view.SelectionEnd() : view.End()),
        .background = m_parts.display.DispBack,
    };
    if (choice.marginText)
        printout.margin = {QString::fromLatin1(RowOf(shown).caption), Today()};
    return printout;
}

void MdPrint::PrintProject()
{
    if (m_printing)
        return;
    if (m_parts.sequences.SendCount() < 1 && m_parts.sequences.ReceiveCount() < 1) {
        m_parts.prompts.ShowMessage(CriticalMessage(QStringLiteral("Nothing to print")));
        return;
    }
    const ProjectState &project = m_parts.project;
    const QString &name = project.ProjectFileName;
    const QString document =
        Titled(name.isEmpty() ? QStringLiteral("Project") : FileName::Shown(name));
    if (!Printer().setup({.document = document, .pdfPath = PdfPath({})}))
        return;

    // A folder may be chosen already while there is no project in it.
    const QString path = project.IsNamed()
                             ? FileName::Shown(project.ProjectDirectory + project.ProjectFileName)
                             : QString();
    const ProjectPrintout printout({Titled(Today()), path}, m_parts.sequences,
                                   m_parts.form.Display);
    const Result printed =
        Print(document, [&printer = Printer(), printout](WorkProgress &progress) {
            return printout.PrintOn(printer, progress);
        });
    if (printed.Failed())
        ShowFailure(printed);
}

/// What prints is copied into the thread, and so must be all that it prints.
Result MdPrint::Print(const QString &document, const Printing &print)
{
    const QScopedValueRollback<bool> printing(m_printing, true);
    const Hourglass hourglass(m_parts.setBusy);
    const auto printed = std::make_shared<Result>();
    m_hangs = !m_parts.prompts.DoWork(
        QStringLiteral("Printing ") + document,
        [print, printed](WorkProgress &progress) { *printed = print(progress); });
    return m_hangs ? Result() : *printed;
}

QString MdPrint::Titled(const QString &text) const
{
    return m_parts.project.ProgramTitle + QLatin1String(" - ") + text;
}

QString MdPrint::Today() const
{
    return m_parts.clock.ShortDate(m_parts.clock.Now().date());
}

QString MdPrint::PdfPath(const QString &kind) const
{
    const ProjectState &project = m_parts.project;
    const bool beside =
        project.IsNamed() && FileName::IsText(project.ProjectDirectory + project.ProjectFileName);
    const QString folder = beside ? project.ProjectDirectory : project.LastFolder;
    const QString first = beside ? project.ProjectFileName : QStringLiteral("Project");
    return (folder.isEmpty() ? MdGetSpecialFolders() : folder) + first +
           (kind.isEmpty() ? kind : u' ' + kind) + QLatin1String(".pdf");
}

void MdPrint::ShowFailure(const Result &printed)
{
    m_parts.prompts.ShowMessage(
        CriticalMessage(QStringLiteral("Error while printing"), printed.Cause()));
}

ClMyPrinter &MdPrint::Printer()
{
    if (!m_printer)
        m_printer.emplace(m_parts.prompts, m_parts.output);
    return *m_printer;
}
