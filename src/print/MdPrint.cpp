// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "MdPrint.h"

#include "ByteLook.h"
#include "Clock.h"
#include "CommunicationViews.h"
#include "DisplaySettings.h"
#include "FileName.h"
#include "MdSequenceEdition.h"
#include "ProjectState.h"
#include "SequenceRows.h"
#include "SequenceSettings.h"
#include "UserPrompts.h"

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

/// What a representation without a meaning acts as; the lists have a rule of their own.
qint16 PrintedForm(qint16 display)
{
    return qint16(RepresentationOf(display, Representation::Decimal));
}

} // namespace

void MdPrint::PrintCommunication()
{
    const Representation shown = m_parts.views.DisplayedRepresentation;
    if (!IsRepresentation(int(shown)))
        return;
    const RichTextModel &model = m_parts.views.View(shown);
    PrintDialogRequest request = {.document = Titled(QStringLiteral("Communication")),
                                  .flags = PrintFlags::ReturnDevice | PrintFlags::NoPageNumbers};
    if (model.HasSelection())
        request.flags |= PrintFlags::Selection;
    const auto choice = m_parts.prompts.ChoosePrinter(request);
    if (!choice)
        return;

    ViewPrintout printout = {model, model.Begin(), model.End(), m_parts.display.DispBack};
    if (choice->selectionOnly && model.HasSelection()) {
        printout.from = model.SelectionStart();
        printout.to = model.SelectionEnd();
    }
    Result printed;
    {
        // No event is handled meanwhile, so the view keeps still; the ports keep what arrives.
        const Hourglass hourglass(m_parts.setBusy);
        printed = m_parts.output.PrintView(printout, *choice);
    }
    // Whoever wanted paper sees that none comes; a missing file would pass for one that is there.
    if (printed.Failed() && !choice->pdfPath.isEmpty())
        ShowFailure(printed);
}

void MdPrint::PrintProject()
{
    if (m_parts.sequences.SendCount() < 1 && m_parts.sequences.ReceiveCount() < 1) {
        m_parts.prompts.ShowMessage(CriticalMessage(QStringLiteral("Nothing to print")));
        return;
    }
    const QString &name = m_parts.project.ProjectFileName;
    const QString document =
        Titled(name.isEmpty() ? QStringLiteral("Project") : FileName::Shown(name));
    if (!Printer().setup(document))
        return;
    if (const Result printed = PrintCopies(); printed.Failed())
        ShowFailure(printed);
}

/// All copies in one job; one that fails is thrown away.
Result MdPrint::PrintCopies()
{
    const Hourglass hourglass(m_parts.setBusy);
    ClMyPrinter &printer = Printer();
    printer.startPrint();
    for (int copy = 1; copy <= printer.Copies() && !printer.State().Failed(); ++copy) {
        if (copy > 1)
            printer.beginNewPage();
        PrintCopy();
    }
    if (!printer.State().Failed())
        printer.endPrint();
    Result printed = printer.State();
    if (printed.Failed())
        printer.abortPrint();
    return printed;
}

void MdPrint::PrintCopy()
{
    PrintHeader();
    PrintSendSequences();
    PrintEmptyLines(2);
    PrintReceiveSequences();
}

void MdPrint::PrintHeader()
{
    const ProjectState &project = m_parts.project;
    // A folder may be chosen already while there is no project in it.
    const QString path = project.IsNamed()
                             ? FileName::Shown(project.ProjectDirectory + project.ProjectFileName)
                             : QString();
    const QString today = m_parts.clock.ShortDate(m_parts.clock.Now().date());
    Printer().SetFontBold(true);
    Printer().printText(Titled(today));
    Printer().printText(ByteLook::WithShapes(path));
    Printer().SetFontBold(false);
    PrintEmptyLines(2);
}

void MdPrint::PrintSendSequences()
{
    PrintHeading(QStringLiteral("Send Sequences"));
    for (int i = 0; i < m_parts.sequences.SendCount() && !Printer().State().Failed(); ++i) {
        const SendSequence &record = m_parts.sequences.SendAt(i);
        PrintNameAndSequence(i, record.Name, record.Sequence);
        PrintEmptyLines(1);
    }
}

void MdPrint::PrintReceiveSequences()
{
    PrintHeading(QStringLiteral("Receive Sequences"));
    for (int i = 0; i < m_parts.sequences.ReceiveCount() && !Printer().State().Failed(); ++i) {
        const ReceiveSequence &record = m_parts.sequences.ReceiveAt(i);
        PrintNameAndSequence(i, record.Name, record.Sequence);
        PrintReceiveSequence(record);
        PrintEmptyLines(1);
    }
}

/// What follows the name and the sequence.
void MdPrint::PrintReceiveSequence(const ReceiveSequence &record)
{
    Printer().printText(record.Active != 0 ? QStringLiteral("Receive sequence is active")
                                           : QStringLiteral("Receive sequence is inactive"));
    if (record.Answer > 0) {
        const SendSequence *answer = m_parts.sequences.AnswerOf(record);
        Printer().printText(QStringLiteral("Respond with the following send sequence: ") +
                            (answer ? ByteLook::ToShapes(answer->Name) : QString()));
    }
    if (!record.Comment.isEmpty()) {
        Printer().printText(QStringLiteral("After receiving the sequence, insert comment: ") +
                            ByteLook::ToShapes(record.Comment));
    }
}

void MdPrint::PrintHeading(const QString &text)
{
    Printer().SetFontBold(true);
    Printer().printText(text);
    Printer().SetFontBold(false);
    Printer().printVertLine(0);
    PrintEmptyLines(1);
}

void MdPrint::PrintNameAndSequence(int index, QByteArrayView name, QByteArrayView sequence)
{
    Printer().SetFontBold(true);
    Printer().printText(QString::number(index) + QLatin1String(" - ") + ByteLook::ToShapes(name));
    Printer().SetFontBold(false);
    Printer().printText(
        ByteLook::ToShapes(SequenceRows::ListText(PrintedForm(m_parts.form.Display), sequence)));
}

void MdPrint::PrintEmptyLines(int count)
{
    for (int i = 0; i < count; ++i)
        Printer().printText({});
}

QString MdPrint::Titled(const QString &text) const
{
    return m_parts.project.ProgramTitle + QLatin1String(" - ") + text;
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
