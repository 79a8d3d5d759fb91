// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "MdPrint.h"

#include "Clock.h"
#include "CodePage1252.h"
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
    const bool known = display >= 0 && display < RepresentationCount;
    return known ? display : qint16(Representation::Decimal);
}

} // namespace

void MdPrint::PrintCommunication()
{
    const int shown = int(m_parts.views.DisplayedRepresentation);
    if (shown < 0 || shown >= RepresentationCount)
        return;
    const RichTextModel &model = m_parts.views.View(Representation(shown));
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
    QString failure;
    {
        // No event is handled meanwhile, so the view keeps still; the ports keep what arrives.
        const Hourglass hourglass(m_parts.setBusy);
        failure = m_parts.output.PrintView(printout, *choice);
    }
    // Whoever wanted paper sees that none comes; a missing file would pass for one that is there.
    if (!failure.isEmpty() && !choice->pdfPath.isEmpty())
        ShowFailure();
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
    if (Printer().setup(document) && !PrintCopies())
        ShowFailure();
}

/// All copies in one job. False if it failed and was thrown away.
bool MdPrint::PrintCopies()
{
    const Hourglass hourglass(m_parts.setBusy);
    ClMyPrinter &printer = Printer();
    printer.startPrint();
    for (int copy = 1; copy <= printer.Copies() && !printer.Failed(); ++copy) {
        if (copy > 1)
            printer.beginNewPage();
        PrintCopy();
    }
    if (!printer.Failed())
        printer.endPrint();
    if (printer.Failed()) {
        printer.abortPrint();
        return false;
    }
    return true;
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
    Printer().printText(CodePage1252::WithShapes(path));
    Printer().SetFontBold(false);
    PrintEmptyLines(2);
}

void MdPrint::PrintSendSequences()
{
    PrintHeading(QStringLiteral("Send Sequences"));
    for (int i = 0; i < m_parts.sequences.SendCount() && !Printer().Failed(); ++i) {
        const SendSequence &record = m_parts.sequences.SendAt(i);
        PrintNameAndSequence(i, record.Name, record.Sequence);
        PrintEmptyLines(1);
    }
}

void MdPrint::PrintReceiveSequences()
{
    PrintHeading(QStringLiteral("Receive Sequences"));
    for (int i = 0; i < m_parts.sequences.ReceiveCount() && !Printer().Failed(); ++i) {
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
                            (answer ? CodePage1252::ToShapes(answer->Name) : QString()));
    }
    if (!record.Comment.isEmpty()) {
        Printer().printText(QStringLiteral("After receiving the sequence, insert comment: ") +
                            CodePage1252::ToShapes(record.Comment));
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
    Printer().printText(QString::number(index) + QLatin1String(" - ") +
                        CodePage1252::ToShapes(name));
    Printer().SetFontBold(false);
    Printer().printText(CodePage1252::ToShapes(
        SequenceRows::ListText(PrintedForm(m_parts.form.Display), sequence)));
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

void MdPrint::ShowFailure()
{
    m_parts.prompts.ShowMessage(CriticalMessage(QStringLiteral("Error while printing")));
}

ClMyPrinter &MdPrint::Printer()
{
    if (!m_printer)
        m_printer.emplace(m_parts.prompts, m_parts.output);
    return *m_printer;
}
